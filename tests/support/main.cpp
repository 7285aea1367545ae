// SPDX-License-Identifier: Apache-2.0

// Runs the tests under the locale of the environment, as a desktop program would: nothing may depend on it.

#include <clocale>
#include <cstdlib>
#include <cstring>
#include <gtest/gtest.h>
#include <iostream>

int main(int argc, char** argv) {
  std::setlocale(LC_ALL, "");
  if (std::getenv("TEXTURON_EXPECT_DECIMAL_COMMA") != nullptr &&
      std::strcmp(std::localeconv()->decimal_point, ",") != 0) {
    std::cerr << "the locale of this run has no decimal comma: it would test nothing\n";
    return 1;
  }
  ::testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
