// SPDX-License-Identifier: Apache-2.0

#include "presentation/requirement_texts.h"

#include <algorithm>

#include "base/number_text.h"
#include "parameters/catalogue.h"
#include "platform/platform.h"

namespace texturon {
namespace {

std::string LengthOf(const std::optional<double>& length, std::string_view unit) {
  return length ? ShortestText(*length) + " " + std::string(unit) : "open";
}

/// With or without a value.
const ParameterDef* RowOf(const Document& document, const Requirement& requirement) {
  for (const ParameterDef& row : document.catalogue.rows) {
    if (row.name == requirement.rowName && row.edition == requirement.edition) return &row;
  }
  return nullptr;
}

std::string ValuesText(const ParameterDef& row, const JudgedRequirement& judged, bool metric) {
  std::vector<double> values;
  for (const auto& value : judged.values.value_or(ValueSeries())) {
    if (value) values.push_back(*value);
  }
  if (values.empty()) return {};
  const auto [least, greatest] = std::minmax_element(values.begin(), values.end());
  ParameterDef shown = row;
  shown.valid = true;
  shown.value = judged.requirement.isUpper ? *greatest : *least;
  std::string text = ShownValue(shown, metric) + " " + PrintedUnit(row.quantity.Unit(metric)) + ", ";
  if (judged.values->size() == 1) return text;
  text.insert(0, judged.requirement.isUpper ? " values, at most " : " values, at least ");
  return IntegerText(static_cast<std::int64_t>(values.size())) + text;
}

}  // namespace

std::optional<double> ExpandedOf(const Document& document, const ParameterDef* row) {
  const Uncertainties& known = document.results.uncertainties;
  std::size_t place = 0;
  for (const ParameterDef& each : document.catalogue.rows) {
    if (&each == row) break;
    place += each.selected ? 1 : 0;
  }
  const bool isKnown =
      row != nullptr && row->selected && place < known.size() && known[place] && known[place]->IsDefinedOften();
  return isKnown ? std::optional(known[place]->Expanded()) : std::nullopt;
}

AcceptanceResult JudgedRequirement::Verdict() const {
  if (!requirement.missing.empty()) return {Acceptance::kUndecided, "settings are missing"};
  return DecideLimit(values.value_or(ValueSeries()), expanded,
                     {requirement.limit, requirement.isUpper, requirement.rule}, decisionRule);
}

std::vector<std::pair<std::string, std::string>> MeaningOf(const JudgedRequirement& judged) {
  const Requirement& requirement = judged.requirement;
  const std::string sections = requirement.sections ? IntegerText(*requirement.sections) : "open";
  std::vector<std::pair<std::string, std::string>> lines = {
      {"Edition", requirement.edition == Edition::k2021 ? "ISO 21920-1:2021" : "ISO 1302:2002"},
      {requirement.isUpper ? "Upper limit" : "Lower limit",
       requirement.name + " " + ShortestText(requirement.limit) + " " + requirement.unit},
      {"Rule", requirement.ruleText},
      {"Class", requirement.className.empty() ? "-" : requirement.className},
      {"Long-wave index", LengthOf(requirement.longIndexMM, "mm")},
      {"Short-wave index", LengthOf(requirement.shortIndexUM, "\xB5m")},
      {"Sections", sections + " of " + LengthOf(requirement.sectionMM, "mm")},
      {"Evaluation length", LengthOf(requirement.lengthMM, "mm")}};
  if (!requirement.missing.empty()) lines.emplace_back("Incomplete", requirement.missing);
  for (const std::string& note : requirement.notes) lines.emplace_back("Note", note);
  if (!judged.values) return lines;
  std::string values;
  for (const auto& value : *judged.values) {
    values += (values.empty() ? "" : ", ") + (value ? ShortestText(*value) : "-");
  }
  lines.emplace_back("Values", values);
  const AcceptanceResult verdict = judged.Verdict();
  lines.emplace_back("Verdict", std::string(ConformityWord(verdict.verdict)) + " (" + std::string(verdict.by) + ")");
  return lines;
}

std::string IndicationFault(const IndicationResult& read) {
  return "Character " + IntegerText(static_cast<std::int64_t>(read.place) + 1) + ": " + read.fault + ".";
}

std::vector<JudgedRequirement> RequirementsOf(const Document& document) {
  std::vector<JudgedRequirement> judged;
  const StandardSettings& standard = document.settings.analysis.standard;
  if (standard.Indication.empty()) return judged;
  ClassTableResult own;
  if (!standard.ClassTable.empty()) own = ReadClassTable(PathFromText(standard.ClassTable));
  const ClassTable& classes = own.classes.empty() ? BuiltInClasses() : own.classes;
  for (Requirement& requirement : ReadIndication(standard.Indication, classes).requirements) {
    if (requirement.className.empty() && !standard.Class.empty()) {
      CompleteRequirement(requirement, FindClass(classes, standard.Class), std::nullopt);
    }
    const ParameterDef* const row = RowOf(document, requirement);
    const bool hasValue = row != nullptr && row->valid;
    judged.push_back({std::move(requirement), ValueSeries{hasValue ? std::optional(row->value) : std::nullopt},
                      ValueSeries{ExpandedOf(document, row)}, document.settings.decision.DecisionRule});
  }
  return judged;
}

std::string RequirementVerdict(const Document& document, const JudgedRequirement& judged) {
  const AcceptanceResult verdict = judged.Verdict();
  const ParameterDef* const row = RowOf(document, judged.requirement);
  const std::string text = row != nullptr ? ValuesText(*row, judged, document.settings.display.Metric) : std::string();
  return text + std::string(ConformityWord(verdict.verdict)) + " (" + std::string(verdict.by) + ")";
}

}  // namespace texturon
