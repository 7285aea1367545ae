// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "analysis/document.h"
#include "analysis/uncertainty_trials.h"
#include "base/json_writer.h"

namespace texturon {

/// A seed is a number that JSON holds exactly: the next one is what 2^53 + 1 is read as.
inline constexpr double kMostSeed = 9007199254740991.0;
inline constexpr int kMostTrials = 1'000'000;

/// What a call wants of uncertainties.
struct UncertaintyRequest {
  UncertaintyBudget budget;
  int trials = 1000;
  std::uint64_t seed = 1;
  CoverageInterval interval = CoverageInterval::kSymmetric;
  bool wantsSensitivities = false;
};

/// What became of it, rows in the order of ShownRows.
struct UncertaintyResult {
  Uncertainties rows;
  std::vector<std::vector<Sensitivity>> sensitivities;  ///< empty: not wanted

  const std::optional<ParameterUncertainty>& Of(std::size_t row) const;
};

/// Tries a document on all cores. Where nothing comes of it, `reason` is why: a clause, Windows-1252.
UncertaintyResult TryUncertainty(const Document& document, const UncertaintyRequest& request,
                                 const std::function<bool(int percent)>& advances, std::string& reason);

/// "uncertainty" and, where wanted, "sensitivities" of a row's open object.
void WriteUncertainty(JsonWriter& json, const UncertaintyResult& result, std::size_t row);
/// "uncertainty_budget" of the object of a file: enough to have the same trials again.
void WriteUncertaintyBudget(JsonWriter& json, const UncertaintyRequest& request);

}  // namespace texturon
