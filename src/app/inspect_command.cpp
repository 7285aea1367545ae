// SPDX-License-Identifier: Apache-2.0

#include <algorithm>
#include <iostream>
#include <vector>

#include "app/commands.h"
#include "base/charset.h"
#include "base/json_writer.h"
#include "base/number_text.h"
#include "formats/import.h"
#include "formats/plausibility.h"
#include "platform/platform.h"

namespace texturon {
namespace {

/// What is told of a profile beside what the file states.
struct Findings {
  double lengthMM = 0.0;
  double lastPointMM = 0.0;
  double lowestUM = 0.0;
  double highestUM = 0.0;
  std::vector<std::string> warnings;
};

Findings FindingsOf(const ImportedProfile& profile) {
  const auto [low, high] = std::minmax_element(profile.heightsUM.begin(), profile.heightsUM.end());
  const auto points = static_cast<std::int64_t>(profile.heightsUM.size());
  Findings findings{.lengthMM = LengthOfPoints(points, profile.spacingUM) * kMillimetresPerMicrometre,
                    .lastPointMM = LengthOfPoints(points - 1, profile.spacingUM) * kMillimetresPerMicrometre,
                    .lowestUM = *low,
                    .highestUM = *high,
                    .warnings = profile.warnings};
  for (std::string& sign : ImplausibleSigns(profile)) findings.warnings.push_back(std::move(sign));
  return findings;
}

void PrintRow(std::string_view name, std::string_view text) {
  constexpr std::size_t kWidth = 16;
  std::cout << name << std::string(kWidth - name.size(), ' ') << EscapedControls(Utf8FromWindows1252(text)) << "\n";
}

void PrintProfile(const ImportedProfile& profile) {
  const Findings findings = FindingsOf(profile);
  const std::string source = profile.spacingSource.empty() ? "" : " (" + profile.spacingSource + ")";
  PrintRow("identification", profile.identification);
  PrintRow("date", profile.date);
  PrintRow("points", IntegerText(static_cast<std::int64_t>(profile.heightsUM.size())));
  PrintRow("spacing", ShortestText(profile.spacingUM) + " um" + source);
  PrintRow("length",
           FixedText(findings.lengthMM, 6) + " mm, the last point at " + FixedText(findings.lastPointMM, 6) + " mm");
  PrintRow("heights", FixedText(findings.lowestUM, 6) + " to " + FixedText(findings.highestUM, 6) + " um");
  PrintRow("tip radius", profile.tipRadiusMM > 0.0 ? ShortestText(profile.tipRadiusMM) + " mm" : "not stated");
  for (const std::string& decision : profile.decisions) PrintRow("taken", decision);
  for (const std::string& warning : findings.warnings) PrintRow("warning", warning);
}

/// A status as a row's title and as a word for programs.
struct StatusNames {
  std::string_view title;
  std::string_view word;
};

StatusNames NamesOf(ReadResult::Status status) {
  switch (status) {
    case ReadResult::Status::kRead:
      return {"read by", "read"};
    case ReadResult::Status::kRefused:
      return {"refused by", "refused"};
    case ReadResult::Status::kNotRecognised:
      break;
  }
  return {"not taken by", "not_recognised"};
}

void PrintTable(const std::string& file, const ImportOutcome& outcome) {
  std::cout << "file            " << EscapedControls(file) << "\n";
  for (const ReadAttempt& attempt : outcome.attempts) {
    const std::string reason = attempt.result.reason.empty() ? "" : ": " + attempt.result.reason;
    PrintRow(NamesOf(attempt.result.status).title, attempt.reader + reason);
  }
  if (outcome.loaded) PrintProfile(outcome.profile);
}

class InspectionJson {
public:
  explicit InspectionJson(JsonWriter::Layout layout) : json_(layout) {}

  std::string Write(const std::string& file, const ImportOutcome& outcome) {
    json_.BeginObject();
    json_.Key("file");
    json_.Text(file);
    json_.Key("loaded");
    json_.Bool(outcome.loaded);
    if (!outcome.loaded) Text("reason", outcome.reason);
    json_.Key("attempts");
    json_.BeginArray();
    for (const ReadAttempt& attempt : outcome.attempts) {
      json_.BeginObject();
      Text("reader", attempt.reader);
      Text("status", NamesOf(attempt.result.status).word);
      Text("reason", attempt.result.reason);
      json_.EndObject();
    }
    json_.EndArray();
    if (outcome.loaded) Profile(outcome.profile);
    json_.EndObject();
    return json_.Result();
  }

private:
  void Profile(const ImportedProfile& profile) {
    const Findings findings = FindingsOf(profile);
    Text("identification", profile.identification);
    Text("date", profile.date);
    json_.Key("point_count");
    json_.Integer(static_cast<std::int64_t>(profile.heightsUM.size()));
    Number("spacing_um", profile.spacingUM);
    Text("spacing_source", profile.spacingSource);
    // Programs have read it so from the first version on.
    Number("length_mm", findings.lastPointMM);
    Number("lowest_um", findings.lowestUM);
    Number("highest_um", findings.highestUM);
    json_.Key("tip_radius_mm");
    profile.tipRadiusMM > 0.0 ? json_.Number(profile.tipRadiusMM) : json_.Null();
    Texts("decisions", profile.decisions);
    Texts("warnings", findings.warnings);
  }
  void Texts(std::string_view key, const std::vector<std::string>& texts) {
    json_.Key(key);
    json_.BeginArray();
    for (const std::string& text : texts) json_.Text(Utf8FromWindows1252(text));
    json_.EndArray();
  }
  void Text(std::string_view key, std::string_view text) {
    json_.Key(key);
    json_.Text(Utf8FromWindows1252(text));
  }
  void Number(std::string_view key, double value) {
    json_.Key(key);
    json_.Number(value);
  }

  JsonWriter json_;
};

ImportOutcome Load(const InputFile& file, const ImportOptions& options, Prompts& prompts) {
  if (!file.isStandardInput) return LoadProfileFile(file.path, options, prompts);
  const FileBytes content = ReadStandardInput();
  if (!content.ok()) return {.reason = content.reason};
  return LoadProfileBytes(file.path, content.bytes, options, prompts);
}

}  // namespace

int RunInspect(const InspectOptions& inspect, const CommonOptions& common) {
  const std::vector<InputFile> files = InputFiles(inspect.files, common);
  ConsolePrompts prompts({.answersYes = common.answer == "yes", .isQuiet = true});
  const auto setup = PrepareRun(common, prompts);
  if (!setup) return kExitRefused;
  int status = kExitDone;
  for (const InputFile& file : files) {
    const ImportOutcome outcome = Load(file, setup->import, prompts);
    if (inspect.asJson) {
      InspectionJson json(files.size() == 1 ? JsonWriter::Layout::kIndented : JsonWriter::Layout::kOneLine);
      std::cout << json.Write(file.name, outcome) << "\n";
    } else {
      if (&file != &files.front()) std::cout << "\n";
      PrintTable(file.name, outcome);
    }
    if (outcome.loaded) continue;
    std::cout.flush();
    ComplainOf(file.name, outcome.reason);
    status = kExitRefused;
  }
  return FinishOutput(status);
}

}  // namespace texturon
