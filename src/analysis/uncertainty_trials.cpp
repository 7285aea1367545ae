// SPDX-License-Identifier: Apache-2.0

#include "analysis/uncertainty_trials.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <exception>
#include <limits>
#include <numbers>
#include <system_error>
#include <thread>
#include <tuple>
#include <utility>

#include "analysis/record_trial.h"
#include "base/text.h"
#include "platform/platform.h"

namespace texturon {
namespace {

using enum BudgetItem;

constexpr std::string_view kStopped = "the trials were stopped";

/// What each row repeats by; configurable rows have no line of their own.
std::vector<const BudgetLine*> RepeatabilitiesOf(const Document& document, const UncertaintyBudget& budget,
                                                 std::size_t count) {
  std::vector<const BudgetLine*> lines;
  for (const ParameterDef& row : document.catalogue.rows) {
    if (row.selected) lines.push_back(&budget.RepeatabilityOf(row.name, row.edition));
  }
  lines.resize(count, &budget.Of(kRepeatability));
  return lines;
}

/// The values of many trials, made by several threads; that of trial t is the same whoever makes it.
class TrialTable {
public:
  TrialTable(const Document& document, const UncertaintyBudget& budget, const TrialOptions& options)
      : document_(document),
        budget_(budget),
        options_(options),
        value_(ValuesOf(document)),
        repeatabilities_(RepeatabilitiesOf(document, budget, value_.size())) {}

  /// Empty: done. Otherwise why not.
  std::string Run(int trials, std::optional<BudgetItem> alone = {}) {
    alone_ = alone;
    trials_ = std::max(trials, 0);
    next_ = 0;
    stops_ = false;
    failed_ = false;
    values_.assign(static_cast<std::size_t>(trials_) * value_.size(), 0.0);
    const unsigned jobs = std::clamp(options_.jobs, 1U, static_cast<unsigned>(std::max(trials_, 1)));
    std::vector<std::thread> workers;
    try {
      for (unsigned i = 1; i < jobs; ++i) workers.emplace_back([this] { Work(false); });
    } catch (const std::system_error&) {
      // As many as the system grants do the work.
    }
    Work(true);
    for (std::thread& worker : workers) worker.join();
    if (failed_) return std::string(kNoMemory);
    return stops_ ? std::string(kStopped) : std::string();
  }

  std::size_t Rows() const { return value_.size(); }
  double Value(std::size_t row) const { return value_[row]; }
  std::vector<double> Trials(std::size_t row) const {
    std::vector<double> trials(static_cast<std::size_t>(trials_));
    for (std::size_t t = 0; t < trials.size(); ++t) trials[t] = values_[t * value_.size() + row];
    return trials;
  }

private:
  void Work(bool reports) {
    try {
      RecordTrial trial(document_, budget_);
      const BudgetDraws draws(budget_, options_.seed);
      for (int t = next_++; t < trials_ && !stops_ && !failed_; t = next_++) {
        Try(trial, draws, t);
        if (reports && options_.advances && !options_.advances(t * 100 / trials_)) stops_ = true;
      }
    } catch (const std::exception&) {
      failed_ = true;  // nothing but memory throws
    }
  }

  void Try(RecordTrial& trial, const BudgetDraws& draws, int t) {
    const auto number = static_cast<std::uint64_t>(t);
    const bool isRepeatability = alone_ == kRepeatability;
    const std::vector<double> values = isRepeatability ? value_ : trial.Values(draws.Deviation(number, alone_));
    double* const to = values_.data() + number * value_.size();
    const bool repeats = !alone_ || isRepeatability;
    for (std::size_t row = 0; row < values.size(); ++row) {
      to[row] = repeats ? values[row] * draws.RepeatabilityFactor(number, *repeatabilities_[row], row) : values[row];
    }
  }

