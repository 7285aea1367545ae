// SPDX-License-Identifier: Apache-2.0

#include "settings/nominal_settings.h"

#include <algorithm>
#include <span>

#include "base/units.h"
#include "settings/filter_table.h"

namespace texturon {
namespace {

std::optional<NominalCurve> Filtered(const NominalCurve& curve, const FilterRow& filter,
                                     const AnalysisSettings& settings) {
  const std::size_t n = curve.PointCount();
  const double step = (curve.Last() - curve.First()) / static_cast<double>(n - 1);
  std::vector<double> x(n), aboveChord(n), line(n);
  std::size_t hint = 0;
  const double start = curve.At(curve.First(), hint).height;
  const double slope = (curve.At(curve.Last(), hint).height - start) / (curve.Last() - curve.First());
  for (std::size_t i = 0; i < n; ++i) {
    x[i] = curve.First() + static_cast<double>(i) * step;
    aboveChord[i] = curve.At(x[i], hint).height - start - slope * (x[i] - curve.First());
  }
  const FilterRange valid = filter.run(aboveChord, line,
                                       {.spacingUM = step * kMicrometresPerMillimetre,
                                        .cutoffMM = settings.FreeFormFilterCutoffMM,
                                        .tension = settings.SplineTension});
  if (!valid || valid->count < 1) return std::nullopt;
  for (std::size_t i = 0; i < n; ++i) line[i] += start + slope * (x[i] - curve.First());
  const auto first = static_cast<std::size_t>(valid->first);
  const auto count = static_cast<std::size_t>(valid->count);
  return NominalCurve::Through(std::span(x).subspan(first, count), std::span(line).subspan(first, count));
}

}  // namespace

AsphereDescription DescribeAsphere(const AnalysisSettings& settings) {
  const std::vector<double>& given = settings.asphereCoefficients;
  AsphereDescription asphere{settings.C_CurvatureMM, 1.0 + settings.E_ConicConstant, {}};
  for (std::size_t i = 0; i < given.size(); ++i) {
    const std::size_t power = PowerOfCoefficient(settings.EvenTermsOnly, i);
    asphere.coefficients.resize(power);
    if (power > 0) asphere.coefficients[power - 1] = given[i];
  }
  while (!asphere.coefficients.empty() && asphere.coefficients.back() == 0.0) asphere.coefficients.pop_back();
  return asphere;
}

std::size_t PowerOfCoefficient(bool evenTermsOnly, std::size_t index) {
  return evenTermsOnly ? 2 * index : index + 1;
}

bool HasUnusedConstant(const AnalysisSettings& settings) {
  const std::vector<double>& given = settings.asphereCoefficients;
  return settings.EvenTermsOnly && !given.empty() && given[0] != 0.0;
}

std::optional<NominalCurve> DescribeFreeForm(const AnalysisSettings& settings) {
  std::vector<double> x, z;
  for (const FreeFormPoint& point : settings.freeFormPoints) {
    x.push_back(point.xMM);
    z.push_back(point.zUM * kMillimetresPerMicrometre);
  }
  auto curve = NominalCurve::Through(x, z);
  const FilterRow* const filter = FindFilter(settings.FreeFormFilterType);
  if (!curve || filter == nullptr) return curve;
  return Filtered(*curve, *filter, settings);
}

std::vector<TableRow> SagTableOf(const AnalysisSettings& settings) {
  const double length = settings.SagTableLengthMM;
  return SagTable(DescribeAsphere(settings), settings.EvenTermsOnly ? 0.0 : -length, length,
                  settings.SagTableSpacingMM);
}

ResidualTableOptions ResidualTableOptionsOf(const AnalysisSettings& settings) {
  ResidualTableOptions options{settings.AspResidualLengthMM, settings.AspResidualSpacingMM, ResidualPadding::kNone,
                               settings.AsphereResidualOffsetUM};
  if (settings.AsphereResidualPadding == 1) options.padding = ResidualPadding::kZero;
  if (settings.AsphereResidualPadding == 2) options.padding = ResidualPadding::kNearest;
  return options;
}

}  // namespace texturon
