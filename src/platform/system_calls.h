// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

namespace texturon {

// The calls that bear other names, or do not exist, on other operating systems: the only ones of the program. Those
// that return a number give -1 and set errno when they fail, as the C library does. For the files of core/ that build
// on them; everybody else uses those.

/// How a file is opened, from the bytes' point of view; never inherited by another program.
enum class OpenMode {
  kRead,
  kReadAtOnce,  ///< a pipe is not waited for
  kReadOwn,     ///< the same, and a symbolic link is refused
  kWrite,       ///< a file that exists
  kCreate,      ///< a file that must not exist
  kSideFile,    ///< a file that may exist; a symbolic link is refused and a pipe not waited for
  kInPlace,     ///< a file that exists, read as well; a symbolic link is refused and a pipe not waited for
  kAppend,      ///< a file that may exist, read as well; where a file can be kept from others by opening it, it is
  kSideLog,     ///< the same, but a symbolic link is refused
};

struct FileStatus {
  std::int64_t size = 0;
  bool isDirectory = false;
  bool isRegular = false;
  bool isOurs = false;       ///< belongs to this user
  bool hasOneName = false;   ///< no second hard link
  bool isPrivate = false;    ///< others have no rights on it
  std::uint64_t device = 0;  ///< with `number` what tells it from every other file; both 0: not known
  std::uint64_t number = 0;
};

int OpenFile(const std::filesystem::path& path, OpenMode mode);
int CloseFile(int file);
std::ptrdiff_t ReadSome(int file, char* bytes, std::size_t size);
std::ptrdiff_t WriteSome(int file, const char* bytes, std::size_t size);
bool ReadStatus(int file, FileStatus& status);
/// Of what a path leads to, or of a symbolic link itself, which is neither folder nor regular file.
enum class LastLink { kFollowed, kKept };
bool ReadStatusAt(const std::filesystem::path& path, LastLink link, FileStatus& status);
int Truncate(int file, std::int64_t size);
std::int64_t SeekTo(int file, std::int64_t place);
int FlushToDisk(int file);

/// Whether the last OpenFile failed because another program has the file.
bool FailedBecauseInUse();
/// Takes the exclusive advisory lock without waiting.
bool Lock(int file);
/// Whether an open file still bears a name.
bool IsStillAt(const std::filesystem::path& path, int file);
bool MayWrite(const std::filesystem::path& path);
/// Gives a file the rights, and where that is allowed the owner, of another.
void CopyPermissions(int file, const std::filesystem::path& from);
/// Renames; a file of the new name is replaced. `flushes`: returns once that is on the disk.
bool RenameOver(const std::filesystem::path& from, const std::filesystem::path& to, bool flushes);
/// Returns once the names in the folder of this file are on the disk.
void FlushFolderOf(const std::filesystem::path& path);
std::filesystem::path ProgramFile();
/// System, its release and the processor's kind: "Linux 6.1.0 x86_64".
std::string SystemAndProcessor();
/// Where programs of this user keep what outlives a run; empty: nowhere. A path that is not whole does not count.
std::filesystem::path UserStateFolder();
/// `mark` is called, by another thread or none, when the user or the system wants the program to end.
void OnRequestToEnd(void (*mark)(int));

/// Writes all bytes, whatever interrupts.
bool WriteAll(int file, std::string_view bytes);
/// Standard input as a file of bytes.
int StandardInput();
/// "cannot be read (permission denied)".
std::string Failure(std::string_view what, int code);

}  // namespace texturon
