// SPDX-License-Identifier: Apache-2.0

#include "platform/interrupt.h"

#include <csignal>

namespace texturon {
namespace {

volatile std::sig_atomic_t interrupted = 0;

extern "C" void MarkInterrupt(int number) {
  interrupted = 1;
  std::signal(number, SIG_DFL);
}

}  // namespace

void CatchInterrupts() {
  interrupted = 0;
  std::signal(SIGINT, MarkInterrupt);
  std::signal(SIGTERM, MarkInterrupt);
#ifdef SIGPIPE
  std::signal(SIGPIPE, SIG_IGN);
#endif
}

void LetLargeWritesFail() {
#ifdef SIGXFSZ
  std::signal(SIGXFSZ, SIG_IGN);
#endif
}

bool Interrupted() {
  return interrupted != 0;
}

}  // namespace texturon
