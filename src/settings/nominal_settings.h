// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <optional>

#include "settings/analysis_settings.h"
#include "signal/form/asphere.h"
#include "signal/form/asphere_tables.h"
#include "signal/form/nominal_curve.h"

namespace texturon {

/// The asphere that the settings describe. With even terms only, a coefficient's key is its power: A4 multiplies u^4,
/// and A0, which the vertex height carries, is left out. With all terms the coefficients in their order are those of u,
/// u^2, u^3 ...: A0 multiplies u, A2 multiplies u^2, A4 multiplies u^3.
AsphereDescription DescribeAsphere(const AnalysisSettings& settings);

/// The power of u that coefficient `index` of the list belongs to: 0, 2, 4 ... with even terms only, else 1, 2, 3 ...
std::size_t PowerOfCoefficient(bool evenTermsOnly, std::size_t index);

/// True when a constant is given that DescribeAsphere leaves out.
bool HasUnusedConstant(const AnalysisSettings& settings);

/// The free form's stored points as a curve, filtered where FreeFormFilterType is the number of a filter: taken at
/// as many equal steps as there are points, less the chord between the two ends, through the filter with
/// FreeFormFilterCutoffMM and SplineTension, plus the chord again; what the filter loses at its ends the nominal loses.
/// Nothing for too few different points or when the filter fails.
std::optional<NominalCurve> DescribeFreeForm(const AnalysisSettings& settings);

/// The sag table as SagTableLengthMM and SagTableSpacingMM ask for it: from the vertex to one side; with all terms,
/// where the sides differ, to both.
std::vector<TableRow> SagTableOf(const AnalysisSettings& settings);

/// AspResidualLengthMM, AspResidualSpacingMM, AsphereResidualPadding (1 zeros, 2 the nearest height, any other number
/// nothing) and AsphereResidualOffsetUM.
ResidualTableOptions ResidualTableOptionsOf(const AnalysisSettings& settings);

}  // namespace texturon
