// SPDX-License-Identifier: Apache-2.0

#include <gtest/gtest.h>
#include <random>
#include <string>

#include "analysis/pipeline.h"
#include "settings/settings_check.h"
#include "settings/settings_file.h"
#include "settings/settings_text.h"
#include "support/mutate.h"

namespace texturon {
namespace {

/// Any text loads into settings that saving and loading no longer change, and that an analysis survives.
TEST(HostileSettings, LoadSaveAndComputeWithoutHarm) {
  Document pristine = MakeDocument();
  IniFile seedFile;
  SaveSettingsText(seedFile, pristine.settings);
  const std::string seed = seedFile.Bytes();
  std::vector<double> heights(300);
  std::mt19937_64 random(9);
  for (double& z : heights) z = static_cast<double>(random() % 1000) * 0.001;
  SilentPrompts prompts;
  for (int round = 0; round < 300; ++round) {
    std::string text = seed;
    for (int injury = 0; injury < 6; ++injury) text = Mutate(text, random).append("\r\n");
    // A value for a random key, where mutation alone would rarely put one.
    const std::size_t line = text.find("=", random() % text.size());
    const char* const values[] = {"1e308", "-1e308", "0", "-5", "2147483647", "nan", "1e-308", "7"};
    if (line != std::string::npos) text.insert(line + 1, values[random() % std::size(values)]);
    const IniFile file(UpgradeSettingsText(text));
    Settings settings = pristine.settings;
    LoadSettingsText(file, settings);
    ASSERT_LE(settings.analysis.parameters.size(), kMostParameters);
    ASSERT_LE(settings.analysis.freeFormPoints.size(), kMostFreeFormPoints);
    (void)CheckSettings(file);

    // The first reading may cut a number of more than 63 digits; after that nothing may change any more.
    std::string former;
    for (int pass = 0; pass < 3; ++pass) {
      IniFile saved;
      SaveSettingsText(saved, settings);
      if (pass == 2) {
        EXPECT_EQ(saved.Bytes(), former);
      }
      former = saved.Bytes();
      LoadSettingsText(saved, settings);
    }

    if (round % 5 != 0) continue;
    Document document = pristine;
    document.writesTraceFile = false;
    ApplySettings(document, settings);
    SetProfile(document, MakeProfileSet(heights, 0.5));
    EXPECT_EQ(Compute(document, prompts, {}), ComputeOutcome::kDone);
  }
}

}  // namespace
}  // namespace texturon
