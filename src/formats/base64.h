// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace texturon {

/// The bytes of a text in base 64 (RFC 4648), white space inside passed over. Nothing where it holds anything else.
std::optional<std::string> BytesFromBase64(std::string_view text);

}  // namespace texturon
