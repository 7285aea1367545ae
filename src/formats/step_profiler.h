// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "formats/profile_reader.h"

namespace texturon {

/// Step profiler text: lines Data, Recipe, Points, X-Resolution (um), a heading, rows of an index and heights in
/// Angstrom; the column is asked for. Of the form with several traces, a row each, once as "Trace Data" and once as
/// "Raw Data", one is chosen.
ReadResult ReadStepProfilerText(const ReaderInput& input, ImportedProfile& profile);

}  // namespace texturon
