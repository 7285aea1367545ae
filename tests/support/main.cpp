// SPDX-License-Identifier: Apache-2.0

// Runs the tests under the locale of the environment, as a desktop program would: nothing may depend on it; and in a
// folder of their own, which keeps what a test leaves in the current one.

#include <clocale>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <gtest/gtest.h>
#include <iostream>

#include "support/scratch_folder.h"

#ifdef __SANITIZE_ADDRESS__
/// What the font and message-bus libraries and the C library's locale keep to the end of the process is not ours to
/// free. The sanitizer finds the function only where it is not hidden.
extern "C" __attribute__((visibility("default"))) const char* __lsan_default_suppressions() {
  return "leak:libfontconfig\nleak:libdbus-1\nleak:argz_add_sep";
}
#endif

int main(int argc, char** argv) {
  std::setlocale(LC_ALL, "");
  std::setlocale(LC_MESSAGES, "C");  // golden texts hold what the system says in English
  if (std::getenv("TEXTURON_EXPECT_DECIMAL_COMMA") != nullptr &&
      std::strcmp(std::localeconv()->decimal_point, ",") != 0) {
    std::cerr << "the locale of this run has no decimal comma: it would test nothing\n";
    return 1;
  }
  const texturon::ScratchFolder folder;
  std::filesystem::current_path(folder.path());
  ::setenv("XDG_STATE_HOME", (folder / "state").c_str(), 1);
  ::testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
