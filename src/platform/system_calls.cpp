// SPDX-License-Identifier: Apache-2.0

#include "platform/system_calls.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <system_error>

#include "platform/platform.h"

#ifdef _WIN32
#include <aclapi.h>
#include <fcntl.h>
#include <io.h>
#include <share.h>
#include <shellapi.h>
#include <sys/stat.h>
#include <windows.h>
#else
#include <fcntl.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/utsname.h>
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
    case EBUSY:
      return "another program has it open";
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

namespace {

// Virus scanners, indexers and spreadsheets hold a file for a moment after it was written.
constexpr int kAttempts = 20;
constexpr DWORD kPauseMS = 50;

bool IsHeld(DWORD error) {
  return error == ERROR_SHARING_VIOLATION || error == ERROR_LOCK_VIOLATION;
}

// Longer names than 260 characters are taken only in this form, whole and without dots.
std::wstring LongName(const std::filesystem::path& path) {
  constexpr std::size_t kShort = 240;
  if (path.native().size() < kShort) return path.native();
  std::error_code error;
  std::filesystem::path whole = std::filesystem::absolute(path, error).lexically_normal();
  whole.make_preferred();
  const std::wstring& name = whole.native();
  if (error || name.starts_with(LR"(\\?\)") || name.starts_with(LR"(\\.\)")) return name;
  return name.starts_with(LR"(\\)") ? LR"(\\?\UNC)" + name.substr(1) : LR"(\\?\)" + name;
}

/// Opens by the C library; a file that another program holds is waited for.
int OpenByName(const std::filesystem::path& path, int flags, int sharing) {
  constexpr int kRights = _S_IREAD | _S_IWRITE;
  const std::wstring name = LongName(path);
  const int attempts = sharing == _SH_DENYRW ? 1 : kAttempts;  // who wants it for himself waits his own time
  for (int i = 0;; ++i) {
    int file = -1;
    if (_wsopen_s(&file, name.c_str(), flags | _O_BINARY | _O_NOINHERIT, sharing, kRights) == 0) return file;
    if (!FailedBecauseInUse()) return -1;
    if (i + 1 >= attempts) break;
    Sleep(kPauseMS);
  }
  errno = EBUSY;
  return -1;
}

/// Whether the user of this process owns the file, or the administrators whose member he is.
bool OwnerIsUser(HANDLE file) {
  PSID owner = nullptr;
  PSECURITY_DESCRIPTOR descriptor = nullptr;
  if (GetSecurityInfo(file, SE_FILE_OBJECT, OWNER_SECURITY_INFORMATION, &owner, nullptr, nullptr, nullptr,
                      &descriptor) != ERROR_SUCCESS) {
    return false;
  }
  HANDLE token = nullptr;
  bool isUser = false;
  if (OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, &token) != 0) {
    std::array<std::byte, 512> space{};
    for (const TOKEN_INFORMATION_CLASS kind : {TokenUser, TokenOwner}) {
      DWORD size = 0;
      if (GetTokenInformation(token, kind, space.data(), static_cast<DWORD>(space.size()), &size) == 0) continue;
      // Both records begin with the pointer to the identifier.
      PSID own = nullptr;
      std::memcpy(&own, space.data(), sizeof own);
      isUser = isUser || EqualSid(owner, own) != 0;
    }
    CloseHandle(token);
  }
  LocalFree(descriptor);
  return isUser;
}

