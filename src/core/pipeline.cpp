#include "core/pipeline.h"

#include <span>
#include <string>
#include <variant>

#include "core/compute_range.h"
#include "core/filter_step.h"
#include "core/form_step.h"
#include "core/number_text.h"
#include "core/platform.h"
#include "core/spectrum_step.h"
#include "parameters/driver.h"
#include "signal/sort_descending.h"

namespace texturon {
namespace {

/// The wait cursor for as long as it lives; none where nobody watches.
class BusyScope {
public:
  BusyScope(Prompts& prompts, bool isQuiet) : prompts_(isQuiet ? nullptr : &prompts) {
    if (prompts_ != nullptr) prompts_->SetBusy(true);
  }
  ~BusyScope() {
    if (prompts_ != nullptr) prompts_->SetBusy(false);
  }
  BusyScope(const BusyScope&) = delete;
  BusyScope& operator=(const BusyScope&) = delete;

private:
  Prompts* prompts_;
};

HeightCurve SortedHeights(const Profile& profile) {
  const std::span<const double> heights = profile.Heights();
  HeightCurve curve{{heights.begin(), heights.end()}};
  SortDescending(curve.heightsUM);
  return curve;
}

void ComputeHeightCurves(Document& document) {
  AnalysisResults& results = document.results;
  if (results.primaryComputed) {
    results.primaryCurve = SortedHeights(document.profiles.View(ProfileKind::kPrimary));
    results.primaryCurveComputed = true;
  }
  if (results.roughnessComputed) {
    results.roughnessCurve = SortedHeights(document.profiles.View(ProfileKind::kRoughness));
    results.roughnessCurveComputed = true;
  }
}

/// The heights that the profile-element finder was given last, one a line. A file that cannot be written is done
/// without.
void WriteTraceFile(std::span<const double> heightsUM, const Environment& environment) {
  std::string text;
  text.reserve(heightsUM.size() * 12);
  for (const double height : heightsUM) {
    AppendFixed(text, height, 6);
    text += "\r\n";
  }
  (void)WriteSideFile(environment.traceFile, text);
}

void ComputeSelectedParameters(Document& document, Prompts& prompts, const Environment& environment) {
  const ProfileSet& profiles = document.profiles;
  const AnalysisResults& results = document.results;
  const auto viewIf = [&profiles](bool exists, ProfileKind kind) {
    return exists ? std::optional(profiles.View(kind)) : std::nullopt;
  };
  const DriverReport report = ComputeParameters(
      document.catalogue, {.settings = document.settings.analysis,
                           .formSuppressed = viewIf(results.formRemoved, ProfileKind::kFormSuppressed),
                           .primary = viewIf(results.primaryComputed, ProfileKind::kPrimary),
                           .waviness = viewIf(profiles.wavinessComputed, ProfileKind::kWaviness),
                           .roughness = viewIf(results.roughnessComputed, ProfileKind::kRoughness)});
  if (!document.quietMode) {
    for (const std::string& message : report.messages) prompts.ShowMessage(message);
  }
  if (document.writesTraceFile && report.elementHeights) WriteTraceFile(*report.elementHeights, environment);
}

}  // namespace

ComputeOutcome Compute(Document& document, Prompts& prompts, const Environment& environment) {
  if (document.profiles.IsEmpty()) return ComputeOutcome::kNoProfile;
  ApplyWholeCutoffs(document);
  const RangeOrMessage resolved = ResolveComputeRange(document, prompts);
  if (const auto* message = std::get_if<std::string_view>(&resolved)) {
    prompts.ShowMessage(*message);
    return ComputeOutcome::kRefused;
  }
  const auto& compute = std::get<ComputeRange>(resolved);

  document.results = {};
  document.profiles.computeRange = compute.range;
  {
    const BusyScope busy(prompts, document.quietMode);
    RemoveForm(document, compute, prompts);
  }
  if (!FilterStep(document, prompts)) return ComputeOutcome::kEmptyPrimary;
  ComputeSpectrum(document);
  ComputeHeightCurves(document);
  ComputeSelectedParameters(document, prompts, environment);
  return ComputeOutcome::kDone;
}

}  // namespace texturon
