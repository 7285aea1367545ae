// SPDX-License-Identifier: Apache-2.0

#include "app/edition_output.h"

#include <algorithm>
#include <iostream>
#include <optional>
#include <utility>
#include <vector>

#include "app/commands.h"
#include "app/table_text.h"
#include "base/charset.h"
#include "base/json_writer.h"
#include "base/number_text.h"
#include "parameters/edition2021/edition_list.h"
#include "platform/platform.h"

namespace texturon {
namespace {

constexpr std::string_view kEditions[] = {"1997", "2021", "both"};

void SetEdition(const std::string& edition, StandardSettings& standard) {
  if (std::find(std::begin(kEditions), std::end(kEditions), edition) == std::end(kEditions)) {
    throw UsageError{"--edition " + edition + ": is none of 1997, 2021 and both."};
  }
  standard.Edition = edition;
}

void SetClass(const CommonOptions& options, AnalysisSettings& settings) {
  const ClassTable table = ClassesFrom(SystemTextFromPath(PathFromText(settings.standard.ClassTable)));
  const SettingClass* const chosen = FindClass(table, Windows1252FromUtf8(options.settingClass));
  if (chosen == nullptr) throw UsageError{"--class " + options.settingClass + ": there is no such class."};
  ApplyClass(*chosen, options.sections > 0 ? std::optional(options.sections) : std::nullopt, settings);
  if (options.edition.empty() && ChosenEdition(settings) == EditionChoice::k1997) settings.standard.Edition = "2021";
}

void AddFeatures(const CommonOptions& options, StandardSettings& standard) {
  for (const std::string& text : options.features) {
    const std::string fault = FaultOfFeature(Windows1252FromUtf8(text));
    if (!fault.empty()) throw UsageError{"--feature " + text + " " + Utf8FromWindows1252(fault) + "."};
    standard.features.push_back(Windows1252FromUtf8(text));
  }
}

/// "Rmr(c or p, dc)".
std::string WithArguments(const EditionRow& row) {
  std::string name = "R" + std::string(row.suffix);
  if (row.leastArguments > 0) name += "(" + std::string(row.arguments) + ")";
  return name;
}

std::string OlderText(const OlderRow& older) {
  std::string text(older.likeness == Likeness::kEqual ? "= " : older.likeness == Likeness::kNear ? "~ " : "new");
  return text + std::string(older.name);
}

void PrintJson() {
  JsonWriter json(JsonWriter::Layout::kIndented, &std::cout);
  const auto text = [&json](std::string_view key, std::string_view value) {
    json.Key(key);
    json.Text(Utf8FromWindows1252(value));
  };
  json.BeginArray();
  for (const EditionRow& row : EditionTable()) {
    json.BeginObject();
    text("name", "R" + std::string(row.suffix));
    text("arguments", row.arguments);
    text("unit", PrintedUnit(row.quantity.metricUnit));
    text("imperial_unit", PrintedUnit(row.quantity.imperialUnit));
    json.Key("imperial_factor");
    json.Number(row.quantity.imperialFactor);
    text("definition", row.definition);
    text("source", kEdition2021Title);
    text("edition", NameOf(Edition::k2021));
    json.Key("older");
    json.BeginObject();
    text("likeness", LikenessText(row.older.likeness));
    json.Key("name");
    row.older.name.empty() ? json.Null() : json.Text(Utf8FromWindows1252(row.older.name));
    text("why", row.older.why);
    json.EndObject();
    text("trust", TrustText(row.trust));
    json.EndObject();
  }
  json.EndArray();
  json.Finish();
  std::cout << "\n";
}

}  // namespace

ClassTable ClassesFrom(const std::string& file) {
  if (file.empty()) return BuiltInClasses();
  ClassTableResult read = ReadClassTable(PathFromSystemText(file));
  if (!read.reason.empty()) throw UsageError{file + " " + Utf8FromWindows1252(read.reason) + "."};
  return std::move(read.classes);
}

void ApplyEditionOptions(const CommonOptions& options, Settings& settings) {
  StandardSettings& standard = settings.analysis.standard;
  if (!options.edition.empty()) SetEdition(options.edition, standard);
  if (!options.classTable.empty()) {
    // Also where nothing asks for a class: a table that is named is one.
    ClassesFrom(options.classTable);
    standard.ClassTable = TextFromPath(PathFromSystemText(options.classTable));
  }
  if (!options.settingClass.empty()) {
    if (options.edition == "1997") throw UsageError{"--class is of the edition of 2021, --edition says 1997."};
    SetClass(options, settings.analysis);
  } else if (options.sections > 0) {
    if (standard.EvaluationLengthMM > 0.0 && standard.Sections > 0) {
      standard.EvaluationLengthMM *= static_cast<double>(options.sections) / standard.Sections;
    }
    standard.Sections = options.sections;
  }
  AddFeatures(options, standard);
}

int PrintEditionParameters(bool asJson) {
  if (asJson) {
    PrintJson();
    return FinishOutput(kExitDone);
  }
  std::vector<std::vector<std::string>> rows = {{"NAME", "UNIT", "BEFORE", "TRUST", "DEFINITION"}};
  for (const EditionRow& row : EditionTable()) {
    rows.push_back({Utf8FromWindows1252(WithArguments(row)), Utf8FromWindows1252(PrintedUnit(row.quantity.metricUnit)),
                    Utf8FromWindows1252(OlderText(row.older)), Utf8FromWindows1252(TrustText(row.trust)),
                    Utf8FromWindows1252(row.definition)});
  }
  std::cout << ColumnsText(rows);
  return FinishOutput(kExitDone);
}

}  // namespace texturon
