// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <string>
#include <string_view>

namespace texturon {

/// The SHA-256 digest (FIPS 180-4) as 64 hexadecimal digits, small letters.
std::string Sha256Of(std::string_view bytes);

}  // namespace texturon
