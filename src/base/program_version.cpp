// SPDX-License-Identifier: Apache-2.0

#include "base/program_version.h"

namespace texturon {

std::string_view ProgramVersion() {
  return TEXTURON_VERSION;
}

std::string ProgramVersionText() {
  std::string text(ProgramVersion());
  if (constexpr std::string_view commit = TEXTURON_COMMIT; !commit.empty()) text += " (" + std::string(commit) + ")";
  return text;
}

}  // namespace texturon
