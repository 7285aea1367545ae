// SPDX-License-Identifier: Apache-2.0

// Layouts of single instruments, and files of real ones.

#include <cstdlib>
#include <gtest/gtest.h>
#include <stdexcept>
#include <string>
#include <utility>
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
  const std::string comment = "COMMENT /* it says\r\nDATE unknown\r\n*/\r\nTIME 10:11\r\n";
  EXPECT_EQ(load("a.smd", Replaced(gauge, "TIME 10:11\r\n", comment)).profile.date, "01.02.2020 - 10:11");
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
  EXPECT_EQ(load("a.txt", tester + "// CalcData\n7\n").profile.heightsUM.size(), 3u) << "two profiles are not one";
  const std::string sections = SampleOf("MarSurf text").bytes;
  EXPECT_EQ(load("a.txt", sections + sections).profile.heightsUM.size(), 3u);
  EXPECT_EQ(load("a.txt", "1,5\r\n-2,25\r\n0,5\r\n").profile.heightsUM, (std::vector<double>{1.5, -2.25, 0.5}));
  EXPECT_TRUE(load("a.txt", Replaced(tester, "P_ISO97", "R_ISO97")).loaded);
  EXPECT_EQ(prompts.messages[0], "WARNING: Filtered data found!");

  // The first column counts the points; 4, 5, 6 are positions without a unit.
  const ImportOutcome indexed = load("b.txt", "1 4 5\n2 5 -25400\n3 6 7\n");
  ASSERT_TRUE(indexed.loaded) << indexed.reason;
  EXPECT_EQ(indexed.profile.heightsUM, (std::vector<double>{5, 6, 7}));
  EXPECT_EQ(indexed.profile.warnings.size(), 2u) << "units and an interpolated point";
  const ImportOutcome rounded = load("b.txt", "n;mm;um\n1;0,0;1\n2;0,3;2\n3;0,7;4\n4;1,0;8\n");
  EXPECT_EQ(rounded.profile.heightsUM, (std::vector<double>{1, 2, 4, 8})) << "even but for the printed digits";
  // Positions 0, 1, 2 without a unit only count the points.
  EXPECT_DOUBLE_EQ(load("c.xy", "0 5\n1 6\n2 7\n").profile.spacingUM, 2.0);
  EXPECT_EQ(prompts.questions, std::vector<std::string>{"Enter the data point spacing (um):"});
  EXPECT_FALSE(load("d.xy", "0 5\n0.3 6\n0.1 7\n0.4 8\n").loaded) << "positions go back";
}

TEST(OtherLayouts, TakeWhatTheirHeadersSay) {
  const ScratchFolder folder;
  ChoosingPrompts prompts;
  prompts.textAnswer = "2";
  const auto load = [&](const char* name, const std::string& bytes, const ImportOptions& options = {}) {
    return LoadProfileFile(folder.Write(name, bytes), options, prompts);
  };
  const ImportOutcome record = load("a.prf", SampleOf("keyed text of a record").bytes);
  EXPECT_EQ(record.profile.identification, "Shaft 7");
  EXPECT_EQ(record.profile.date, "01.02.2020 10:11");
  EXPECT_EQ(record.profile.spacingSource, "positions of the points");
  EXPECT_FALSE(load("b.prf", "OBJECT=a\nNUMBER=1\nDateTime=x\n").loaded);
  EXPECT_NE(prompts.messages.back().find("not read yet"), std::string::npos);

  folder.Write("t.TX3", "Fecha\t08.04.2025\r\nHora\t18:18:57\r\n");
  EXPECT_EQ(load("t.tx1", SampleOf("TX1/TX2 text").bytes).profile.date, "08.04.2025 - 18:18:57");

  const std::vector<SampleText>& samples = SampleTexts();
  std::vector<ImportOutcome> exports;
  for (const SampleText& sample : samples) {
    if (sample.extension == ".csv") exports.push_back(load("a.csv", sample.bytes));
  }
  EXPECT_DOUBLE_EQ(exports.at(0).profile.tipRadiusMM, 0.0125);
  EXPECT_EQ(exports.at(0).profile.spacingSource, "scan parameter Length");
  EXPECT_EQ(exports.at(1).profile.identification, "Shaft 4; left");
  EXPECT_EQ(exports.at(1).profile.date, "01/02/2020 - 10:11");

  // Line 1 is a height like the others, or the caller knows that it is one.
  for (const char* heights : {"1.5\n-2\n0.25\n", "0.500\n1.500\n-2.000\n0.250\n"}) {
    EXPECT_EQ(load("a.txt", heights).attempts.back().reader, "generic text") << heights;
  }
  const std::string gauge = SampleOf("plain softgauge text").bytes;
  EXPECT_EQ(load("a.txt", gauge, {.spacingUM = 3.0}).profile.heightsUM.size(), 4u);
  EXPECT_DOUBLE_EQ(load("a.txt", "25\n0.01\n0.02\n0.015\n").profile.spacingUM, 25.0) << "stands far off the heights";
  EXPECT_DOUBLE_EQ(load("a.pro", "a\nb\nc\nd\n2\n2.5\n1\n2\n").profile.spacingUM, 2.5);
  EXPECT_FALSE(load("a.pro", "a\nb\nc\nd\n3\n2.5\n1\n2\n").loaded) << "one too few";
}

TEST(OtherLayouts, ReadEveryPairOfUnits) {
  const ScratchFolder folder;
  struct Case {
    const char* name;
    const char* units;
    const char* separator;
    double spacingUM;
    double secondUM;
  };
  const Case cases[] = {
      {"a.csv", "mm,mm", ",", 500.0, 2000.0},
      {"a.csv", "mm,um", ",", 500.0, 2.0},
      {"a.csv", "mm, mm", ", ", 500.0, 2000.0},
      {"a.csv", "mm , mm", " , ", 500.0, 2000.0},
      {"a.csv", "mm, um", ", ", 500.0, 2.0},
      {"a.csv", "um,um", ",", 0.5, 2.0},
      {"a.csv", "\"X\", \"Height\"\n\"mm\", \"um\"", ", ", 500.0, 2.0},
      {"a.txt", "mm;mm", ";", 500.0, 2000.0},
      {"a.txt", "um;um", ";", 0.5, 2.0},
      {"a.txt", "nm;nm", ";", 0.0005, 0.002},
      {"a.asc", "X [mm]\tZ [um]", "\t", 500.0, 2.0},
  };
  for (const Case& c : cases) {
    std::string text = std::string(c.units) + "\n";
    for (const auto& [x, z] : {std::pair{"0.5", "1"}, {"1.0", "2"}, {"1.5", "-3"}})
      text += std::string(x) + c.separator + z + "\n";
    ScriptedPrompts prompts;
    const ImportOutcome outcome = LoadProfileFile(folder.Write(c.name, text), {}, prompts);
    ASSERT_TRUE(outcome.loaded) << c.units << ": " << outcome.reason;
    EXPECT_TRUE(Near(outcome.profile.spacingUM, c.spacingUM, 1e-12)) << c.units;
    EXPECT_TRUE(Near(outcome.profile.heightsUM[1], c.secondUM, 1e-12)) << c.units;
    EXPECT_TRUE(outcome.profile.warnings.empty()) << c.units;
  }
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
