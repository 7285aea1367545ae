#include "core/form_step.h"

#include <algorithm>

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

bool ApplyRequestedForm(Document& document, const FormInput& input, const FormOutput& output) {
  const AnalysisSettings& settings = document.settings.analysis;
  switch (settings.FormRemovalType) {
    case kFormLine:
      return Apply(document, input, output, FitLine);
    case kFormArc:
      return Apply(document, input, output, FitArc);
    case kFormPolynomial:
      return Apply(document, input, output, [order = settings.PolynomialOrder](const auto& in, const auto& out) {
        return FitPolynomial(in, order, out);
      });
    case kFormFilter:
      return Apply(document, input, output, [cutoffMM = settings.FormFilterCutoffMM](const auto& in, const auto& out) {
        return RemoveFormByFilter(in, cutoffMM, out);
      });
    default:
      return false;
  }
}

}  // namespace

void RemoveForm(Document& document, const ComputeRange& compute) {
  ProfileSet& profiles = document.profiles;
  AnalysisResults& results = document.results;
  const AnalysisSettings& settings = document.settings.analysis;

  const IndexRange fitted = document.useAllDataForForm ? IndexRange::FromCount(0, profiles.pointCount) : compute.range;
  const auto first = static_cast<std::size_t>(fitted.first);
  const auto count = static_cast<std::size_t>(fitted.count);
  const FormInput input{
      .heights = std::span(profiles.raw).subspan(first, count),
      .spacingUM = profiles.spacingUM,
      .step = FormThinningStep(settings, compute.range.count, profiles.spacingUM),
      .exclusion = document.useAllDataForForm ? std::nullopt : RelativeExclusion(compute.exclusion, fitted.first),
      .residual = ResidualKindOf(settings.ResidualType)};
  const FormOutput output{.form = std::span(profiles.form).subspan(first, count),
                          .residual = std::span(profiles.formSuppressed).subspan(first, count)};

  results.formRequested = settings.FormRemovalType;
  results.formApplied = kNoFormApplied;
  profiles.residualSpacingUM = profiles.spacingUM;
  if (ApplyRequestedForm(document, input, output)) {
    results.formApplied = settings.FormRemovalType;
  } else {
    Apply(document, input, output, RemoveMean);
  }
  results.residualTypeUsed = settings.ResidualType;
  results.formRemoved = true;
}

}  // namespace texturon
