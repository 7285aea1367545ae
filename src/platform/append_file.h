// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "platform/platform.h"

namespace texturon {

/// A file to which whole lines are added while no other of our writers has it: it is held by an exclusive advisory lock
/// (on Windows by refusing to share it), across threads and processes, until the object goes.
class AppendFile {
public:
  enum class State { kHeld, kInUse, kFailed };
  /// Whose idea the file's name is. One that the user did not choose is refused where it is a symbolic link or has a
  /// second name: others may have put it there.
  enum class Name { kChosen, kOwn };

  /// Opens the file, creating it where it is not there, and takes the lock if nobody has it.
  explicit AppendFile(const std::filesystem::path& path, Name name = Name::kChosen);
  ~AppendFile();
  AppendFile(const AppendFile&) = delete;
  AppendFile& operator=(const AppendFile&) = delete;

  State state() const { return state_; }
  /// Why it could not be opened.
  const FileOutcome& outcome() const { return outcome_; }
  /// Bytes in the file; 0 for a new one.
  std::uint64_t size() const { return size_; }
  bool endsInsideLine() const { return endsInsideLine_; }
  bool isOurs() const { return isOurs_; }  ///< belongs to this user
  /// What stands in the file from a place on: so many bytes, or as many as there are. Some systems let nobody read it
  /// by another way while it is held.
  std::string Read(std::uint64_t at, std::size_t most) const;
  /// Whether the file that is held still bears its name.
  bool IsAt(const std::filesystem::path& path) const;

  /// Adds all of `bytes` or nothing: what a full disk took of them is cut off again.
  FileOutcome Append(std::string_view bytes);
  /// Drops everything behind `size`.
  FileOutcome CutTo(std::uint64_t size);
  /// Returns once what was added is on the disk.
  FileOutcome Flush();

private:
  void Open(const std::filesystem::path& path, Name name);

  int handle_ = -1;
  State state_ = State::kFailed;
  FileOutcome outcome_;
  std::uint64_t size_ = 0;
  bool endsInsideLine_ = false;
  bool isOurs_ = false;
};

/// Opens an AppendFile, trying again while another holds it: every few milliseconds until `patience` is over or
/// `givesUp` returns true.
std::unique_ptr<AppendFile> WaitForAppendFile(const std::filesystem::path& path, std::chrono::milliseconds patience,
                                              const std::function<bool()>& givesUp = {},
                                              AppendFile::Name name = AppendFile::Name::kChosen);

}  // namespace texturon
