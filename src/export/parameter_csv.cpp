// SPDX-License-Identifier: Apache-2.0

#include "export/parameter_csv.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "base/number_text.h"
#include "base/text.h"
#include "base/units.h"
#include "parameters/counts.h"
#include "parameters/element_parameters.h"

namespace texturon {
namespace {

constexpr std::string_view kMetricHeight = " \xB5m";
constexpr std::string_view kImperialHeight = " \xB5in";

std::string HeightText(double heightUM, bool metric, int metricDecimals, int imperialDecimals) {
  if (metric) return FixedText(heightUM, metricDecimals) + std::string(kMetricHeight);
  return FixedText(heightUM * kMicroinchesPerMicrometre, imperialDecimals) + std::string(kImperialHeight);
}

std::string DiscriminationText(char letter, ElementRow kind, const AnalysisSettings& settings) {
  const ElementPercentages percent = DiscriminationOf(letter, kind, settings);
  return "(z: " + FixedText(percent.height, 0) + " %    l: " + FixedText(percent.width, 0) + " %) ";
}

/// The label under a column; `letter` is the name's first.
using ColumnLabel = std::string (*)(const AnalysisSettings& settings, char letter, bool metric);

std::string ValleyCountLabel(const AnalysisSettings& settings, char letter, bool metric) {
  return "(" + HeightText(letter == 'P' ? settings.PrimaryVCHeight : settings.RoughnessVCHeight, metric, 2, 1) + ")";
}

std::string PrimaryHighSpotLabel(const AnalysisSettings& settings, char /*letter*/, bool metric) {
  return "(" + HeightText(settings.PrimaryHSCHeight, metric, 2, 1) + ")";
}

// Two decimals in imperial units, unlike its siblings: programs that read the file know it so.
std::string RoughnessHighSpotLabel(const AnalysisSettings& settings, char /*letter*/, bool metric) {
  return "(" + HeightText(settings.RoughnessHSCHeight, metric, 2, 2) + ")";
}

std::string PeakCountLabel(const AnalysisSettings& settings, char letter, bool metric) {
  return "(" + HeightText(PeakCountBandUM(letter, settings), metric, 2, 1) + (metric ? ") #/cm" : ") #/in");
}

std::string ElementWidthLabel(const AnalysisSettings& settings, char letter, bool metric) {
  return DiscriminationText(letter, ElementRow::kWidth, settings) + (metric ? "(mm)" : "(in)");
}

std::string ElementHeightLabel(const AnalysisSettings& settings, char letter, bool metric) {
  return DiscriminationText(letter, ElementRow::kHeight, settings) + (metric ? "(\xB5m)" : "(\xB5in)");
}

struct LabelledColumn {
  std::string_view name;
  ColumnLabel label;
};

constexpr LabelledColumn kLabelledColumns[] = {
    {"Pvc", ValleyCountLabel},        {"Rvc", ValleyCountLabel},  {"Phsc", PrimaryHighSpotLabel},
    {"Rhsc", RoughnessHighSpotLabel}, {"Ppc", PeakCountLabel},    {"Rpc", PeakCountLabel},
    {"Wpc", PeakCountLabel},          {"Psm", ElementWidthLabel}, {"Wsm", ElementWidthLabel},
    {"Rsm", ElementWidthLabel},       {"Wc", ElementHeightLabel}, {"Rc", ElementHeightLabel},
};

std::string LabelOf(const ParameterDef& row, const AnalysisSettings& settings, bool metric) {
  const auto* const column =
      std::find_if(std::begin(kLabelledColumns), std::end(kLabelledColumns),
                   [&row](const LabelledColumn& labelled) { return EqualIgnoringCase(labelled.name, row.name); });
  if (column != std::end(kLabelledColumns)) return column->label(settings, column->name.front(), metric);
  return PrintedUnit(metric ? row.metricUnit : row.imperialUnit);
}

std::string InColumn(std::string_view text) {
  return ", \"" + std::string(text) + "\"";
}

/// Without quotes where the mean line is the reference: programs that read the file know it so.
std::string MaterialRatioColumn(const MaterialRatioRow& row, bool metric) {
  if (row.meanReferenced) {
    return std::string(", (Mean ") + (row.depthUM < 0.0 ? "- " : "+ ") +
           HeightText(std::abs(row.depthUM), metric, 2, 0) + ")";
  }
  return InColumn("(" + HeightText(row.depthUM, metric, 2, 2) + "  " + FixedText(row.offsetPercent, 1) + " %)");
}

std::string HtpColumn(const HtpRow& row) {
  return InColumn("(" + FixedText(row.lowerPercent, 1) + " %  " + FixedText(row.upperPercent, 1) + " %)");
}

int DecimalsOf(std::string_view name) {
  constexpr std::array<std::string_view, 8> kSixDecimals = {"Pm0", "Rm0", "Pm2", "Rm2", "Pm4", "Rm4", "Rsm", "Psm"};
  const bool isListed = std::any_of(kSixDecimals.begin(), kSixDecimals.end(),
                                    [name](std::string_view listed) { return EqualIgnoringCase(listed, name); });
  return isListed || name.starts_with('A') ? 6 : 3;
}

std::string Value(bool valid, double value, int decimals) {
  return valid ? ", " + FixedText(value, decimals) : InColumn(" ");
}

template <typename Rows, typename Column>
void ForSelected(const Rows& rows, const Column& column) {
  for (std::size_t i = 0; i < rows.size(); ++i) {
    if (rows[i].selected) column(i);
  }
}

/// The configurable rows of an analysis, primary before roughness.
struct RatioColumns {
  const ParameterCsvInput& input;

