// SPDX-License-Identifier: Apache-2.0

#include "analysis/compute_range.h"

#include <algorithm>
#include <cmath>

#include "analysis/region_choice.h"
#include "analysis/shape_form_step.h"
#include "base/units.h"
#include "settings/filter_table.h"
#include "signal/form/form_arc.h"

namespace texturon {
namespace {

constexpr std::string_view kTooFew = "Insufficient data for calculation.";
constexpr std::string_view kTooFewInRegion = "Insufficient data for region calculation.";

bool IsTooShort(std::int64_t first, std::int64_t last) {
  return last < first + kLeastSteps;
}

IndexRange ClampedRange(std::int64_t first, std::int64_t last, std::int32_t pointCount) {
  const auto clamp = [pointCount](std::int64_t index) {
    return static_cast<std::int32_t>(std::clamp<std::int64_t>(index, 0, pointCount - 1));
  };
  return IndexRange::FromEnds(clamp(first), clamp(last));
}

RangeOrMessage RegionRange(const Document& document) {
  const ProfileSet& profiles = document.profiles;
  const auto range = ResolveRegion(*document.scope.region, profiles.pointCount, profiles.spacingUM);
  if (!range) return kTooFewInRegion;
  return ComputeRange{*range, document.scope.exclusion};
}

/// Where the apex lies before any asphere is fitted, in um from the first sample: the centre of the least-squares arc,
/// if there is one.
std::optional<double> PreliminaryApex(const Document& document) {
  const ProfileSet& profiles = document.profiles;
  const AnalysisSettings& settings = document.settings.analysis;
  std::vector<double> form(profiles.raw.size());
  std::vector<double> residual(profiles.raw.size());
  const FormInput input{.heights = profiles.raw,
                        .spacingUM = profiles.spacingUM,
                        .step = FormThinningStep(settings, profiles.pointCount, profiles.spacingUM)};
  const auto arc = FitArc(input, {form, residual});
  return arc ? std::optional(arc->centreXUM) : std::nullopt;
}

/// The stretch of the clear aperture about an apex, without the middle zone.
RangeOrMessage ApertureAbout(double apexUM, const ProfileSet& profiles, const AnalysisSettings& settings) {
  const auto indexAt = [&](double offsetUM) { return RoundToIndex((apexUM + offsetUM) / profiles.spacingUM); };
  const double half = settings.AsphereClearApertureDiameterMM * 500.0;
  const std::int32_t first = indexAt(-half);
  const std::int32_t last = indexAt(half);
  if (IsTooShort(first, last)) return kTooFew;
  const IndexRange range = ClampedRange(first, last, profiles.pointCount);
  if (IsTooShort(range.first, range.last)) return kTooFew;
  ComputeRange resolved{range, {}};
  const double halfDiscard = settings.AsphereClearApertureCentralDiscardMM * 500.0;
  const IndexRange discard = IndexRange::FromEnds(indexAt(-halfDiscard), indexAt(halfDiscard));
  if (discard.last > discard.first) resolved.exclusion = discard;
  return resolved;
}

/// Apex of the asphere over such a stretch, in um from the first sample of the record.
std::optional<double> FittedApex(const Document& document, const ComputeRange& aperture, Prompts& prompts) {
  const ProfileSet& profiles = document.profiles;
  const AnalysisSettings& settings = document.settings.analysis;
  const IndexRange& range = aperture.range;
  const auto count = static_cast<std::size_t>(range.count);
  FormInput input{.heights = std::span(profiles.raw).subspan(static_cast<std::size_t>(range.first), count),
                  .spacingUM = profiles.spacingUM,
                  .step = FormThinningStep(settings, range.count, profiles.spacingUM)};
  if (aperture.exclusion) input.exclusion = aperture.exclusion->ShiftedBy(-range.first);
  std::vector<double> form(count);
  std::vector<double> residual(count);
  const double firstUM = static_cast<double>(range.first) * profiles.spacingUM;
  const auto fit = RemoveAsphere(input, settings, firstUM * kMillimetresPerMicrometre, prompts, {form, residual});
  if (!fit) return std::nullopt;
  return firstUM + fit->apexXMM * kMicrometresPerMillimetre;
}

RangeOrMessage ClearApertureRange(Document& document, Prompts& prompts) {
  const ProfileSet& profiles = document.profiles;
  const double middleUM = profiles.LengthUM() * 0.5;
  const double apexUM = PreliminaryApex(document).value_or(middleUM);
  RangeOrMessage resolved = ApertureAbout(apexUM, profiles, document.settings.analysis);
  if (std::holds_alternative<std::string_view>(resolved)) {
    // A weak surface that leans has its arc's centre beside the record, its vertex perhaps not.
    resolved = ApertureAbout(middleUM, profiles, document.settings.analysis);
  }
  if (const auto* aperture = std::get_if<ComputeRange>(&resolved)) {
    if (const auto fittedUM = FittedApex(document, *aperture, prompts)) {
      resolved = ApertureAbout(*fittedUM, profiles, document.settings.analysis);
    }
  }
  if (const auto* aperture = std::get_if<ComputeRange>(&resolved)) document.scope.exclusion = aperture->exclusion;
  return resolved;
}

}  // namespace

double DiscardLengthMM(const AnalysisSettings& settings) {
  if (settings.UserDiscardType <= kDiscardNone) return 0.0;
  if (settings.UserDiscardType == kDiscardHalfCutoff) return 0.5 * settings.LcCutoffMM;
  if (settings.UserDiscardType == kDiscardCutoff) return settings.LcCutoffMM;
  return settings.UserDiscardLengthMM;
}

RegionChoice RegionOfCutoffs(double cutoffs, const AnalysisSettings& settings) {
  return {.mode = kStartAndLength, .lengthMM = cutoffs * settings.LcCutoffMM + 2.0 * DiscardLengthMM(settings)};
}

void ApplyWholeCutoffs(Document& document) {
  if (!document.scope.wholeCutoffs) return;
  AnalysisSettings& settings = document.settings.analysis;
  const FilterRow* const filter = LongWaveFilter(settings);
  const bool discards = filter == nullptr || filter->needsRunIn;
  settings.UserDiscardType = discards ? kDiscardHalfCutoff : kDiscardNone;
  const double discardMM = DiscardLengthMM(settings);
  if (discards) settings.UserDiscardLengthMM = discardMM;
  document.scope.region.reset();
  if (!(settings.LcCutoffMM > 0.0)) return;
  const double cutoffs = WholePartsOfLength(document.profiles.LengthMM() - 2.0 * discardMM, settings.LcCutoffMM);
  document.scope.region = RegionOfCutoffs(cutoffs, settings);
}

RangeOrMessage ResolveComputeRange(Document& document, Prompts& prompts) {
  const AnalysisSettings& settings = document.settings.analysis;
  if (RequestedForm(settings).hasClearAperture && settings.AsphereUseClearAperture) {
    return ClearApertureRange(document, prompts);
  }
  if (document.scope.region) return RegionRange(document);
  document.scope.exclusion.reset();
  const std::int32_t last = document.profiles.pointCount - 1;
  if (IsTooShort(0, last)) return kTooFew;
  return ComputeRange{IndexRange::FromEnds(0, last), {}};
}

std::optional<RangeOrMessage> PreviewAperture(const Document& document, const AnalysisSettings& aperture) {
  const AsphereFit* const fit = AsphereOf(document.results.formGeometry);
  if (!document.profiles.computeRange || fit == nullptr) return std::nullopt;
  return ApertureAbout(fit->apexXMM * kMicrometresPerMillimetre, document.profiles, aperture);
}

std::int32_t FormThinningStep(const AnalysisSettings& settings, std::int32_t count, double spacingUM) {
  std::int32_t step = 0;
  if (settings.FormRemovalDataReductionMethod == kThinToPoints && settings.FormRemovalNumberOfPoints > 0) {
    step = count / settings.FormRemovalNumberOfPoints;
  } else if (settings.FormRemovalDataReductionMethod == kThinToSpacing) {
    step = RoundToIndex(WholePartsOfLength(settings.FormRemovalReductionSpacingUM, spacingUM));
  }
  return std::max(step, 0);
}

}  // namespace texturon
