// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <string>
#include <string_view>

namespace texturon {

/// The processor's own instructions where it has them, a tenth of the time; or those that every processor has.
enum class DigestRoute { kFastest, kPlain };

/// The SHA-256 digest (FIPS 180-4) as 64 hexadecimal digits, small letters.
std::string Sha256Of(std::string_view bytes, DigestRoute route = DigestRoute::kFastest);

}  // namespace texturon
