// SPDX-License-Identifier: Apache-2.0

#include "platform/platform.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <new>
#include <random>
#include <system_error>
#include <utility>

#include "base/charset.h"
#include "base/number_text.h"
#include "platform/file_identity.h"
#include "platform/system_calls.h"

namespace texturon {
namespace {

constexpr std::size_t kLargestFile = std::size_t{256} << 20;
constexpr std::size_t kReadStep = std::size_t{1} << 18;
constexpr std::size_t kPiece = std::size_t{16} << 20;  // what a file of few lines is read as at most
constexpr std::string_view kLoop = "is a loop of symbolic links";

class File {
public:
  explicit File(int handle) : handle_(handle) {}
  ~File() { Close(); }
  File(const File&) = delete;
  File& operator=(const File&) = delete;

  bool isOpen() const { return handle_ >= 0; }
  int handle() const { return handle_; }
  bool Close() {
    const int handle = std::exchange(handle_, -1);
    return handle < 0 || CloseFile(handle) == 0;
  }
  bool Write(std::string_view bytes) const { return WriteAll(handle_, bytes); }

private:
  int handle_;
};

FileBytes ReadOpenFile(int file, std::size_t expectedSize, std::size_t mostLines) {
  FileBytes result;
  std::size_t lines = 0;
  if (expectedSize > kLargestFile) return {"", "is larger than 256 MiB"};
  result.bytes.reserve(mostLines > 0 ? std::min(expectedSize, kPiece) : expectedSize);
  // By way of a piece that stays in the processor's cache: to make the text as long as the file first writes it twice.
  const std::size_t room = expectedSize > 0 ? std::min(expectedSize + 1, kReadStep) : kReadStep;
  const auto piece = std::make_unique_for_overwrite<char[]>(room);
  while (mostLines == 0 || lines <= mostLines) {
    const std::ptrdiff_t got = ReadSome(file, piece.get(), room);
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) return {"", Failure("cannot be read", errno)};
    if (got == 0) break;
    if (mostLines > 0 && expectedSize > kPiece) {
      lines += static_cast<std::size_t>(std::count(piece.get(), piece.get() + got, '\n'));
    }
    result.bytes.append(piece.get(), static_cast<std::size_t>(got));
    if (result.bytes.size() > kLargestFile) return {"", "is larger than 256 MiB"};
  }
  return result;
}

/// Opens and reads: any file, or a regular one alone.
FileBytes ReadFileAt(const std::filesystem::path& path, OpenMode mode, std::size_t mostLines) {
  const File file(OpenFile(path, mode));
  if (!file.isOpen()) {
    const int code = errno;
    std::error_code error;
    if (std::filesystem::is_directory(path, error)) return {"", "is a directory"};
    if (code == ELOOP) return {"", std::string(mode == OpenMode::kReadOwn ? kNotOwn : kLoop)};
    if (code == ENOENT || code == ENOTDIR) return {"", "does not exist", true};
    return {"", Failure("cannot be opened", code)};
  }
  FileStatus status;
  if (!ReadStatus(file.handle(), status)) return {"", Failure("cannot be read", errno)};
  if (status.isDirectory) return {"", "is a directory"};
  const bool isOwn = status.isRegular && status.isOurs && status.hasOneName;
  if (mode == OpenMode::kReadOwn && !isOwn) return {"", std::string(kNotOwn)};
  if (mode == OpenMode::kReadAtOnce && !status.isRegular) return {"", "is no regular file"};
  try {
    return ReadOpenFile(file.handle(), static_cast<std::size_t>(std::max<std::int64_t>(status.size, 0)), mostLines);
  } catch (const std::bad_alloc&) {
    return {"", std::string(kNoMemory)};
  }
}

FileOutcome WriteDirectly(const std::filesystem::path& path, std::string_view bytes) {
  File file(OpenFile(path, OpenMode::kWrite));
  if (!file.isOpen()) return {Failure("cannot be opened for writing", errno)};
  if (!file.Write(bytes) || !file.Close()) return {Failure("cannot be written", errno)};
  return {};
}

// A name beside `path` that nobody else has: short enough for any file system, hidden where a dot hides.
std::filesystem::path TemporaryName(const std::filesystem::path& path) {
  static std::atomic<std::uint32_t> counter = 0;
  std::random_device random;
  return path.parent_path() / (".texturon-" + IntegerText(random()) + "-" + IntegerText(counter++) + ".tmp");
}

// A second name for the file in place of the first, which cannot replace another file as a rename does.
bool RenameToNew(const std::filesystem::path& from, const std::filesystem::path& to) {
  std::error_code error;
  std::filesystem::create_hard_link(from, to, error);
  std::error_code ignored;
  const bool hasNoSecondNames = error && error != std::errc::file_exists && !std::filesystem::exists(to, ignored);
  if (hasNoSecondNames) return RenameOver(from, to, true);
  errno = error.value();
  if (!error) FlushFolderOf(to);
  return !error && std::filesystem::remove(from, ignored);
}

enum class OldFile { kReplaced, kReplacedKeepingPermissions, kLeft };

FileOutcome WriteAndRename(const std::filesystem::path& target, OldFile oldFile, std::string_view bytes,
                           FlushFile flush) {
  constexpr int kAttempts = 16;
  std::filesystem::path temporary;
  int handle = -1;
  for (int i = 0; i < kAttempts && handle < 0; ++i) {
    temporary = TemporaryName(target);
    handle = OpenFile(temporary, OpenMode::kCreate);
    if (handle < 0 && errno != EEXIST) break;
  }
  if (handle < 0) return {Failure("cannot be written: no file can be created in its folder", errno)};
  FileOutcome outcome;
  {
    File file(handle);
    if (oldFile == OldFile::kReplacedKeepingPermissions) CopyPermissions(file.handle(), target);
    const bool flushes = flush == FlushFile::kYes;
    if (!file.Write(bytes) || (flushes && FlushToDisk(file.handle()) != 0) || !file.Close()) {
      outcome.reason = Failure("cannot be written", errno);
    }
  }
  if (outcome.ok() && oldFile == OldFile::kLeft && !RenameToNew(temporary, target)) {
    outcome.reason = Failure("cannot be created", errno);
  } else if (outcome.ok() && oldFile != OldFile::kLeft && !RenameOver(temporary, target, flush == FlushFile::kYes)) {
    outcome.reason = Failure("cannot be replaced", errno);
  }
  if (!outcome.ok()) {
    std::error_code ignored;
    std::filesystem::remove(temporary, ignored);
  }
  return outcome;
}

}  // namespace

