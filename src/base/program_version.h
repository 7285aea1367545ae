// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <string>
#include <string_view>

namespace texturon {

/// The program's version, as the build names it: "0.1.0".
std::string_view ProgramVersion();

/// The same for people, with the commit where the build was told it: "0.1.0 (1a2b3c4d)".
std::string ProgramVersionText();

}  // namespace texturon
