// SPDX-License-Identifier: Apache-2.0

#include "analysis/provenance_json.h"

#include <cstdint>
#include <variant>

#include "base/charset.h"
#include "base/program_version.h"
#include "settings/settings_in_force.h"

namespace texturon {
namespace {

void WriteValue(JsonWriter& json, const SettingValue& value) {
  if (const auto* text = std::get_if<std::string>(&value)) json.Text(Utf8FromWindows1252(*text));
  if (const auto* number = std::get_if<std::int32_t>(&value)) json.Integer(*number);
  if (const auto* flag = std::get_if<bool>(&value)) json.Bool(*flag);
  if (const auto* number = std::get_if<double>(&value)) json.Number(*number);
}

void WriteTextOrNull(JsonWriter& json, std::string_view key, const std::string& text) {
  json.Key(key);
  text.empty() ? json.Null() : json.Text(text);
}

void WriteFlag(JsonWriter& json, std::string_view key, bool value) {
  json.Key(key);
  json.Bool(value);
}

void WriteNumber(JsonWriter& json, std::string_view key, double value) {
  json.Key(key);
  json.Number(value);
}

void WriteScope(JsonWriter& json, const AnalysisScope& scope) {
  json.Key("region");
  // A whole number of cut-offs sets its region anew.
  if (scope.region && !scope.wholeCutoffs) {
    json.BeginObject();
    json.Key("mode");
    json.Integer(scope.region->mode);
    WriteNumber(json, "start_mm", scope.region->startMM);
    WriteNumber(json, "end_offset_mm", scope.region->endOffsetMM);
    WriteNumber(json, "length_mm", scope.region->lengthMM);
    json.EndObject();
  } else {
    json.Null();
  }
  json.Key("exclusion");
  if (scope.exclusion) {
    const std::int32_t ends[] = {scope.exclusion->first, scope.exclusion->last};
    json.Integers(ends);
  } else {
    json.Null();
  }
  WriteFlag(json, "whole_cutoffs", scope.wholeCutoffs.has_value());
  WriteFlag(json, "all_data_for_form", scope.allDataForForm);
}

void WriteImport(JsonWriter& json, const RunRequest& request) {
  const ImportOptions& import = request.import;
  json.Key("profile");
  import.profileChoice ? json.Integer(*import.profileChoice) : json.Null();
  json.Key("column");
  json.Integer(import.column);
  json.Key("spacing_um");
  import.spacingUM ? json.Number(*import.spacingUM) : json.Null();
  WriteFlag(json, "slope", import.integratesSlopes);
  json.Key("answer");
  json.Text(request.answersYes ? "yes" : "no");
  WriteTextOrNull(json, "read_as", request.readAs);
}

}  // namespace

void WriteProgram(JsonWriter& json) {
  json.Key("program");
  json.BeginObject();
  json.Key("name");
  json.Text("texturon");
  json.Key("version");
  json.Text(ProgramVersion());
  json.EndObject();
}

void WriteInput(JsonWriter& json, const InputMark& input) {
  json.Key("input");
  if (input.sha256.empty()) return json.Null();
  json.BeginObject();
  json.Key("sha256");
  json.Text(input.sha256);
  json.Key("bytes");
  json.Integer(static_cast<std::int64_t>(input.bytes));
  json.Key("reader");
  json.Text(Utf8FromWindows1252(input.reader));
  if (!input.companionSha256.empty()) {
    json.Key("companion_sha256");
    json.Text(input.companionSha256);
  }
  json.EndObject();
}

void WriteRequest(JsonWriter& json, const Document& document, const RunRequest& request) {
  json.Key("settings");
  json.BeginObject();
  WriteTextOrNull(json, "file", request.settingsFile);
  json.Key("in_force");
  json.BeginObject();
  for (const SettingInForce& setting : SettingsInForce(document.settings)) {
    json.Key(setting.name);
    WriteValue(json, setting.value);
  }
  json.EndObject();
  json.EndObject();
  json.Key("request");
  json.BeginObject();
  WriteScope(json, document.scope);
  WriteFlag(json, "invert", document.profiles.inverted);
  WriteImport(json, request);
  json.EndObject();
}

}  // namespace texturon