std::filesystem::path PathFromSystemText(std::string_view text) {
#ifdef _WIN32
  return std::filesystem::path(std::u8string(text.begin(), text.end()));
#else
  return std::filesystem::path(text);
#endif
}

std::filesystem::path PathFromText(std::string_view text) {
  return PathFromSystemText(Utf8FromWindows1252(text));
}

std::string SystemTextFromPath(const std::filesystem::path& path) {
#ifdef _WIN32
  const std::u8string utf8 = path.u8string();
  return std::string(utf8.begin(), utf8.end());
#else
  return path.native();
#endif
}

std::string TextFromPath(const std::filesystem::path& path) {
  return Windows1252FromUtf8(SystemTextFromPath(path));
}

std::string FileSentence(const std::filesystem::path& path, std::string_view reason) {
  return TextFromPath(path) + " " + std::string(reason) + ".";
}

FileBytes ReadWholeFile(const std::filesystem::path& path) {
  return ReadFileAt(path, OpenMode::kRead, 0);
}

FileBytes ReadRegularFile(const std::filesystem::path& path, std::size_t mostLines) {
  return ReadFileAt(path, OpenMode::kReadAtOnce, mostLines);
}

FileBytes ReadOwnFile(const std::filesystem::path& path) {
  return ReadFileAt(path, OpenMode::kReadOwn, 0);
}

FileBytes ReadStandardInput() {
  try {
    return ReadOpenFile(StandardInput(), 0, 0);
  } catch (const std::bad_alloc&) {
    return {"", std::string(kNoMemory)};
  }
}

FileOutcome ReplaceFile(const std::filesystem::path& path, std::string_view bytes, FlushFile flush) {
  const std::filesystem::path target = FollowLinks(path);
  std::error_code error;
  const std::filesystem::file_status status = std::filesystem::status(target, error);
  if (std::filesystem::is_symlink(target, error)) return {std::string(kLoop)};
  if (std::filesystem::is_directory(status)) return {"is a directory"};
  const bool exists = std::filesystem::exists(status);
  if (exists && !std::filesystem::is_regular_file(status)) return WriteDirectly(target, bytes);
  if (exists && !MayWrite(target)) return {Failure("cannot be written", errno)};
  return WriteAndRename(target, exists ? OldFile::kReplacedKeepingPermissions : OldFile::kReplaced, bytes, flush);
}

FileOutcome CreateFileWith(const std::filesystem::path& path, std::string_view bytes) {
  return WriteAndRename(path, OldFile::kLeft, bytes, FlushFile::kYes);
}

