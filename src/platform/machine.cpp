// SPDX-License-Identifier: Apache-2.0

#include "platform/machine.h"

#include "platform/system_calls.h"

namespace texturon {

std::filesystem::path RunningProgram() {
  return ProgramFile();
}

std::string MachineText() {
  return SystemAndProcessor();
}

}  // namespace texturon
