// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <span>
#include <string>

namespace texturon {

/// Parses the words of the command line, in UTF-8, the program's own name first, and runs the command that they name.
/// Returns the exit status.
int RunProgram(std::span<const std::string> words);

}  // namespace texturon
