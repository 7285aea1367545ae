// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "analysis/document.h"
#include "analysis/parameter_uncertainty.h"
#include "analysis/uncertainty_budget.h"

namespace texturon {

// The uncertainty of every parameter of one record by trials: the whole analysis again and again, on records that are
// off as a budget says (propagation of distributions, JCGM 101:2008).

/// Which of the intervals that hold 95 % of the trials.
enum class CoverageInterval : std::uint8_t {
  kSymmetric,  ///< 2.5 % of the trials beyond either end
  kShortest,
};
std::string_view IntervalWord(CoverageInterval interval);
std::optional<CoverageInterval> FindInterval(std::string_view word);

struct TrialOptions {
  int trials = 1000;
  std::uint64_t seed = 1;
  CoverageInterval interval = CoverageInterval::kSymmetric;
  unsigned jobs = 1;  ///< threads; the results do not depend on them
  /// Called by the calling thread with the share that is done; false: give up.
  std::function<bool(int percent)> advances = {};
};

struct TrialOutcome {
  Uncertainties rows;
  std::string reason;  ///< why there are none: a clause; empty: there are
};

/// Tries an analysed document.
TrialOutcome RunTrials(const Document& document, const UncertaintyBudget& budget, const TrialOptions& options);

/// The same from values of trials; those that are not finite are not defined.
std::optional<ParameterUncertainty> UncertaintyOf(std::span<const double> trials, double value,
                                                  CoverageInterval interval);

/// What the lines of a budget do to a parameter, each by itself.
struct Sensitivity {
  BudgetItem item;
  double contribution = 0.0;  ///< standard uncertainty, in the parameter's metric unit; NaN: not defined
};

struct SensitivityOutcome {
  std::vector<std::vector<Sensitivity>> rows;  ///< of the selected rows, in the order of ShownRows
  std::string reason;
};

/// First order law: half the difference between the values with a line one standard uncertainty up and down. An angle,
/// which acts by its square, counts by the value at one standard uncertainty times the deviation of that square; noise
/// and waves of chance, which have no such derivative, by the deviation of 200 trials with the line alone.
SensitivityOutcome FindSensitivities(const Document& document, const UncertaintyBudget& budget,
                                     const TrialOptions& options);

/// Root of the sum of squares.
double CombinedOf(std::span<const Sensitivity> lines);

}  // namespace texturon
