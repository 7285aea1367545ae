// SPDX-License-Identifier: Apache-2.0

#include "analysis/form_step.h"

#include <algorithm>

#include "analysis/shape_form_step.h"
#include "base/units.h"
#include "platform/busy_scope.h"
#include "settings/nominal_settings.h"

namespace texturon {
namespace {

ResidualKind ResidualKindOf(std::int32_t residualType) {
  return residualType == kResidualPerpendicular ? ResidualKind::kPerpendicular : ResidualKind::kVertical;
}

/// The exclusion counted from the fit's first point. Indices outside the fit are nobody's business.
std::optional<IndexRange> RelativeExclusion(const std::optional<IndexRange>& exclusion, std::int32_t first) {
  if (!exclusion) return std::nullopt;
  return exclusion->ShiftedBy(-std::int64_t{first});
}

/// Runs the routine of one form type and files its geometry.
template <typename Routine>
bool Apply(Document& document, const FormInput& input, const FormOutput& output, Routine routine) {
  const auto fit = routine(input, output);
  if (!fit) return false;
  document.profiles.residualSpacingUM = fit->residualSpacingUM;
  document.results.formGeometry = *fit;
  return true;
}

std::optional<AsphereFit> AsphereInRecord(const Document& document, const FormInput& input, double firstMM,
                                          Prompts& prompts, const FormOutput& output) {
  const AnalysisSettings& settings = document.settings.analysis;
  if (HasUnusedConstant(settings)) {
    prompts.Notice("The aspheric coefficient A0 is not used: the height of the vertex carries it.");
  }
  const BusyScope arrow(prompts, document.quietMode, false);
  auto fit = RemoveAsphere(input, settings, firstMM, prompts, output);
  if (fit) fit->apexXMM += firstMM;
  return fit;
}

bool ApplyRequestedForm(Document& document, const FormInput& input, double firstMM, Prompts& prompts,
                        const FormOutput& output) {
  const AnalysisSettings& settings = document.settings.analysis;
  switch (settings.FormRemovalType) {
    case kFormLine:
      return Apply(document, input, output, FitLine);
    case kFormArc:
      return Apply(document, input, output, FitArc);
    case kFormPolynomial:
      return Apply(document, input, output, [&](const auto& in, const auto& out) {
        const auto fit = FitPolynomial(in, settings.PolynomialOrder, out);
        if (fit && fit->swingsAway) {
          prompts.Notice(
              "The polynomial leads far away from the profile where the fit used no points; use a lower order.");
        }
        return fit;
      });
    case kFormFilter:
      return Apply(document, input, output, [cutoffMM = settings.FormFilterCutoffMM](const auto& in, const auto& out) {
        return RemoveFormByFilter(in, cutoffMM, out);
      });
    case kFormFixedRadius:
      return Apply(document, input, output, [&](const auto& in, const auto& out) {
        return RemoveFixedRadius(in, settings, document.quietMode, prompts, out);
      });
    case kFormAsphere:
      return Apply(document, input, output, [&](const auto& in, const auto& out) {
        return AsphereInRecord(document, in, firstMM, prompts, out);
      });
    case kFormFree:
      return Apply(document, input, output, [&](const auto& in, const auto& out) {
        auto fit = RemoveFreeForm(in, settings, prompts, out);
        if (fit) fit->shiftXMM += firstMM;
        return fit;
      });
    default:
      return false;
  }
}

}  // namespace

void RemoveForm(Document& document, const ComputeRange& compute, Prompts& prompts) {
  ProfileSet& profiles = document.profiles;
  AnalysisResults& results = document.results;
  const AnalysisSettings& settings = document.settings.analysis;

  const IndexRange fitted =
      document.scope.allDataForForm ? IndexRange::FromCount(0, profiles.pointCount) : compute.range;
  const auto first = static_cast<std::size_t>(fitted.first);
  const auto count = static_cast<std::size_t>(fitted.count);
  const FormInput input{
      .heights = std::span(profiles.raw).subspan(first, count),
      .spacingUM = profiles.spacingUM,
      .step = FormThinningStep(settings, compute.range.count, profiles.spacingUM),
      .exclusion = document.scope.allDataForForm ? std::nullopt : RelativeExclusion(compute.exclusion, fitted.first),
      .residual = ResidualKindOf(settings.ResidualType)};
  const FormOutput output{.form = std::span(profiles.form).subspan(first, count),
                          .residual = std::span(profiles.formSuppressed).subspan(first, count)};

  results.formRequested = settings.FormRemovalType;
  results.formApplied = kNoFormApplied;
  profiles.residualSpacingUM = profiles.spacingUM;
  const double firstMM = static_cast<double>(fitted.first) * profiles.spacingUM * kMillimetresPerMicrometre;
  if (ApplyRequestedForm(document, input, firstMM, prompts, output)) {
    results.formApplied = settings.FormRemovalType;
  } else {
    Apply(document, input, output, RemoveMean);
  }
  results.residualTypeUsed = settings.ResidualType;
}

}  // namespace texturon
