// SPDX-License-Identifier: Apache-2.0

#include "settings/settings_listing.h"

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <string>

namespace texturon {
namespace {

TEST(SettingsListing, ShowsDefaultsInFull) {
  struct Case {
    std::string_view key;
    std::string_view type;
    std::string_view defaultText;
  };
  const Case cases[] = {
      {"C_CurvatureMM", "number", "-0.021008403361344536"},
      {"LcCutoffMM", "number", "0.8"},
      {"AutoLoadMask", "text", "*.*"},
      {"IniVersion", "version", "2.00"},
      {"AvailableParameters", "count", "0"},
      {"Name%02d", "text", ""},
      {"A%d", "coefficient", "0"},
      {"PDepthUM%02d", "number", "0.5, 1, 1.5, 2, 2.5, 0.5, 1, 1.5, 2, 2.5"},
      {"UpperPercent%02d", "number", "50, 60, 70, 80, 90, 50, 60, 70, 80, 90"},
      {"Metric", "flag", "1"},
  };
  for (const Case& c : cases) {
    bool found = false;
    for (const SettingDescription& row : DescribeSettings()) {
      if (row.key != c.key) continue;
      found = true;
      EXPECT_EQ(row.type, c.type) << c.key;
      EXPECT_EQ(row.defaultText, c.defaultText) << c.key;
    }
    EXPECT_TRUE(found) << c.key;
  }
}

// The page is written by hand around the listing; what it must hold is left beside the test where it does not.
TEST(SettingsListing, TheManualHoldsTheWholeListing) {
  std::ifstream page(std::filesystem::path(TEXTURON_SOURCE_DIR) / "docs" / "settings.md", std::ios::binary);
  const std::string text{std::istreambuf_iterator<char>(page), {}};
  if (text.find(SettingsMarkdown()) != std::string::npos) return;
  const std::filesystem::path wanted = std::filesystem::path(::testing::TempDir()) / "settings_listing.md";
  std::ofstream(wanted, std::ios::binary) << SettingsMarkdown();
  FAIL() << "docs/settings.md does not hold the listing as it is now: copy it from " << wanted;
}

}  // namespace
}  // namespace texturon
