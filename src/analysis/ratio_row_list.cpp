// SPDX-License-Identifier: Apache-2.0

#include "analysis/ratio_row_list.h"

#include "base/quantity.h"
#include "parameters/labels.h"

namespace texturon {
namespace {

/// A row of percents: without imperial twin.
ParameterDef PercentRow() {
  ParameterDef row;
  row.quantity = {"%%", "%%"};
  row.format.decimals = {2, 2};
  return row;
}

ParameterDef HeightRow() {
  ParameterDef row;
  row.quantity = kHeightUM;
  row.format.decimals = kHeightDecimals;
  return row;
}

template <typename Rows, typename Label>
void AppendSelected(std::vector<RatioRowEntry>& entries, ParameterDef row, std::string_view title, const Rows& rows,
                    const RatioRowResults& results, const Label& label) {
  for (std::size_t i = 0; i < rows.size(); ++i) {
    if (!rows[i].selected) continue;
    row.tolerance = rows[i].tolerance;
    row.value = results[i].value;
    row.valid = results[i].valid;
    row.reason = results[i].reason;
    entries.push_back({row, title, i, label(rows[i])});
  }
}

ParameterDef Named(ParameterDef row, const char* name) {
  row.name = name;
  return row;
}

}  // namespace

MaterialRatioTitles MaterialRatioTitlesOf(const DisplaySettings& display) {
  return {display.PrimaryAsTpa ? "Tpa" : "Pmr", display.RoughnessAsTpi ? "Tpi" : "Rmr"};
}

std::vector<RatioRowEntry> SelectedMaterialRatios(const Document& document) {
  const AnalysisSettings& settings = document.settings.analysis;
  const AnalysisResults& results = document.results;
  const auto label = [metric = document.settings.display.Metric](const MaterialRatioRow& row) {
    return MaterialRatioLabel(row, metric);
  };
  std::vector<RatioRowEntry> entries;
  const MaterialRatioTitles titles = MaterialRatioTitlesOf(document.settings.display);
  AppendSelected(entries, Named(PercentRow(), "Pmr"), titles.primary, settings.primaryMaterialRatios,
                 results.primaryMaterialRatios, label);
  AppendSelected(entries, Named(PercentRow(), "Rmr"), titles.roughness, settings.roughnessMaterialRatios,
                 results.roughnessMaterialRatios, label);
  return entries;
}

std::vector<RatioRowEntry> SelectedHtps(const Document& document) {
  const AnalysisSettings& settings = document.settings.analysis;
  const AnalysisResults& results = document.results;
  std::vector<RatioRowEntry> entries;
  AppendSelected(entries, Named(HeightRow(), "PHtp"), "PHtp", settings.primaryHtps, results.primaryHtps, HtpLabel);
  AppendSelected(entries, Named(HeightRow(), "RHtp"), "RHtp", settings.roughnessHtps, results.roughnessHtps, HtpLabel);
  return entries;
}

}  // namespace texturon
