// SPDX-License-Identifier: Apache-2.0

// The formats that are written.

#include <ctime>
#include <gtest/gtest.h>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "formats/extension_table.h"
#include "formats/import.h"
#include "formats/mod_writer.h"
#include "formats/native_format.h"
#include "support/golden.h"
#include "support/near.h"
#include "support/scratch_folder.h"
#include "support/scripted_prompts.h"

namespace texturon {
namespace {

const std::vector<double> kHeights = {-0.000004, -0.000006, 1.5, -12.3456789, 123.4567896};

/// 4 March 2015, 09:05:07.
std::tm SavedAt() {
  std::tm time{};
  time.tm_year = 115;
  time.tm_mon = 2;
  time.tm_mday = 4;
  time.tm_hour = 9;
  time.tm_min = 5;
  time.tm_sec = 7;
  return time;
}

TEST(Writers, WriteExactlyTheseBytes) {
  const ScratchFolder folder;
  ScriptedPrompts prompts;
  for (const WriterEntry& writer : WriterTable()) {
    std::filesystem::path path = folder / ("written" + std::string(writer.extension));
    ASSERT_TRUE(writer.write(path, {kHeights, 0.5, "Bo.e 3\t/ left\r\n", SavedAt()}, prompts).ok());
    EXPECT_TRUE(
        MatchesGolden(std::filesystem::path("formats") / path.filename(), folder.Read(path.filename().string())));
  }
}

TEST(Writers, GiveBackRandomProfilesToTheFormatsResolution) {
  const ScratchFolder folder;
  std::mt19937_64 random(3);
  std::uniform_real_distribution<double> height(-500.0, 500.0);
  for (const WriterEntry& writer : WriterTable()) {
    for (const double spacingUM : {0.05, 0.25, 0.356051, 10.0}) {
      std::vector<double> heights(1 + random() % 3000);
      for (double& z : heights) z = height(random);
      ScriptedPrompts prompts;
      std::filesystem::path path = folder / ("x" + std::string(writer.extension));
      ASSERT_TRUE(writer.write(path, {heights, spacingUM, "SHAFT1 of 12", SavedAt()}, prompts).ok());
      const ImportOutcome back = LoadProfileFile(path, {}, prompts);
      ASSERT_TRUE(back.loaded) << back.reason;
      EXPECT_TRUE(back.profile.warnings.empty()) << writer.extension << back.profile.warnings.front();
      const double resolution = writer.extension == ".prf" ? 5.1e-6 : 5.1e-7;
      EXPECT_TRUE(AllNear(back.profile.heightsUM, heights, resolution)) << writer.extension;
      // PR keeps two decimals of points per mm.
      EXPECT_TRUE(Near(back.profile.spacingUM, spacingUM, writer.extension == ".pr" ? 5e-6 * spacingUM : 1e-9));
    }
    ScriptedPrompts prompts;
    std::filesystem::path path = folder / "none";
    EXPECT_FALSE(writer.write(path, {{}, 1.0, "", SavedAt()}, prompts).ok());
    EXPECT_FALSE(writer.write(path, {kHeights, 0.0, "", SavedAt()}, prompts).ok());
    EXPECT_FALSE(std::filesystem::exists(path));
    EXPECT_EQ(prompts.messages.size(), 2u);
  }
}

TEST(Writers, GiveTheNativeExtensionAndSayWhatTheyCannotWrite) {
  const ScratchFolder folder;
  ScriptedPrompts prompts;
  ProfileToWrite profile{kHeights, 0.5, "Shaft 12", SavedAt()};
  std::filesystem::path path = folder / "run1.txt";
  EXPECT_TRUE(WriteNativeProfile(path, profile, prompts).ok());
  EXPECT_EQ(path, folder / "run1.lmt");
  profile.spacingUM = 4e-7;
  EXPECT_NE(WriteNativeProfile(path, profile, prompts).reason.find("4e-07 um as 0"), std::string::npos);
  EXPECT_NE(folder.Read("run1.lmt"), "") << "the former file is unharmed";
  profile.spacingUM = 0.5;
  path = folder / "no such folder" / "x.lmt";
  EXPECT_FALSE(WriteNativeProfile(path, profile, prompts).ok());
  EXPECT_EQ(prompts.messages.back(), "Could not write file.");
}

TEST(ModWriter, WritesWavinessAndAsphereResiduals) {
  WavinessMod waviness{.points = {kHeights, 0.5, 1000, 0.2}, .isArc = true, .assessmentLengthMM = 0.001};
  EXPECT_TRUE(MatchesGolden("formats/arc.mod", WavinessModText(waviness).bytes));
  waviness.isArc = false;
  EXPECT_TRUE(MatchesGolden("formats/line.mod", WavinessModText(waviness).bytes)) << "no offset without an arc";
  const std::vector<ModCoefficient> coefficients = {{4.0, 1e-6}, {6.0, -2e-9}};
  const AsphereMod asphere{.points = {kHeights, 0.5, 0, 0.0005},
                           .identification = "A.B",
                           .version = 2.0,
                           .assessmentLengthMM = 0.001,
                           .coefficients = coefficients,
                           .radiusMM = -40.0,
                           .conic = -0.8,
                           .comment = "two\r\nlines"};
  const std::string text = AsphereModText(asphere).bytes;
  EXPECT_TRUE(MatchesGolden("formats/asphere.mod", text));
  ScriptedPrompts prompts;
  const ImportedProfile back = LoadProfileBytes("a.mod", text, {}, prompts).profile;
  EXPECT_EQ(back.identification, "A_B   _2");
  EXPECT_TRUE(AllNear(back.heightsUM, kHeights, 1e-7)) << "six decimals of the power";

  const std::vector<double> odd = {1.0, std::numeric_limits<double>::quiet_NaN()};
  const std::vector<ModCoefficient> many(21);
  EXPECT_FALSE(WavinessModText({.points = {{}, 0.5}}).ok());
  EXPECT_FALSE(WavinessModText({.points = {kHeights, 0.0}}).ok());
  EXPECT_FALSE(WavinessModText({.points = {odd, 0.5}}).ok());
  EXPECT_FALSE(AsphereModText({.points = {kHeights, 0.5}, .radiusMM = odd[1]}).ok());
  EXPECT_FALSE(AsphereModText({.points = {kHeights, 0.5}, .coefficients = many}).ok());
}

}  // namespace
}  // namespace texturon
