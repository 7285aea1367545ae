// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <string_view>

namespace texturon {

/// The program's version, as the build names it: "0.1.0".
std::string_view ProgramVersion();

}  // namespace texturon
