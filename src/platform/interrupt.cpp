// SPDX-License-Identifier: Apache-2.0

#include "platform/interrupt.h"

#include <atomic>
#include <csignal>

#include "platform/system_calls.h"

namespace texturon {
namespace {

// Set by a handler and read by every worker: a plain flag would be a race between threads.
std::atomic<bool> interrupted = false;
static_assert(std::atomic<bool>::is_always_lock_free, "a signal handler may not wait");

extern "C" void MarkInterrupt(int number) {
  interrupted = true;
  std::signal(number, SIG_DFL);
}

}  // namespace

void CatchInterrupts() {
  interrupted = false;
  OnRequestToEnd(MarkInterrupt);
}

void LetLargeWritesFail() {
#ifdef SIGXFSZ
  std::signal(SIGXFSZ, SIG_IGN);
#endif
}

bool Interrupted() {
  return interrupted;
}

}  // namespace texturon
