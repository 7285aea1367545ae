// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <mutex>
#include <set>
#include <string>
#include <string_view>

namespace texturon {

/// What batches wrote into one folder, so that no later one takes it for a measurement: a hidden file there,
/// ".texturon-outputs", with a line for each. A file is one of them by its name and its content, so that a measurement
/// that gets such a name is one.
///
/// A line: size, tab, mark of the content, tab, name; or a word for what grows from run to run, tab, name.
class OutputList {
public:
  explicit OutputList(const std::filesystem::path& folder);

  /// What a batch is about to write there. From any thread. The reason, once, where it cannot be noted: a sentence.
  std::string NoteProfile(const std::filesystem::path& file, std::string_view text);
  /// Files that are known by their kind and beginning: they grow or are made anew.
  enum class Kind { kRows, kFailures, kSummary, kQdas, kProvenance };
  std::string NoteFile(const std::filesystem::path& file, Kind kind);

  /// Whether the file of this folder is one that a batch wrote.
  bool Holds(const std::filesystem::path& file) const;

private:
  std::string Note(const std::string& line);

  std::filesystem::path path_;
  mutable std::mutex mutex_;
  std::set<std::string> lines_;
  std::multimap<std::string, std::string> marksOfName_;  ///< what stands before each name
  bool hasComplained_ = false;
};

}  // namespace texturon
