#include <algorithm>
#include <iostream>

#include "app/commands.h"
#include "core/charset.h"
#include "core/number_text.h"
#include "core/platform.h"
#include "formats/import.h"
#include "formats/plausibility.h"

namespace texturon {
namespace {

void PrintRow(std::string_view name, std::string_view text) {
  constexpr std::size_t kWidth = 16;
  std::cout << name << std::string(kWidth - name.size(), ' ') << Utf8FromWindows1252(text) << "\n";
}

void PrintProfile(const ImportedProfile& profile) {
  const std::string source = profile.spacingSource.empty() ? "" : " (" + profile.spacingSource + ")";
  const auto [low, high] = std::minmax_element(profile.heightsUM.begin(), profile.heightsUM.end());
  const auto steps = static_cast<double>(profile.heightsUM.size() - 1);
  PrintRow("identification", profile.identification);
  PrintRow("date", profile.date);
  PrintRow("points", IntegerText(static_cast<std::int64_t>(profile.heightsUM.size())));
  PrintRow("spacing", ShortestText(profile.spacingUM) + " um" + source);
  PrintRow("length", FixedText(steps * profile.spacingUM * 1e-3, 6) + " mm");
  PrintRow("heights", FixedText(*low, 6) + " to " + FixedText(*high, 6) + " um");
  PrintRow("tip radius", profile.tipRadiusMM > 0.0 ? ShortestText(profile.tipRadiusMM) + " mm" : "not stated");
  for (const std::string& warning : profile.warnings) PrintRow("warning", warning);
  for (const std::string& sign : ImplausibleSigns(profile)) PrintRow("warning", sign);
}

void PrintAttempts(const std::vector<ReadAttempt>& attempts) {
  for (const ReadAttempt& attempt : attempts) {
    switch (attempt.result.status) {
      case ReadResult::Status::kRead:
        PrintRow("read by", attempt.reader);
        break;
      case ReadResult::Status::kRefused:
        PrintRow("refused by", attempt.reader + ": " + attempt.result.reason);
        break;
      case ReadResult::Status::kNotRecognised:
        PrintRow("not taken by", attempt.reader + ": " + attempt.result.reason);
        break;
    }
  }
}

}  // namespace

int RunInspect(const std::string& file, const CommonOptions& common) {
  ConsolePrompts prompts({.answersYes = common.answer == "yes", .isQuiet = true});
  const auto setup = PrepareRun(common, prompts);
  if (!setup) return kExitRefused;
  const ImportOutcome outcome = LoadProfileFile(PathFromSystemText(file), setup->import, prompts);
  std::cout << "file            " << file << "\n";
  PrintAttempts(outcome.attempts);
  if (outcome.loaded) PrintProfile(outcome.profile);
  std::cout.flush();
  if (!outcome.loaded) Complain(file + " " + outcome.reason + (outcome.reason.ends_with('.') ? "" : "."));
  return outcome.loaded && std::cout ? kExitDone : kExitRefused;
}

}  // namespace texturon
