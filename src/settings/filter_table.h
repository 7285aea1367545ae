// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "base/index_range.h"
#include "platform/prompts.h"
#include "settings/settings.h"
#include "signal/filter/filter_transmission.h"
#include "signal/filter/gaussian_filter.h"
#include "signal/filter/iso13565_filter.h"
#include "signal/filter/regression_filter.h"
#include "signal/filter/robust_filter.h"
#include "signal/filter/spline_filter.h"

namespace texturon {

/// What a filter is run with; each takes of it what it needs.
struct FilterSetup {
  double spacingUM = 0.0;
  double cutoffMM = 0.0;
  double tension = kGaussianLikeTension;
  Progress* progress = nullptr;
  std::string* ending = nullptr;  ///< becomes a sentence where passes ended before they settled
};

using FilterRange = std::optional<IndexRange>;

/// RobustRegressionFilter for the table.
FilterRange RunRegression(std::span<const double> z, std::span<double> w, const FilterSetup& setup);

struct FilterRow {
  std::string_view word;                     ///< in plans, in results files, in settings that name a filter by a word
  std::optional<std::int32_t> number = {};   ///< of FilterType; none: it is chosen by its word alone
  std::string_view choice = {};              ///< beside its number in lists of choices: its name in captions
  std::string_view label;                    ///< in captions
  double coefficient = 0.0;                  ///< of its weights, shown behind the label; 0: it has none
  std::string_view progressTitle = {};       ///< behind the cutoff, over its progress; empty: it shows none
  bool needsRunIn = true;                    ///< whole cutoffs begin and end with half a cutoff more
  bool reachesAll = false;                   ///< writes the whole line, not only as far as a transform reaches
  std::string_view transmissionRemark = {};  ///< what the transmission leaves out
  double (*transmission)(const FilterSetup& setup, double wavelengthMM);
  /// By the contract of signal/filter/filter_contract.h.
  FilterRange (*run)(std::span<const double> z, std::span<double> w, const FilterSetup& setup);
};

inline constexpr auto kGaussianShare = [](const FilterSetup& setup, double wavelengthMM) {
  return GaussianTransmission(setup.cutoffMM, wavelengthMM);
};
inline constexpr auto kSplineShare = [](const FilterSetup& setup, double wavelengthMM) {
  return SplineTransmission(setup.cutoffMM, setup.tension, setup.spacingUM, wavelengthMM);
};

/// Every filter. To add one is its routine in signal/filter and a row here: analysis, nominal shapes, plans, results,
/// captions, the filters' picture and the choices of the settings go by this table.
inline constexpr auto kFilterTable = std::to_array<FilterRow>({
    {.word = "GAUSSIAN",
     .number = kFilterGaussian,
     .choice = "Gaussian",
     .label = "Gaussian",
     .transmission = kGaussianShare,
     .run = [](std::span<const double> z, std::span<double> w,
               const FilterSetup& setup) { return GaussianFilter(z, w, setup.spacingUM, setup.cutoffMM); }},
    {.word = "SPLINE",
     .number = kFilterSplineGaussian,
     .choice = "Spline Gaussian",
     .label = "Spline Gaussian",
     .reachesAll = true,
     .transmission = kSplineShare,
     .run =
         [](std::span<const double> z, std::span<double> w, const FilterSetup& setup) {
           return SplineFilter(z, w, setup.spacingUM, setup.cutoffMM, setup.tension);
         }},
    {.word = "RK",
     .number = kFilterIso13565,
     .choice = "ISO 13565",
     .label = "ISO 13565",
     .transmissionRemark = "Gaussian of either step",
     .transmission = kGaussianShare,
     .run = [](std::span<const double> z, std::span<double> w,
               const FilterSetup& setup) { return Iso13565Filter(z, w, setup.spacingUM, setup.cutoffMM); }},
    {.word = "ROBUST",
     .number = kFilterRobustGaussian,
     .choice = "Robust Gaussian (coef: 4.45)",
     .label = "Robust Gaussian",
     .coefficient = kRobustScaleCoefficient,
     .progressTitle = "Robust Filter ...",
     .needsRunIn = false,
     .reachesAll = true,
     .transmissionRemark = "without robust weights",
     .transmission = kSplineShare,
     .run =
         [](std::span<const double> z, std::span<double> w, const FilterSetup& setup) {
           return RobustSplineFilter(z, w, setup.spacingUM, setup.cutoffMM, setup.tension, setup.progress).range;
         }},
    {.word = "ROBUST-GAUSSIAN-2",
     .label = "Robust Gaussian Regression",
     .coefficient = kRegressionScaleCoefficient,
     .progressTitle = "Robust Filter ...",
     .needsRunIn = false,
     .reachesAll = true,
     .transmissionRemark = "without robust weights",
     .transmission = [](const FilterSetup& setup,
                        double wavelengthMM) { return RegressionTransmission(setup.cutoffMM, wavelengthMM); },
     .run = RunRegression},
});

/// Null for a number or word of no filter; words in any case.
const FilterRow* FindFilter(std::int32_t number);
const FilterRow* FindFilter(std::string_view word);

/// The filter that separates waviness and roughness; null where the settings name none.
const FilterRow* LongWaveFilter(const AnalysisSettings& settings);
/// The filter that takes the short waves off where there is a cutoff for it. Its tension is kGaussianLikeTension.
const FilterRow& ShortWaveFilter(const AnalysisSettings& settings);
/// The long-wave filter of the core roughness of the edition of 2021; null where that is the roughness's own.
const FilterRow* CoreFilter(const AnalysisSettings& settings);

/// The filters' numbers as a setting's choices, "0 Gaussian, 1 Spline Gaussian ...", and what comes after them.
class FilterChoices {
public:
  explicit constexpr FilterChoices(std::string_view rest = {}) {
    for (const FilterRow& filter : kFilterTable) {
      if (!filter.number) continue;
      if (size_ > 0) Append(", ");
      if (*filter.number > 9) text_[size_++] = static_cast<char>('0' + *filter.number / 10);
      text_[size_++] = static_cast<char>('0' + *filter.number % 10);
      Append(" ");
      Append(filter.choice);
    }
    Append(rest);
  }
  constexpr operator std::string_view() const { return {text_.data(), size_}; }

private:
  constexpr void Append(std::string_view text) {
    for (const char c : text) text_[size_++] = c;
  }

  std::array<char, 200> text_{};
  std::size_t size_ = 0;
};

}  // namespace texturon
