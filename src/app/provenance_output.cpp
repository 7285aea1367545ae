// SPDX-License-Identifier: Apache-2.0

#include "app/provenance_output.h"

namespace texturon {

RunRequest RequestOf(const CommonOptions& options, const RunSetup& setup) {
  return {.settingsFile = options.settingsFile,
          .import = setup.import,
          .answersYes = options.answer == "yes",
          .readAs = options.standardInputAs};
}

}  // namespace texturon
