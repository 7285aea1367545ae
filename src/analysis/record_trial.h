// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "analysis/document.h"
#include "analysis/uncertainty_budget.h"
#include "base/counter_random.h"

namespace texturon {

/// How far a measurement is off: drawn for a trial, or one line alone for a sensitivity.
struct MeasurementDeviation {
  double amplification = 1.0;
  double spacing = 1.0;     ///< factor of all lengths along the trace, the lay's angle included
  double longCutoff = 1.0;  ///< factors of the cut-offs of the filters as they are
  double shortCutoff = 1.0;
  double tipRadiusUM = 0.0;  ///< added to the tip's
  double startMM = 0.0;
  std::optional<CounterRandom> noise;     ///< of every point; none: no noise
  std::optional<CounterRandom> spectrum;  ///< phases of the spectrum's waves
  double straightnessUM = 0.0;            ///< rms of the guide's wave
  double straightnessPhase = 0.0;
};

/// Draws of the lines of a budget, or of one alone.
class BudgetDraws {
public:
  BudgetDraws(const UncertaintyBudget& budget, std::uint64_t seed) : budget_(budget), seed_(seed) {}

  MeasurementDeviation Deviation(std::uint64_t trial, std::optional<BudgetItem> alone = {}) const;
  /// What a trace at this angle to the normal of the lay makes of lengths across the lay.
  static double LengthFactorOf(double degrees);
  /// The factor by which repetition changes a parameter with this line; `index` tells parameters apart.
  double RepeatabilityFactor(std::uint64_t trial, const BudgetLine& line, std::uint64_t index) const;

private:
  CounterRandom Stream(std::uint64_t trial, std::uint64_t line) const { return {seed_, trial, line}; }

  const UncertaintyBudget& budget_;
  std::uint64_t seed_;
};

/// A number of this distribution, mean 0 and deviation 1: the stream's from 2 `index` on.
double Drawn(const CounterRandom& stream, std::uint64_t index, Distribution distribution);

/// Analyses records that are off. One thread's: the documents of several share nothing.
class RecordTrial {
public:
  /// Of an analysed document, whose settings, scope and selected rows count, and a budget that stays.
  RecordTrial(const Document& analysed, const UncertaintyBudget& budget);

  /// The values of the selected rows, in the order of ShownRows and in their metric unit; NaN where one is not
  /// defined.
  std::vector<double> Values(const MeasurementDeviation& deviation);

private:
  void DrawHeights(const MeasurementDeviation& deviation);
  void AddTip(double radiusUM);
  void MoveTexture(double startMM);

  const UncertaintyBudget& budget_;
  Document document_;
  const AnalysisSettings settings_;  ///< what every trial starts from
  const AnalysisScope scope_;
  const std::vector<double> measured_;
  const Samples form_;  ///< that was removed from it
  const double spacingUM_;
  const IndexRange formRange_;      ///< of the analysed record: a trial's own follows its scale
  std::vector<double> tipSurface_;  ///< under the measured record; empty: the budget has no tip
  std::vector<double> tipTrace_;    ///< of that surface by the tip as it is
  std::vector<double> scratch_;
};

/// The values of an analysed document as they are, in the same order; NaN where there is none.
std::vector<double> ValuesOf(const Document& document);

/// Why a document cannot be tried with a budget: a clause; empty: it can.
std::string WhyNoTrial(const Document& document, const UncertaintyBudget& budget);

}  // namespace texturon
