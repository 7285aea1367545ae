// SPDX-License-Identifier: Apache-2.0

#include <algorithm>
#include <functional>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "base/number_text.h"
#include "formats/import.h"

namespace texturon {
namespace {

/// Rows of X in mm, `step` apart with `decimals`, and Z; a row whose text is empty is left out.
std::string Table(int rows, double stepMM, int decimals, const std::function<std::string(int)>& z) {
  std::string text = "X (mm),Z (um)\n";
  for (int i = 0; i < rows; ++i) {
    if (!z(i).empty()) text += FixedText(stepMM * i, decimals) + "," + z(i) + "\n";
  }
  return text;
}

TEST(BrokenTable, IsRefusedOrBridgedButNeverCutInSilence) {
  const auto wave = [](int i) { return ShortestText(0.1 * (i % 10)); };
  const auto badAt = [&wave](std::vector<int> bad, std::string mark) {
    return [=](int i) { return std::find(bad.begin(), bad.end(), i) == bad.end() ? wave(i) : mark; };
  };
  const struct {
    const char* what;
    std::string text;
    std::size_t points;  // 0: refused
  } cases[] = {{"no height at all", Table(200, 0.5, 1, [](int) { return "NaN"; }), 0},
               {"two rows that are none", Table(200, 0.001, 3, badAt({50, 51}, "*")), 0},
               {"two rows with one between", Table(200, 0.001, 3, badAt({50, 52}, "*")), 0},
               {"near the end", Table(200, 0.001, 3, badAt({150, 151, 152}, "*")), 0},
               {"a row that is not there", Table(2000, 0.001, 3, badAt({60}, "")), 2000},
               {"rows that are not there", Table(2000, 0.001, 3, badAt({60, 900, 1000}, "")), 2000},
               {"an even step between the digits", Table(2000, 0.0013, 3, wave), 2000},
               {"nearly one digit", Table(2000, 0.001005, 3, wave), 2000}};
  for (const auto& c : cases) {
    SilentPrompts nobody;
    const ImportOutcome outcome = LoadProfileBytes("a.csv", c.text, {}, nobody);
    EXPECT_EQ(outcome.loaded, c.points > 0) << c.what << ": " << outcome.reason;
    EXPECT_EQ(outcome.profile.heightsUM.size(), outcome.loaded ? c.points : outcome.profile.heightsUM.size()) << c.what;
  }
}

}  // namespace
}  // namespace texturon
