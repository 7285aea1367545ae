// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <string>
#include <string_view>

namespace texturon {

/// The MD5 digest (RFC 1321) as 32 hexadecimal digits, capitals: a check against accidents, not against forgery.
std::string Md5Of(std::string_view bytes);

}  // namespace texturon
