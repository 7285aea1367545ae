// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <string>
#include <string_view>

#include "settings/analysis_settings.h"

namespace texturon {

/// A text that shows one or two settings, whose fields it names. The texts are Windows-1252.
struct SettingNote {
  using Field = double AnalysisSettings::*;
  using Text = std::string (*)(double first, double second, bool metric);

  Text text = nullptr;  // null: no note
  Field first = nullptr;
  Field second = nullptr;

  std::string Of(const AnalysisSettings& settings, bool metric) const;
};

// Notes that tables append to a row's name; they begin with three blanks.
std::string BallNote(double radiusMM, double unused, bool metric);
std::string ElementHeightNote(double heightPercent, double widthPercent, bool metric);
std::string ElementWidthNote(double heightPercent, double widthPercent, bool metric);
std::string PeakCountNote(double bandUM, double unused, bool metric);
std::string SlopeWindowNote(double windowMM, double unused, bool metric);
std::string SegmentNote(double windowMM, double unused, bool metric);
std::string LevelNote(double levelUM, double unused, bool metric);
std::string RoughnessHighSpotNote(double levelUM, double unused, bool metric);

// What stands under a column of the parameter file in place of a unit.
std::string LevelColumn(double levelUM, double unused, bool metric);
/// Two decimals in imperial units, unlike its siblings: programs that read the file know it so.
std::string RoughnessHighSpotColumn(double levelUM, double unused, bool metric);
std::string PeakCountColumn(double bandUM, double unused, bool metric);
std::string ElementHeightColumn(double heightPercent, double widthPercent, bool metric);
std::string ElementWidthColumn(double heightPercent, double widthPercent, bool metric);

/// The note of a row of the catalogue, found by name in any case. Empty for rows without one.
std::string RowLabel(std::string_view name, const AnalysisSettings& settings, bool metric);

/// Notes of the configurable material-ratio and height rows.
std::string MaterialRatioLabel(const MaterialRatioRow& row, bool metric);
std::string HtpLabel(const HtpRow& row);

}  // namespace texturon
