// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <functional>
#include <sys/types.h>
#include <sys/wait.h>
#include <unistd.h>

namespace texturon {

/// Runs `work` in a process of its own, whose exit status is what it returns.
inline pid_t StartChild(const std::function<int()>& work) {
  const pid_t child = ::fork();
  if (child == 0) ::_exit(work());
  return child;
}

/// Its wait status once it has ended.
inline int WaitForChild(pid_t child) {
  int status = 0;
  ::waitpid(child, &status, 0);
  return status;
}

}  // namespace texturon
