// SPDX-License-Identifier: Apache-2.0

#include "parameters/labels.h"

#include <algorithm>
#include <cmath>
#include <iterator>

#include "base/number_text.h"
#include "base/text.h"
#include "base/units.h"
#include "parameters/counts.h"
#include "parameters/element_parameters.h"

namespace texturon {
namespace {

constexpr double kMetresPerMillimetre = 0.001;
constexpr std::string_view kMicro = "\xB5";

std::string BallLabel(double radiusMM, bool metric) {
  const std::string start = "   (Radius: ";
  if (!metric) return start + FixedText(radiusMM * kInchesPerMillimetre, 1) + " in)";
  if (radiusMM < 1.0) return start + FixedText(radiusMM * kMicrometresPerMillimetre, 2) + " \xB5m)";
  if (radiusMM < 1000.0) return start + FixedText(radiusMM, 2) + " mm)";
  return start + FixedText(radiusMM * kMetresPerMillimetre, 2) + " m)";
}

std::string ClosingBallLabel(const AnalysisSettings& settings, char /*letter*/, bool metric) {
  return BallLabel(settings.ClosingRadiusForWvoid, metric);
}

std::string OpeningBallLabel(const AnalysisSettings& settings, char /*letter*/, bool metric) {
  return BallLabel(settings.OpeningRadiusForWcvx, metric);
}

std::string ElementHeightLabel(const AnalysisSettings& settings, char letter, bool /*metric*/) {
  const ElementPercentages percent = DiscriminationOf(letter, ElementRow::kHeight, settings);
  return "   (z%: " + FixedText(percent.height, 0) + " l%: " + FixedText(percent.width, 0) + ")";
}

std::string ElementWidthLabel(const AnalysisSettings& settings, char letter, bool /*metric*/) {
  const ElementPercentages percent = DiscriminationOf(letter, ElementRow::kWidth, settings);
  return "   (z: " + FixedText(percent.height, 0) + " %    l: " + FixedText(percent.width, 0) + " %)";
}

std::string PeakCountLabel(const AnalysisSettings& settings, char letter, bool metric) {
  const double half = 0.5 * PeakCountBandUM(letter, settings);
  if (metric) return "   (+/- " + FixedText(half, 3) + " \xB5m)";
  return "   (+/- " + FixedText(half * kMicroinchesPerMicrometre, 0) + " \xB5in)";
}

std::string SlopeWindowLabel(const AnalysisSettings& settings, char /*letter*/, bool metric) {
  const double window = settings.AsphereSlopeWindowMM;
  if (metric) return "   (Window: " + FixedText(window, 3) + " mm)";
  return "   (Window: " + FixedText(window * kInchesPerMillimetre, 3) + " in)";
}

std::string SegmentLabel(const AnalysisSettings& settings, char /*letter*/, bool metric) {
  const double segment = settings.WindowWidthForWseg;
  if (metric) return "   (Segment: " + FixedText(segment, 1) + " mm)";
  return "   (Segment: " + FixedText(segment * kInchesPerMillimetre, 0) + " in)";
}

struct LabelledRow {
  std::string_view name;
  std::string (*label)(const AnalysisSettings& settings, char letter, bool metric);
};

constexpr LabelledRow kLabelledRows[] = {
    {"Wvoid", ClosingBallLabel}, {"Wvdd", ClosingBallLabel},   {"Wvddl", ClosingBallLabel},
    {"Wvdc", ClosingBallLabel},  {"Wvdas", ClosingBallLabel},  {"Wvdmp", ClosingBallLabel},
    {"Wvdm", ClosingBallLabel},  {"Wvda", ClosingBallLabel},   {"Wcvx", OpeningBallLabel},
    {"Wcvxm", OpeningBallLabel}, {"Wcvxl", OpeningBallLabel},  {"Rc", ElementHeightLabel},
    {"Wc", ElementHeightLabel},  {"Psm", ElementWidthLabel},   {"Wsm", ElementWidthLabel},
    {"Rsm", ElementWidthLabel},  {"Ppc", PeakCountLabel},      {"Wpc", PeakCountLabel},
    {"Rpc", PeakCountLabel},     {"Weslp", SlopeWindowLabel},  {"Weslpl", SlopeWindowLabel},
    {"Wlslp", SlopeWindowLabel}, {"Wlslpl", SlopeWindowLabel}, {"Wseg", SegmentLabel},
    {"Wsegl", SegmentLabel},
};

}  // namespace

std::string RowLabel(std::string_view name, const AnalysisSettings& settings, bool metric) {
  const auto row = std::find_if(std::begin(kLabelledRows), std::end(kLabelledRows),
                                [name](const LabelledRow& labelled) { return EqualIgnoringCase(labelled.name, name); });
  if (row == std::end(kLabelledRows)) return {};
  return row->label(settings, row->name.front(), metric);
}

std::string MaterialRatioLabel(const MaterialRatioRow& row, bool metric) {
  const double depth = metric ? row.depthUM : row.depthUM * kMicroinchesPerMicrometre;
  const std::string unit = std::string(" ") + std::string(kMicro) + (metric ? "m" : "in");
  if (row.meanReferenced) {
    const std::string sign = row.depthUM < 0.0 ? "-" : "+";
    return "   (Mean " + sign + " " + FixedText(std::abs(depth), metric ? 1 : 0) + unit + ")";
  }
  return "   (" + FixedText(depth, metric ? 2 : 1) + unit + "  " + FixedText(row.offsetPercent, 1) + " %)";
}

std::string HtpLabel(const HtpRow& row) {
  return "   (" + FixedText(row.lowerPercent, 1) + "%,  " + FixedText(row.upperPercent, 1) + "%)";
}

}  // namespace texturon
