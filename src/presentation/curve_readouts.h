// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "analysis/document.h"

// What the curve views show and say, in the units shown. Texts are Windows-1252.
namespace texturon {

/// What BrcAdfType asks for. A number that stands for nothing shows what the default shows.
struct BearingChoice {
  ProfileKind profile = ProfileKind::kRoughness;
  bool showsRatios = true;
  bool showsAmplitudes = true;
};
BearingChoice BearingChoiceOf(const DisplaySettings& display);

/// Sorted heights of the chosen profile; empty where they were not computed.
std::span<const double> BearingHeights(const Document& document);

/// The curve at the two cursors: its height at a material ratio, its material ratio at a height.
std::string BearingReadout(const Document& document, double ratioPercent, double heightUM);

/// Values of the two lines of the probability curve, one a line; those without a line are missing.
std::vector<std::string> ProbabilityTexts(const Document& document);

/// The harmonic, from 1 on, whose wavelength is nearest to one by ratio. Empty without harmonics and for a wavelength
/// that is not positive.
std::optional<std::size_t> NearestHarmonic(const Spectrum& spectrum, double wavelengthMM);
std::string SpectrumReadout(const Document& document, std::size_t harmonic);

/// Which motifs are drawn: those that MotifRProfile and MotifWProfile name, both where neither does.
struct ShownMotifs {
  bool roughness = true;
  bool waviness = true;
};
ShownMotifs ShownMotifsOf(const AnalysisSettings& settings);

/// Numbers and mean lengths of the motifs.
std::string MotifReadout(const Document& document);

}  // namespace texturon
