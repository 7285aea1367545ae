// SPDX-License-Identifier: Apache-2.0

#include "formats/import.h"

#include <algorithm>
#include <memory>
#include <new>
#include <string_view>
#include <utility>

#include "base/charset.h"
#include "base/number_text.h"
#include "base/text.h"
#include "formats/recognition.h"
#include "formats/text_lines.h"
#include "platform/platform.h"

namespace texturon {
namespace {

/// The entry of a file's extension, which is what follows the last dot of its name, even where nothing precedes it.
const ExtensionEntry* FindExtension(const std::filesystem::path& path) {
  const std::string name = TextFromPath(path.filename());
  const std::size_t dot = name.rfind('.');
  if (dot == std::string::npos) return nullptr;
  const std::string_view extension = std::string_view(name).substr(dot);
  const auto table = ExtensionTable();
  const auto entry = std::find_if(table.begin(), table.end(), [&extension](const ExtensionEntry& candidate) {
    return EqualIgnoringCase(candidate.extension, extension);
  });
  return entry != table.end() ? &*entry : nullptr;
}

/// The sentence for a chain that read nothing: the reason of the first reader that recognised the file, else the
/// last's.
std::string ReasonOf(const std::vector<ReadAttempt>& attempts) {
  const auto recognised = std::find_if(attempts.begin(), attempts.end(), [](const ReadAttempt& attempt) {
    return attempt.result.status == ReadResult::Status::kRefused;
  });
  const auto told = [](const ReadAttempt& attempt) { return attempt.reader + ": " + attempt.result.reason; };
  if (recognised != attempts.end()) return "is refused by the reader of the " + told(*recognised);
  if (attempts.size() == 1) return "is not recognised by the reader of the " + told(attempts.back());
  return "is recognised by none of the " + IntegerText(static_cast<std::int64_t>(attempts.size())) +
         " readers of its extension; the last is that of the " + told(attempts.back());
}

}  // namespace

ImportOutcome ReadThroughChain(const ExtensionEntry& entry, const ReaderInput& input) {
  const bool isChosen = input.options.profileChoice && !entry.chosenChain.empty();
  ImportOutcome outcome;
  for (const ProfileReader& reader : isChosen ? entry.chosenChain : entry.chain) {
    outcome.profile = {};
    ReadResult result = RunReader(reader, input, outcome.profile);
    const bool ends = result.status == ReadResult::Status::kRead;
    outcome.attempts.push_back({std::string(reader.name), std::move(result), reader.read != nullptr});
    if (ends) break;
  }
  ImportedProfile& profile = outcome.profile;
  const bool isRead = outcome.attempts.back().result.status == ReadResult::Status::kRead;
  const bool isLeft = entry.ignoresResult && profile.spacingUM > 0.0 && !profile.heightsUM.empty();
  if (!isRead && !isLeft) {
    outcome.reason = ReasonOf(outcome.attempts);
    for (const ReadAttempt& attempt : outcome.attempts) {
      if (attempt.result.status != ReadResult::Status::kRefused || attempt.hasRoutine) continue;
      input.prompts.ShowMessage(attempt.result.reason);
      break;
    }
    return outcome;
  }
  std::replace(profile.identification.begin(), profile.identification.end(), ',', ';');
  std::replace(profile.date.begin(), profile.date.end(), ',', ';');
  outcome.loaded = profile.spacingUM > 0.0;
  if (!outcome.loaded) outcome.reason = "has a point spacing that is not above 0";
  for (const std::string& warning : profile.warnings) input.prompts.Notice(warning);
  return outcome;
}

ImportOutcome LoadProfileFile(const std::filesystem::path& path, const ImportOptions& options, Prompts& prompts) {
  const ExtensionEntry* const entry = FindExtension(path);
  const FileBytes file = ReadRegularFile(path, entry != nullptr && entry->isTakenWhole ? 0 : kMostLinesRead);
  if (!file.ok()) return {.reason = file.reason};
  return LoadProfileBytes(path, file.bytes, options, prompts);
}

ImportOutcome LoadProfileBytes(const std::filesystem::path& path, std::string_view bytes, const ImportOptions& options,
                               Prompts& prompts) {
  const ExtensionEntry* entry = FindExtension(path);
  if (entry == nullptr) return {.reason = "has an extension that no reader is known for"};
  if (bytes.empty()) return {.reason = "is empty"};
  constexpr std::size_t kTakesTime = 8'000'000;
  std::unique_ptr<Progress> progress;
  if (bytes.size() >= kTakesTime) {
    const std::string text = "Loading " + TextFromPath(path.filename()) + "...";
    progress = prompts.OpenProgress(text, text);
    progress->Advance(0);
  }
  try {
    std::string storage;
    return ReadThroughChain(*entry, {path, PlainText(bytes, storage), options, prompts});
  } catch (const std::bad_alloc&) {
    return {.reason = std::string(kNoMemory)};
  }
}

ProfileSet MakeProfileSet(ImportedProfile&& profile, std::string sourcePath) {
  ProfileSet set = MakeProfileSet(std::move(profile.heightsUM), profile.spacingUM);
  set.identification = std::move(profile.identification);
  set.dateTime = std::move(profile.date);
  set.sourcePath = std::move(sourcePath);
  set.tipRadiusMM = profile.tipRadiusMM;
  return set;
}

}  // namespace texturon
