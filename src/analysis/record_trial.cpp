// SPDX-License-Identifier: Apache-2.0

#include "analysis/record_trial.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

#include "analysis/pipeline.h"
#include "base/elementary.h"
#include "base/units.h"
#include "signal/envelope/tip_trace.h"
#include "signal/normal_distribution.h"

namespace texturon {
namespace {

using enum BudgetItem;

constexpr double kPercent = 0.01;
constexpr double kTurn = 2.0 * std::numbers::pi;

/// The lines of repetition come after those of the items.
constexpr std::uint64_t kRepeatabilityLines = 1000;

double Scaled(double uniform, Distribution distribution, double second) {
  switch (distribution) {
    case Distribution::kNormal:
      return NormalQuantile(uniform);
    case Distribution::kUniform:
      return std::sqrt(12.0) * (uniform - 0.5);
    case Distribution::kTriangular:
      return std::sqrt(6.0) * (uniform + second - 1.0);
    case Distribution::kArcsine:
      break;
  }
  return std::numbers::sqrt2 * Cos(kTurn * uniform);
}

/// Adds a wave of this rms to heights; the phase is that of the first.
void AddWave(std::span<double> heights, double rms, double turnsPerPoint, double phase) {
  // A phasor that turns by one step a point; its length stays 1 within points times the rounding.
  const double stepCos = Cos(kTurn * turnsPerPoint);
  const double stepSin = Sin(kTurn * turnsPerPoint);
  double re = std::numbers::sqrt2 * rms * Cos(phase);
  double im = std::numbers::sqrt2 * rms * Sin(phase);
  for (double& height : heights) {
    height += re;
    const double next = re * stepCos - im * stepSin;
    im = re * stepSin + im * stepCos;
    re = next;
  }
}

/// Moves texture along the record: what is missing at one end is the mirror of what lies before it.
void Shift(std::span<const double> from, std::span<double> to, std::int64_t points) {
  const auto last = static_cast<std::int64_t>(from.size()) - 1;
  for (std::int64_t i = 0; i <= last; ++i) {
    std::int64_t at = i + points;
    if (at < 0) at = -at - 1;
    if (at > last) at = 2 * last + 1 - at;
    to[static_cast<std::size_t>(i)] = from[static_cast<std::size_t>(std::clamp<std::int64_t>(at, 0, last))];
  }
}

/// Takes a length along with the trace's scale.
void ScaleLengths(AnalysisSettings& settings, AnalysisScope& scope, double factor) {
  settings.LcCutoffMM *= factor;
  settings.UserDiscardLengthMM *= factor;
  if (scope.region) {
    scope.region->startMM *= factor;
    scope.region->endOffsetMM *= factor;
    scope.region->lengthMM *= factor;
  }
}

template <typename Rows>
void AppendRatios(std::vector<double>& values, const Rows& rows, const RatioRowResults& results) {
  for (std::size_t i = 0; i < rows.size(); ++i) {
    if (!rows[i].selected) continue;
    values.push_back(results[i].valid ? results[i].value : std::numeric_limits<double>::quiet_NaN());
  }
}

std::optional<double> TipRadiusOf(const ProfileSet& profiles, const UncertaintyBudget& budget) {
  if (budget.tipRadiusUM) return budget.tipRadiusUM;
  if (profiles.tipRadiusMM > 0.0) return profiles.tipRadiusMM * kMicrometresPerMillimetre;
  return std::nullopt;
}

}  // namespace

double Drawn(const CounterRandom& stream, std::uint64_t index, Distribution distribution) {
  return Scaled(stream.Uniform(2 * index), distribution, stream.Uniform(2 * index + 1));
}

MeasurementDeviation BudgetDraws::Deviation(std::uint64_t trial, std::optional<BudgetItem> alone) const {
  MeasurementDeviation deviation;
  const auto isIn = [&](BudgetItem item) { return budget_.Of(item).standard > 0.0 && alone.value_or(item) == item; };
  const auto stream = [&](BudgetItem item) { return Stream(trial, static_cast<std::uint64_t>(item)); };
  const auto drawn = [&](BudgetItem item) {
    if (!isIn(item)) return 0.0;
    const BudgetLine& line = budget_.Of(item);
    return line.standard * Drawn(stream(item), 0, line.distribution);
  };
  deviation.amplification = 1.0 + kPercent * drawn(kAmplification);
  deviation.spacing = (1.0 + kPercent * drawn(kSpacing)) * LengthFactorOf(drawn(kOrientation));
  deviation.longCutoff = 1.0 + kPercent * drawn(kLongCutoff);
  deviation.shortCutoff = 1.0 + kPercent * drawn(kShortCutoff);
  deviation.tipRadiusUM = drawn(kTipRadius);
  deviation.startMM = drawn(kStart);
  if (isIn(kHeightNoise)) deviation.noise = stream(kHeightNoise);
  if (isIn(kNoiseSpectrum)) deviation.spectrum = stream(kNoiseSpectrum);
  deviation.straightnessUM = drawn(kStraightness);
  if (isIn(kStraightness)) deviation.straightnessPhase = kTurn * stream(kStraightness).Uniform(2);
  return deviation;
}

double BudgetDraws::LengthFactorOf(double degrees) {
  return Cos(degrees * std::numbers::pi / 180.0);
}

double BudgetDraws::RepeatabilityFactor(std::uint64_t trial, const BudgetLine& line, std::uint64_t index) const {
  if (!(line.standard > 0.0)) return 1.0;
  return 1.0 + kPercent * line.standard * Drawn(Stream(trial, kRepeatabilityLines + index), 0, line.distribution);
}

RecordTrial::RecordTrial(const Document& analysed, const UncertaintyBudget& budget)
    : budget_(budget),
      document_(analysed),
      settings_(analysed.settings.analysis),
      scope_(analysed.scope),
      measured_(analysed.profiles.raw),
      form_(analysed.profiles.form),
      spacingUM_(analysed.profiles.spacingUM),
      formRange_(FormRange(analysed)),
      scratch_(measured_.size()) {
  document_.wanted = kNoCurves;
  document_.quietMode = true;
  document_.writesTraceFile = false;
  if (!(budget.Of(kTipRadius).standard > 0.0)) return;
  const double radiusUM = TipRadiusOf(analysed.profiles, budget).value_or(0.0);
  tipSurface_.resize(measured_.size());
  tipTrace_.resize(measured_.size());
  SurfaceUnderTip(measured_, tipSurface_, spacingUM_, radiusUM);
  TraceOfTip(tipSurface_, tipTrace_, spacingUM_, radiusUM);
}

/// What another tip traces of the surface under this record: the record changes by the difference, so that a tip that
/// is not off leaves it as it is.
void RecordTrial::AddTip(double radiusUM) {
  std::vector<double> other(measured_.size());
  TraceOfTip(tipSurface_, other, spacingUM_, std::max(radiusUM, 0.0));
  std::vector<double>& raw = document_.profiles.raw;
  for (std::size_t i = 0; i < raw.size(); ++i) raw[i] += other[i] - tipTrace_[i];
}

/// The form stays where it is: another place of the same surface has another texture.
void RecordTrial::MoveTexture(double startMM) {
  const auto first = static_cast<std::size_t>(formRange_.first);
  const auto count = static_cast<std::size_t>(formRange_.count);
  const std::span<double> heights = std::span(document_.profiles.raw).subspan(first, count);
  const std::span<const double> form = std::span<const double>(form_).subspan(first, count);
  // Mirrored again and again, texture repeats after twice its length.
  const double points =
      std::remainder(std::round(startMM * kMicrometresPerMillimetre / spacingUM_), 2.0 * static_cast<double>(count));
  scratch_.resize(count);
  for (std::size_t i = 0; i < count; ++i) scratch_[i] = heights[i] - form[i];
  Shift(scratch_, heights, static_cast<std::int64_t>(points));
  for (std::size_t i = 0; i < count; ++i) heights[i] += form[i];
}

void RecordTrial::DrawHeights(const MeasurementDeviation& deviation) {
  std::vector<double>& raw = document_.profiles.raw;
  raw = measured_;
  const double lengthUM = LengthOfPoints(document_.profiles.pointCount, spacingUM_);
  if (deviation.tipRadiusUM != 0.0 && !tipSurface_.empty()) {
    AddTip(*TipRadiusOf(document_.profiles, budget_) + deviation.tipRadiusUM);
  }
  if (deviation.startMM != 0.0) MoveTexture(deviation.startMM);
  if (deviation.straightnessUM != 0.0) {
    const double waveUM = budget_.straightnessWavelengthMM
                              ? *budget_.straightnessWavelengthMM * kMicrometresPerMillimetre
                              : 2.0 * lengthUM;
    AddWave(raw, deviation.straightnessUM, spacingUM_ / waveUM, deviation.straightnessPhase);
  }
  if (deviation.amplification != 1.0) {
    for (double& height : raw) height *= deviation.amplification;
  }
  if (deviation.noise) {
    const BudgetLine& line = budget_.Of(kHeightNoise);
    scratch_.resize(raw.size());
    if (line.distribution == Distribution::kNormal) {
      deviation.noise->FillUniform(scratch_);
      NormalQuantileOfEach(scratch_, scratch_);
    } else {
      for (std::size_t i = 0; i < scratch_.size(); ++i) scratch_[i] = Drawn(*deviation.noise, i, line.distribution);
    }
    for (std::size_t i = 0; i < raw.size(); ++i) raw[i] += line.standard * scratch_[i];
  }
  if (deviation.spectrum) {
    std::uint64_t i = 0;
    for (const NoiseWave& wave : budget_.noiseSpectrum) {
      const double turns = spacingUM_ / (wave.wavelengthMM * kMicrometresPerMillimetre);
      AddWave(raw, wave.rmsUM, turns, kTurn * deviation.spectrum->Uniform(i++));
    }
  }
}

std::vector<double> RecordTrial::Values(const MeasurementDeviation& deviation) {
  // No length and no cut-off is 0 or less.
  if (!(deviation.spacing > 0.0 && deviation.longCutoff > 0.0 && deviation.shortCutoff > 0.0)) {
    return std::vector<double>(ValuesOf(document_).size(), std::numeric_limits<double>::quiet_NaN());
  }
  DrawHeights(deviation);
  AnalysisSettings& settings = document_.settings.analysis;
  settings.LcCutoffMM = settings_.LcCutoffMM;
  settings.UserDiscardType = settings_.UserDiscardType;
  settings.UserDiscardLengthMM = settings_.UserDiscardLengthMM;
  document_.scope = scope_;
  // Lengths that are counted in points go along with the scale, so that no sampling length drops out of the evaluation
  // by a thousandth; the filters stay where they are.
  document_.profiles.spacingUM = spacingUM_ * deviation.spacing;
  ScaleLengths(settings, document_.scope, deviation.spacing);
  document_.cutoffDeviation = {deviation.longCutoff / deviation.spacing, deviation.shortCutoff};
  SilentPrompts nobody;
  const ComputeOutcome outcome = Compute(document_, nobody, {});
  std::vector<double> values = ValuesOf(document_);
  if (outcome != ComputeOutcome::kDone) {
    std::fill(values.begin(), values.end(), std::numeric_limits<double>::quiet_NaN());
  }
  return values;
}

std::vector<double> ValuesOf(const Document& document) {
  std::vector<double> values;
  for (const ParameterDef& row : document.catalogue.rows) {
    if (row.selected) values.push_back(row.valid ? row.value : std::numeric_limits<double>::quiet_NaN());
  }
  const AnalysisSettings& settings = document.settings.analysis;
  const AnalysisResults& results = document.results;
  AppendRatios(values, settings.primaryMaterialRatios, results.primaryMaterialRatios);
  AppendRatios(values, settings.roughnessMaterialRatios, results.roughnessMaterialRatios);
  AppendRatios(values, settings.primaryHtps, results.primaryHtps);
  AppendRatios(values, settings.roughnessHtps, results.roughnessHtps);
  return values;
}

std::string WhyNoTrial(const Document& document, const UncertaintyBudget& budget) {
  if (!document.results.request) return "nothing is computed";
  if (budget.Of(kTipRadius).standard > 0.0 && !TipRadiusOf(document.profiles, budget)) {
    return "the budget has TipRadiusUncertaintyUM, and neither it (TipRadiusUM) nor the file tells the tip's radius";
  }
  return {};
}

}  // namespace texturon
