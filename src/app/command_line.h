// SPDX-License-Identifier: Apache-2.0

#pragma once

namespace texturon {

/// Parses the command line and runs the command that it names. Returns the exit status.
int RunProgram(int argc, char** argv);

}  // namespace texturon
