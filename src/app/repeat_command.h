// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "app/commands.h"

namespace texturon {

/// analyze --again: repeats the analysis that a result object describes and compares. Done where every figure and the
/// input are the same, else refused, with a table of what is not.
int RunAgain(const AnalyzeOptions& analyze, const CommonOptions& common);

}  // namespace texturon
