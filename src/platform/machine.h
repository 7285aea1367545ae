// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <filesystem>
#include <string>

namespace texturon {

/// The file of the program that runs; empty where the system does not tell.
std::filesystem::path RunningProgram();

/// System, its release and the processor's kind: "Linux 6.1.0 x86_64".
std::string MachineText();

}  // namespace texturon