FileOutcome WriteSideFile(const std::filesystem::path& path, std::string_view bytes) {
  File file(OpenFile(path, OpenMode::kSideFile));
  if (!file.isOpen()) return {Failure("cannot be opened for writing", errno)};
  FileStatus status;
  if (!ReadStatus(file.handle(), status) || !status.isRegular) return {"is no regular file"};
  if (!status.isOurs || !status.hasOneName) return {"belongs to somebody else or has a second name"};
  if (Truncate(file.handle(), 0) != 0 || !file.Write(bytes) || !file.Close()) {
    return {Failure("cannot be written", errno)};
  }
  return {};
}

FileOutcome ReplaceSideFile(const std::filesystem::path& path, std::string_view bytes, FlushFile flush) {
  FileStatus status;
  const bool exists = ReadStatusAt(path, LastLink::kKept, status);
  if (exists && status.isDirectory) return {"is a directory"};
  // What somebody else put there says nothing about the rights of the new file.
  const bool isOwn = exists && status.isRegular && status.isOurs && status.hasOneName;
  if (isOwn && !MayWrite(path)) return {Failure("cannot be written", errno)};
  return WriteAndRename(path, isOwn ? OldFile::kReplacedKeepingPermissions : OldFile::kReplaced, bytes, flush);
}

FileOutcome OverwriteInPlace(const std::filesystem::path& path, std::string_view bytes) {
  File file(OpenFile(path, OpenMode::kInPlace));
  if (!file.isOpen()) return {Failure("cannot be opened for writing", errno)};
  FileStatus status;
  if (!ReadStatus(file.handle(), status) || !status.isRegular) return {"is no regular file"};
  if (!status.hasOneName) return {"has a second name"};
  const FileBytes former = ReadOpenFile(file.handle(), static_cast<std::size_t>(status.size), 0);
  if (!former.ok()) return {former.reason};
  // Over what is there, and only then cut: a full disk leaves one text or the other.
  const auto write = [&file](std::string_view text) {
    return SeekTo(file.handle(), 0) == 0 && file.Write(text) &&
           Truncate(file.handle(), static_cast<std::int64_t>(text.size())) == 0;
  };
  FileOutcome outcome;
  if (!write(bytes)) {
    outcome.reason = Failure("cannot be written", errno);
    (void)write(former.bytes);
  }
  if (!file.Close() && outcome.ok()) outcome.reason = Failure("cannot be written", errno);
  return outcome;
}

bool IsPrivateFolder(const std::filesystem::path& path) {
  FileStatus status;
  return ReadStatusAt(path, LastLink::kKept, status) && status.isDirectory && status.isOurs && status.isPrivate;
}

bool MakePrivateFolder(const std::filesystem::path& path) {
  std::error_code error;
  if (std::filesystem::create_directories(path, error)) {
    std::filesystem::permissions(path, std::filesystem::perms::owner_all, error);
  }
  return IsPrivateFolder(path);
}

FileOutcome MoveToPlace(const std::filesystem::path& from, const std::filesystem::path& to) {
  if (RenameOver(from, to, true)) {
    FlushFolderOf(from);
    return {};
  }
  if (errno != EXDEV) return {Failure("cannot be moved to " + TextFromPath(to), errno)};
  const FileBytes content = ReadWholeFile(from);
  if (!content.ok()) return {content.reason};
  const FileOutcome copied = ReplaceFile(to, content.bytes);
  if (!copied.ok()) return {"cannot be moved: " + TextFromPath(to) + " " + copied.reason};
  return RemoveDurably(from);
}

FileOutcome MoveToNewName(const std::filesystem::path& from, const std::filesystem::path& to) {
  if (!RenameToNew(from, to)) return {Failure("cannot be moved to " + TextFromPath(to), errno)};
  FlushFolderOf(from);
  return {};
}

FileOutcome RemoveDurably(const std::filesystem::path& path) {
  std::error_code error;
  std::filesystem::remove(path, error);
  if (error) return {Failure("cannot be removed", error.value())};
  FlushFolderOf(path);
  return {};
}

Environment SystemEnvironment() {
  Environment environment;
  environment.localTime = [] { return LocalTime(std::time(nullptr)); };
  std::error_code error;
  environment.workingFolder = std::filesystem::current_path(error);
  environment.temporaryFolder = std::filesystem::temp_directory_path(error);
  environment.programFolder = ProgramFile().parent_path();
  environment.stateFolder = UserStateFolder();
#ifdef _WIN32
  environment.traceFile = "c:\\Temp\\Xc.csv";
#else
  if (!environment.temporaryFolder.empty()) environment.traceFile = environment.temporaryFolder / "Xc.csv";
#endif
  return environment;
}

}  // namespace texturon
