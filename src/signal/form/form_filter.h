// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <optional>

#include "signal/form/form_input.h"

namespace texturon {

struct FilterFormFit {
  double slope = 0.0;        // of the line taken out first, um per um
  double interceptUM = 0.0;  // of that line, at the first point
  double residualSpacingUM = 0.0;
};

/// Long-wave form: the least-squares line over all heights, whatever step, exclusion and residual kind say, plus the
/// spline mean line, tension 0, of what is above the line. The residual is height - form less its own mean; spacing
/// unchanged. Cutoff in mm. Nothing when the line or the filter fails.
std::optional<FilterFormFit> RemoveFormByFilter(const FormInput& input, double cutoffMM, FormOutput output);

}  // namespace texturon
