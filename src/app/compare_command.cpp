// SPDX-License-Identifier: Apache-2.0

#include <algorithm>
#include <filesystem>
#include <iostream>
#include <set>
#include <utility>

#include "analysis/practice.h"
#include "app/commands.h"
#include "app/table_text.h"
#include "base/charset.h"
#include "base/json_writer.h"
#include "base/number_text.h"
#include "base/text.h"
#include "parameters/catalogue.h"
#include "platform/platform.h"
#include "presentation/practice_ranking.h"
#include "settings/settings_file.h"
#include "settings/settings_text.h"

namespace texturon {
namespace {

using Cells = std::vector<std::string>;

const EmbeddedFile* FindPractice(std::string_view name) {
  const auto files = PracticeFiles();
  const auto found = std::find_if(files.begin(), files.end(),
                                  [name](const EmbeddedFile& file) { return EqualIgnoringCase(file.name, name); });
  return found != files.end() ? &*found : nullptr;
}

/// Puts a file, or a practice by its name, and single settings over what all sides have. Empty, with a sentence on
/// standard error, for a file that cannot be used; throws for what is no setting.
std::optional<Practice> PracticeOf(Practice practice, const std::string& name,
                                   const std::vector<std::string>& assignments, std::string_view option) {
  std::error_code ignored;
  const std::filesystem::path path = PathFromSystemText(name);
  const EmbeddedFile* const built = std::filesystem::exists(path, ignored) ? nullptr : FindPractice(name);
  std::string fault;
  if (built != nullptr) {
    fault = TakePractice(*built, practice);
  } else if (!name.empty()) {
    SilentPrompts nobody;
    const SettingsFileResult loaded = LoadSettings(path, practice.settings, nobody);
    if (!loaded.ok() || !loaded.found) {
      Complain(name +
               (loaded.ok() ? ": there is no such file, and no practice of this name." : " " + loaded.reason + "."));
      return std::nullopt;
    }
    if (!loaded.understoodAll) {
      Complain(name + " holds values that are not understood; settings --check names them.");
      return std::nullopt;
    }
    fault = TakeScope(IniFile(ReadIniFile(path).bytes), practice);
  }
  if (!fault.empty()) {
    ComplainOf(name, "is not used: " + fault);
    return std::nullopt;
  }
  for (const std::string& assignment : assignments) {
    const std::size_t equals = std::min(assignment.find('='), assignment.size());
    const std::string key = Windows1252FromUtf8(assignment.substr(0, equals));
    const std::string value =
        equals < assignment.size() ? Windows1252FromUtf8(assignment.substr(equals + 1)) : std::string();
    const std::string section = std::string(kScopeSection) + ".";
    const auto refusal = StartsWithIgnoringCase(key, section) ? SetScope(practice, key.substr(section.size()), value)
                                                              : SetOne(practice.settings, key, value).value_or("");
    if (equals == assignment.size() || !refusal.empty()) {
      throw UsageError{std::string(option) + " " + assignment + ": " +
                       (refusal.empty() ? "not of the form SECTION.KEY=VALUE" : Utf8FromWindows1252(refusal)) + "."};
    }
  }
  return practice;
}

std::string Figure(const std::optional<double>& value, const Quantity& quantity, bool metric, int figures) {
  return value ? SignificantText(quantity.Shown(*value, metric), figures) : "-";
}

/// A line a parameter and a step: what it changes, and what it does by itself.
std::vector<Cells> LinesOf(const std::vector<ComparedRow>& rows, bool metric) {
  std::vector<Cells> lines = {{"Parameter", "Step", "Change", "Alone", "Value", "Unit"}};
  for (const ComparedRow& row : rows) {
    const std::string unit = Utf8FromWindows1252(PrintedUnit(row.quantity.Unit(metric)));
    const auto value = [&](const std::optional<double>& number) { return Figure(number, row.quantity, metric, 6); };
    const auto change = [&](const std::optional<double>& number) { return Figure(number, row.quantity, metric, 3); };
    lines.push_back({Utf8FromWindows1252(row.name), "a", "", "", value(row.a), unit});
    for (const StepChange& step : row.steps) {
      lines.push_back({"", std::string(step.step), change(step.change), change(step.alone), "", unit});
    }
    lines.push_back({"", "(interaction)", "", change(row.Interaction()), "", unit});
    lines.push_back({"", "b", change(row.Difference()), "", value(row.b), unit});
  }
  return lines;
}

/// Columns from the third on are figures, as many as are told.
std::string TableOf(const std::vector<Cells>& lines, std::size_t figures, bool asMarkdown) {
  std::vector<std::size_t> widths(lines.front().size());
  for (const Cells& line : lines) {
    for (std::size_t i = 0; i < line.size(); ++i) widths[i] = std::max(widths[i], ShownWidth(line[i]));
  }
  std::string out;
  const auto isFigure = [&](std::size_t i) { return i > 1 && i < 2 + figures; };
  for (std::size_t n = 0; n < lines.size(); ++n) {
    std::string text;
    for (std::size_t i = 0; i < widths.size(); ++i) {
      const std::string cell = isFigure(i) ? PadLeft(lines[n][i], widths[i]) : PadRight(lines[n][i], widths[i]);
      text += asMarkdown ? "| " + cell + " " : (i > 0 ? "  " : "") + cell;
    }
    if (!asMarkdown) text.erase(text.find_last_not_of(' ') + 1);
    out += text + (asMarkdown ? "|\n" : "\n");
    if (asMarkdown && n == 0) {
      for (std::size_t i = 0; i < widths.size(); ++i) out += isFigure(i) ? "|---:" : "|---";
      out += "|\n";
    }
  }
  return out;
}

void WriteOptional(JsonWriter& json, std::string_view key, const std::optional<double>& value) {
  json.Key(key);
  value ? json.Number(*value) : json.Null();
}

void WriteComparison(const std::string& file, const std::vector<ComparedRow>& rows) {
  JsonWriter json(JsonWriter::Layout::kIndented, &std::cout);
  json.BeginObject();
  json.Key("file");
  json.Text(file);
  json.Key("rows");
  json.BeginArray();
  for (const ComparedRow& row : rows) {
    json.BeginObject();
    json.Key("name");
    json.Text(Utf8FromWindows1252(row.name));
    json.Key("unit");
    json.Text(Utf8FromWindows1252(PrintedUnit(row.quantity.metricUnit)));
    WriteOptional(json, "a", row.a);
    WriteOptional(json, "b", row.b);
    WriteOptional(json, "interaction", row.Interaction());
    json.Key("steps");
    json.BeginArray();
    for (const StepChange& step : row.steps) {
      json.BeginObject();
      json.Key("group");
      json.Text(step.step);
      WriteOptional(json, "change", step.change);
      WriteOptional(json, "alone", step.alone);
      json.EndObject();
    }
    json.EndArray();
    json.EndObject();
  }
  json.EndArray();
  json.EndObject();
  json.Finish();
  std::cout << "\n";
}

void WriteTried(const std::string& file, const std::vector<TriedPractice>& tried) {
  JsonWriter json(JsonWriter::Layout::kIndented, &std::cout);
  json.BeginObject();
  json.Key("file");
  json.Text(file);
  json.Key("tried");
  json.BeginArray();
  for (const TriedPractice& one : tried) {
    json.BeginObject();
    json.Key("practice");
    json.Text(one.name);
    WriteOptional(json, "long_cutoff_mm", one.cutoffMM);
    WriteOptional(json, "deviation", one.deviation);
    json.Key("values");
    json.BeginArray();
    for (const InstrumentMatch& match : one.matches) {
      json.BeginObject();
      json.Key("name");
      json.Text(Utf8FromWindows1252(match.instrument.name));
      json.Key("unit");
      json.Text(Utf8FromWindows1252(match.instrument.unit));
      WriteOptional(json, "instrument", match.instrument.value);
      WriteOptional(json, "here", match.here);
      json.EndObject();
    }
    json.EndArray();
    json.EndObject();
  }
  json.EndArray();
  json.EndObject();
  json.Finish();
  std::cout << "\n";
}

void PrintTried(const std::vector<TriedPractice>& tried, bool asMarkdown) {
  std::vector<Cells> lines = {{"Practice", "What it does", "Lc", "Off by", "Within 1 %"}};
  std::set<std::string_view> shown;
  for (const TriedPractice& one : tried) {
    if (!shown.insert(one.name).second) continue;  // its best cut-off
    lines.push_back({std::string(one.name), Utf8FromWindows1252(TitleOf(*FindPractice(one.name)).title),
                     SignificantText(one.cutoffMM, 3) + " mm", FixedText(100.0 * one.deviation, 2) + " %",
                     IntegerText(static_cast<std::int64_t>(one.Near())) + " of " +
                         IntegerText(static_cast<std::int64_t>(one.matches.size()))});
  }
  std::cout << TableOf(lines, 3, asMarkdown);
  if (tried.front().deviation > kExplained) std::cout << "\nNone of them comes near the instrument's values.\n";
}

int PrintPractices() {
  for (const EmbeddedFile& file : PracticeFiles()) {
    const PracticeTitle title = TitleOf(file);
    std::cout << PadRight(std::string(file.name), 32) << "  " << Utf8FromWindows1252(title.title) << ". "
              << Utf8FromWindows1252(title.remark) << "\n";
  }
  return FinishOutput(kExitDone);
}

}  // namespace

int RunCompare(const CompareOptions& options, const CommonOptions& common) {
  if (options.listsPractices) return PrintPractices();
  if (options.file.empty()) throw UsageError{"compare: give a profile file; see --help."};
  const InputFile file = InputFiles({options.file}, common).front();
  ConsolePrompts prompts({.answersYes = common.answer == "yes", .isQuiet = common.quiet});
  const auto setup = PrepareRun(common, prompts);
  if (!setup) return kExitRefused;
  const Practice base{.settings = setup->document.settings, .scope = setup->document.scope};
  const auto a = PracticeOf(base, options.a, options.aSet, "--a-set");
  const auto b = PracticeOf(base, options.b, options.bSet, "--b-set");
  if (!a || !b) return kExitRefused;
  Document document = setup->document;
  prompts.BeginFile(file.name);
  if (!LoadInto(document, file, *setup, prompts, SystemEnvironment())) return kExitRefused;
  const bool asksForTwo = !options.a.empty() || !options.b.empty() || !options.aSet.empty() || !options.bSet.empty();
  if (!asksForTwo) {
    if (document.profiles.instrumentValues.empty()) {
      throw UsageError{file.name + " brings no values of its instrument: give --a, --b, --a-set or --b-set."};
    }
    const std::vector<TriedPractice> tried = TryPractices(base, document.profiles);
    options.asJson ? WriteTried(file.name, tried) : PrintTried(tried, options.asMarkdown);
    return FinishOutput(kExitDone);
  }
  const std::vector<ComparedRow> rows = ComparePractices(document.profiles, *a, *b);
  const auto hasA = [](const ComparedRow& row) { return row.a.has_value(); };
  const auto hasB = [](const ComparedRow& row) { return row.b.has_value(); };
  const bool isMissing =
      !rows.empty() && (std::none_of(rows.begin(), rows.end(), hasA) || std::none_of(rows.begin(), rows.end(), hasB));
  if (isMissing) Complain(file.name + ": one of the two gives no value at all.");
  if (options.asJson) {
    WriteComparison(file.name, rows);
  } else {
    std::cout << TableOf(LinesOf(rows, document.settings.display.Metric), 3, options.asMarkdown);
  }
  return FinishOutput(isMissing ? kExitRefused : kExitDone);
}

}  // namespace texturon
