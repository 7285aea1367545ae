// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "analysis/provenance_json.h"
#include "app/run_options.h"

namespace texturon {

/// Of a run that its options have set up.
RunRequest RequestOf(const CommonOptions& options, const RunSetup& setup);

}  // namespace texturon
