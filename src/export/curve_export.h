// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <span>
#include <string>
#include <string_view>

#include "export/profile_export.h"
#include "record/profile_set.h"

namespace texturon {

// The curves of an analysis as comma-separated text with CR LF line ends: head, one settings line, titles, units and a
// row a point. Heights come sorted from the highest to the lowest, in um. `settings` stands in quotes on the settings
// line.

enum class CurveProfile { kPrimary, kRoughness };

std::string AmplitudeDistributionExport(std::span<const double> sorted, CurveProfile profile,
                                        const ExportSource& source, std::string_view settings);
std::string BearingRatioExport(std::span<const double> sorted, CurveProfile profile, const ExportSource& source,
                               std::string_view settings);
/// Of the roughness profile: material ratio, its normal quantile and height.
std::string ProbabilityExport(std::span<const double> sorted, const ExportSource& source, std::string_view settings);
/// Every harmonic from the mean on: wavelength in mm, amplitude in um.
std::string SpectrumExport(const Spectrum& spectrum, const ExportSource& source, std::string_view settings);

}  // namespace texturon
