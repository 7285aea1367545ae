// SPDX-License-Identifier: Apache-2.0

#include "settings/settings_listing.h"

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <string>

namespace texturon {
namespace {

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
