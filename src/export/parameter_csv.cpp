// SPDX-License-Identifier: Apache-2.0

#include "export/parameter_csv.h"

#include <algorithm>
#include <cmath>

#include "base/number_text.h"
#include "base/quantity.h"
#include "base/text.h"

namespace texturon {
namespace {

std::string LabelOf(const ParameterDef& row, const AnalysisSettings& settings, bool metric) {
  const MasterRow* const master = row.edition == Edition::k1997 ? FindOwnMasterRow(row.name) : nullptr;
  const std::string label = master != nullptr ? master->details.csvLabel.Of(settings, metric) : std::string();
  return label.empty() ? PrintedUnit(row.quantity.Unit(metric)) : label;
}

std::string InColumn(std::string_view text) {
  return ", \"" + std::string(text) + "\"";
}

/// Without quotes where the mean line is the reference: programs that read the file know it so.
std::string MaterialRatioColumn(const MaterialRatioRow& row, bool metric) {
  if (row.meanReferenced) {
    return std::string(", (Mean ") + (row.depthUM < 0.0 ? "- " : "+ ") +
           HeightText(std::abs(row.depthUM), metric, {2, 0}) + ")";
  }
  return InColumn("(" + HeightText(row.depthUM, metric, {2, 2}) + "  " + FixedText(row.offsetPercent, 1) + " %)");
}

std::string HtpColumn(const HtpRow& row) {
  return InColumn("(" + FixedText(row.lowerPercent, 1) + " %  " + FixedText(row.upperPercent, 1) + " %)");
}

int DecimalsOf(const ParameterDef& row) {
  const std::string_view name = row.name;
  if (name.starts_with('A') || row.edition != Edition::k1997) return 6;
  const MasterRow* const master = FindOwnMasterRow(name);
  return master != nullptr ? master->details.csvDecimals : 3;
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
    const AnalysisSettings& settings = input.settings;
    ForSelected(settings.primaryMaterialRatios, [&](std::size_t i) {
      column(settings.primaryMaterialRatios[i], input.primaryMaterialRatios[i], true);
    });
    ForSelected(settings.roughnessMaterialRatios, [&](std::size_t i) {
      column(settings.roughnessMaterialRatios[i], input.roughnessMaterialRatios[i], false);
    });
  }

  template <typename Column>
  void Htps(const Column& column) const {
    const AnalysisSettings& settings = input.settings;
    ForSelected(settings.primaryHtps,
                [&](std::size_t i) { column(settings.primaryHtps[i], input.primaryHtps[i], true); });
    ForSelected(settings.roughnessHtps,
                [&](std::size_t i) { column(settings.roughnessHtps[i], input.roughnessHtps[i], false); });
  }
};

}  // namespace

std::string ParameterCsvHeader(const ParameterCsvInput& input) {
  std::string titles = R"("Time", "Source", "Identification", "Settings")";
  std::string labels = R"("   ", "     ", "             ", "       ")";
  for (const ParameterDef& row : input.catalogue.rows) {
    if (!row.selected) continue;
    titles += InColumn(OnOneLine(row.NameWithEdition()));
    labels += InColumn(LabelOf(row, input.settings, input.metric));
  }
  const RatioColumns columns{input};
  columns.MaterialRatios([&](const MaterialRatioRow& row, const RatioRowResult& /*result*/, bool isPrimary) {
    titles += InColumn(isPrimary ? input.primaryRatioTitle : input.roughnessRatioTitle);
    labels += MaterialRatioColumn(row, input.metric);
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
  const bool metric = input.metric;
  return "LT " + LengthText(traverseMM, metric, {1, 2}) + " / Ln " + FixedText(evaluationMM, metric ? 2 : 3) +
         " mm / " + std::string(input.description);
}

std::string ParameterCsvSource(std::string_view path) {
  std::string source = OnOneLine(path);
  std::replace(source.begin(), source.end(), ',', ';');
  return source;
}

std::string ParameterCsvRow(const ParameterCsvInput& input) {
  const bool metric = input.metric;
  std::string line = "\"" + OnOneLine(input.time) + "  \", \"" + ParameterCsvSource(input.source) + "    \", \"" +
                     OnOneLine(input.identification) + "            \", \"" +
                     OnOneLine(ParameterCsvSettingsText(input)) + "      \"";
  for (const ParameterDef& row : input.catalogue.rows) {
    if (!row.selected) continue;
    line += Value(row.valid, row.quantity.Shown(row.value, metric), DecimalsOf(row));
  }
  const RatioColumns columns{input};
  columns.MaterialRatios([&line](const MaterialRatioRow& /*row*/, const RatioRowResult& result, bool /*isPrimary*/) {
    line += Value(result.valid, result.value, 2);
  });
  columns.Htps([&line, metric](const HtpRow& /*row*/, const RatioRowResult& result, bool /*isPrimary*/) {
    line += Value(result.valid, kHeightUM.Shown(result.value, metric), 3);
  });
  return line + "\r\n";
}

}  // namespace texturon
