#include "parameters/suffix_table.h"

#include <algorithm>

#include "core/text.h"
#include "parameters/amplitude.h"
#include "parameters/core_roughness.h"
#include "parameters/element_parameters.h"
#include "parameters/peak_to_valley.h"

namespace texturon {
namespace {

constexpr SuffixRow kSuffixes[] = {
    {"t", TotalHeight},
    {"a", ArithmeticMeanDeviation},
    {"a1", nullptr},
    {"a1l", nullptr},
    {"a7", nullptr},
    {"a7l", nullptr},
    {"pm7", nullptr},
    {"pm7l", nullptr},
    {"cl", nullptr, true},
    {"q", RootMeanSquareDeviation},
    {"m0", nullptr},
    {"m2", nullptr},
    {"m4", nullptr},
    {"p", MaximumPeakHeight},
    {"pl", nullptr},
    {"pr", nullptr},
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
    {"twi", nullptr},
    {"dsm", DeviationOfElementWidths, true},
    {"sm", MeanElementWidth, true},
    {"s", nullptr},
    {"seg", nullptr},
    {"segl", nullptr},
    {"lslp", nullptr},
    {"lslpl", nullptr},
    {"eslp", nullptr},
    {"eslpl", nullptr},
    {"pc", nullptr},
    {"void", nullptr},
    {"vdd", nullptr},
    {"vddl", nullptr},
    {"vdc", nullptr},
    {"vdas", nullptr},
    {"vdmp", nullptr},
    {"vdm", nullptr},
    {"vda", nullptr},
    {"cvx", nullptr},
    {"cvxm", nullptr},
    {"cvxl", nullptr},
    {"vo", ValleyArea},
    {"k", CoreDepth},
    {"pk", ReducedPeakHeight},
    {"pk*", PeakAboveCore},
    {"pk/k", PeakToCoreRatio},
    {"pk+k", PeakPlusCore},
    {"k+vk", CorePlusValley},
    {"vk/k", ValleyToCoreRatio},
    {"vk", ReducedValleyDepth},
    {"vk*", ValleyBelowCore},
    {"mr1", UpperCoreMaterialRatio},
    {"mr2", LowerCoreMaterialRatio},
    {"pq", nullptr},
    {"vq", nullptr},
    {"mq", nullptr},
    {"dq", nullptr},
    {"dmd", nullptr},
    {"dmn", nullptr},
    {"dsk", nullptr},
    {"hsc", nullptr},
    {"vc", nullptr},
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

}  // namespace texturon
