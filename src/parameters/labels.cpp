// SPDX-License-Identifier: Apache-2.0

#include "parameters/labels.h"

#include <cmath>

#include "base/number_text.h"
#include "base/quantity.h"
#include "parameters/catalogue.h"

namespace texturon {
namespace {

constexpr double kMetresPerMillimetre = 0.001;

std::string DiscriminationColumn(double heightPercent, double widthPercent, std::string_view unit) {
  return "(z: " + FixedText(heightPercent, 0) + " %    l: " + FixedText(widthPercent, 0) + " %) (" + std::string(unit) +
         ")";
}

}  // namespace

std::string SettingNote::Of(const AnalysisSettings& settings, bool metric) const {
  if (text == nullptr) return {};
  return text(settings.*first, second != nullptr ? settings.*second : 0.0, metric);
}

std::string BallNote(double radiusMM, double /*unused*/, bool metric) {
  const std::string start = "   (Radius: ";
  if (!metric || (radiusMM >= 1.0 && radiusMM < 1000.0)) {
    return start + LengthText(radiusMM, metric, {2, 1}) + ")";
  }
  if (radiusMM < 1.0) return start + FixedText(radiusMM * kMicrometresPerMillimetre, 2) + " \xB5m)";
  return start + FixedText(radiusMM * kMetresPerMillimetre, 2) + " m)";
}

std::string ElementHeightNote(double heightPercent, double widthPercent, bool /*metric*/) {
  return "   (z%: " + FixedText(heightPercent, 0) + " l%: " + FixedText(widthPercent, 0) + ")";
}

std::string ElementWidthNote(double heightPercent, double widthPercent, bool /*metric*/) {
  return "   (z: " + FixedText(heightPercent, 0) + " %    l: " + FixedText(widthPercent, 0) + " %)";
}

std::string PeakCountNote(double bandUM, double /*unused*/, bool metric) {
  return "   (+/- " + HeightText(0.5 * bandUM, metric, {3, 0}) + ")";
}

std::string SlopeWindowNote(double windowMM, double /*unused*/, bool metric) {
  return "   (Window: " + LengthText(windowMM, metric, {3, 3}) + ")";
}

std::string SegmentNote(double windowMM, double /*unused*/, bool metric) {
  return "   (Segment: " + LengthText(windowMM, metric, {1, 0}) + ")";
}

std::string LevelColumn(double levelUM, double /*unused*/, bool metric) {
  return "(" + HeightText(levelUM, metric, {2, 1}) + ")";
}

std::string RoughnessHighSpotColumn(double levelUM, double /*unused*/, bool metric) {
  return "(" + HeightText(levelUM, metric, {2, 2}) + ")";
}

std::string LevelNote(double levelUM, double unused, bool metric) {
  return "   " + LevelColumn(levelUM, unused, metric);
}

std::string RoughnessHighSpotNote(double levelUM, double unused, bool metric) {
  return "   " + RoughnessHighSpotColumn(levelUM, unused, metric);
}

std::string PeakCountColumn(double bandUM, double unused, bool metric) {
  return LevelColumn(bandUM, unused, metric) + (metric ? " #/cm" : " #/in");
}

std::string ElementHeightColumn(double heightPercent, double widthPercent, bool metric) {
  return DiscriminationColumn(heightPercent, widthPercent, kHeightUM.Unit(metric));
}

std::string ElementWidthColumn(double heightPercent, double widthPercent, bool metric) {
  return DiscriminationColumn(heightPercent, widthPercent, kLengthMM.Unit(metric));
}

std::string RowLabel(std::string_view name, const AnalysisSettings& settings, bool metric) {
  const MasterRow* const row = FindOwnMasterRow(name);
  return row != nullptr ? row->details.note.Of(settings, metric) : std::string();
}

std::string MaterialRatioLabel(const MaterialRatioRow& row, bool metric) {
  if (row.meanReferenced) {
    return std::string("   (Mean ") + (row.depthUM < 0.0 ? "- " : "+ ") +
           HeightText(std::abs(row.depthUM), metric, {1, 0}) + ")";
  }
  return "   (" + HeightText(row.depthUM, metric, {2, 1}) + "  " + FixedText(row.offsetPercent, 1) + " %)";
}

std::string HtpLabel(const HtpRow& row) {
  return "   (" + FixedText(row.lowerPercent, 1) + "%,  " + FixedText(row.upperPercent, 1) + "%)";
}

}  // namespace texturon
