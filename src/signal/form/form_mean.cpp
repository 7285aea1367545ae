// SPDX-License-Identifier: Apache-2.0

#include "signal/form/form_mean.h"

#include "signal/mean.h"

namespace texturon {

std::optional<MeanFit> RemoveMean(const FormInput& input, FormOutput output) {
  if (!output.Fits(input)) return {};
  const double mean = Mean(input.heights);
  for (std::size_t i = 0; i < input.heights.size(); ++i) {
    output.form[i] = mean;
    output.residual[i] = input.heights[i] - mean;
  }
  return MeanFit{mean, input.spacingUM};
}

}  // namespace texturon
