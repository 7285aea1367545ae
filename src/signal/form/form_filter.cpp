// SPDX-License-Identifier: Apache-2.0

#include "signal/form/form_filter.h"

#include <vector>

#include "signal/filter/spline_filter.h"
#include "signal/form/form_line.h"
#include "signal/mean.h"

namespace texturon {

std::optional<FilterFormFit> RemoveFormByFilter(const FormInput& input, double cutoffMM, FormOutput output) {
  FormInput all = input;
  all.step = 1;
  all.exclusion.reset();
  all.residual = ResidualKind::kVertical;
  const auto line = FitLine(all, output);
  if (!line) return {};
  std::vector<double> meanLine(input.heights.size());
  if (!SplineFilter(output.residual, meanLine, input.spacingUM, cutoffMM, 0.0)) return {};
  for (std::size_t i = 0; i < meanLine.size(); ++i) {
    output.form[i] += meanLine[i];
    output.residual[i] -= meanLine[i];
  }
  const double mean = Mean(output.residual);
  for (double& residual : output.residual) residual -= mean;
  return FilterFormFit{line->slope, line->interceptUM, input.spacingUM};
}

}  // namespace texturon
