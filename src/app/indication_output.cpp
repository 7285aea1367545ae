// SPDX-License-Identifier: Apache-2.0

#include "app/indication_output.h"

#include "app/run_options.h"
#include "app/table_text.h"
#include "base/charset.h"
#include "base/number_text.h"
#include "base/text.h"

namespace texturon {
namespace {

std::string_view EditionWord(const Requirement& requirement) {
  return requirement.edition == Edition::k2021 ? "2021" : "2002";
}

}  // namespace

std::vector<Requirement> RequirementsOf(const std::string& text, const ClassTable& classes) {
  const std::string bytes = Windows1252FromUtf8(text);
  IndicationResult read = ReadIndication(bytes, classes);
  if (read.fault.empty()) return std::move(read.requirements);
  const std::string rest = read.place < bytes.size() ? "at " + Quoted(bytes.substr(read.place)) : "at its end";
  throw UsageError{"indication, character " + IntegerText(static_cast<std::int64_t>(read.place) + 1) + ", " +
                   Utf8FromWindows1252(rest + ": " + read.fault) + "."};
}

void WriteRequirements(JsonWriter& json, const std::vector<JudgedRequirement>& requirements) {
  const auto text = [&json](std::string_view key, std::string_view value) {
    json.Key(key);
    json.Text(Utf8FromWindows1252(value));
  };
  const auto number = [&json](std::string_view key, const std::optional<double>& value) {
    json.Key(key);
    value ? json.Number(*value) : json.Null();
  };
  json.Key("requirements");
  json.BeginArray();
  for (const JudgedRequirement& judged : requirements) {
    const Requirement& requirement = judged.requirement;
    json.BeginObject();
    text("edition", EditionWord(requirement));
    text("side", requirement.isUpper ? "U" : "L");
    text("name", requirement.name);
    json.Key("limit");
    json.Number(requirement.limit);
    text("unit", requirement.unit);
    text("rule", requirement.ruleText);
    json.Key("class");
    requirement.className.empty() ? json.Null() : json.Text(Utf8FromWindows1252(requirement.className));
    number("nic_mm", requirement.longIndexMM);
    number("nis_um", requirement.shortIndexUM);
    number("section_mm", requirement.sectionMM);
    json.Key("sections");
    requirement.sections ? json.Integer(*requirement.sections) : json.Null();
    number("evaluation_length_mm", requirement.lengthMM);
    json.Key("notes");
    json.BeginArray();
    if (!requirement.missing.empty()) json.Text(Utf8FromWindows1252("Incomplete: " + requirement.missing + "."));
    for (const std::string& note : requirement.notes) json.Text(Utf8FromWindows1252(note));
    json.EndArray();
    if (judged.values) {
      json.Key("values");
      json.BeginArray();
      for (const auto& value : *judged.values) value ? json.Number(*value) : json.Null();
      json.EndArray();
      const AcceptanceResult verdict = judged.Verdict();
      text("verdict", ConformityWord(verdict.verdict));
      text("by", verdict.by);
    }
    json.EndObject();
  }
  json.EndArray();
}

std::string RequirementsText(const std::vector<JudgedRequirement>& requirements) {
  constexpr std::size_t kTitleWidth = 20;
  std::string out;
  for (const JudgedRequirement& judged : requirements) {
    if (!out.empty()) out += "\n";
    out += Utf8FromWindows1252(judged.requirement.source) + "\n";
    for (const auto& [title, text] : MeaningOf(judged))
      out += "  " + PadRight(title, kTitleWidth) + Utf8FromWindows1252(text) + "\n";
  }
  return out;
}

}  // namespace texturon
