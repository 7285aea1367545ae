// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <filesystem>
#include <functional>
#ifndef _WIN32
#include <csignal>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#endif

namespace texturon {

#ifdef _WIN32

/// First line of a test that cannot be where a process has no copy of itself, no named pipe, no limit of file sizes, or
/// the library cannot make symbolic links.
#define TEXTURON_NEEDS_POSIX() GTEST_SKIP() << "needs fork, symbolic links, pipes with a name or limits"

inline int StartChild(const std::function<int()>& /*work*/) {
  return -1;
}
inline int WaitForChild(int /*child*/) {
  return -1;
}
inline void KillChild(int /*child*/) {}
inline void AskChildToEnd(int /*child*/) {}
inline bool MakePipe(const std::filesystem::path& /*path*/) {
  return false;
}
inline void LimitFileSizes(std::size_t /*bytes*/) {}
inline bool BecomeNobody(const std::filesystem::path& /*file*/) {
  return false;
}

#else

#define TEXTURON_NEEDS_POSIX() static_assert(true)

/// Runs `work` in a process of its own, whose exit status is what it returns.
inline pid_t StartChild(const std::function<int()>& work) {
  const pid_t child = ::fork();
  if (child == 0) ::_exit(work());
  return child;
}

/// Its exit status once it has ended; -1 for one that a signal ended.
inline int WaitForChild(pid_t child) {
  int status = 0;
  ::waitpid(child, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

inline void KillChild(pid_t child) {
  ::kill(child, SIGKILL);
}
inline void AskChildToEnd(pid_t child) {
  ::kill(child, SIGTERM);
}

/// A pipe with a name.
inline bool MakePipe(const std::filesystem::path& path) {
  return ::mkfifo(path.c_str(), 0600) == 0;
}

/// Of this process, for good: it stands for a full disk.
inline void LimitFileSizes(std::size_t bytes) {
  const rlimit limit{bytes, bytes};
  ::setrlimit(RLIMIT_FSIZE, &limit);
}

/// From here on this process has a user's rights; the file is then that user's.
inline bool BecomeNobody(const std::filesystem::path& file) {
  constexpr uid_t kNobody = 65534;
  return ::getuid() != 0 || (::chown(file.c_str(), kNobody, kNobody) == 0 && ::setuid(kNobody) == 0);
}

#endif

}  // namespace texturon
