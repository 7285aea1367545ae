// SPDX-License-Identifier: Apache-2.0

#include "presentation/shown_rows.h"

#include <algorithm>
#include <utility>

#include "analysis/decision.h"
#include "analysis/ratio_row_list.h"
#include "base/number_text.h"
#include "parameters/edition2021/edition_list.h"
#include "parameters/labels.h"
#include "parameters/row_settings.h"
#include "presentation/value_place.h"
#include "settings/setting_choices.h"

namespace texturon {
namespace {

/// `place` is that of the row among all.
ShownRow Show(const Document& document, std::size_t place, const ParameterDef& row, std::string title,
              std::string label) {
  const bool metric = document.settings.display.Metric;
  const auto decision = Decide(document, row, place);
  return {.row = row,
          .title = std::move(title),
          .value = ShownValue(row, metric),
          .unit = PrintedUnit(row.quantity.Unit(metric)),
          .label = std::move(label),
          .verdict = decision ? std::optional(decision->verdict) : std::nullopt,
          .doubt = decision ? decision->doubt : std::string_view(),
          .reason = ReasonOf(row, metric)};
}

/// The name, with its edition where rows of both are shown.
std::string TitleOf(const ParameterDef& row, EditionChoice chosen) {
  if (chosen != EditionChoice::kBoth) return row.name;
  return row.name + "/" + std::string(NameOf(row.edition));
}

/// The settings behind a value, or why it differs from the row of the same name before.
std::string LabelOf(const ParameterDef& row, const Document& document) {
  if (!row.difference.empty()) return "   " + std::string(row.difference);
  if (row.edition != Edition::k1997) return {};
  return RowLabel(row.name, document.settings.analysis, document.settings.display.Metric);
}

}  // namespace

ParameterExplanation ExplainRow(const Document& document, std::string_view name) {
  ParameterExplanation explanation;
  const Settings& settings = document.settings;
  if (const RatioRowKind* const kind = FindRatioRowKind(name)) {
    explanation.definition = kind->definition;
    explanation.source = kind->source;
  } else if (const MasterRow* const master = FindMasterRow(name)) {
    explanation.definition = master->definition;
    explanation.source = master->source;
  }
  for (const auto& keys : {SettingsOfRow(name), SettingsOfProfile(name, settings)}) {
    for (const SettingKey* const key : keys) {
      const std::pair line(std::string(key->meaning), DescribeValue(*key, key->binding.get(settings, 0)));
      if (std::find(explanation.settings.begin(), explanation.settings.end(), line) == explanation.settings.end()) {
        explanation.settings.push_back(line);
      }
    }
  }
  return explanation;
}

ParameterExplanation ExplainRow(const Document& document, const ParameterDef& row) {
  if (row.edition == Edition::k1997) return ExplainRow(document, row.name);
  ParameterExplanation explanation;
  const EditionName name = ParseEditionName(row.name);
  explanation.source = kEdition2021Title;
  if (name.row != nullptr) {
    explanation.definition = name.row->definition;
    explanation.source += ", " + std::string(TrustText(name.row->trust));
  }
  for (const SettingKey* const key : SettingsOfProfile(row.name, document.settings)) {
    explanation.settings.emplace_back(key->meaning, DescribeValue(*key, key->binding.get(document.settings, 0)));
  }
  return explanation;
}

std::int32_t ColumnsOfTable(const DisplaySettings& display) {
  return std::clamp(display.ParameterColumns, 1, kMostParameterColumns);
}

std::vector<ShownRow> ShownRows(const Document& document) {
  const bool metric = document.settings.display.Metric;
  const EditionChoice chosen = ChosenEdition(document.settings.analysis);
  std::vector<ShownRow> rows;
  for (const ParameterDef& row : document.catalogue.rows) {
    if (row.selected) rows.push_back(Show(document, rows.size(), row, TitleOf(row, chosen), LabelOf(row, document)));
  }
  for (const auto& entries : {SelectedMaterialRatios(document), SelectedHtps(document)}) {
    for (const RatioRowEntry& entry : entries) {
      const std::string number = IntegerText(static_cast<std::int64_t>(entry.index) + 1);
      const std::string title = std::string(entry.title) + " " + number;
      rows.push_back(Show(document, rows.size(), entry.row, title, entry.label));
    }
  }
  const Uncertainties& uncertainties = document.results.uncertainties;
  for (std::size_t i = 0; i < std::min(rows.size(), uncertainties.size()); ++i) {
    if (!uncertainties[i] || rows[i].value.empty()) continue;
    UncertaintyTexts texts = TextsOf(rows[i].row, *uncertainties[i], metric);
    rows[i].expanded = std::move(texts.expanded);
    rows[i].rounded = std::move(texts.value);
  }
  return rows;
}

std::string OtherName(const MasterRow& row) {
  const std::string_view name = row.details.planName;
  // A star that is spelt out is no name of its own.
  if (name.empty() || name.find('_') != std::string_view::npos) return {};
  return "Also called " + std::string(name) + ".";
}

}  // namespace texturon
