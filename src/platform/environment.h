// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <ctime>
#include <filesystem>
#include <functional>

namespace texturon {

/// Clock and folders as a run sees them. Handed in, so that a test can fix every byte of an output.
struct Environment {
  std::function<std::tm()> localTime;
  std::filesystem::path workingFolder;
  std::filesystem::path temporaryFolder;
  std::filesystem::path programFolder;
  std::filesystem::path stateFolder;  ///< of this user's own, for what is kept from run to run; empty: there is none
  std::filesystem::path traceFile;    ///< where the heights given to the element finder go; empty: nowhere
};

}  // namespace texturon
