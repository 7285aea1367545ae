// SPDX-License-Identifier: Apache-2.0

#include "analysis/analysis_run.h"

#include <exception>
#include <utility>

#include "analysis/pipeline.h"
#include "formats/import.h"
#include "platform/platform.h"

namespace texturon {

RunStep LoadRecord(Document& document, const RecordSource& source, Prompts& prompts, const Environment& environment) {
  RunStep step;
  if (!source.bytes) step.files.reads.push_back(source.path);
  if (WritesTraceFile(document, environment)) step.files.writes.push_back(environment.traceFile);
  ImportOutcome outcome = source.bytes ? LoadProfileBytes(source.path, *source.bytes, source.import, prompts)
                                       : LoadProfileFile(source.path, source.import, prompts);
  step.loaded = outcome.loaded;
  if (!outcome.loaded) {
    step.cause = std::move(outcome.reason);
    if (step.cause.ends_with('.')) step.cause.pop_back();
    return step;
  }
  if (!outcome.profile.companion.empty()) step.files.reads.push_back(outcome.profile.companion);
  ProfileSet profiles = MakeProfileSet(std::move(outcome.profile), TextFromPath(source.path));
  if (source.invert) InvertProfile(profiles);
  SetProfile(document, std::move(profiles));
  return step;
}

RunStep AnalyseRecord(Document& document, Prompts& prompts, const Environment& environment) {
  switch (Compute(document, prompts, environment)) {
    case ComputeOutcome::kDone:
      return {.loaded = true};
    case ComputeOutcome::kEmptyPrimary:
      return {.loaded = true, .cause = "no primary profile is left"};
    case ComputeOutcome::kNoProfile:
    case ComputeOutcome::kRefused:
      break;
  }
  return {.loaded = true, .refused = true, .cause = "there are too few points to compute over"};
}

RunStep RunAnalysis(Document& document, const RecordSource& source, Prompts& prompts, const Environment& environment) {
  RunStep step;
  try {
    step = LoadRecord(document, source, prompts, environment);
    if (!step.ok()) return step;
    RunFiles files = std::move(step.files);
    step = AnalyseRecord(document, prompts, environment);
    step.files = std::move(files);
  } catch (const std::exception& error) {
    step.loaded = true;
    step.cause = error.what();
  }
  return step;
}

}  // namespace texturon
