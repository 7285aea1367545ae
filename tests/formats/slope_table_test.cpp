// SPDX-License-Identifier: Apache-2.0

#include <cmath>
#include <gtest/gtest.h>

#include "base/number_text.h"
#include "formats/import.h"
#include "support/near.h"

namespace texturon {
namespace {

// The gradient of a parabola is a straight line, which trapezia integrate exactly; a point without a slope is bridged.
TEST(SlopeTable, IsIntegratedWhereThatIsAskedFor) {
  constexpr double kRadiusUM = 2e6;
  constexpr int kPoints = 200;
  std::string text = "x (mm),slope (urad)\n";
  for (int i = 0; i < kPoints; ++i) {
    const double xUM = 10.0 * i;
    text += ShortestText(xUM * 1e-3) + "," + (i == 50 ? "NaN" : ShortestText(std::atan(xUM / kRadiusUM) * 1e6)) + "\n";
  }
  CollectingPrompts prompts;
  const auto load = [&](std::string_view name, std::string_view bytes, bool integrates) {
    return LoadProfileBytes(name, bytes, {.integratesSlopes = integrates}, prompts);
  };
  const ImportOutcome outcome = load("a.csv", text, true);
  ASSERT_TRUE(outcome.loaded) << outcome.reason;
  EXPECT_EQ(outcome.profile.spacingUM, 10.0);
  ASSERT_EQ(outcome.profile.heightsUM.size(), kPoints);
  for (int i = 0; i < kPoints; i += 49) {
    EXPECT_NEAR(outcome.profile.heightsUM[static_cast<std::size_t>(i)], 50.0 * i * i / kRadiusUM, 1e-9) << i;
  }
  ASSERT_FALSE(prompts.notices().empty());
  EXPECT_FALSE(load("a.csv", text, false).loaded);
  EXPECT_FALSE(load("a.csv", "x (mm),z (um)\n0,1\n1,2\n2,1\n3,2\n4,1\n", true).loaded);
  EXPECT_EQ(
      load("a.lmt",
           "Lumetrace_Data 1.0\nIDENTIFICATION: \nDATE: \nSPACING_UM: 1\nNUMBER_OF_POINTS: 2\nPROFILE_UM:\n1\n2\n",
           true)
          .reason,
      "is no table of slopes");
}

}  // namespace
}  // namespace texturon
