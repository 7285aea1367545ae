// SPDX-License-Identifier: Apache-2.0

#include "presentation/practice_ranking.h"

#include <algorithm>
#include <cmath>

#include "analysis/pipeline.h"
#include "platform/prompts.h"

namespace texturon {
namespace {

TriedPractice TryPractice(const Practice& practice, std::string_view name, const ProfileSet& record) {
  Document document = MakeDocument();
  ApplyPractice(practice, record, document);
  document.quietMode = true;
  document.writesTraceFile = false;
  document.wanted = kNoCurves;
  SilentPrompts nobody;
  TriedPractice tried{.name = name, .cutoffMM = practice.settings.analysis.LcCutoffMM};
  if (Compute(document, nobody, {}) != ComputeOutcome::kDone) return {.name = name, .deviation = 1.0};
  tried.matches = MatchInstrument(document);
  double squares = 0.0;
  for (const InstrumentMatch& match : tried.matches) {
    const double scale = std::max(std::abs(match.instrument.value), 1e-9);
    const double off = match.here ? std::min(std::abs(*match.here - match.instrument.value) / scale, 1.0) : 1.0;
    squares += off * off;
  }
  tried.deviation = tried.matches.empty() ? 1.0 : std::sqrt(squares / static_cast<double>(tried.matches.size()));
  return tried;
}

}  // namespace

std::size_t TriedPractice::Near() const {
  return static_cast<std::size_t>(std::count_if(matches.begin(), matches.end(), [](const InstrumentMatch& match) {
    return match.here && std::abs(*match.here - match.instrument.value) <= 0.01 * std::abs(match.instrument.value);
  }));
}

std::vector<TriedPractice> TryPractices(const Practice& base, const ProfileSet& record) {
  std::vector<TriedPractice> tried;
  for (const EmbeddedFile& file : PracticeFiles()) {
    Practice practice = base;
    (void)TakePractice(file, practice);
    std::vector<double> cutoffs = {practice.settings.analysis.LcCutoffMM};
    const bool isFree = cutoffs.front() == base.settings.analysis.LcCutoffMM;
    for (const double cutoffMM : {0.08, 0.25, 0.8, 2.5, 8.0}) {
      if (isFree && cutoffMM <= record.LengthMM() && cutoffMM != cutoffs.front()) cutoffs.push_back(cutoffMM);
    }
    for (const double cutoffMM : cutoffs) {
      practice.settings.analysis.LcCutoffMM = cutoffMM;
      tried.push_back(TryPractice(practice, file.name, record));
    }
  }
  std::stable_sort(tried.begin(), tried.end(),
                   [](const TriedPractice& x, const TriedPractice& y) { return x.deviation < y.deviation; });
  return tried;
}

}  // namespace texturon
