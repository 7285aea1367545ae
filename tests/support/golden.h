// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <sstream>
#include <string>

namespace texturon {

inline std::filesystem::path GoldenFolder() {
  return std::filesystem::path(TEXTURON_SOURCE_DIR) / "tests/golden";
}

/// Compares a text with a file of tests/golden and names the first line that differs. What came instead is left in the
/// folder that TEXTURON_GOLDEN_ACTUAL names, for a person to compare and, where it is right, to take over.
inline ::testing::AssertionResult MatchesGolden(const std::filesystem::path& name, const std::string& actual) {
  std::ifstream file(GoldenFolder() / name, std::ios::binary);
  const std::string expected{std::istreambuf_iterator<char>(file), {}};
  if (actual == expected) return ::testing::AssertionSuccess();
  if (const char* folder = std::getenv("TEXTURON_GOLDEN_ACTUAL")) {
    std::filesystem::create_directories((folder / name).parent_path());
    std::ofstream(folder / name, std::ios::binary) << actual;
  }
  std::istringstream expectedLines(expected);
  std::istringstream actualLines(actual);
  std::string expectedLine, actualLine;
  for (int number = 1;; ++number) {
    const bool isMore = static_cast<bool>(std::getline(expectedLines, expectedLine));
    const bool came = static_cast<bool>(std::getline(actualLines, actualLine));
    if (isMore && came && expectedLine == actualLine) continue;
    return ::testing::AssertionFailure() << "tests/golden/" << name.generic_string() << ":" << number
                                         << "\n  expected: " << (isMore ? expectedLine : "(the end)")
                                         << "\n  actual:   " << (came ? actualLine : "(the end)");
  }
}

}  // namespace texturon
