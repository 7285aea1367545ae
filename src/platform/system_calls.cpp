// SPDX-License-Identifier: Apache-2.0

#include "platform/system_calls.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <system_error>

#include "platform/platform.h"

#ifdef _WIN32
#include <fcntl.h>
#include <io.h>
#include <share.h>
#include <sys/stat.h>
#include <windows.h>
#else
#include <fcntl.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>
#endif
#ifdef __GLIBC__
#include <malloc.h>
#include <sys/mman.h>
#endif

namespace texturon {
namespace {

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

}  // namespace

#ifdef _WIN32

int OpenFile(const std::filesystem::path& path, OpenMode mode) {
  constexpr int kUsual = _O_BINARY | _O_NOINHERIT;
  constexpr int kRights = _S_IREAD | _S_IWRITE;
  switch (mode) {
    case OpenMode::kRead:
    case OpenMode::kReadAtOnce:
      return _wopen(path.c_str(), _O_RDONLY | kUsual);
    case OpenMode::kWrite:
      return _wopen(path.c_str(), _O_WRONLY | kUsual);
    case OpenMode::kCreate:
      return _wopen(path.c_str(), _O_WRONLY | _O_CREAT | _O_EXCL | kUsual, kRights);
    case OpenMode::kReadOwn:
    case OpenMode::kSideFile:
    case OpenMode::kInPlace:
    case OpenMode::kSideLog: {
      std::error_code error;
      if (std::filesystem::is_symlink(path, error)) {
        errno = ELOOP;
        return -1;
      }
      if (mode == OpenMode::kReadOwn) return _wopen(path.c_str(), _O_RDONLY | kUsual);
      if (mode == OpenMode::kSideFile) return _wopen(path.c_str(), _O_WRONLY | _O_CREAT | kUsual, kRights);
      if (mode == OpenMode::kInPlace) return _wopen(path.c_str(), _O_RDWR | kUsual);
      break;
    }
    case OpenMode::kAppend:
      break;
  }
  int file = -1;
  const int flags = _O_RDWR | _O_APPEND | _O_CREAT | kUsual;
  return _wsopen_s(&file, path.c_str(), flags, _SH_DENYRW, kRights) == 0 ? file : -1;
}

int CloseFile(int file) {
  return _close(file);
}

std::ptrdiff_t ReadSome(int file, char* bytes, std::size_t size) {
  constexpr std::size_t kMost = std::size_t{1} << 16;
  return _read(file, bytes, static_cast<unsigned>(std::min(size, kMost)));
}

std::ptrdiff_t WriteSome(int file, const char* bytes, std::size_t size) {
  constexpr std::size_t kMost = std::size_t{1} << 16;
  return _write(file, bytes, static_cast<unsigned>(std::min(size, kMost)));
}

bool ReadStatus(int file, FileStatus& status) {
  struct _stat64 told = {};
  if (_fstat64(file, &told) != 0) return false;
  status = {.size = told.st_size,
            .isDirectory = (told.st_mode & _S_IFMT) == _S_IFDIR,
            .isRegular = (told.st_mode & _S_IFMT) == _S_IFREG,
            .isOurs = true,
            .hasOneName = told.st_nlink <= 1};
  return true;
}

bool ReadStatusAt(const std::filesystem::path& path, LastLink link, FileStatus& status) {
  const DWORD flags = FILE_FLAG_BACKUP_SEMANTICS | (link == LastLink::kKept ? FILE_FLAG_OPEN_REPARSE_POINT : 0);
  constexpr DWORD kSharing = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
  const HANDLE file = CreateFileW(path.c_str(), FILE_READ_ATTRIBUTES, kSharing, nullptr, OPEN_EXISTING, flags, nullptr);
  if (file == INVALID_HANDLE_VALUE) return false;
  BY_HANDLE_FILE_INFORMATION told = {};
  const bool isTold = GetFileType(file) == FILE_TYPE_DISK && GetFileInformationByHandle(file, &told) != 0;
  CloseHandle(file);
  if (!isTold) return false;
  const bool isLink = link == LastLink::kKept && (told.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
  const bool isFolder = (told.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
  status = {.size = static_cast<std::int64_t>((std::uint64_t{told.nFileSizeHigh} << 32) | told.nFileSizeLow),
            .isDirectory = isFolder && !isLink,
            .isRegular = !isFolder && !isLink,
            .isOurs = true,
            .hasOneName = told.nNumberOfLinks <= 1,
            .isPrivate = false,
            .device = told.dwVolumeSerialNumber,
            .number = (std::uint64_t{told.nFileIndexHigh} << 32) | told.nFileIndexLow};
  return true;
}

int StandardInput() {
  _setmode(0, _O_BINARY);
  return 0;
}

int Truncate(int file, std::int64_t size) {
  return _chsize_s(file, size);
}

std::int64_t SeekTo(int file, std::int64_t place) {
  return _lseeki64(file, place, SEEK_SET);
}

int FlushToDisk(int file) {
  return _commit(file);
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

bool MayWrite(const std::filesystem::path& path) {
  return _waccess(path.c_str(), 2) == 0;
}

void CopyPermissions(int /*file*/, const std::filesystem::path& /*from*/) {}

bool RenameOver(const std::filesystem::path& from, const std::filesystem::path& to, bool flushes) {
  const DWORD through = flushes ? MOVEFILE_WRITE_THROUGH : 0;
  if (MoveFileExW(from.c_str(), to.c_str(), MOVEFILE_REPLACE_EXISTING | through) != 0) return true;
  errno = GetLastError() == ERROR_SHARING_VIOLATION ? EBUSY : EACCES;
  return false;
}

void FlushFolderOf(const std::filesystem::path& /*path*/) {}

// A pipe's rights keep others off.
bool IsPeerOurs(std::intptr_t /*socket*/) {
  return true;
}

std::filesystem::path ProgramFile() {
  std::wstring name(32768, L'\0');
  name.resize(GetModuleFileNameW(nullptr, name.data(), static_cast<DWORD>(name.size())));
  return name;
}

#else

namespace {

FileStatus StatusOf(const struct stat& told) {
  return {.size = told.st_size,
          .isDirectory = S_ISDIR(told.st_mode),
          .isRegular = S_ISREG(told.st_mode),
          .isOurs = told.st_uid == ::geteuid(),
          .hasOneName = told.st_nlink <= 1,
          .isPrivate = (told.st_mode & 077) == 0,
          .device = told.st_dev,
          .number = told.st_ino};
}

}  // namespace

int OpenFile(const std::filesystem::path& path, OpenMode mode) {
  constexpr mode_t kRights = 0666;
  switch (mode) {
    case OpenMode::kRead:
      return ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    case OpenMode::kReadAtOnce:
      return ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    case OpenMode::kReadOwn:
      return ::open(path.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    case OpenMode::kWrite:
      return ::open(path.c_str(), O_WRONLY | O_CLOEXEC);
    case OpenMode::kCreate:
      return ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, kRights);
    case OpenMode::kSideFile:
      return ::open(path.c_str(), O_WRONLY | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, kRights);
    case OpenMode::kInPlace:
      return ::open(path.c_str(), O_RDWR | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
    case OpenMode::kSideLog:
      return ::open(path.c_str(), O_RDWR | O_APPEND | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, kRights);
    case OpenMode::kAppend:
      break;
  }
  return ::open(path.c_str(), O_RDWR | O_APPEND | O_CREAT | O_NONBLOCK | O_CLOEXEC, kRights);
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

bool ReadStatus(int file, FileStatus& status) {
  struct stat told = {};
  if (::fstat(file, &told) != 0) return false;
  status = StatusOf(told);
  return true;
}

bool ReadStatusAt(const std::filesystem::path& path, LastLink link, FileStatus& status) {
  struct stat told = {};
  const int failed = link == LastLink::kKept ? ::lstat(path.c_str(), &told) : ::stat(path.c_str(), &told);
  if (failed != 0) return false;
  status = StatusOf(told);
  return true;
}

int StandardInput() {
  return STDIN_FILENO;
}

int Truncate(int file, std::int64_t size) {
  return ::ftruncate(file, size);
}

std::int64_t SeekTo(int file, std::int64_t place) {
  return ::lseek(file, place, SEEK_SET);
}

int FlushToDisk(int file) {
  return ::fsync(file);
}

bool FailedBecauseInUse() {
  return false;
}

bool Lock(int file) {
  return ::flock(file, LOCK_EX | LOCK_NB) == 0;
}

bool IsStillAt(const std::filesystem::path& path, int file) {
  struct stat named = {};
  struct stat open = {};
  return ::stat(path.c_str(), &named) == 0 && ::fstat(file, &open) == 0 && named.st_ino == open.st_ino &&
         named.st_dev == open.st_dev;
}

bool MayWrite(const std::filesystem::path& path) {
  return ::access(path.c_str(), W_OK) == 0;
}

// The owner can be kept only by those who may give files away; then the group's and the others' rights are kept all
// the same, as an editor does.
void CopyPermissions(int file, const std::filesystem::path& from) {
  struct stat status = {};
  if (::stat(from.c_str(), &status) != 0) return;
  struct stat own = {};
  if (::fstat(file, &own) == 0 && (own.st_uid != status.st_uid || own.st_gid != status.st_gid)) {
    [[maybe_unused]] const int ignored = ::fchown(file, status.st_uid, status.st_gid);
  }
  [[maybe_unused]] const int ignored = ::fchmod(file, status.st_mode & 0777);
}

bool RenameOver(const std::filesystem::path& from, const std::filesystem::path& to, bool flushes) {
  if (::rename(from.c_str(), to.c_str()) != 0) return false;
  if (flushes) FlushFolderOf(to);
  return true;
}

void FlushFolderOf(const std::filesystem::path& path) {
  const std::filesystem::path folder = path.has_parent_path() ? path.parent_path() : ".";
  const int directory = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (directory < 0) return;
  ::fsync(directory);
  ::close(directory);
}

bool IsPeerOurs(std::intptr_t socket) {
#ifdef SO_PEERCRED
  struct ucred peer = {};
  socklen_t size = sizeof peer;
  return ::getsockopt(static_cast<int>(socket), SOL_SOCKET, SO_PEERCRED, &peer, &size) == 0 && peer.uid == ::geteuid();
#else
  uid_t user = 0;
  gid_t group = 0;
  return ::getpeereid(static_cast<int>(socket), &user, &group) == 0 && user == ::geteuid();
#endif
}

std::filesystem::path ProgramFile() {
  std::error_code error;
  return std::filesystem::read_symlink("/proc/self/exe", error);
}

#endif

bool WriteAll(int handle, std::string_view bytes) {
  while (!bytes.empty()) {
    const std::ptrdiff_t written = WriteSome(handle, bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

std::string Failure(std::string_view what, int code) {
  return std::string(what) + " (" + SystemReason(code) + ")";
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

}  // namespace texturon
