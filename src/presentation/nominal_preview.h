// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <vector>

#include "settings/settings.h"

namespace texturon {

/// The nominal asphere about its vertex at `count` (2 or more) equal steps from one X to another. Empty unless the
/// second lies behind the first.
std::vector<FreeFormPoint> AspherePreview(const AnalysisSettings& settings, double firstMM, double lastMM,
                                          std::size_t count);

/// The nominal free form as a fit takes it, filtered where the settings say so, at `count` equal steps over its length.
/// Empty where the points give no curve.
std::vector<FreeFormPoint> FreeFormPreview(const AnalysisSettings& settings, std::size_t count);

/// Sets the limits of a preview to what there is to see: the asphere over the clear aperture where that is used, else
/// over a record of a length; without one (0) X stays. The free form over its points.
void FitAspherePreview(Settings& settings, double recordLengthMM);
void FitFreeFormPreview(AnalysisSettings& settings);

}  // namespace texturon
