// SPDX-License-Identifier: Apache-2.0

#include "formats/import.h"

#include <algorithm>
#include <memory>
#include <new>
#include <string_view>
#include <utility>

#include "base/charset.h"
#include "base/number_text.h"
#include "base/sha256.h"
#include "base/text.h"
#include "formats/content_kinds.h"
#include "formats/plausibility.h"
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

/// What is told of a chain that read nothing: the reader that came nearest, or none.
const ReadAttempt* NearestOf(const std::vector<ReadAttempt>& attempts) {
  const ReadAttempt* nearest = nullptr;
  int most = 0;
  for (const ReadAttempt& attempt : attempts) {
    constexpr int kRefused = 100;
    constexpr int kMarked = 2;  // markers without a layout prove less than rows of numbers
    const bool isRefused = attempt.result.status == ReadResult::Status::kRefused;
    const int nearness = !isRefused ? 2 * attempt.result.nearness - 1 : attempt.hasRoutine ? kRefused : kMarked;
    if (nearness <= most) continue;
    nearest = &attempt;
    most = nearness;
  }
  return nearest;
}

std::string ReasonOf(const std::vector<ReadAttempt>& attempts, const ReadAttempt* nearest) {
  if (nearest == nullptr && attempts.size() == 1) nearest = &attempts.front();
  if (nearest == nullptr) {
    return "is recognised by none of the " + IntegerText(static_cast<std::int64_t>(attempts.size())) +
           " readers of its extension";
  }
  const std::string_view how = nearest->result.status == ReadResult::Status::kRefused ? "is refused by"
                               : nearest->result.nearness > 0                         ? "is not read by"
                                                                                      : "is not recognised by";
  return std::string(how) + " the reader of the " + nearest->reader + ": " + nearest->result.reason;
}

/// Reads a file whose extension is not known: by what its text begins with or holds, else as a table.
ImportOutcome ReadByContent(const ReaderInput& input) {
  const std::string foreign = ForeignKind(input.path, input.bytes);
  if (!foreign.empty()) return {.reason = foreign};
  const ExtensionEntry& entry = EntryOfContent(input.bytes);
  ImportOutcome outcome = ReadThroughChain(entry, input);
  if (outcome.loaded) {
    const bool isTable = !outcome.profile.decisions.empty();
    outcome.profile.warnings.push_back("the extension is not known; the content is read as " +
                                       (isTable ? "a table of numbers" : outcome.attempts.back().reader));
    input.prompts.Notice(outcome.profile.warnings.back());
    return outcome;
  }
  const std::string marked = MarkedLayout(input.bytes);
  const ReadAttempt& last = outcome.attempts.back();
  const bool isTable = outcome.attempts.size() == 1 && last.result.status == ReadResult::Status::kNotRecognised;
  outcome.reason = !marked.empty() ? marked
                                   : "has an extension that no reader is known for; " +
                                         (isTable ? "read as a table of numbers, " + last.result.reason
                                                  : "by its content it " + outcome.reason);
  return outcome;
}

void MarkInput(std::string_view bytes, ImportedProfile& profile) {
  profile.input.sha256 = Sha256Of(bytes);
  profile.input.bytes = bytes.size();
  if (profile.companion.empty()) return;
  const FileBytes companion = ReadRegularFile(profile.companion);
  if (companion.ok()) profile.input.companionSha256 = Sha256Of(companion.bytes);
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
    const ReadAttempt* const nearest = NearestOf(outcome.attempts);
    outcome.reason = ReasonOf(outcome.attempts, nearest);
    const bool isMarked = nearest != nullptr && !nearest->hasRoutine;
    if (isMarked && nearest->result.status == ReadResult::Status::kRefused)
      input.prompts.ShowMessage(nearest->result.reason);
    return outcome;
  }
  if (!(IsAscii(profile.identification) && IsAscii(profile.date)) && IsUtf8(input.bytes)) {
    profile.identification = TextOfFile(profile.identification, true);
    profile.date = TextOfFile(profile.date, true);
  }
  std::replace(profile.identification.begin(), profile.identification.end(), ',', ';');
  std::replace(profile.date.begin(), profile.date.end(), ',', ';');
  outcome.loaded = profile.spacingUM > 0.0;
  if (!outcome.loaded) outcome.reason = "has a point spacing that is not above 0";
  if (input.options.integratesSlopes && !profile.isIntegral) return {.reason = "is no table of slopes"};
  for (const std::string& warning : profile.warnings) input.prompts.Notice(warning);
  if (!outcome.loaded) return outcome;
  profile.input.reader = outcome.attempts.back().reader;
  for (const std::string& sign : ImplausibleSigns(profile)) input.prompts.Notice(sign);
  return outcome;
}

ImportOutcome LoadProfileFile(const std::filesystem::path& path, const ImportOptions& options, Prompts& prompts) {
  const ExtensionEntry* const entry = FindExtension(path);
  const bool isTakenWhole = options.marksInput || (entry != nullptr && entry->isTakenWhole);
  const FileBytes file = ReadRegularFile(path, isTakenWhole ? 0 : kMostLinesRead);
  if (!file.ok()) return {.reason = file.reason};
  return LoadProfileBytes(path, file.bytes, options, prompts);
}

ImportOutcome LoadProfileBytes(const std::filesystem::path& path, std::string_view bytes, const ImportOptions& options,
                               Prompts& prompts) {
  const ExtensionEntry* entry = FindExtension(path);
  if (entry == nullptr && options.knownExtensionsOnly)
    return {.reason = "has an extension that no reader is known for"};
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
    const ReaderInput input{path, PlainText(bytes, storage), options, prompts};
    ImportOutcome outcome = entry != nullptr ? ReadThroughChain(*entry, input) : ReadByContent(input);
    if (outcome.loaded && options.marksInput) MarkInput(bytes, outcome.profile);
    return outcome;
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
  set.instrumentValues = std::move(profile.instrumentValues);
  set.input = std::move(profile.input);
  return set;
}

}  // namespace texturon