  const Document& document_;
  const UncertaintyBudget& budget_;
  const TrialOptions& options_;
  const std::vector<double> value_;
  const std::vector<const BudgetLine*> repeatabilities_;
  std::optional<BudgetItem> alone_;
  int trials_ = 0;
  std::vector<double> values_;
  std::atomic<int> next_ = 0;
  std::atomic<bool> stops_ = false;
  std::atomic<bool> failed_ = false;
};

/// The value at a place among sorted ones, from 1, between two of them where it lies there.
double AtPlace(std::span<const double> sorted, double place) {
  const double within = std::clamp(place - 1.0, 0.0, static_cast<double>(sorted.size() - 1));
  const auto below = std::min(static_cast<std::size_t>(within), sorted.size() - 2);
  return sorted[below] + (within - static_cast<double>(below)) * (sorted[below + 1] - sorted[below]);
}

/// Ends of the interval. Between n values there are n + 1 places for another one: an interval from place 0.025 (n + 1)
/// to 0.975 (n + 1) holds 95 % of what is to come, whatever n.
std::pair<double, double> IntervalOf(std::span<const double> sorted, CoverageInterval interval) {
  const double places = static_cast<double>(sorted.size()) + 1.0;
  if (interval == CoverageInterval::kSymmetric) {
    const double beyond = 0.5 * (1.0 - kCoverage) * places;
    return {AtPlace(sorted, beyond), AtPlace(sorted, places - beyond)};
  }
  const auto inside = std::min(static_cast<std::size_t>(std::floor(kCoverage * places + 0.5)), sorted.size() - 1);
  std::size_t best = 0;
  for (std::size_t first = 1; first + inside < sorted.size(); ++first) {
    if (sorted[first + inside] - sorted[first] < sorted[best + inside] - sorted[best]) best = first;
  }
  return {sorted[best], sorted[best + inside]};
}

/// The deviations of a line one standard uncertainty up or down.
MeasurementDeviation DeviationBy(BudgetItem item, double standard) {
  MeasurementDeviation deviation;
  switch (item) {
    case kAmplification:
      deviation.amplification = 1.0 + 0.01 * standard;
      break;
    case kSpacing:
      deviation.spacing = 1.0 + 0.01 * standard;
      break;
    case kTipRadius:
      deviation.tipRadiusUM = standard;
      break;
    case kLongCutoff:
      deviation.longCutoff = 1.0 + 0.01 * standard;
      break;
    case kShortCutoff:
      deviation.shortCutoff = 1.0 + 0.01 * standard;
      break;
    case kStart:
      deviation.startMM = standard;
      break;
    default:
      break;
  }
  return deviation;
}

/// Of the square of a number with mean 0 and deviation 1: the root of its fourth moment minus 1.
double DeviationOfSquare(Distribution distribution) {
  switch (distribution) {
    case Distribution::kUniform:
      return std::sqrt(0.8);
    case Distribution::kTriangular:
      return std::sqrt(1.4);
    case Distribution::kArcsine:
      return std::sqrt(0.5);
    case Distribution::kNormal:
      break;
  }
  return std::numbers::sqrt2;
}

bool IsOfChance(BudgetItem item) {
  return item == kHeightNoise || item == kNoiseSpectrum || item == kStraightness || item == kRepeatability;
}

}  // namespace

std::string_view IntervalWord(CoverageInterval interval) {
  return interval == CoverageInterval::kSymmetric ? "symmetric" : "shortest";
}

std::optional<CoverageInterval> FindInterval(std::string_view word) {
  for (const CoverageInterval interval : {CoverageInterval::kSymmetric, CoverageInterval::kShortest}) {
    if (EqualIgnoringCase(word, IntervalWord(interval))) return interval;
  }
  return std::nullopt;
}

std::optional<ParameterUncertainty> UncertaintyOf(std::span<const double> trials, double value,
                                                  CoverageInterval interval) {
  std::vector<double> sorted;
  for (const double trial : trials) {
    if (std::isfinite(trial)) sorted.push_back(trial);
  }
  if (sorted.size() < 2 || !std::isfinite(value)) return std::nullopt;
  const auto count = static_cast<double>(sorted.size());
  // In the order of the trials, about the value: a small scatter of a large value keeps its digits.
  double sum = 0.0;
  for (const double trial : sorted) sum += trial - value;
  ParameterUncertainty uncertainty{.bias = sum / count, .trials = trials.size()};
  double squares = 0.0;
  for (const double trial : sorted) {
    const double off = trial - value - uncertainty.bias;
    squares += off * off;
  }
  uncertainty.standard = std::sqrt(squares / (count - 1.0));
  uncertainty.undefined = 1.0 - count / static_cast<double>(trials.size());
  std::sort(sorted.begin(), sorted.end());
  std::tie(uncertainty.low, uncertainty.high) = IntervalOf(sorted, interval);
  return uncertainty;
}

TrialOutcome RunTrials(const Document& document, const UncertaintyBudget& budget, const TrialOptions& options) {
  if (std::string reason = WhyNoTrial(document, budget); !reason.empty()) return {.rows = {}, .reason = reason};
  TrialTable table(document, budget, options);
  TrialOutcome outcome{.rows = {}, .reason = table.Run(options.trials)};
  if (!outcome.reason.empty()) return outcome;
  for (std::size_t row = 0; row < table.Rows(); ++row) {
    outcome.rows.push_back(UncertaintyOf(table.Trials(row), table.Value(row), options.interval));
  }
  return outcome;
}

SensitivityOutcome FindSensitivities(const Document& document, const UncertaintyBudget& budget,
                                     const TrialOptions& options) {
  if (std::string reason = WhyNoTrial(document, budget); !reason.empty()) return {.rows = {}, .reason = reason};
  constexpr int kTrialsAlone = 200;
  TrialTable table(document, budget, options);
  RecordTrial trial(document, budget);
  SensitivityOutcome outcome;
  outcome.rows.resize(table.Rows());
  for (const BudgetItemRow& line : BudgetItems()) {
    if (!budget.Has(line.item)) continue;
    const double standard = budget.Of(line.item).standard;
    std::vector<double> contributions(table.Rows());
    if (line.item == kOrientation) {
      // The cosine's deviation for an angle of mean 0.
      MeasurementDeviation turned;
      turned.spacing = BudgetDraws::LengthFactorOf(standard);
      const std::vector<double> values = trial.Values(turned);
      for (std::size_t row = 0; row < values.size(); ++row) {
        contributions[row] =
            DeviationOfSquare(budget.Of(kOrientation).distribution) * std::abs(values[row] - table.Value(row));
      }
    } else if (IsOfChance(line.item)) {
      outcome.reason = table.Run(kTrialsAlone, line.item);
      if (!outcome.reason.empty()) return outcome;
      for (std::size_t row = 0; row < table.Rows(); ++row) {
        const auto alone = UncertaintyOf(table.Trials(row), table.Value(row), options.interval);
        contributions[row] = alone ? alone->standard : std::numeric_limits<double>::quiet_NaN();
      }
    } else {
      const std::vector<double> up = trial.Values(DeviationBy(line.item, standard));
      const std::vector<double> down = trial.Values(DeviationBy(line.item, -standard));
      for (std::size_t row = 0; row < up.size(); ++row) contributions[row] = 0.5 * std::abs(up[row] - down[row]);
    }
    for (std::size_t row = 0; row < table.Rows(); ++row) {
      outcome.rows[row].push_back({line.item, contributions[row]});
    }
    if (options.advances && !options.advances(100)) {
      outcome.reason = kStopped;
      return outcome;
    }
  }
  return outcome;
}

double CombinedOf(std::span<const Sensitivity> lines) {
  double squares = 0.0;
  for (const Sensitivity& line : lines) squares += line.contribution * line.contribution;
  return std::sqrt(squares);
}

}  // namespace texturon
