// SPDX-License-Identifier: Apache-2.0

#include "parameters/edition2021/edition_table.h"

#include <algorithm>
#include <iterator>

#include "base/number_text.h"
#include "base/text.h"
#include "parameters/amplitude.h"
#include "parameters/edition2021/feature_rows.h"
#include "parameters/edition2021/material_rows.h"
#include "parameters/edition2021/section_rows.h"
#include "parameters/edition2021/spatial_rows.h"
#include "parameters/probability.h"

namespace texturon {
namespace {

struct RowKind {
  Quantity quantity;
  ValueFormat format;
};

constexpr double kPerInchPerCentimetre = 2.54;
constexpr RowKind kHeight{kHeightUM, {{4, 2}}};
constexpr RowKind kLength{kLengthMM, {{5, 6}}};
constexpr RowKind kNumber{{"", ""}, {{4, 4}}};
constexpr RowKind kSlope{{"", ""}, {{5, 5}}};
constexpr RowKind kPercent{{"%%", "%%"}, {{2, 2}}};
constexpr RowKind kSmallPercent{{"%%", "%%"}, {{4, 4}}};
constexpr RowKind kHeightPercent{{"\xB5m %", "\xB5in %", kMicroinchesPerMicrometre}, {{3, 1}}};
constexpr RowKind kPerLength{{"1/cm", "1/in", kPerInchPerCentimetre}, {{2, 2}}};
constexpr RowKind kCurvature{{"1/\xB5m", "1/\xB5in", kMicrometresPerMicroinch}, {{5, 7}}};

using enum Trust;
using enum Likeness;

/// What most rows do without.
struct Rest {
  std::string_view arguments = {};
  std::size_t leastArguments = 0;
  bool ofCore = false;
  std::string_view difference = {};
  std::string_view roughnessDifference = {};
  bool needsClass = true;
};

constexpr EditionRow Row(std::string_view suffix, const RowKind& kind, std::string_view definition, Trust trust,
                         const OlderRow& older, EditionRoutine routine, const Rest& rest = {}) {
  return {suffix,         kind.quantity,  kind.format,         definition,  trust,           older,
          routine,        rest.arguments, rest.leastArguments, rest.ofCore, rest.difference, rest.roughnessDifference,
          rest.needsClass};
}

constexpr std::string_view kSections =
    "hills and dales count once, in the section of their extreme point; a sampling length before counted the flank of "
    "one that its border cuts too";
constexpr std::string_view kOtherFilter = "the roughness comes from the robust regression filter";
constexpr std::string_view kOtherCurve =
    "the roughness comes from the robust regression filter, and the curve is straight between its points";
constexpr std::string_view kStraightCurve = "the curve is straight between its points";
constexpr std::string_view kTwoDirections =
    "thresholds of 10 % of Rp and of Rv in place of those of Rz and of the sampling length, in two directions";

constexpr EditionRow kRows[] = {
    Row("a", kHeight, "Mean distance of the points from the mean line.", kTwoSources, {kEqual, "Ra"},
        AsBefore<ArithmeticMeanDeviation>, {.difference = kSameDefinition, .needsClass = false}),
    Row("q", kHeight, "Root of the mean square distance of the points from the mean line.", kTwoSources, {kEqual, "Rq"},
        AsBefore<RootMeanSquareDeviation>, {.difference = kSameDefinition, .needsClass = false}),
    Row("sk", kNumber, "Skewness of the heights, the mean of z^3 over q^3.", kTwoSources, {kEqual, "Rsk"},
        AsBefore<Skewness>, {.difference = kSameDefinition}),
    Row("ku", kNumber, "Kurtosis of the heights, the mean of z^4 over q^4.", kTwoSources, {kEqual, "Rku"},
        AsBefore<Kurtosis>, {.difference = kSameDefinition}),
    Row("t", kHeight, "Height from the lowest to the highest point of the evaluation length.", kTwoSources,
        {kEqual, "Rt"}, AsBefore<TotalHeight>, {.difference = kSameDefinition, .needsClass = false}),
    Row("zx", kHeight,
        "Largest height from the lowest to the highest point in a window of one section length, or of l mm, that moves "
        "along the profile.",
        kOneSource, {kNear, "Rmax", "the window slides; sampling lengths before were fixed, so never more"},
        GreatestWindowHeight, {.arguments = "l", .needsClass = false}),
    Row("pt", kHeight, "Height of the highest point above the mean line.", kOneSource, {kEqual, "Rp"},
        AsBefore<MaximumPeakHeight>),
    Row("vt", kHeight, "Depth of the lowest point below the mean line.", kOneSource, {kEqual, "Rv"},
        AsBefore<MaximumValleyDepth>),
    Row("p", kHeight, "Mean over the sections of the largest peak height of each.", kTwoSources,
        {kNear, "Rpm", kSections}, MeanSectionPeak,
        {.difference = "now the mean of the sections' largest peak heights; the highest point of all is Rpt",
         .needsClass = false}),
    Row("v", kHeight, "Mean over the sections of the largest pit depth of each.", kTwoSources,
        {kNear, "Rvm", kSections}, MeanSectionPit,
        {.difference = "now the mean of the sections' largest pit depths; the lowest point of all is Rvt",
         .needsClass = false}),
    Row("z", kHeight, "Mean over the sections of the largest peak height plus the largest pit depth of each.",
        kTwoSources, {kNear, "RzDIN", kSections}, MeanSectionHeight, {.needsClass = false}),
    Row("al", kLength, "Smallest lag at which the autocorrelation falls to 0.2, or to s.", kKnowledge, {},
        AutocorrelationLength, {.arguments = "s"}),
    Row("sw", kLength, "Wavelength of the largest amount in the Fourier transform of the evaluation length.",
        kKnowledge, {kNear, "", "the peak of the spectrum, which is that of the form-suppressed profile"},
        DominantWavelength),
    Row("dq", kSlope, "Root mean square of the local slopes by the seven-point formula.", kTwoSources,
        {kNear, "Rdq", "a number, the tangent of the angle before"}, SlopeDeviation,
        {.difference = "now a number, um by um; it was the angle with this tangent"}),
    Row("da", kSlope, "Mean amount of the local slopes.", kKnowledge,
        {kNear, "Rdmn", "a number; the mean of the angles before"}, MeanSlope),
    Row("dt", kSlope, "Largest amount of the local slopes.", kKnowledge, {}, GreatestSlope),
    Row("dl", kLength, "Developed length of the profile.", kKnowledge, {}, DevelopedLength),
    Row("dr", kSmallPercent, "Share by which the developed length is more than the evaluation length.", kKnowledge, {},
        DevelopedRatio),
    Row("mr", kPercent,
        "Share of the points at or above the height c about the mean line, or dc below the height at the ratio p.",
        kTwoSources, {kNear, "Rmr", "the rows with depth and reference"}, MaterialRatio,
        {.arguments = "c or p, dc", .leastArguments = 1}),
    Row("mc", kHeight, "Height about the mean line at the material ratio p.", kOneSource, {}, HeightAtRatioOfMean,
        {.arguments = "p", .leastArguments = 1}),
    Row("cm", kHeight, "Height at the material ratio p, counted from the highest point.", kTestedSource, {},
        HeightAtRatioBelowTop, {.arguments = "p", .leastArguments = 1}),
    Row("dc", kHeight, "Height between the material ratios p and q.", kTwoSources,
        {kNear, "RHtp", "the rows with two ratios"}, HeightBetweenRatios, {.arguments = "p, q", .leastArguments = 2}),
    Row("k", kHeight, "Height of the core.", kTwoSources, {kEqual, "Rk", kOtherFilter}, CoreHeight,
        {.ofCore = true, .difference = kOtherFilter, .roughnessDifference = kSameDefinition}),
    Row("pk", kHeight, "Reduced height of the hills above the core, 2 Rak1 / Rmrk1.", kTwoSources,
        {kNear, "Rpk", kOtherCurve}, ReducedHillHeight,
        {.ofCore = true, .difference = kOtherCurve, .roughnessDifference = kStraightCurve}),
    Row("vk", kHeight, "Reduced depth of the dales below the core, 2 Rak2 / (100 - Rmrk2).", kTwoSources,
        {kNear, "Rvk", kOtherCurve}, ReducedDaleDepth,
        {.ofCore = true, .difference = kOtherCurve, .roughnessDifference = kStraightCurve}),
    Row("pkx", kHeight, "Height of the highest point above the core.", kTwoSources, {kNear, "Rpk*", kOtherCurve},
        GreatestHillAboveCore, {.ofCore = true}),
    Row("vkx", kHeight, "Depth of the lowest point below the core.", kTwoSources, {kNear, "Rvk*", kOtherCurve},
        GreatestDaleBelowCore, {.ofCore = true}),
    Row("mrk1", kPercent, "Material ratio at the upper end of the core.", kTwoSources, {kNear, "Rmr1", kOtherCurve},
        UpperCoreRatio, {.ofCore = true}),
    Row("mrk2", kPercent, "Material ratio at the lower end of the core.", kTwoSources, {kNear, "Rmr2", kOtherCurve},
        LowerCoreRatio, {.ofCore = true}),
    Row("ak1", kHeightPercent, "Area of the hills above the core.", kTwoSources, {}, HillArea, {.ofCore = true}),
    Row("ak2", kHeightPercent, "Area of the dales below the core.", kTwoSources,
        {kNear, "Rvo", "a hundred times it, from the other filter"}, DaleArea, {.ofCore = true}),
    Row("pq", kHeight, "Steepness of the plateau line in the probability plot.", kOneSource, {kEqual, "Rpq"},
        AsBefore<PlateauDeviation>, {.difference = kSameDefinition}),
    Row("vq", kHeight, "Steepness of the valley line in the probability plot.", kOneSource, {kEqual, "Rvq"},
        AsBefore<ValleyDeviation>, {.difference = kSameDefinition}),
    Row("mq", kPercent, "Material ratio at which the two lines of the probability plot cross.", kOneSource,
        {kEqual, "Rmq"}, AsBefore<PlateauToValleyRatio>, {.difference = kSameDefinition}),
    Row("vm", kHeight, "Material volume above the height at the material ratio p.", kOneSource, {}, MaterialVolume,
        {.arguments = "p", .leastArguments = 1, .difference = "now a volume; it was the mean of the deepest points"}),
    Row("vv", kHeight, "Void volume below the height at the material ratio p.", kOneSource, {}, VoidVolume,
        {.arguments = "p", .leastArguments = 1}),
    Row("vmp", kHeight, "Material volume of the peaks, above the height at 10 %, or at p.", kOneSource, {},
        PeakMaterialVolume, {.arguments = "p"}),
    Row("vmc", kHeight, "Material volume of the core, between the heights at 10 % and 80 %, or at p and q.", kOneSource,
        {}, CoreMaterialVolume, {.arguments = "p, q"}),
    Row("vvc", kHeight, "Void volume of the core, between the heights at 10 % and 80 %, or at p and q.", kOneSource, {},
        CoreVoidVolume, {.arguments = "p, q"}),
    Row("vvv", kHeight, "Void volume of the dales, below the height at 80 %, or at q.", kOneSource, {},
        ValleyVoidVolume, {.arguments = "q"}),
    Row("sm", kLength, "Mean spacing of the profile elements.", kTwoSources, {kNear, "Rsm", kTwoDirections},
        MeanElementSpacing, {.difference = kTwoDirections}),
    Row("smx", kLength, "Largest spacing of a profile element.", kKnowledge, {}, GreatestElementSpacing),
    Row("smq", kLength, "Standard deviation of the spacings of the profile elements.", kKnowledge,
        {kNear, "Pdsm", kTwoDirections}, DeviationOfSpacings),
    Row("c", kHeight, "Mean height of the profile elements, hill plus dale.", kTwoSources,
        {kNear, "Rc", kTwoDirections}, MeanHeightOfElements, {.difference = kTwoDirections}),
    Row("cx", kHeight, "Largest height of a profile element.", kKnowledge, {kNear, "Wtc", kTwoDirections},
        GreatestHeightOfElements),
    Row("cq", kHeight, "Standard deviation of the heights of the profile elements.", kKnowledge, {},
        DeviationOfElementHeights),
    Row("pc", kPerLength, "Profile elements for each length of profile, 10 mm / Rsm.", kOneSource, {},
        ElementsPerLength,
        {.difference = "now 10 mm / Rsm; it was the number of peaks that cross a band about the mean line"}),
    Row("pd", kPerLength, "Peaks for each length of profile that pruning at 5 % of Rz leaves.", kTestedSource, {},
        PeakDensity),
    Row("vd", kPerLength, "Pits for each length of profile that pruning at 5 % of Rz leaves.", kTestedSource, {},
        PitDensity),
    Row("mpc", kCurvature, "Mean curvature at the peaks that pruning leaves; negative.", kTestedSource, {},
        MeanPeakCurvature),
    Row("mvc", kCurvature, "Mean curvature at the pits that pruning leaves.", kTestedSource, {}, MeanPitCurvature),
    Row("5p", kHeight, "Mean height of the five highest peaks that pruning leaves.", kTestedSource, {}, FivePeakHeight),
    Row("5v", kHeight, "Mean depth of the five deepest pits that pruning leaves.", kTestedSource, {}, FivePitDepth),
    Row("10z", kHeight, "Mean height of the five highest peaks plus mean depth of the five deepest pits.",
        kTestedSource, {}, TenPointFeatureHeight),
};

const EditionRow* FindRow(std::string_view suffix) {
  const auto* const found = std::find_if(std::begin(kRows), std::end(kRows), [suffix](const EditionRow& row) {
    return EqualIgnoringCase(row.suffix, suffix);
  });
  return found != std::end(kRows) ? &*found : nullptr;
}

bool IsLetter(char letter) {
  return letter == 'P' || letter == 'W' || letter == 'R';
}

/// Numbers separated by commas or semicolons; nothing where one is none.
std::optional<std::vector<double>> NumbersOf(std::string_view text) {
  std::vector<double> numbers;
  for (std::size_t begin = 0; begin <= text.size();) {
    const std::size_t end = std::min(text.find_first_of(",;", begin), text.size());
    const std::string_view piece = TrimBlanks(text.substr(begin, end - begin));
    const ParsedDouble number = ParseDouble(piece);
    if (!number.usable() || number.length == 0 || number.length != piece.size()) return std::nullopt;
    numbers.push_back(number.value);
    begin = end + 1;
  }
  return numbers;
}

void ReadArguments(std::string_view text, EditionName& read) {
  if (!text.empty()) {
    const auto numbers =
        text.front() == '(' && text.back() == ')' ? NumbersOf(text.substr(1, text.size() - 2)) : std::nullopt;
    if (!numbers) {
      read.fault = "has arguments that are not understood: " + std::string(text);
      return;
    }
    read.arguments = *numbers;
  }
  const std::size_t given = read.arguments.size();
  if (given >= read.row->leastArguments && given <= read.row->MostArguments()) return;
  read.fault = read.row->arguments.empty() ? std::string("takes no argument")
                                           : "takes the arguments (" + std::string(read.row->arguments) + ")";
}

}  // namespace

std::string_view TrustText(Trust trust) {
  switch (trust) {
    case Trust::kTwoSources:
      return "two sources";
    case Trust::kTestedSource:
      return "one source, its published numbers reproduced";
    case Trust::kOneSource:
      return "one source";
    case Trust::kKnowledge:
      break;
  }
  return "general knowledge";
}

std::string_view LikenessText(Likeness likeness) {
  switch (likeness) {
    case Likeness::kEqual:
      return "equal";
    case Likeness::kNear:
      return "near";
    case Likeness::kNew:
      break;
  }
  return "new";
}

std::size_t EditionRow::MostArguments() const {
  if (arguments.empty()) return 0;
  return 1 + static_cast<std::size_t>(std::count(arguments.begin(), arguments.end(), ','));
}

std::span<const EditionRow> EditionTable() {
  return kRows;
}

EditionName ParseEditionName(std::string_view name) {
  EditionName read;
  std::string_view text = TrimBlanks(name);
  const std::size_t colon = text.find(':');
  const std::string_view behind = colon != std::string_view::npos ? TrimBlanks(text.substr(colon + 1)) : text;
  if (IsFeatureText(behind)) {
    const std::string_view letter = behind.size() == text.size() ? "R" : TrimBlanks(text.substr(0, colon));
    read.letter = letter.size() == 1 ? UpperAscii(letter.front()) : '?';
    if (!IsLetter(read.letter)) {
      read.fault = "begins with " + Quoted(letter) + "; features are those of P, W or R";
      return read;
    }
    FeatureTextResult feature = ParseFeature(behind);
    read.feature = feature.feature;
    read.fault = std::move(feature.fault);
    return read;
  }
  read.letter = text.empty() ? '?' : UpperAscii(text.front());
  if (!IsLetter(read.letter)) {
    read.isUnknownLetter = true;
    read.fault = "begins with no letter of a profile, P, W or R";
    return read;
  }
  const std::size_t bracket = std::min(text.find('('), text.size());
  read.row = FindRow(TrimBlanks(text.substr(1, bracket - 1)));
  if (read.row == nullptr) {
    read.fault = "is no parameter of this edition";
    return read;
  }
  ReadArguments(text.substr(bracket), read);
  return read;
}

std::string FaultOfFeature(std::string_view text) {
  const EditionName name = ParseEditionName(text);
  if (name.feature) return {};
  return name.fault.empty() ? "is no feature: FC; type; pruning; significance; attribute; statistic" : name.fault;
}

}  // namespace texturon
