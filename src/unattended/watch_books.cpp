// SPDX-License-Identifier: Apache-2.0

#include "unattended/watch_books.h"

#include <system_error>
#include <utility>

#include "base/number_text.h"
#include "platform/append_file.h"
#include "platform/file_identity.h"

namespace texturon {
namespace {

constexpr const char* kJournalInFolder = ".texturon-watch-journal";
constexpr const char* kDoneInFolder = ".texturon-watch-done";

/// The place alone would not tell a drive from the empty folder that it is hung into, the identity alone changes with
/// the number that some systems give a drive anew at each start.
std::string KeyOf(const std::filesystem::path& folder) {
  std::error_code error;
  const std::filesystem::path place = std::filesystem::canonical(folder, error);
  const auto identity = IdentityOf(folder);
  std::string key = SystemTextFromPath(error ? folder : place);
  key += '\n' + IntegerText(static_cast<std::int64_t>(identity ? identity->number : 0));
  constexpr std::string_view kDigits = "0123456789abcdef";
  std::string name = "watch-";
  for (std::uint64_t mark = ContentMark(key), i = 0; i < 16; ++i, mark >>= 4) name += kDigits[mark & 15];
  return name;
}

bool IsNameAlone(const std::string& file) {
  const std::filesystem::path path = PathFromSystemText(file);
  return !file.empty() && path == path.filename() && file != "." && file != "..";
}

bool IsSameFile(const std::filesystem::path& one, const std::filesystem::path& other) {
  if (one == other) return true;
  const auto identity = IdentityOf(one);
  return identity && identity == IdentityOf(other);
}

std::string NotObeyed(const std::filesystem::path& path) {
  return FileSentence(path, std::string(kNotOwn) + " and is not obeyed");
}

}  // namespace

std::string DoneLine(const std::string& file, const FileStamp& stamp) {
  return IntegerText(static_cast<std::int64_t>(stamp.size)) + "\t" + IntegerText(stamp.time) + "\t" +
         EscapedName(file) + "\n";
}

WatchBooks::WatchBooks(std::filesystem::path folder, std::filesystem::path parameterFile,
                       std::filesystem::path stateFolder)
    : folder_(std::move(folder)), parameterFile_(std::move(parameterFile)), stateFolder_(std::move(stateFolder)) {}

std::string WatchBooks::Recall(std::vector<std::string>& remarks) {
  entry_.reset();
  done_.clear();
  const bool isPrivate = ChoosePlace(remarks);
  std::string reason = ReadJournal(journal_, isPrivate, remarks);
  if (reason.empty()) reason = ReadDone(doneList_, isPrivate, remarks);
  if (reason.empty() && isPrivate) reason = TakeOver(remarks);
  return reason;
}

/// Whether the books lie where nobody else can put any.
bool WatchBooks::ChoosePlace(std::vector<std::string>& remarks) {
  if (!stateFolder_.empty()) {
    const std::filesystem::path place = stateFolder_ / KeyOf(folder_);
    if (MakePrivateFolder(stateFolder_) && MakePrivateFolder(place)) {
      journal_ = place / "journal";
      doneList_ = place / "done";
      return true;
    }
    remarks.push_back(FileSentence(stateFolder_,
                                   "cannot be had for this user alone: what the watch keeps from run to "
                                   "run lies in the watched folder"));
  }
  journal_ = folder_ / kJournalInFolder;
  doneList_ = folder_ / kDoneInFolder;
  return false;
}

std::string WatchBooks::ReadJournal(const std::filesystem::path& journal, bool isPrivate,
                                    std::vector<std::string>& remarks) {
  const FileBytes text = ReadOwnFile(journal);
  if (text.missing) return {};
  if (text.reason == kNotOwn) {
    remarks.push_back(NotObeyed(journal));
    return {};
  }
  if (!text.ok()) return FileSentence(journal, text.reason);
  entry_ = ParseWatchEntry(text.bytes);
  std::string fault;
  if (!entry_ || !IsNameAlone(entry_->file)) {
    fault = "is damaged";
  } else if (!isPrivate && !entry_->parameterFile.empty() &&
             !IsSameFile(PathFromSystemText(entry_->parameterFile), parameterFile_)) {
    fault = "is of a run with another parameter file, " + TextFromPath(PathFromSystemText(entry_->parameterFile));
  }
  if (fault.empty()) return {};
  entry_.reset();
  return FileSentence(journal, fault + "; see to the file that was at hand and remove it");
}

std::string WatchBooks::ReadDone(const std::filesystem::path& list, bool isPrivate, std::vector<std::string>& remarks) {
  const FileBytes text = ReadOwnFile(list);
  if (text.reason == kNotOwn) {
    remarks.push_back(NotObeyed(list));
    // Ours gets the name, so that what is done from now on is remembered.
    const FileOutcome replaced = isPrivate ? FileOutcome{} : ReplaceSideFile(list, {});
    return replaced.ok() ? std::string() : FileSentence(list, replaced.reason);
  }
  if (!text.ok() && !text.missing) return FileSentence(list, text.reason);
  std::string_view rest = text.bytes;
  while (const auto line = TakeLine(rest)) done_.insert(std::string(*line) + "\n");
  return {};
}

/// What a watch without a folder of this user's own has left in the watched one.
std::string WatchBooks::TakeOver(std::vector<std::string>& remarks) {
  const std::filesystem::path journal = folder_ / kJournalInFolder;
  const std::filesystem::path list = folder_ / kDoneInFolder;
  FileOutcome outcome;
  if (!entry_) {
    std::string reason = ReadJournal(journal, false, remarks);
    if (!reason.empty()) return reason;
    if (entry_) {
      outcome = Write(*entry_);
      if (!outcome.ok()) return FileSentence(journal_, outcome.reason);
      outcome = RemoveDurably(journal);
      if (!outcome.ok()) return FileSentence(journal, outcome.reason);
    }
  }
  const FileBytes former = ReadOwnFile(list);
  if (former.reason == kNotOwn) remarks.push_back(NotObeyed(list));
  if (!former.ok()) return {};
  std::vector<std::string> lines;
  std::string_view rest = former.bytes;
  while (const auto line = TakeLine(rest)) lines.push_back(std::string(*line) + "\n");
  outcome = AddLines(lines);
  if (!outcome.ok()) return FileSentence(doneList_, outcome.reason);
  outcome = RemoveDurably(list);
  return outcome.ok() ? std::string() : FileSentence(list, outcome.reason);
}

FileOutcome WatchBooks::Write(const WatchEntry& entry) const {
  return ReplaceSideFile(journal_, WatchEntryText(entry));
}

FileOutcome WatchBooks::Clear() const {
  return RemoveDurably(journal_);
}

bool WatchBooks::IsDone(const std::string& file, const FileStamp& stamp) const {
  return done_.contains(DoneLine(file, stamp));
}

FileOutcome WatchBooks::Remember(const std::string& file, const FileStamp& stamp) {
  return AddLines({DoneLine(file, stamp)});
}

FileOutcome WatchBooks::AddLines(const std::vector<std::string>& lines) {
  std::string text;
  for (const std::string& line : lines) {
    if (!done_.contains(line)) text += line;
  }
  if (text.empty()) return {};
  AppendFile list(doneList_, AppendFile::Name::kOwn);
  if (list.state() != AppendFile::State::kHeld) return {list.outcome().ok() ? "is in use" : list.outcome().reason};
  if (!list.isOurs()) return {std::string(kNotOwn)};
  FileOutcome outcome = list.Append((list.endsInsideLine() ? "\n" : "") + text);
  if (outcome.ok()) outcome = list.Flush();
  if (outcome.ok()) done_.insert(lines.begin(), lines.end());
  return outcome;
}

}  // namespace texturon
