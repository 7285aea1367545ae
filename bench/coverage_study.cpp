// SPDX-License-Identifier: Apache-2.0

// How often the intervals of the trials hold the true value: many laboratories measure one surface, each with its own
// error, and tell an interval by a budget that is right. Prints a table of Markdown. Fixed seeds: the same on every
// machine. scripts/coverage builds and runs it.

#include <cmath>
#include <iostream>
#include <string>
#include <thread>
#include <vector>

#include "analysis/pipeline.h"
#include "analysis/record_trial.h"
#include "analysis/uncertainty_trials.h"
#include "base/number_text.h"
#include "signal/normal_distribution.h"

namespace texturon {
namespace {

constexpr std::size_t kPoints = 1000;
constexpr double kSpacingUM = 0.5;
constexpr int kLaboratories = 2000;
constexpr int kTrials = 200;
constexpr std::uint64_t kSeedOfSurface = 1;
constexpr std::uint64_t kSeedOfLaboratories = 2;

/// A turned surface: a feed of 50 um, grain and some waviness.
std::vector<double> Surface() {
  std::vector<double> grain(kPoints);
  CounterRandom(kSeedOfSurface, 0, 0).FillUniform(grain);
  std::vector<double> heights(kPoints);
  double smooth = 0.0;
  for (std::size_t i = 0; i < kPoints; ++i) {
    const double x = static_cast<double>(i) * kSpacingUM;
    smooth += 0.3 * (NormalQuantile(grain[i]) - smooth);
    heights[i] = std::abs(std::fmod(x, 50.0) / 25.0 - 1.0) + 0.15 * smooth + 1e-6 * (x - 250.0) * (x - 250.0);
  }
  return heights;
}

Document Analysed(std::vector<double> heights, const std::vector<std::string>& names) {
  Document document = MakeDocument();
  Settings settings = document.settings;
  settings.analysis.LcCutoffMM = 0.08;
  settings.analysis.LsCutoffMM = 0.0;
  settings.analysis.parameters.clear();
  for (const std::string& name : names) settings.analysis.parameters.push_back({.name = name});
  ApplySettings(document, settings);
  document.quietMode = true;
  document.writesTraceFile = false;
  document.wanted = kNoCurves;
  SetProfile(document, MakeProfileSet(std::move(heights), kSpacingUM));
  SilentPrompts nobody;
  Compute(document, nobody, {});
  return document;
}

struct Study {
  std::string title;
  BudgetEntries budget;
  double gain = 0.0;   ///< standard uncertainty, relative
  double noise = 0.0;  ///< rms, um
};

std::vector<double> MeasuredBy(int laboratory, const Study& study, const std::vector<double>& surface) {
  const auto number = static_cast<std::uint64_t>(laboratory);
  const double gain = 1.0 + study.gain * Drawn(CounterRandom(kSeedOfLaboratories, number, 0), 0, Distribution::kNormal);
  std::vector<double> noise(surface.size());
  CounterRandom(kSeedOfLaboratories, number, 1).FillUniform(noise);
  NormalQuantileOfEach(noise, noise);
  std::vector<double> heights(surface.size());
  for (std::size_t i = 0; i < heights.size(); ++i) heights[i] = gain * surface[i] + study.noise * noise[i];
  return heights;
}

/// What one laboratory tells of one parameter.
struct Told {
  double value = 0.0;
  ParameterUncertainty uncertainty;

  bool Holds(double known, double shift) const {
    return uncertainty.low - shift <= known && known <= uncertainty.high - shift;
  }
};

double MeanOf(const std::vector<Told>& told, double (*figure)(const Told&)) {
  double sum = 0.0;
  for (const Told& one : told) sum += figure(one);
  return sum / static_cast<double>(told.size());
}

double ValueIn(const Told& told) {
  return told.value;
}

double BiasIn(const Told& told) {
  return told.uncertainty.bias;
}

/// Correlation of the value with the bias that is told of it.
double CorrelationOf(const std::vector<Told>& told) {
  const double value = MeanOf(told, ValueIn);
  const double bias = MeanOf(told, BiasIn);
  double both = 0.0, values = 0.0, biases = 0.0;
  for (const Told& one : told) {
    both += (one.value - value) * (BiasIn(one) - bias);
    values += (one.value - value) * (one.value - value);
    biases += (BiasIn(one) - bias) * (BiasIn(one) - bias);
  }
  return both / std::sqrt(values * biases);
}

void Run(const Study& study, const std::vector<std::string>& names) {
  const std::vector<double> surface = Surface();
  const std::vector<double> known = ValuesOf(Analysed(surface, names));
  const UncertaintyBudget budget = MakeBudget(study.budget).budget.value();
  std::vector<std::vector<Told>> told(names.size());
  for (int laboratory = 0; laboratory < kLaboratories; ++laboratory) {
    const Document document = Analysed(MeasuredBy(laboratory, study, surface), names);
    const std::vector<double> values = ValuesOf(document);
    const TrialOutcome trials = RunTrials(document, budget,
                                          {.trials = kTrials,
                                           .seed = static_cast<std::uint64_t>(1000 + laboratory),
                                           .jobs = std::max(1U, std::thread::hardware_concurrency())});
    for (std::size_t row = 0; row < names.size(); ++row) told[row].push_back({values[row], trials.rows[row].value()});
  }
  for (std::size_t row = 0; row < names.size(); ++row) {
    const double trueBias = MeanOf(told[row], ValueIn) - known[row];
    int plain = 0, corrected = 0, placed = 0;
    for (const Told& one : told[row]) {
      const double bias = BiasIn(one);
      plain += one.Holds(known[row], 0.0) ? 1 : 0;
      // The value lies above the surface's by about as much as the trials lie above the value.
      corrected += one.Holds(known[row], 2.0 * bias) ? 1 : 0;
      placed += one.Holds(known[row], bias + trueBias) ? 1 : 0;
    }
    const auto percent = [](int held) { return FixedText(100.0 * held / kLaboratories, 1) + " %"; };
    std::cout << "| " << study.title << " | " << names[row] << " | " << percent(plain) << " | " << percent(corrected)
              << " | " << percent(placed) << " | " << FixedText(CorrelationOf(told[row]), 2) << " |" << std::endl;
  }
}

}  // namespace
}  // namespace texturon

int main() {
  using texturon::Run;
  std::cout
      << "| error | parameter | interval as told | with the bias taken off | with that of all laboratories taken off | "
         "value and bias |\n|---|---|---:|---:|---:|---:|\n";
  Run({.title = "amplification 1 %", .budget = {{"AmplificationPercent", "1"}}, .gain = 0.01}, {"Ra", "Rq", "Pt"});
  Run({.title = "white noise 0.01 um", .budget = {{"HeightNoiseUM", "0.01"}}, .noise = 0.01}, {"Ra", "Rq", "RzDIN"});
  Run({.title = "white noise 0.05 um", .budget = {{"HeightNoiseUM", "0.05"}}, .noise = 0.05}, {"Ra", "Rq", "RzDIN"});
  return 0;
}
