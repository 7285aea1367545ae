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

constexpr SuffixRow kSuffixes[] = {
    {"t", TotalHeight},
    {"a", ArithmeticMeanDeviation},
    {"a1", GreatestDeviationOfOneLength},
    {"a1l", PlaceOfDeviationOfOneLength},
    {"a7", GreatestDeviationOfSevenLengths},
    {"a7l", PlaceOfDeviationOfSevenLengths},
    {"pm7", GreatestMeanPeakOfSevenLengths},
    {"pm7l", PlaceOfMeanPeakOfSevenLengths},
    {"cl", MeanElementHeightOfLengths, true},
    {"q", RootMeanSquareDeviation},
    {"m0", ZerothMoment},
    {"m2", SecondMoment},
    {"m4", FourthMoment},
    {"p", MaximumPeakHeight},
    {"pl", HighestOfLeftEnd},
    {"pr", HighestOfRightEnd},
    {"v", MaximumValleyDepth},
    {"c", MeanElementHeight, true},
    {"tc", GreatestElementHeight, true},
    {"sk", Skewness},
    {"ku", Kurtosis},
    {"zDIN", MeanPeakToValleyHeight},
    {"zi", MeanPeakToValleyHeight},
    {"3z", ThirdPointHeight},
    {"pm", MeanPeakHeight},
    {"pm/3z", MeanPeakToThirdPointRatio},
    {"vm", MeanValleyDepth},
    {"max", GreatestPeakToValleyHeight},
    {"y", GreatestPeakToValleyHeight},
    {"z1max", GreatestPeakToValleyHeight},
    {"zJIS", TenPointHeight},
    {"twi", ShareWithinDeviation},
    {"dsm", DeviationOfElementWidths, true},
    {"sm", MeanElementWidth, true},
    {"s", MeanPeakSpacing},
    {"seg", SegmentHeight},
    {"segl", SegmentPlace},
    {"lslp", SteepestLine},
    {"lslpl", SteepestLinePlace},
    {"eslp", SteepestChord},
    {"eslpl", SteepestChordPlace},
    {"pc", PeakCountPerLength},
    {"void", MeanVoidGap},
    {"vdd", DeepestVoid},
    {"vddl", DeepestVoidPlace},
    {"vdc", VoidsPerLength},
    {"vdas", MeanVoidAspect},
    {"vdmp", MeanVoidLength},
    {"vdm", MeanVoidDepth},
    {"vda", MeanVoidArea},
    {"cvx", HighestBump},
    {"cvxm", MeanBumpHeight},
    {"cvxl", HighestBumpPlace},
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
    {"pq", PlateauDeviation},
    {"vq", ValleyDeviation},
    {"mq", PlateauToValleyRatio},
    {"dq", RootMeanSquareSlope},
    {"dmd", MedianAbsoluteSlopeAngle},
    {"dmn", MeanAbsoluteSlopeAngle},
    {"dsk", SlopeSkewness},
    {"hsc", HighSpotCount, false, "PR"},
    {"vc", ValleyCount, false, "PR"},
};

struct WholeName {
  std::string_view name;
  RowRoutine routine;
};

constexpr WholeName kMotifRows[] = {
    {"R", MeanRoughnessMotifDepth},  {"Rx", GreatestRoughnessMotifDepth}, {"AR", MeanRoughnessMotifLength},
    {"W", MeanWavinessMotifDepth},   {"Wx", GreatestWavinessMotifDepth},  {"Wte", EnvelopeHeight},
    {"AW", MeanWavinessMotifLength},
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

RowRoutine FindWholeName(std::string_view name) {
  const auto found = std::find_if(std::begin(kMotifRows), std::end(kMotifRows),
                                  [name](const WholeName& row) { return EqualIgnoringCase(row.name, name); });
  return found != std::end(kMotifRows) ? found->routine : nullptr;
}

}  // namespace texturon
