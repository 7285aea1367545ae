// SPDX-License-Identifier: Apache-2.0

#include "analysis/analysis_run.h"

#include <exception>
#include <new>
#include <utility>

#include "analysis/filter_step.h"
#include "analysis/pipeline.h"
#include "base/number_text.h"
#include "formats/import.h"
#include "platform/platform.h"

namespace texturon {

RunStep LoadRecord(Document& document, const RecordSource& source, Prompts& prompts, const Environment& environment) {
  RunStep step;
  if (!source.bytes) step.files.reads.push_back(source.path);
  if (WritesTraceFile(document, environment)) step.files.writes.push_back(environment.traceFile);
  ImportOutcome outcome = source.bytes ? LoadProfileBytes(source.path, *source.bytes, source.import, prompts)
                                       : LoadProfileFile(source.path, source.import, prompts);
  if (!outcome.loaded) {
    step.cause = std::move(outcome.reason);
    if (step.cause.ends_with('.')) step.cause.pop_back();
    if (outcome.attempts.size() < 2) return step;
    for (const ReadAttempt& attempt : outcome.attempts) {
      step.attempts += attempt.reader + ": " + attempt.result.reason + "\n";
    }
    return step;
  }
  if (!outcome.profile.companion.empty()) step.files.reads.push_back(outcome.profile.companion);
  try {
    ProfileSet profiles = MakeProfileSet(std::move(outcome.profile), TextFromPath(source.path));
    profiles.sourceFile = source.path;
    if (source.invert) InvertProfile(profiles);
    SetProfile(document, std::move(profiles));
    step.loaded = true;
  } catch (const std::bad_alloc&) {
    step.cause = kNoMemory;
  }
  return step;
}

RunStep AnalyseRecord(Document& document, Prompts& prompts, const Environment& environment) {
  try {
    switch (Compute(document, prompts, environment)) {
      case ComputeOutcome::kDone:
        return {.loaded = true};
      case ComputeOutcome::kEmptyPrimary:
        return {.loaded = true, .cause = "no primary profile is left"};
      case ComputeOutcome::kTooShort: {
        const auto missing = FindMissingSections(document);
        return {.loaded = true,
                .cause = "there is room for " + IntegerText(missing ? missing->found : 0) + " of " +
                         IntegerText(missing ? missing->asked : 0) + " sections"};
      }
      case ComputeOutcome::kNoProfile:
      case ComputeOutcome::kRefused:
        break;
    }
  } catch (const std::bad_alloc&) {
    return {.cause = std::string(kNoMemory)};
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
