// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstdint>
#include <optional>

#include "signal/form/form_input.h"

namespace texturon {

enum class ExtremeKind : std::uint8_t { kPeak, kValley };

/// X, in mm from the first point, of the highest or lowest place of the spline Gaussian mean line: roughness and single
/// spikes do not decide where it lies. Between the points by the parabola through the extreme one and its neighbours;
/// an extreme at an end is the end. All heights take part. Nothing when the filter fails, as it does for a cutoff below
/// three spacings.
std::optional<double> FindExtremeX(const FormInput& input, double cutoffMM, ExtremeKind kind);

}  // namespace texturon
