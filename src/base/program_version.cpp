// SPDX-License-Identifier: Apache-2.0

#include "base/program_version.h"

namespace texturon {

std::string_view ProgramVersion() {
  return TEXTURON_VERSION;
}

}  // namespace texturon
