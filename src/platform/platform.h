// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstdint>
#include <ctime>
#include <filesystem>
#include <string>
#include <string_view>

#include "platform/environment.h"

namespace texturon {

// Files and what else differs from one operating system to another, on platform/system_calls. File operations report
// why they failed; they throw only when memory runs out.

/// How a file operation ended. `reason` is empty when it succeeded and otherwise goes on where the file's name stops:
/// "is a directory", "cannot be opened (permission denied)".
struct FileOutcome {
  std::string reason;

  bool ok() const { return reason.empty(); }
};

struct FileBytes {
  std::string bytes;
  std::string reason;
  bool missing = false;  // there is no such file; `reason` says so too

  bool ok() const { return reason.empty(); }
};

/// A path from the bytes of a command line: taken as they are; on Windows they are UTF-8.
std::filesystem::path PathFromSystemText(std::string_view text);
std::string SystemTextFromPath(const std::filesystem::path& path);
/// Paths as the program's own Windows-1252 texts (settings, messages) and back.
std::filesystem::path PathFromText(std::string_view text);
std::string TextFromPath(const std::filesystem::path& path);
/// "<path> <reason>."
std::string FileSentence(const std::filesystem::path& path, std::string_view reason);

/// The reason where a file or what is made of it is too large.
inline constexpr std::string_view kNoMemory = "does not fit into the memory";

/// Reads a file whole; pipes and devices up to their end. At most 256 MiB.
FileBytes ReadWholeFile(const std::filesystem::path& path);
/// The same for a regular file alone: a pipe that nobody writes into would be waited for, a device never ends. With
/// `mostLines` a large file is read no further than a while behind so many line ends.
FileBytes ReadRegularFile(const std::filesystem::path& path, std::size_t mostLines = 0);
FileBytes ReadStandardInput();

/// Reads a file that this program keeps for itself in a folder that others may write to. One that belongs to somebody
/// else, a symbolic link, what is no regular file, and a file with a second name are kNotOwn.
inline constexpr std::string_view kNotOwn = "belongs to somebody else, is a link or has a second name";
FileBytes ReadOwnFile(const std::filesystem::path& path);

/// Gives `path` the content `bytes`, so that at any moment it holds all of the old or all of the new: written to an
/// exclusive temporary file beside it, flushed to the disk unless `flush` says otherwise, renamed over it. An existing
/// file keeps its permissions, a symbolic link stays and its target is replaced; one that may not be written is
/// refused. What is no regular file (a device, a pipe) is written directly.
enum class FlushFile { kYes, kNo };
FileOutcome ReplaceFile(const std::filesystem::path& path, std::string_view bytes, FlushFile flush = FlushFile::kYes);

/// The same for a name that nobody has yet; a file that is there already is left as it is.
FileOutcome CreateFileWith(const std::filesystem::path& path, std::string_view bytes);

/// Writes a file into a folder that others can write to as well: refuses a symbolic link, what is no regular file, and
/// a file that belongs to somebody else or has a second name.
FileOutcome WriteSideFile(const std::filesystem::path& path, std::string_view bytes);

// For names that the user did not choose, in folders that others may write to as well: nothing is ever written through
// a symbolic link or into a file with a second name that somebody put there.

/// As ReplaceFile, but of the name itself: a link that has it goes, and what it leads to stays as it is. A file that is
/// not this user's own does not hand its owner and permissions on.
FileOutcome ReplaceSideFile(const std::filesystem::path& path, std::string_view bytes,
                            FlushFile flush = FlushFile::kYes);

/// Writes into a regular file that is there, whoever owns it, where its folder lets nobody replace it. Refuses a
/// symbolic link and a file with a second name. Where not all can be written the former text stands again.
FileOutcome OverwriteInPlace(const std::filesystem::path& path, std::string_view bytes);

/// Whether a folder, no link to one, belongs to this user and to nobody else.
bool IsPrivateFolder(const std::filesystem::path& path);
/// Makes a folder of that kind, with those above it, where it is not there. False where it cannot be had.
bool MakePrivateFolder(const std::filesystem::path& path);

/// Whether who is at the other end of a local socket is this user. `socket`: its number at the system.
bool IsPeerOurs(std::intptr_t socket);

/// Gives a file another name, in another folder too, and returns once that is on the disk. A file of the new name is
/// replaced.
FileOutcome MoveToPlace(const std::filesystem::path& from, const std::filesystem::path& to);
/// The same, but a file of the new name is left as it is and the move refused, where the file system can do that.
FileOutcome MoveToNewName(const std::filesystem::path& from, const std::filesystem::path& to);
/// Removes a file for good. One that is not there is no failure.
FileOutcome RemoveDurably(const std::filesystem::path& path);

/// The words of the command line in UTF-8, the program's own name first. While it lives, the standard streams hold the
/// bytes that are written and a terminal takes them for UTF-8, where a system would do otherwise.
class CommandWords {
public:
  CommandWords(int count, char** words);
  ~CommandWords();
  CommandWords(const CommandWords&) = delete;
  CommandWords& operator=(const CommandWords&) = delete;

  const std::vector<std::string>& Texts() const { return texts_; }

private:
  std::vector<std::string> texts_;
  [[maybe_unused]] unsigned formerCodePage_ = 0;  // of Windows alone
};

/// Lets a program that has windows write to the terminal that it was started from, where a system keeps such programs
/// from it. Streams that somebody redirected stay as they are. At the start of a program, before anything is written.
void UseTerminalOfParent();

std::tm LocalTime(std::time_t time);
bool ErrorOutputIsTerminal();

/// Asks the system for large memory pages from now on, for a program that works on a few arrays of millions of bytes:
/// to set up their pages one by one takes a quarter of an analysis. A hint for the first 128 MiB of the heap, which are
/// reserved but not used before they are needed; where the system has no such thing, nothing happens. Once, at the
/// start of a program.
void PreferLargePages();

/// Clock, current folder, temporary folder and the folder of the running program.
Environment SystemEnvironment();

}  // namespace texturon
