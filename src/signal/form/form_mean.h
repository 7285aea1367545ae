// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <optional>

#include "signal/form/form_input.h"

namespace texturon {

struct MeanFit {
  double meanUM = 0.0;
  double residualSpacingUM = 0.0;
};

/// Removes the mean of all heights, whatever step and exclusion say: form = mean, residual = height - mean, spacing
/// unchanged. No height: mean 0. Nothing only when the outputs do not have the length of the heights.
std::optional<MeanFit> RemoveMean(const FormInput& input, FormOutput output);

}  // namespace texturon
