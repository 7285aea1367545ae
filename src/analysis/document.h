// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "analysis/analysis_request.h"
#include "analysis/form_table.h"
#include "analysis/parameter_uncertainty.h"
#include "parameters/catalogue.h"
#include "parameters/core_roughness.h"
#include "parameters/height_curve.h"
#include "parameters/probability.h"
#include "parameters/ratio_rows.h"
#include "record/profile_set.h"
#include "settings/settings.h"

namespace texturon {

/// `formApplied` when no form removal succeeded and the mean was taken out instead.
inline constexpr std::int32_t kNoFormApplied = -99;

/// Heights of a profile from the highest to the lowest; point i has the material ratio i x 100 / n percent. Empty until
/// somebody wants them.
struct HeightCurve {
  std::vector<double> heightsUM;

  bool IsEmpty() const { return heightsUM.empty(); }
  double RatioPercent(std::size_t i) const { return texturon::RatioPercent(i, heightsUM.size()); }
};

/// What the last run produced besides the profiles.
struct AnalysisResults {
  std::optional<AnalysisRequest> request;  ///< what they came from; none: nothing was computed yet
  std::int32_t formRequested = 0;
  std::int32_t formApplied = kNoFormApplied;
  std::int32_t residualTypeUsed = 0;
  FormGeometry formGeometry;
  double rawPeak = 0.0;
  double rawValleyDepth = 0.0;
  double primaryPeak = 0.0;
  double primaryValleyDepth = 0.0;
  HeightCurve primaryCurve;
  HeightCurve roughnessCurve;
  RkResult coreRoughness;                     ///< of the roughness profile
  std::optional<ProbabilityFit> probability;  ///< of the roughness profile
  RatioRowResults primaryMaterialRatios;
  RatioRowResults roughnessMaterialRatios;
  RatioRowResults primaryHtps;
  RatioRowResults roughnessHtps;
  Uncertainties uncertainties;  ///< of the last trials of these results; empty: not tried
};

/// Results that take time and that not everybody reads. One that is not wanted is left out, if no row needs it; all
/// others are the same.
struct WantedResults {
  bool form = true;           ///< the removed form itself; its figures are told all the same
  bool envelopes = true;      ///< where rows ask for them; these have their values all the same
  bool spectrum = true;       ///< its amplitudes and wavelengths; whether there is one is told all the same
  bool heightCurves = true;   ///< of primary and roughness
  bool coreRoughness = true;  ///< that of the roughness when no row asks for it
  bool probability = false;   ///< lines of the roughness's probability curve when no row asks for them
  bool motifs = false;        ///< of the primary profile when no row asks for them
};

inline constexpr WantedResults kNoCurves = {.spectrum = false, .heightCurves = false, .coreRoughness = false};

/// Factors between the cut-offs that are meant and those at which the filters of an instrument pass half.
struct CutoffDeviation {
  double longWave = 1.0;
  double shortWave = 1.0;
};

/// One measured record, the request how to analyse it and the results of the last run, which know the request that they
/// came from. A value: copying it keeps a former state. It holds no numerics; Compute derives everything else from
/// `profiles.raw`.
struct Document {
  ProfileSet profiles;
  Settings settings;
  AnalysisScope scope;
  ParameterCatalogue catalogue;

  bool quietMode = false;  ///< nobody watches: no wait cursor, and the messages that say so are not shown
  WantedResults wanted;
  bool writesTraceFile = true;      ///< the heights given to the profile-element finder go to a side file
  CutoffDeviation cutoffDeviation;  ///< of trials; sampling lengths and ends go by the cut-offs that are meant

  AnalysisResults results;

  AnalysisRequest Request() const { return {settings.analysis, scope}; }
  /// The settings that the results came from; those in force where there are no results.
  const AnalysisSettings& AnalysedBy() const { return results.request ? results.request->settings : settings.analysis; }
};

/// A document without a profile: default settings, every master parameter selected.
Document MakeDocument();

/// Puts settings in force: the working list follows their selection, values of rows that stay are kept.
void ApplySettings(Document& document, Settings settings);

/// Replaces the measured record and drops the results of the former one. Settings and scope stay.
void SetProfile(Document& document, ProfileSet profiles);

/// The stretch that the form was fitted to and taken out of; empty where there was no run.
IndexRange FormRange(const Document& document);

/// Turns the measured record upside down.
void InvertProfile(ProfileSet& profiles);

/// Makes the evaluation length a whole number of cut-offs from the next computation on, or takes that back with the
/// region and the end discard that it has set.
void SetWholeCutoffs(Document& document, bool uses);

/// Leaves the samples [first, last] out of the form fit. Where no region is in force the whole record becomes one,
/// because a computation over the plain record forgets the exclusion.
void ExcludeFromForm(Document& document, std::int32_t first, std::int32_t last);

}  // namespace texturon
