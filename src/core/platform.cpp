#include "core/platform.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <new>
#include <random>
#include <system_error>
#include <thread>
#include <utility>

#include "core/charset.h"
#include "core/number_text.h"

#ifdef _WIN32
#include <fcntl.h>
#include <io.h>
#include <share.h>
#include <sys/stat.h>
#include <windows.h>
#else
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>
#endif
#ifdef __GLIBC__
#include <malloc.h>
#include <sys/mman.h>
#endif

namespace texturon {
namespace {

constexpr std::size_t kLargestFile = std::size_t{256} << 20;
constexpr std::size_t kReadStep = std::size_t{1} << 16;
constexpr int kMostLinks = 40;

// The thin layer of calls that bear other names on Windows.
#ifdef _WIN32

using FileStatus = struct _stat64;
constexpr int kReadFlags = _O_RDONLY | _O_BINARY | _O_NOINHERIT;
constexpr int kWriteFlags = _O_WRONLY | _O_BINARY | _O_NOINHERIT;
constexpr int kCreateFlag = _O_CREAT;
constexpr int kExclusiveFlag = _O_EXCL;
constexpr int kNoFollowFlag = 0;  // links are refused by name below
constexpr int kNoWaitFlag = 0;

int OpenFile(const std::filesystem::path& path, int flags) {
  return _wopen(path.c_str(), flags, _S_IREAD | _S_IWRITE);
}
int CloseFile(int file) {
  return _close(file);
}
std::ptrdiff_t ReadSome(int file, char* bytes, std::size_t size) {
  return _read(file, bytes, static_cast<unsigned>(std::min(size, kReadStep)));
}
std::ptrdiff_t WriteSome(int file, const char* bytes, std::size_t size) {
  return _write(file, bytes, static_cast<unsigned>(std::min(size, kReadStep)));
}
int StatusOf(int file, FileStatus& status) {
  return _fstat64(file, &status);
}
int Truncate(int file, std::int64_t size) {
  return _chsize_s(file, size);
}
int OpenToAppend(const std::filesystem::path& path) {
  int file = -1;
  const int flags = _O_RDWR | _O_APPEND | _O_CREAT | _O_BINARY | _O_NOINHERIT;
  return _wsopen_s(&file, path.c_str(), flags, _SH_DENYRW, _S_IREAD | _S_IWRITE) == 0 ? file : -1;
}
bool FailedBecauseInUse() {
  return GetLastError() == ERROR_SHARING_VIOLATION;
}
bool Lock(int /*file*/) {
  return true;  // opened without sharing
}
bool IsStillAt(const std::filesystem::path& /*path*/, int /*file*/) {
  return true;
}
std::int64_t SeekTo(int file, std::int64_t place) {
  return _lseeki64(file, place, SEEK_SET);
}
void FlushFolderOf(const std::filesystem::path& /*path*/) {}
int FlushToDisk(int file) {
  return _commit(file);
}
bool IsDirectory(const FileStatus& status) {
  return (status.st_mode & _S_IFMT) == _S_IFDIR;
}
bool IsRegular(const FileStatus& status) {
  return (status.st_mode & _S_IFMT) == _S_IFREG;
}
bool IsOnlyOurs(const FileStatus& status) {
  return status.st_nlink <= 1;
}
bool MayWrite(const std::filesystem::path& path) {
  return _waccess(path.c_str(), 2) == 0;
}
void CopyPermissions(int /*file*/, const std::filesystem::path& /*from*/) {}
bool RenameOver(const std::filesystem::path& from, const std::filesystem::path& to, FlushFile flush) {
  const DWORD through = flush == FlushFile::kYes ? MOVEFILE_WRITE_THROUGH : 0;
  if (MoveFileExW(from.c_str(), to.c_str(), MOVEFILE_REPLACE_EXISTING | through) != 0) return true;
  errno = GetLastError() == ERROR_SHARING_VIOLATION ? EBUSY : EACCES;
  return false;
}
std::filesystem::path ProgramFile() {
  std::wstring name(32768, L'\0');
  name.resize(GetModuleFileNameW(nullptr, name.data(), static_cast<DWORD>(name.size())));
  return name;
}

#else

using FileStatus = struct stat;
constexpr int kReadFlags = O_RDONLY | O_CLOEXEC;
constexpr int kWriteFlags = O_WRONLY | O_CLOEXEC;
constexpr int kCreateFlag = O_CREAT;
constexpr int kExclusiveFlag = O_EXCL;
constexpr int kNoFollowFlag = O_NOFOLLOW;
constexpr int kNoWaitFlag = O_NONBLOCK;

int OpenFile(const std::filesystem::path& path, int flags) {
  return ::open(path.c_str(), flags, 0666);
}
int CloseFile(int file) {
  return ::close(file);
}
std::ptrdiff_t ReadSome(int file, char* bytes, std::size_t size) {
  return ::read(file, bytes, size);
}
std::ptrdiff_t WriteSome(int file, const char* bytes, std::size_t size) {
  return ::write(file, bytes, size);
}
int StatusOf(int file, FileStatus& status) {
  return ::fstat(file, &status);
}
int Truncate(int file, std::int64_t size) {
  return ::ftruncate(file, size);
}
int OpenToAppend(const std::filesystem::path& path) {
  return ::open(path.c_str(), O_RDWR | O_APPEND | O_CREAT | O_CLOEXEC | O_NONBLOCK, 0666);
}
bool FailedBecauseInUse() {
  return false;
}
bool Lock(int file) {
  return ::flock(file, LOCK_EX | LOCK_NB) == 0;
}
bool IsStillAt(const std::filesystem::path& path, int file) {
  FileStatus named;
  FileStatus open;
  return ::stat(path.c_str(), &named) == 0 && ::fstat(file, &open) == 0 && named.st_ino == open.st_ino &&
         named.st_dev == open.st_dev;
}
std::int64_t SeekTo(int file, std::int64_t place) {
  return ::lseek(file, place, SEEK_SET);
}
void FlushFolderOf(const std::filesystem::path& path) {
  const std::filesystem::path folder = path.has_parent_path() ? path.parent_path() : ".";
  const int directory = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (directory < 0) return;
  ::fsync(directory);
  ::close(directory);
}
int FlushToDisk(int file) {
  return ::fsync(file);
}
bool IsDirectory(const FileStatus& status) {
  return S_ISDIR(status.st_mode);
}
bool IsRegular(const FileStatus& status) {
  return S_ISREG(status.st_mode);
}
bool IsOnlyOurs(const FileStatus& status) {
  return status.st_nlink <= 1 && status.st_uid == ::geteuid();
}
bool MayWrite(const std::filesystem::path& path) {
  return ::access(path.c_str(), W_OK) == 0;
}
// The owner can be kept only by those who may give files away; then the group's and the others' rights are kept all
// the same, as an editor does.
void CopyPermissions(int file, const std::filesystem::path& from) {
  FileStatus status;
  if (::stat(from.c_str(), &status) != 0) return;
  FileStatus own;
  if (::fstat(file, &own) == 0 && (own.st_uid != status.st_uid || own.st_gid != status.st_gid)) {
    [[maybe_unused]] const int ignored = ::fchown(file, status.st_uid, status.st_gid);
  }
  [[maybe_unused]] const int ignored = ::fchmod(file, status.st_mode & 0777);
}
bool RenameOver(const std::filesystem::path& from, const std::filesystem::path& to, FlushFile flush) {
  if (::rename(from.c_str(), to.c_str()) != 0) return false;
  if (flush == FlushFile::kYes) FlushFolderOf(to);
  return true;
}
std::filesystem::path ProgramFile() {
  std::error_code error;
  return std::filesystem::read_symlink("/proc/self/exe", error);
}

#endif

std::string SystemReason(int code) {
  switch (code) {
    case EACCES:
    case EPERM:
      return "permission denied";
    case ENOENT:
      return "no such file or folder";
    case ENOSPC:
      return "the disk is full";
    case EROFS:
      return "the file system is read-only";
    case ENAMETOOLONG:
      return "the name is too long";
    case ELOOP:
      return "a symbolic link";
    default:
      return std::generic_category().message(code);
  }
}

std::string Failure(std::string_view what, int code) {
  return std::string(what) + " (" + SystemReason(code) + ")";
}

bool WriteAll(int handle, std::string_view bytes) {
  while (!bytes.empty()) {
    const std::ptrdiff_t written = WriteSome(handle, bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

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

FileBytes ReadOpenFile(const File& file, std::size_t expectedSize) {
  FileBytes result;
  std::size_t size = 0;
  if (expectedSize > kLargestFile) return {"", "is larger than 256 MiB"};
  result.bytes.resize(expectedSize + 1);
  for (;;) {
    if (size == result.bytes.size()) result.bytes.resize(std::min(std::max(2 * size, kReadStep), kLargestFile + 1));
    const std::ptrdiff_t got = ReadSome(file.handle(), result.bytes.data() + size, result.bytes.size() - size);
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) return {"", Failure("cannot be read", errno)};
    if (got == 0) break;
    size += static_cast<std::size_t>(got);
    if (size > kLargestFile) return {"", "is larger than 256 MiB"};
  }
  result.bytes.resize(size);
  return result;
}

FileOutcome WriteDirectly(const std::filesystem::path& path, std::string_view bytes) {
  File file(OpenFile(path, kWriteFlags));
  if (!file.isOpen()) return {Failure("cannot be opened for writing", errno)};
  if (!file.Write(bytes) || !file.Close()) return {Failure("cannot be written", errno)};
  return {};
}

// The file that a chain of symbolic links ends at; it need not exist.
std::filesystem::path FollowLinks(std::filesystem::path path) {
  std::error_code error;
  for (int i = 0; i < kMostLinks && std::filesystem::is_symlink(path, error); ++i) {
    const std::filesystem::path target = std::filesystem::read_symlink(path, error);
    if (error) break;
    path = path.parent_path() / target;
  }
  return path;
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
  if (hasNoSecondNames) return RenameOver(from, to, FlushFile::kYes);
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
    handle = OpenFile(temporary, kWriteFlags | kCreateFlag | kExclusiveFlag);
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
  } else if (outcome.ok() && oldFile != OldFile::kLeft && !RenameOver(temporary, target, flush)) {
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

void PreferLargePages() {
#ifdef __GLIBC__
  constexpr int kReserve = 128 << 20;
  constexpr int kLargestInHeap = 32 << 20;  // the most that can be set
  constexpr int kUsualPad = 128 << 10;
  mallopt(M_MMAP_THRESHOLD, kLargestInHeap);
  mallopt(M_TRIM_THRESHOLD, 2 * kReserve);
  mallopt(M_TOP_PAD, kReserve);
  // Too large for what the heap has left: it grows by this block and the reserve in one piece.
  void* block = std::malloc(kLargestInHeap / 2);
  mallopt(M_TOP_PAD, kUsualPad);
  if (block == nullptr) return;
  const auto page = static_cast<std::uintptr_t>(sysconf(_SC_PAGESIZE));
  const auto start = reinterpret_cast<std::uintptr_t>(block);
  const std::uintptr_t first = (start + page - 1) / page * page;
  const auto end = reinterpret_cast<std::uintptr_t>(sbrk(0));
  if (end > first) (void)madvise(static_cast<char*>(block) + (first - start), end - first, MADV_HUGEPAGE);
  std::free(block);
#endif
}

FileBytes ReadWholeFile(const std::filesystem::path& path) {
  const File file(OpenFile(path, kReadFlags));
  if (!file.isOpen()) {
    const int code = errno;
    std::error_code error;
    if (std::filesystem::is_directory(path, error)) return {"", "is a directory"};
    if (code == ENOENT || code == ENOTDIR) return {"", "does not exist", true};
    return {"", Failure("cannot be opened", code)};
  }
  FileStatus status{};
  if (StatusOf(file.handle(), status) != 0) return {"", Failure("cannot be read", errno)};
  if (IsDirectory(status)) return {"", "is a directory"};
  try {
    return ReadOpenFile(file, static_cast<std::size_t>(std::max<std::int64_t>(status.st_size, 0)));
  } catch (const std::bad_alloc&) {
    return {"", "does not fit into the memory"};
  }
}

FileOutcome ReplaceFile(const std::filesystem::path& path, std::string_view bytes, FlushFile flush) {
  const std::filesystem::path target = FollowLinks(path);
  std::error_code error;
  const std::filesystem::file_status status = std::filesystem::status(target, error);
  if (std::filesystem::is_symlink(target, error)) return {"is a symbolic link without an end"};
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
  std::error_code error;
  if (kNoFollowFlag == 0 && std::filesystem::is_symlink(path, error)) return {Failure("cannot be written", ELOOP)};
  File file(OpenFile(path, kWriteFlags | kCreateFlag | kNoFollowFlag | kNoWaitFlag));
  if (!file.isOpen()) return {Failure("cannot be opened for writing", errno)};
  FileStatus status{};
  if (StatusOf(file.handle(), status) != 0 || !IsRegular(status)) return {"is no regular file"};
  if (!IsOnlyOurs(status)) return {"belongs to somebody else or has a second name"};
  if (Truncate(file.handle(), 0) != 0 || !file.Write(bytes) || !file.Close()) {
    return {Failure("cannot be written", errno)};
  }
  return {};
}

AppendFile::AppendFile(const std::filesystem::path& path) {
  // A file that was replaced between its opening and its lock is opened again under its name.
  constexpr int kAttempts = 16;
  for (int i = 0; i < kAttempts; ++i) {
    Open(path);
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

void AppendFile::Open(const std::filesystem::path& path) {
  state_ = State::kFailed;
  std::error_code error;
  if (std::filesystem::is_directory(path, error)) {
    outcome_.reason = "is a directory";
    return;
  }
  handle_ = OpenToAppend(path);
  if (handle_ < 0) {
    if (FailedBecauseInUse()) state_ = State::kInUse;
    outcome_.reason = Failure("cannot be opened for writing", errno);
    return;
  }
  FileStatus status{};
  if (StatusOf(handle_, status) != 0 || !IsRegular(status)) {
    outcome_.reason = "is no regular file";
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
  StatusOf(handle_, status);  // again: another may have added to it before the lock
  size_ = static_cast<std::uint64_t>(status.st_size);
  char last = '\n';
  if (size_ > 0 && SeekTo(handle_, static_cast<std::int64_t>(size_) - 1) >= 0) ReadSome(handle_, &last, 1);
  endsInsideLine_ = last != '\n';
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
                                              const std::function<bool()>& givesUp) {
  constexpr std::chrono::milliseconds kStep(5);
  const auto end = std::chrono::steady_clock::now() + patience;
  for (;;) {
    auto file = std::make_unique<AppendFile>(path);
    const bool isOver = std::chrono::steady_clock::now() >= end || (givesUp && givesUp());
    if (file->state() != AppendFile::State::kInUse || isOver) return file;
    file.reset();
    std::this_thread::sleep_for(kStep);
  }
}

FileOutcome MoveToPlace(const std::filesystem::path& from, const std::filesystem::path& to) {
  if (RenameOver(from, to, FlushFile::kYes)) {
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

std::tm LocalTime(std::time_t time) {
  std::tm local{};
#ifdef _WIN32
  localtime_s(&local, &time);
#else
  ::localtime_r(&time, &local);
#endif
  return local;
}

bool ErrorOutputIsTerminal() {
#ifdef _WIN32
  return _isatty(2) != 0;
#else
  return ::isatty(STDERR_FILENO) != 0;
#endif
}

Environment SystemEnvironment() {
  Environment environment;
  environment.localTime = [] { return LocalTime(std::time(nullptr)); };
  std::error_code error;
  environment.workingFolder = std::filesystem::current_path(error);
  environment.temporaryFolder = std::filesystem::temp_directory_path(error);
  environment.programFolder = ProgramFile().parent_path();
#ifdef _WIN32
  environment.traceFile = "c:\\Temp\\Xc.csv";
#else
  if (!environment.temporaryFolder.empty()) environment.traceFile = environment.temporaryFolder / "Xc.csv";
#endif
  return environment;
}

}  // namespace texturon
