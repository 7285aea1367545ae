// SPDX-License-Identifier: Apache-2.0

#include "parameters/no_value.h"

#include <cmath>
#include <iterator>

#include "base/number_text.h"
#include "base/quantity.h"

namespace texturon {
namespace {

// {0} is the first figure as a word, {0 peak} with its noun in the right number, {0 mm}, {0 um} and {0 %} a measure.
struct ReasonRow {
  Why why;
  std::string_view pattern;
};

constexpr ReasonRow kReasons[] = {
    {Why::kNotComputed, "nothing was computed"},
    {Why::kPlaceholder, "the row only holds a place in the list"},
    {Why::kUnknownLetter, "no profile has this letter; names begin with F, P, W or R"},
    {Why::kUnknownName, "no parameter has this name"},
    {Why::kNoProfile, "form removal or filters leave nothing of the profile that it is taken from"},
    {Why::kNotOfThisLetter, "this profile has no such parameter, others have"},
    {Why::kNotFinite, "the heights or the settings lead to no finite number"},
    {Why::kInfinite, "it is infinite: the value that it is divided by is zero"},
    {Why::kZeroByZero, "it is zero divided by zero"},
    {Why::kFewPoints, "needs {0 point}; this profile has {1}"},
    {Why::kShortSamplingLength,
     "needs two points in a sampling length; one of {0 mm} has fewer at a spacing of {1 um}"},
    {Why::kFewSamplingLengths, "needs {0 sampling length}; this profile has {1}"},
    {Why::kNoElement,
     "needs a profile element, a hill and the dale after it beyond the height and width thresholds; this profile has "
     "none"},
    {Why::kFewElements, "needs {0 profile element}; this profile has {1}"},
    {Why::kNoElementWithin, "no profile element lies wholly within one sampling length"},
    {Why::kFewPeaks, "needs {0 local peak}; this profile has {1}"},
    {Why::kNoThirdPoint,
     "needs a sampling length with three local peaks and three local valleys; this profile has none"},
    {Why::kZeroDivisor, "the value that it is divided by is zero"},
    {Why::kNoCore, "the straight line of the core lies, at {0 %}, below every point of the profile"},
    {Why::kNoRoughnessMotif, "the primary profile has no roughness motif: no two peaks stand out of it enough"},
    {Why::kNoWavinessMotif, "the upper envelope has no waviness motif: no two peaks stand out of it enough"},
    {Why::kNoVoid, "the closing ball touches the profile at every point: there is no void"},
    {Why::kNoBump, "no bump above the opening envelope has both ends in the profile and three steps"},
    {Why::kMemoryFull, "there was not memory enough for its envelope"},
    {Why::kShortWindow, "a window of {0 mm} spans no step of {1 um}"},
    {Why::kLongWindow, "a window of {0 mm} does not fit into a profile of {1 mm}"},
    {Why::kNoEndRegion, "the end regions must be longer than nothing; the settings say {0 mm}"},
    {Why::kFewPointsBetween, "needs two points with material ratios from {0 %} to {1 %}; this profile has {2}"},
    {Why::kFewPlotPoints, "needs {0 point} between the outer limits of the probability plot; this profile has {1}"},
    {Why::kFlatPlot, "the heights between the outer limits of the probability plot do not differ"},
    {Why::kNoBend, "the probability plot has no bend between two straight regions"},
    {Why::kBendOutside, "the bend of the probability plot lies at {0 %}; it is looked for from {1 %} to {2 %}"},
    {Why::kFewValleys, "needs {0 valley} below {2 um}; this profile has {1}"},
    {Why::kParallelLines, "the lines of plateaus and valleys are parallel"},
    {Why::kFewForSections, "needs {0 section} with a point each; this profile has {1 point}"},
    {Why::kNoCrossingElement,
     "needs a hill and a dale side by side that reach their thresholds, with crossings of the mean line at both ends; "
     "this profile has none"},
    {Why::kFewCrossingElements, "needs {0 profile element}, found in either direction; this profile has {1}"},
    {Why::kNoSpacing, "the profile is flat: no wavelength stands out"},
    {Why::kNoDecay, "the autocorrelation does not fall to {0 %} within {1 mm}, half of the evaluation length"},
    {Why::kRatioOutside, "a material ratio lies from 0 % to 100 %; asked for is {0 %}"},
    {Why::kRatiosReversed, "the first material ratio must be the smaller one; asked for are {0 %} and {1 %}"},
    {Why::kNoCoreProfile, "the filter for the core gave no roughness profile"},
    {Why::kNoFeature, "the profile has no such feature: no two peaks with a pit between them, or the other way round"},
    {Why::kNoFeatureLeft, "no feature is left after pruning and choice"},
    {Why::kFewFeatures, "needs {0 feature} after pruning and choice; this profile has {1}"},
    {Why::kManyValues, "a histogram is no single number"},
};

constexpr bool StandInOrder() {
  for (std::size_t i = 0; i < std::size(kReasons); ++i) {
    if (static_cast<std::size_t>(kReasons[i].why) != i) return false;
  }
  return static_cast<std::size_t>(Why::kManyValues) + 1 == std::size(kReasons);
}
static_assert(StandInOrder());

constexpr int kFigures = 4;

/// Small counts as words, as in running text.
std::string CountText(double count) {
  constexpr std::string_view kWords[] = {"none",  "one",   "two",  "three", "four",   "five",  "six",
                                         "seven", "eight", "nine", "ten",   "eleven", "twelve"};
  const bool hasWord = count >= 0.0 && count < static_cast<double>(std::size(kWords)) && count == std::trunc(count);
  return hasWord ? std::string(kWords[static_cast<std::size_t>(count)]) : FixedText(count, 0);
}

std::string Measured(double value, const Quantity& quantity, bool metric) {
  return SignificantText(quantity.Shown(value, metric), kFigures) + " " + std::string(quantity.Unit(metric));
}

/// One place of a pattern: "0", "1 mm", "0 sampling length".
std::string PlaceText(std::string_view place, const NoValue& reason, bool metric) {
  const double figure = reason.figures.at(static_cast<std::size_t>(place.front() - '0'));
  const std::string_view noun = place.size() > 2 ? place.substr(2) : std::string_view();
  if (noun.empty()) return CountText(figure);
  if (noun == "mm") return Measured(figure, kLengthMM, metric);
  if (noun == "um") return Measured(figure, kHeightUM, metric);
  if (noun == "%") return SignificantText(figure, kFigures) + " %";
  return CountText(figure) + " " + std::string(noun) + (figure == 1.0 ? "" : "s");
}

}  // namespace

std::string_view ReasonPattern(Why why) {
  return kReasons[static_cast<std::size_t>(why)].pattern;
}

std::string ReasonText(const NoValue& reason, bool metric) {
  std::string_view pattern = ReasonPattern(reason.why);
  std::string text;
  for (std::size_t open = pattern.find('{'); open != std::string_view::npos; open = pattern.find('{')) {
    const std::size_t close = pattern.find('}', open);
    text += pattern.substr(0, open);
    text += PlaceText(pattern.substr(open + 1, close - open - 1), reason, metric);
    pattern.remove_prefix(close + 1);
  }
  return text + std::string(pattern);
}

}  // namespace texturon
