// SPDX-License-Identifier: Apache-2.0

#include "platform/append_file.h"

#include <cerrno>
#include <system_error>
#include <thread>
#include <utility>

#include "platform/system_calls.h"

namespace texturon {

AppendFile::AppendFile(const std::filesystem::path& path, Name name) {
  // A file that was replaced between its opening and its lock is opened again under its name.
  constexpr int kAttempts = 16;
  for (int i = 0; i < kAttempts; ++i) {
    Open(path, name);
    if (state_ != State::kHeld || IsStillAt(path, handle_)) return;
    CloseFile(std::exchange(handle_, -1));
  }
  state_ = State::kInUse;
}

bool AppendFile::IsAt(const std::filesystem::path& path) const {
  return handle_ >= 0 && IsStillAt(path, handle_);
}

AppendFile::~AppendFile() {
  if (handle_ >= 0) CloseFile(handle_);
}

void AppendFile::Open(const std::filesystem::path& path, Name name) {
  state_ = State::kFailed;
  std::error_code error;
  if (std::filesystem::is_directory(path, error)) {
    outcome_.reason = "is a directory";
    return;
  }
  handle_ = OpenFile(path, name == Name::kOwn ? OpenMode::kSideLog : OpenMode::kAppend);
  if (handle_ < 0) {
    if (FailedBecauseInUse()) state_ = State::kInUse;
    outcome_.reason = Failure("cannot be opened for writing", errno);
    return;
  }
  FileStatus status;
  if (!ReadStatus(handle_, status) || !status.isRegular) {
    outcome_.reason = "is no regular file";
    return;
  }
  if (name == Name::kOwn && !status.hasOneName) {
    outcome_.reason = "has a second name";
    return;
  }
  if (!Lock(handle_)) {
    if (errno == EWOULDBLOCK || errno == EINTR) {
      state_ = State::kInUse;
    } else {
      outcome_.reason = Failure("cannot be locked", errno);
    }
    return;
  }
  state_ = State::kHeld;
  ReadStatus(handle_, status);  // again: another may have added to it before the lock
  size_ = static_cast<std::uint64_t>(status.size);
  isOurs_ = status.isOurs;
  char last = '\n';
  if (size_ > 0 && SeekTo(handle_, static_cast<std::int64_t>(size_) - 1) >= 0) ReadSome(handle_, &last, 1);
  endsInsideLine_ = last != '\n';
}

std::string AppendFile::Read(std::uint64_t at, std::size_t most) const {
  std::string bytes(most, '\0');
  std::size_t size = 0;
  if (SeekTo(handle_, static_cast<std::int64_t>(at)) >= 0) {
    while (size < most) {
      const std::ptrdiff_t got = ReadSome(handle_, bytes.data() + size, most - size);
      if (got <= 0) break;
      size += static_cast<std::size_t>(got);
    }
  }
  bytes.resize(size);
  return bytes;
}

FileOutcome AppendFile::Append(std::string_view bytes) {
  if (!WriteAll(handle_, bytes)) {
    const int code = errno;
    Truncate(handle_, static_cast<std::int64_t>(size_));
    return {Failure("cannot be written", code)};
  }
  size_ += bytes.size();
  if (!bytes.empty()) endsInsideLine_ = bytes.back() != '\n';
  return {};
}

FileOutcome AppendFile::CutTo(std::uint64_t size) {
  if (Truncate(handle_, static_cast<std::int64_t>(size)) != 0) return {Failure("cannot be written", errno)};
  size_ = size;
  endsInsideLine_ = false;
  return {};
}

FileOutcome AppendFile::Flush() {
  if (FlushToDisk(handle_) != 0) return {Failure("cannot be written", errno)};
  return {};
}

std::unique_ptr<AppendFile> WaitForAppendFile(const std::filesystem::path& path, std::chrono::milliseconds patience,
                                              const std::function<bool()>& givesUp, AppendFile::Name name) {
  constexpr std::chrono::milliseconds kStep(5);
  const auto end = std::chrono::steady_clock::now() + patience;
  for (;;) {
    auto file = std::make_unique<AppendFile>(path, name);
    const bool isOver = std::chrono::steady_clock::now() >= end || (givesUp && givesUp());
    if (file->state() != AppendFile::State::kInUse || isOver) return file;
    file.reset();
    std::this_thread::sleep_for(kStep);
  }
}

}  // namespace texturon
