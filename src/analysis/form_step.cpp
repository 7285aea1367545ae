// SPDX-License-Identifier: Apache-2.0

#include "analysis/form_step.h"

#include <utility>

#include "analysis/form_table.h"
#include "base/units.h"
#include "platform/busy_scope.h"

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

/// Nothing without a form that is asked for, and where it cannot be fitted.
std::optional<FormGeometry> RemoveRequested(const FormTask& task) {
  const FormRow& form = RequestedForm(task.settings);
  if (form.number == kFormNone) return std::nullopt;
  // A fit that shows its own progress takes the wait cursor down.
  const BusyScope arrow(task.prompts, task.isQuiet || !form.showsProgress, false);
  return form.remove(task);
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
  Samples unread;
  Samples& form = document.wanted.form ? profiles.form : unread;
  if (!document.wanted.form) profiles.form.clear();
  MakeRoom(form, profiles.pointCount, fitted);
  MakeRoom(profiles.formSuppressed, profiles.pointCount, fitted);
  const FormOutput output{.form = std::span(form).subspan(first, count),
                          .residual = std::span(profiles.formSuppressed).subspan(first, count)};

  results.formRequested = settings.FormRemovalType;
  results.formApplied = kNoFormApplied;
  profiles.residualSpacingUM = profiles.spacingUM;
  const FormTask task{.input = input,
                      .output = output,
                      .settings = settings,
                      .firstMM = static_cast<double>(fitted.first) * profiles.spacingUM * kMillimetresPerMicrometre,
                      .isQuiet = document.quietMode,
                      .prompts = prompts};
  auto geometry = RemoveRequested(task);
  if (geometry) results.formApplied = settings.FormRemovalType;
  if (!geometry) geometry = FindForm(kFormNone)->remove(task);
  if (geometry) {
    profiles.residualSpacingUM = ResidualSpacingUM(*geometry);
    results.formGeometry = std::move(*geometry);
  }
  results.residualTypeUsed = settings.ResidualType;
}

}  // namespace texturon
