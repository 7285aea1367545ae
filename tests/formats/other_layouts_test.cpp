// Layouts of single instruments, and files of real ones.

#include <cstdlib>
#include <gtest/gtest.h>
#include <stdexcept>
#include <string>
#include <vector>

#include "formats/import.h"
#include "formats/reading.h"
#include "formats/sample_texts.h"
#include "support/near.h"
#include "support/scratch_folder.h"

namespace texturon {
namespace {

const SampleText& SampleOf(const std::string& reader) {
  for (const SampleText& sample : SampleTexts()) {
    if (sample.reader == reader) return sample;
  }
  throw std::runtime_error(reader);
}

TEST(OtherLayouts, SayWhatTheyAssumedAndRefuse) {
  const ScratchFolder folder;
  ChoosingPrompts prompts;
  const auto load = [&](const char* name, const std::string& bytes, const ImportOptions& options = {}) {
    prompts = {};
    prompts.textAnswer = "2";
    return LoadProfileFile(folder.Write(name, bytes), options, prompts);
  };
  const std::string gauge = SampleOf("SMD softgauge").bytes;
  const ImportOutcome good = load("a.smd", gauge);
  EXPECT_TRUE(good.profile.warnings.empty());
  EXPECT_DOUBLE_EQ(good.profile.tipRadiusMM, 0.002);
  EXPECT_EQ(good.profile.date, "01.02.2020 - 10:11");
  EXPECT_EQ(good.profile.identification, "Sine-1");
  EXPECT_EQ(load("a.smd", Replaced(gauge, "-20", "-21")).profile.warnings.size(), 1u) << "the sum tells";
  EXPECT_FALSE(load("a.smd", Replaced(gauge, "CZ A 3", "CZ A 4")).loaded);

  const std::string binary = SampleOf("Digital Surf profile").bytes;
  EXPECT_FALSE(load("a.pro", Replaced(binary, "DIGITAL SURF", "DSCOMPRESSED")).loaded);
  EXPECT_NE(prompts.messages[0].find("Compressed"), std::string::npos);
  EXPECT_FALSE(load("a.pro", Replaced(binary, "um ", "a.u")).loaded) << "an intensity";
  EXPECT_FALSE(load("a.pro", binary.substr(0, binary.size() - 1)).loaded);

  const std::string tester = SampleOf("surface tester text").bytes;
  EXPECT_FALSE(load("a.txt", tester.substr(0, tester.find("// CalcData"))).loaded) << "results only";
  EXPECT_TRUE(load("a.txt", Replaced(tester, "P_ISO97", "R_ISO97")).loaded);
  EXPECT_EQ(prompts.messages[0], "WARNING: Filtered data found!");

  // The first column counts the points; 4, 5, 6 are positions without a unit.
  const ImportOutcome indexed = load("b.txt", "1 4 5\n2 5 -25400\n3 6 7\n");
  ASSERT_TRUE(indexed.loaded) << indexed.reason;
  EXPECT_EQ(indexed.profile.heightsUM, (std::vector<double>{5, 6, 7}));
  EXPECT_EQ(indexed.profile.warnings.size(), 2u) << "units and an interpolated point";
  // Positions 0, 1, 2 without a unit only count the points.
  EXPECT_DOUBLE_EQ(load("c.xy", "0 5\n1 6\n2 7\n").profile.spacingUM, 2.0);
  EXPECT_EQ(prompts.questions, std::vector<std::string>{"Enter the data point spacing (um):"});
  EXPECT_FALSE(load("d.xy", "0 5\n0.3 6\n0.1 7\n0.4 8\n").loaded) << "positions go back";
  std::string wide = "\xFF\xFE";
  for (const char c : std::string("mm;\xB5m\r\n0,1;1\r\n0,2;2\r\n0,3;4\r\n")) wide += {c, '\0'};
  EXPECT_EQ(load("e.txt", wide).attempts.back().reader, "text with a unit pair");
}

/// Files of real instruments, where they are at hand.
TEST(MeasuredFiles, AreReadWithTheirPointsSpacingAndHeights) {
  const char* folder = std::getenv("TEXTURON_MEASURED");
  if (folder == nullptr) GTEST_SKIP() << "TEXTURON_MEASURED is not set";
  struct Case {
    const char* file;
    std::size_t points;
    double spacingUM;
    double firstUM;
  };
  const Case cases[] = {
      {"tx1/3.tx1", 28087, 10'000.0 / 28086.0, 10.672}, {"sdf/sdf-1.sdf", 7, 1.0, 1.0},
      {"hfm/hfm-1.hfm", 9600, 0.5, 106'606.853},        {"kla/MoNbTaWV_2D_karkea.txt", 3696, 1.0, -5.56922},
      {"xy/3000rpm_3.txt", 1286, 1.0, -0.087596},       {"xy/SPH1.csv", 1995, 24.892, 280.416006},
      {"xy/SPH_1.DAT", 1995, 24.892, 280.416006},       {"xy/csv-2.csv", 8, 1.0 / 12.0, -1.4274328574349},
      {"xy/xy-4.txt", 10'001, 0.0995613, 0.003581},     {"xy/dabam-010.dat", 435, 1020.0, 0.00558},
  };
  for (const Case& c : cases) {
    SilentPrompts prompts;
    const ImportOutcome outcome = LoadProfileFile(std::filesystem::path(folder) / c.file, {}, prompts);
    ASSERT_TRUE(outcome.loaded) << c.file << " " << outcome.reason;
    EXPECT_EQ(outcome.profile.heightsUM.size(), c.points) << c.file;
    EXPECT_TRUE(Near(outcome.profile.spacingUM, c.spacingUM, 1e-8)) << c.file;
    EXPECT_TRUE(Near(outcome.profile.heightsUM.front(), c.firstUM, 1e-9)) << c.file;
  }
  SilentPrompts prompts;
  EXPECT_FALSE(LoadProfileFile(std::filesystem::path(folder) / "digitalsurf/test_profile.pro", {}, prompts).loaded);
}

}  // namespace
}  // namespace texturon
