// SPDX-License-Identifier: Apache-2.0

#include "analysis/curve_step.h"

#include <algorithm>
#include <span>
#include <utility>

#include "analysis/spectrum_step.h"
#include "signal/sort_descending.h"

namespace texturon {
namespace {

template <typename Rows>
bool AnySelected(const Rows& rows) {
  return std::any_of(rows.begin(), rows.end(), [](const auto& row) { return row.selected; });
}

void ComputeCurve(const ProfileSet& profiles, ProfileKind kind, HeightCurve& curve) {
  if (curve.IsEmpty() && profiles.Has(kind)) curve.heightsUM = SortedHeights(profiles.View(kind));
}

void ComputeMissingMotifs(Document& document) {
  ProfileSet& profiles = document.profiles;
  if (!profiles.primaryRange || !profiles.roughnessMotifs.empty()) return;
  const Profile primary = profiles.View(ProfileKind::kPrimary);
  KeepMotifs(profiles, ComputeMotifs(primary.Heights(), primary.spacingUM, document.AnalysedBy()));
}

/// Core roughness and probability lines, which read the sorted heights.
void ComputeMissingRoughness(Document& document) {
  AnalysisResults& results = document.results;
  const bool wantsCore = document.wanted.coreRoughness && !results.coreRoughness.valid;
  const bool wantsLines = document.wanted.probability && !results.probability;
  if (!document.profiles.evaluationRange || !(wantsCore || wantsLines)) return;
  const Profile roughness = document.profiles.View(ProfileKind::kRoughness);
  std::vector<double> own;
  if (results.roughnessCurve.IsEmpty()) own = SortedHeights(roughness);
  const std::span<const double> sorted = own.empty() ? std::span<const double>(results.roughnessCurve.heightsUM) : own;
  if (wantsCore) results.coreRoughness = ComputeCoreRoughness(sorted);
  if (wantsLines) results.probability = FitProbability(roughness.Heights(), sorted, document.AnalysedBy());
}

}  // namespace

std::vector<double> SortedHeights(const Profile& profile) {
  const std::span<const double> heights = profile.Heights();
  std::vector<double> sorted(heights.begin(), heights.end());
  SortDescending(sorted);
  return sorted;
}

void KeepMotifs(ProfileSet& profiles, MotifResult motifs) {
  profiles.roughnessMotifs = std::move(motifs.roughness);
  profiles.wavinessMotifs = std::move(motifs.waviness);
  for (std::vector<Motif>* const list : {&profiles.roughnessMotifs, &profiles.wavinessMotifs}) {
    for (Motif& motif : *list) {
      motif.firstPeak += profiles.primaryRange->first;
      motif.dale += profiles.primaryRange->first;
      motif.lastPeak += profiles.primaryRange->first;
    }
  }
}

void ComputeHeightCurves(Document& document) {
  const AnalysisSettings& settings = document.AnalysedBy();
  const bool forAll = document.wanted.heightCurves;
  const bool forPrimary = forAll || AnySelected(settings.primaryMaterialRatios) || AnySelected(settings.primaryHtps);
  const bool forRoughness =
      forAll || AnySelected(settings.roughnessMaterialRatios) || AnySelected(settings.roughnessHtps);
  AnalysisResults& results = document.results;
  if (forPrimary) ComputeCurve(document.profiles, ProfileKind::kPrimary, results.primaryCurve);
  if (forRoughness) ComputeCurve(document.profiles, ProfileKind::kRoughness, results.roughnessCurve);
}

void ComputeMissingCurves(Document& document) {
  const WantedResults& wanted = document.wanted;
  const ProfileSet& profiles = document.profiles;
  if (wanted.spectrum && profiles.computeRange && profiles.spectrum.IsEmpty()) ComputeSpectrum(document);
  if (wanted.heightCurves) ComputeHeightCurves(document);
  ComputeMissingRoughness(document);
  if (wanted.motifs) ComputeMissingMotifs(document);
}

bool HasCurves(const Document& document, const WantedResults& wanted) {
  const ProfileSet& profiles = document.profiles;
  const AnalysisResults& results = document.results;
  const bool lacksSpectrum = wanted.spectrum && profiles.computeRange && profiles.spectrum.IsEmpty();
  const bool lacksHeights =
      wanted.heightCurves && ((profiles.Has(ProfileKind::kPrimary) && results.primaryCurve.IsEmpty()) ||
                              (profiles.Has(ProfileKind::kRoughness) && results.roughnessCurve.IsEmpty()));
  const bool lacksCore = wanted.coreRoughness && profiles.evaluationRange && !results.coreRoughness.valid;
  const bool lacksLines = wanted.probability && profiles.evaluationRange && !results.probability;
  const bool lacksMotifs = wanted.motifs && profiles.primaryRange && profiles.roughnessMotifs.empty();
  return !(lacksSpectrum || lacksHeights || lacksCore || lacksLines || lacksMotifs);
}

Document WithAllCurves(Document document) {
  document.wanted = {
      .spectrum = true, .heightCurves = true, .coreRoughness = true, .probability = true, .motifs = true};
  ComputeMissingCurves(document);
  return document;
}

}  // namespace texturon
