// SPDX-License-Identifier: Apache-2.0

#include "parameters/suffix_table.h"

#include <algorithm>

#include "base/text.h"
#include "parameters/amplitude.h"
#include "parameters/core_roughness.h"
#include "parameters/counts.h"
#include "parameters/element_parameters.h"
#include "parameters/local_slopes.h"
#include "parameters/motifs.h"
#include "parameters/peak_to_valley.h"
#include "parameters/probability.h"
#include "parameters/spectral_moments.h"
#include "parameters/void_convexity.h"
#include "parameters/window_rows.h"

namespace texturon {
namespace {

constexpr RowSettings kCutoff = {"LcCutoffMM"};
constexpr RowSettings kSegment = {"WindowWidthForWseg"};
constexpr RowSettings kSlopeWindow = {"AsphereSlopeWindowMM"};
constexpr RowSettings kEndRegions = {"WxpEndRegionsMM"};
constexpr RowSettings kClosingBall = {"ClosingRadiusForWvoid"};
constexpr RowSettings kOpeningBall = {"OpeningRadiusForWcvx"};
// The outer limits of both lines bound the search for the inner ones.
constexpr RowSettings kPlateau = {
    "RqFittingMethod UPLPercent LPLPercent LVLPercent RxqUpperValleyCountPercent RxqLowerValleyCountPercent"};
constexpr RowSettings kValley = {
    "RqFittingMethod UPLPercent UVLPercent LVLPercent RxqUpperValleyCountPercent RxqLowerValleyCountPercent "
    "RxqValleyCountHeightUm RxqMinimumValleyCount"};
constexpr RowSettings kCrossing = {
    "RqFittingMethod UPLPercent LPLPercent UVLPercent LVLPercent RxqUpperValleyCountPercent "
    "RxqLowerValleyCountPercent RxqValleyCountHeightUm RxqMinimumValleyCount"};
constexpr RowSettings kRoughnessMotifs = {"MotifAMM UseTHMotif UseTHShortMotifCombination"};
constexpr RowSettings kWavinessMotifs = {"MotifAMM MotifBMM UseTHMotif UseTHShortMotifCombination"};
constexpr RowSettings kWidths = {.discrimination = &LetterSettings::widths};
constexpr RowSettings kHeights = {.discrimination = &LetterSettings::heights};
constexpr RowSettings kHighSpotLevel = {.level = &LetterSettings::highSpotLevelUM};
constexpr RowSettings kValleyLevel = {.level = &LetterSettings::valleyLevelUM};
constexpr RowSettings kPeakBand = {.level = &LetterSettings::peakBandUM};

constexpr SuffixRow kSuffixes[] = {
    {"t", TotalHeight},
    {"a", ArithmeticMeanDeviation},
    {"a1", GreatestDeviationOfOneLength},
    {"a1l", PlaceOfDeviationOfOneLength},
    {"a7", GreatestDeviationOfSevenLengths},
    {"a7l", PlaceOfDeviationOfSevenLengths},
    {"pm7", GreatestMeanPeakOfSevenLengths},
    {"pm7l", PlaceOfMeanPeakOfSevenLengths},
    {.suffix = "cl", .routine = MeanElementHeightOfLengths, .findsElements = true, .settings = kHeights},
    {"q", RootMeanSquareDeviation},
    {"m0", ZerothMoment},
    {"m2", SecondMoment},
    {"m4", FourthMoment},
    {"p", MaximumPeakHeight},
    {.suffix = "pl", .routine = HighestOfLeftEnd, .settings = kEndRegions},
    {.suffix = "pr", .routine = HighestOfRightEnd, .settings = kEndRegions},
    {"v", MaximumValleyDepth},
    {.suffix = "c", .routine = MeanElementHeight, .findsElements = true, .settings = kHeights},
    {.suffix = "tc", .routine = GreatestElementHeight, .findsElements = true, .settings = kHeights},
    {"sk", Skewness},
    {"ku", Kurtosis},
    {.suffix = "zDIN", .routine = MeanPeakToValleyHeight, .settings = kCutoff},
    {.suffix = "zi", .routine = MeanPeakToValleyHeight, .settings = kCutoff},
    {.suffix = "3z", .routine = ThirdPointHeight, .settings = kCutoff},
    {.suffix = "pm", .routine = MeanPeakHeight, .settings = kCutoff},
    {.suffix = "pm/3z", .routine = MeanPeakToThirdPointRatio, .settings = kCutoff},
    {.suffix = "vm", .routine = MeanValleyDepth, .settings = kCutoff},
    {.suffix = "max", .routine = GreatestPeakToValleyHeight, .settings = kCutoff},
    {.suffix = "y", .routine = GreatestPeakToValleyHeight, .settings = kCutoff},
    {.suffix = "z1max", .routine = GreatestPeakToValleyHeight, .settings = kCutoff},
    {.suffix = "zJIS", .routine = TenPointHeight, .settings = kCutoff},
    {"twi", ShareWithinDeviation},
    {.suffix = "dsm", .routine = DeviationOfElementWidths, .findsElements = true, .settings = kWidths},
    {.suffix = "sm", .routine = MeanElementWidth, .findsElements = true, .settings = kWidths},
    {"s", MeanPeakSpacing},
    {.suffix = "seg", .routine = SegmentHeight, .settings = kSegment},
    {.suffix = "segl", .routine = SegmentPlace, .settings = kSegment},
    {.suffix = "lslp", .routine = SteepestLine, .settings = kSlopeWindow},
    {.suffix = "lslpl", .routine = SteepestLinePlace, .settings = kSlopeWindow},
    {.suffix = "eslp", .routine = SteepestChord, .settings = kSlopeWindow},
    {.suffix = "eslpl", .routine = SteepestChordPlace, .settings = kSlopeWindow},
    {.suffix = "pc", .routine = PeakCountPerLength, .settings = kPeakBand},
    {.suffix = "void", .routine = MeanVoidGap, .settings = kClosingBall},
    {.suffix = "vdd", .routine = DeepestVoid, .settings = kClosingBall},
    {.suffix = "vddl", .routine = DeepestVoidPlace, .settings = kClosingBall},
    {.suffix = "vdc", .routine = VoidsPerLength, .settings = kClosingBall},
    {.suffix = "vdas", .routine = MeanVoidAspect, .settings = kClosingBall},
    {.suffix = "vdmp", .routine = MeanVoidLength, .settings = kClosingBall},
    {.suffix = "vdm", .routine = MeanVoidDepth, .settings = kClosingBall},
    {.suffix = "vda", .routine = MeanVoidArea, .settings = kClosingBall},
    {.suffix = "cvx", .routine = HighestBump, .settings = kOpeningBall},
    {.suffix = "cvxm", .routine = MeanBumpHeight, .settings = kOpeningBall},
    {.suffix = "cvxl", .routine = HighestBumpPlace, .settings = kOpeningBall},
    {"vo", ValleyArea},
    {"k", CoreDepth},
    {"pk", ReducedPeakHeight},
    {"pk*", PeakAboveCore},
    {.suffix = "pk/k", .routine = PeakToCoreRatio, .mayBeInfinite = true},
    {"pk+k", PeakPlusCore},
    {"k+vk", CorePlusValley},
    {.suffix = "vk/k", .routine = ValleyToCoreRatio, .mayBeInfinite = true},
    {"vk", ReducedValleyDepth},
    {"vk*", ValleyBelowCore},
    {"mr1", UpperCoreMaterialRatio},
    {"mr2", LowerCoreMaterialRatio},
    {.suffix = "pq", .routine = PlateauDeviation, .settings = kPlateau},
    {.suffix = "vq", .routine = ValleyDeviation, .settings = kValley},
    {.suffix = "mq", .routine = PlateauToValleyRatio, .settings = kCrossing},
    {"dq", RootMeanSquareSlope},
    {"dmd", MedianAbsoluteSlopeAngle},
    {"dmn", MeanAbsoluteSlopeAngle},
    {"dsk", SlopeSkewness},
    {.suffix = "hsc", .routine = HighSpotCount, .letters = "PR", .settings = kHighSpotLevel},
    {.suffix = "vc", .routine = ValleyCount, .letters = "PR", .settings = kValleyLevel},
};

constexpr WholeNameRow kMotifRows[] = {
    {"R", MeanRoughnessMotifDepth, kRoughnessMotifs},    {"Rx", GreatestRoughnessMotifDepth, kRoughnessMotifs},
    {"AR", MeanRoughnessMotifLength, kRoughnessMotifs},  {"W", MeanWavinessMotifDepth, kWavinessMotifs},
    {"Wx", GreatestWavinessMotifDepth, kWavinessMotifs}, {"Wte", EnvelopeHeight, kRoughnessMotifs},
    {"AW", MeanWavinessMotifLength, kWavinessMotifs},
};

}  // namespace

std::span<const SuffixRow> SuffixTable() {
  return kSuffixes;
}

const SuffixRow* FindSuffix(std::string_view suffix) {
  const auto found = std::find_if(std::begin(kSuffixes), std::end(kSuffixes),
                                  [suffix](const SuffixRow& row) { return EqualIgnoringCase(row.suffix, suffix); });
  return found != std::end(kSuffixes) ? &*found : nullptr;
}

const WholeNameRow* FindWholeNameRow(std::string_view name) {
  const auto found = std::find_if(std::begin(kMotifRows), std::end(kMotifRows),
                                  [name](const WholeNameRow& row) { return EqualIgnoringCase(row.name, name); });
  return found != std::end(kMotifRows) ? &*found : nullptr;
}

RowRoutine FindWholeName(std::string_view name) {
  const WholeNameRow* const row = FindWholeNameRow(name);
  return row != nullptr ? row->routine : nullptr;
}

}  // namespace texturon