  /// Calls column(row, result, isPrimary) for the selected material ratios.
  template <typename Column>
  void MaterialRatios(const Column& column) const {
    const AnalysisSettings& settings = input.settings.analysis;
    ForSelected(settings.primaryMaterialRatios, [&](std::size_t i) {
      column(settings.primaryMaterialRatios[i], input.primaryMaterialRatios[i], true);
    });
    ForSelected(settings.roughnessMaterialRatios, [&](std::size_t i) {
      column(settings.roughnessMaterialRatios[i], input.roughnessMaterialRatios[i], false);
    });
  }

  template <typename Column>
  void Htps(const Column& column) const {
    const AnalysisSettings& settings = input.settings.analysis;
    ForSelected(settings.primaryHtps,
                [&](std::size_t i) { column(settings.primaryHtps[i], input.primaryHtps[i], true); });
    ForSelected(settings.roughnessHtps,
                [&](std::size_t i) { column(settings.roughnessHtps[i], input.roughnessHtps[i], false); });
  }
};

}  // namespace

std::string ParameterCsvHeader(const ParameterCsvInput& input) {
  const DisplaySettings& display = input.settings.display;
  std::string titles = R"("Time", "Source", "Identification", "Settings")";
  std::string labels = R"("   ", "     ", "             ", "       ")";
  for (const ParameterDef& row : input.catalogue.rows) {
    if (!row.selected) continue;
    titles += InColumn(OnOneLine(row.name));
    labels += InColumn(LabelOf(row, input.settings.analysis, display.Metric));
  }
  const RatioColumns columns{input};
  columns.MaterialRatios([&](const MaterialRatioRow& row, const RatioRowResult& /*result*/, bool isPrimary) {
    titles +=
        isPrimary ? InColumn(display.PrimaryAsTpa ? "Tpa" : "Pmr") : InColumn(display.RoughnessAsTpi ? "Tpi" : "Rmr");
    labels += MaterialRatioColumn(row, display.Metric);
  });
  columns.Htps([&](const HtpRow& row, const RatioRowResult& /*result*/, bool isPrimary) {
    titles += InColumn(isPrimary ? "Phtp" : "Rhtp");
    labels += HtpColumn(row);
  });
  return titles + "\r\n" + labels + "\r\n";
}

std::string ParameterCsvSettingsText(const ParameterCsvInput& input) {
  const double traverseMM = input.traverseLengthUM * kMillimetresPerMicrometre;
  const double evaluationMM = input.evaluationLengthUM * kMillimetresPerMicrometre;
  const bool metric = input.settings.display.Metric;
  const std::string traverse =
      metric ? FixedText(traverseMM, 1) + " mm" : FixedText(traverseMM * kInchesPerMillimetre, 2) + " in";
  return "LT " + traverse + " / Ln " + FixedText(evaluationMM, metric ? 2 : 3) + " mm / " +
         std::string(input.description);
}

std::string ParameterCsvSource(std::string_view path) {
  std::string source = OnOneLine(path);
  std::replace(source.begin(), source.end(), ',', ';');
  return source;
}

std::string ParameterCsvRow(const ParameterCsvInput& input) {
  const bool metric = input.settings.display.Metric;
  std::string line = "\"" + OnOneLine(input.time) + "  \", \"" + ParameterCsvSource(input.source) + "    \", \"" +
                     OnOneLine(input.identification) + "            \", \"" +
                     OnOneLine(ParameterCsvSettingsText(input)) + "      \"";
  for (const ParameterDef& row : input.catalogue.rows) {
    if (!row.selected) continue;
    line += Value(row.valid, metric ? row.value : row.value * row.imperialFactor, DecimalsOf(row.name));
  }
  const RatioColumns columns{input};
  columns.MaterialRatios([&line](const MaterialRatioRow& /*row*/, const RatioRowResult& result, bool /*isPrimary*/) {
    line += Value(result.valid, result.value, 2);
  });
  columns.Htps([&line, metric](const HtpRow& /*row*/, const RatioRowResult& result, bool /*isPrimary*/) {
    line += Value(result.valid, metric ? result.value : result.value * kMicroinchesPerMicrometre, 3);
  });
  return line + "\r\n";
}

}  // namespace texturon
