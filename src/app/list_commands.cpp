// SPDX-License-Identifier: Apache-2.0

#include <iostream>
#include <string>
#include <vector>

#include "app/commands.h"
#include "app/edition_output.h"
#include "app/table_text.h"
#include "base/charset.h"
#include "base/ini_file.h"
#include "base/json_writer.h"
#include "base/number_text.h"
#include "formats/recognition.h"
#include "parameters/catalogue.h"
#include "parameters/edition2021/edition_table.h"
#include "parameters/row_settings.h"
#include "platform/platform.h"
#include "settings/settings_check.h"
#include "settings/settings_file.h"
#include "settings/settings_listing.h"

namespace texturon {
namespace {

void PrintColumns(const std::vector<std::vector<std::string>>& rows) {
  std::cout << ColumnsText(rows);
}

int CheckSettingsFile(const std::string& file) {
  const std::filesystem::path path = PathFromSystemText(file);
  const FileBytes bytes = ReadIniFile(path);
  if (!bytes.ok()) {
    Complain(file + " " + bytes.reason + ".");
    return kExitRefused;
  }
  const std::vector<SettingsProblem> problems = CheckSettings(IniFile(bytes.bytes), FaultOfFeature);
  for (const SettingsProblem& problem : problems) {
    std::cout << EscapedControls(file) << ":" << IntegerText(static_cast<std::int64_t>(problem.line)) << ": "
              << EscapedControls(Utf8FromWindows1252(problem.text)) << "\n";
  }
  if (problems.empty()) std::cout << EscapedControls(file) << ": no problems\n";
  return FinishOutput(problems.empty() ? kExitDone : kExitRefused);
}

int PrintParametersJson() {
  JsonWriter json(JsonWriter::Layout::kIndented, &std::cout);
  const auto text = [&json](std::string_view key, std::string_view value) {
    json.Key(key);
    json.Text(Utf8FromWindows1252(value));
  };
  json.BeginArray();
  for (const MasterRow& row : MasterCatalogue()) {
    json.BeginObject();
    text("name", row.name);
    text("unit", PrintedUnit(row.quantity.metricUnit));
    text("imperial_unit", PrintedUnit(row.quantity.imperialUnit));
    json.Key("imperial_factor");
    json.Number(row.quantity.imperialFactor);
    text("definition", row.definition);
    text("source", row.source);
    text("edition", NameOf(row.edition));
    json.Key("settings");
    json.BeginArray();
    for (const SettingKey* const key : SettingsOfRow(row.name)) {
      json.Text(Utf8FromWindows1252(std::string(key->binding.section) + "." + std::string(key->binding.key)));
    }
    json.EndArray();
    json.EndObject();
  }
  json.EndArray();
  json.Finish();
  std::cout << "\n";
  return FinishOutput(kExitDone);
}

}  // namespace

int RunParameters(const ParametersOptions& options) {
  if (options.edition == NameOf(Edition::k2021)) return PrintEditionParameters(options.asJson);
  if (options.asJson) return PrintParametersJson();
  std::vector<std::vector<std::string>> rows = {{"NAME", "UNIT", "IMPERIAL", "FACTOR", "SOURCE", "DEFINITION"}};
  for (const MasterRow& row : MasterCatalogue()) {
    rows.push_back({Utf8FromWindows1252(row.name), Utf8FromWindows1252(PrintedUnit(row.quantity.metricUnit)),
                    Utf8FromWindows1252(PrintedUnit(row.quantity.imperialUnit)),
                    ShortestText(row.quantity.imperialFactor), Utf8FromWindows1252(row.source),
                    Utf8FromWindows1252(row.definition)});
  }
  PrintColumns(rows);
  return FinishOutput(kExitDone);
}

int RunFormats() {
  std::vector<std::vector<std::string>> rows = {{"EXTENSION", "READER", "TAKES"}};
  for (const ExtensionEntry& entry : ExtensionTable()) {
    std::string extension(entry.extension);
    for (const ProfileReader& reader : entry.chain) {
      rows.push_back({extension, Utf8FromWindows1252(reader.name), Utf8FromWindows1252(WhatItTakes(reader))});
      extension.clear();
    }
    for (const ProfileReader& reader : entry.chosenChain) {
      rows.push_back(
          {"", Utf8FromWindows1252(reader.name), "with --profile: " + Utf8FromWindows1252(WhatItTakes(reader))});
    }
  }
  PrintColumns(rows);
  std::cout << "\nWritten:\n";
  for (const WriterEntry& writer : WriterTable()) {
    std::cout << writer.extension << "  " << Utf8FromWindows1252(writer.name) << "\n";
  }
  return FinishOutput(kExitDone);
}

int RunSettings(const SettingsOptions& options) {
  if (!options.checkFile.empty()) return CheckSettingsFile(options.checkFile);
  std::vector<std::vector<std::string>> rows = {{"KEY", "TYPE", "UNIT", "DEFAULT", "MEANING"}};
  for (const SettingDescription& setting : DescribeSettings()) {
    std::string meaning = Utf8FromWindows1252(setting.meaning);
    if (!setting.choices.empty()) meaning += " (" + Utf8FromWindows1252(setting.choices) + ")";
    rows.push_back({Utf8FromWindows1252(setting.section) + "." + Utf8FromWindows1252(setting.key),
                    Utf8FromWindows1252(setting.type), Utf8FromWindows1252(setting.unit),
                    Utf8FromWindows1252(setting.defaultText), meaning});
  }
  PrintColumns(rows);
  return FinishOutput(kExitDone);
}

}  // namespace texturon
