// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <filesystem>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "platform/platform.h"
#include "unattended/watch_journal.h"

namespace texturon {

/// What a watch keeps from run to run: the entry at hand, and the files that are done where they are not deleted. In a
/// private folder of this user's own, by the watched folder's place and identity, so that nobody else has a say in what
/// the next run does. Where there is none, in files of the watched folder that begin with ".texturon-watch", which are
/// obeyed only where they are this user's own and name this run's own files; those that are left there from then are
/// taken over by the same rule.
class WatchBooks {
public:
  WatchBooks(std::filesystem::path folder, std::filesystem::path parameterFile, std::filesystem::path stateFolder);

  /// Takes up what a former run left of a folder that is there. Why that cannot be, a sentence. `remarks` gets what is
  /// not obeyed, a sentence each.
  std::string Recall(std::vector<std::string>& remarks);

  /// What was about to be done when the former run ended.
  std::optional<WatchEntry> TakeEntry() { return std::exchange(entry_, std::nullopt); }
  FileOutcome Write(const WatchEntry& entry) const;
  FileOutcome Clear() const;
  const std::filesystem::path& journal() const { return journal_; }

  bool IsDone(const std::string& file, const FileStamp& stamp) const;
  FileOutcome Remember(const std::string& file, const FileStamp& stamp);
  const std::filesystem::path& doneList() const { return doneList_; }

private:
  bool ChoosePlace(std::vector<std::string>& remarks);
  std::string ReadJournal(const std::filesystem::path& journal, bool isPrivate, std::vector<std::string>& remarks);
  std::string ReadDone(const std::filesystem::path& list, bool isPrivate, std::vector<std::string>& remarks);
  std::string TakeOver(std::vector<std::string>& remarks);
  FileOutcome AddLines(const std::vector<std::string>& lines);

  std::filesystem::path folder_;
  std::filesystem::path parameterFile_;
  std::filesystem::path stateFolder_;
  std::filesystem::path journal_;
  std::filesystem::path doneList_;
  std::optional<WatchEntry> entry_;
  std::set<std::string> done_;
};

/// How a file is remembered: size, time, name, each behind a tab, in one line.
std::string DoneLine(const std::string& file, const FileStamp& stamp);

}  // namespace texturon