bool StatusOf(HANDLE file, bool keepsLink, FileStatus& status) {
  BY_HANDLE_FILE_INFORMATION told = {};
  if (GetFileType(file) != FILE_TYPE_DISK || GetFileInformationByHandle(file, &told) == 0) return false;
  const bool isLink = keepsLink && (told.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
  const bool isFolder = (told.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
  const bool isOurs = OwnerIsUser(file);
  status = {.size = static_cast<std::int64_t>((std::uint64_t{told.nFileSizeHigh} << 32) | told.nFileSizeLow),
            .isDirectory = isFolder && !isLink,
            .isRegular = !isFolder && !isLink,
            .isOurs = isOurs,
            .hasOneName = told.nNumberOfLinks <= 1,
            .isPrivate = isOurs,  // a folder of the user's profile inherits that others are kept out
            .device = told.dwVolumeSerialNumber,
            .number = (std::uint64_t{told.nFileIndexHigh} << 32) | told.nFileIndexLow};
  return true;
}

void (*requestMark)(int) = nullptr;

BOOL WINAPI MarkRequest(DWORD event) {
  static std::atomic<bool> isMarked = false;
  if (isMarked.exchange(true)) return FALSE;  // asked again: at once
  requestMark(SIGINT);
  // When a window is closed or the user logs off, the process ends as soon as this returns: what runs has the time that
  // the system gives.
  constexpr DWORD kLongEnough = 30'000;
  if (event == CTRL_CLOSE_EVENT || event == CTRL_LOGOFF_EVENT || event == CTRL_SHUTDOWN_EVENT) Sleep(kLongEnough);
  return TRUE;
}

}  // namespace

int OpenFile(const std::filesystem::path& path, OpenMode mode) {
  switch (mode) {
    case OpenMode::kRead:
    case OpenMode::kReadAtOnce:
      return OpenByName(path, _O_RDONLY, _SH_DENYNO);
    case OpenMode::kWrite:
      return OpenByName(path, _O_WRONLY, _SH_DENYNO);
    case OpenMode::kCreate:
      return OpenByName(path, _O_WRONLY | _O_CREAT | _O_EXCL, _SH_DENYNO);
    case OpenMode::kReadOwn:
    case OpenMode::kSideFile:
    case OpenMode::kInPlace:
    case OpenMode::kSideLog: {
      std::error_code error;
      if (std::filesystem::is_symlink(path, error)) {
        errno = ELOOP;
        return -1;
      }
      if (mode == OpenMode::kReadOwn) return OpenByName(path, _O_RDONLY, _SH_DENYNO);
      if (mode == OpenMode::kSideFile) return OpenByName(path, _O_WRONLY | _O_CREAT, _SH_DENYNO);
      if (mode == OpenMode::kInPlace) return OpenByName(path, _O_RDWR, _SH_DENYNO);
      break;
    }
    case OpenMode::kAppend:
      break;
  }
  return OpenByName(path, _O_RDWR | _O_APPEND | _O_CREAT, _SH_DENYRW);
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
  const auto handle = reinterpret_cast<HANDLE>(_get_osfhandle(file));
  if (StatusOf(handle, false, status)) return true;
  status = {};  // a pipe or a device
  return handle != INVALID_HANDLE_VALUE;
}

bool ReadStatusAt(const std::filesystem::path& path, LastLink link, FileStatus& status) {
  const bool keepsLink = link == LastLink::kKept;
  const DWORD flags = FILE_FLAG_BACKUP_SEMANTICS | (keepsLink ? FILE_FLAG_OPEN_REPARSE_POINT : 0);
  constexpr DWORD kSharing = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
  const HANDLE file = CreateFileW(LongName(path).c_str(), FILE_READ_ATTRIBUTES | READ_CONTROL, kSharing, nullptr,
                                  OPEN_EXISTING, flags, nullptr);
  if (file == INVALID_HANDLE_VALUE) return false;
  const bool isTold = StatusOf(file, keepsLink, status);
  CloseHandle(file);
  return isTold;
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
  return IsHeld(GetLastError());
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
  const DWORD how = MOVEFILE_REPLACE_EXISTING | (flushes ? MOVEFILE_WRITE_THROUGH : 0);
  const std::wstring formerName = LongName(from);
  const std::wstring newName = LongName(to);
  DWORD error = 0;
  for (int i = 0; i < kAttempts; ++i) {
    if (i > 0) Sleep(kPauseMS);
    if (MoveFileExW(formerName.c_str(), newName.c_str(), how) != 0) return true;
    error = GetLastError();
    // A file that is open elsewhere denies access to whoever would take its place.
    if (!IsHeld(error) && !(error == ERROR_ACCESS_DENIED && MayWrite(to))) break;
  }
  switch (error) {
    case ERROR_NOT_SAME_DEVICE:
      errno = EXDEV;
      break;
    case ERROR_FILE_NOT_FOUND:
    case ERROR_PATH_NOT_FOUND:
      errno = ENOENT;
      break;
    case ERROR_DISK_FULL:
      errno = ENOSPC;
      break;
    default:
      errno = IsHeld(error) ? EBUSY : EACCES;
  }
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

std::string SystemAndProcessor() {
  return "Windows x86_64";
}

std::filesystem::path UserStateFolder() {
  const wchar_t* const value = _wgetenv(L"LOCALAPPDATA");
  const std::filesystem::path path = value == nullptr ? L"" : value;
  return path.is_absolute() ? path / L"Texturon" : std::filesystem::path();
}

void OnRequestToEnd(void (*mark)(int)) {
  requestMark = mark;
  SetConsoleCtrlHandler(MarkRequest, TRUE);
}

// Twelve bytes of a file are twelve bytes, and a window of the command prompt shows UTF-8 for as long as we run.
CommandWords::CommandWords(int /*count*/, char** /*words*/) {
  for (const int stream : {0, 1, 2}) _setmode(stream, _O_BINARY);
  formerCodePage_ = GetConsoleOutputCP();
  SetConsoleOutputCP(CP_UTF8);
  int count = 0;
  wchar_t** const wide = CommandLineToArgvW(GetCommandLineW(), &count);
  for (int i = 0; wide != nullptr && i < count; ++i) texts_.push_back(SystemTextFromPath(wide[i]));
  LocalFree(wide);
}

CommandWords::~CommandWords() {
  if (formerCodePage_ != 0) SetConsoleOutputCP(formerCodePage_);
}

void UseTerminalOfParent() {
  const bool hasOutput = GetStdHandle(STD_OUTPUT_HANDLE) != nullptr;
  const bool hasErrors = GetStdHandle(STD_ERROR_HANDLE) != nullptr;
  if ((hasOutput && hasErrors) || AttachConsole(ATTACH_PARENT_PROCESS) == 0) return;
  if (!hasOutput) std::freopen("CONOUT$", "wb", stdout);
  if (!hasErrors) std::freopen("CONOUT$", "wb", stderr);
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

std::string SystemAndProcessor() {
  utsname name{};
  if (uname(&name) != 0) return {};
  return std::string(name.sysname) + " " + name.release + " " + name.machine;
}

std::filesystem::path UserStateFolder() {
  const auto told = [](const char* name) {
    const char* const value = std::getenv(name);
    const std::filesystem::path path = value == nullptr ? "" : value;
    return path.is_absolute() ? path : std::filesystem::path();
  };
  if (const auto state = told("XDG_STATE_HOME"); !state.empty()) return state / "texturon";
  if (const auto home = told("HOME"); !home.empty()) return home / ".local/state/texturon";
  return {};
}

void OnRequestToEnd(void (*mark)(int)) {
  for (const int number : {SIGINT, SIGTERM}) std::signal(number, mark);
  std::signal(SIGPIPE, SIG_IGN);
}

CommandWords::CommandWords(int count, char** words) : texts_(words, words + count) {}

CommandWords::~CommandWords() = default;

void UseTerminalOfParent() {}

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
