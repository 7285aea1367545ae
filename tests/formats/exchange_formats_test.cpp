// SPDX-License-Identifier: Apache-2.0

// The four formats that are written, and what is told of reading three of them.

#include <gtest/gtest.h>
#include <random>
#include <string>
#include <vector>

#include "base/number_text.h"
#include "formats/extension_table.h"
#include "formats/import.h"
#include "formats/mod_format.h"
#include "formats/pr_format.h"
#include "formats/prf_format.h"
#include "formats/reading.h"
#include "formats/sample_texts.h"
#include "formats/sdf_format.h"
#include "support/near.h"
#include "support/scratch_folder.h"

namespace texturon {
namespace {

const std::vector<double> kHeights = {-0.000004, -0.000006, 1.5, -12.3456789};

TEST(Writers, WriteExactlyTheseBytes) {
  EXPECT_EQ(PrfProfileText({kHeights, 0.5, "A.B C and more", SavedAt()}),
            Lines({"1 2", "A_B_C_ 0.000000 PRF", "CX M 4.000000e+000 MM 5.000000e-004 D",
                   "CZ M 4.000000e+000 MM 1.000000e-008 D", "EOR", "STYLUS_RADIUS 0.000000e+000 MM",
                   "SPACING CX 5.000000e-004 MM", "MAP 1.000000e+000 CZ CZ 1.000000e+000 1.000000e+000",
                   "MAP 2.000000e+000 CZ CX 1.000000e+000 0.000000e+000", "EOR", "0", "-1", "150000", "-1234568", "EOR",
                   "EOF"}));
  EXPECT_EQ(SdfProfileText({kHeights, 0.5, "Shaft 12, left", SavedAt()}),
            Lines({"aNIST-1.0", "ManufacID   = Shaft 12, ", "CreateDate  = 040320150905", "ModDate     = 040320150905",
                   "NumPoints   = 4", "NumProfiles = 1", "Xscale      = 5.000000e-007", "Yscale      = 1.000000",
                   "Zscale      = 1.000000e-006", "Zresolution = -1", "Compression = 0", "DataType    = 7",
                   "CheckType   = 0", "*", "-0.000004", "-0.000006", "1.500000", "-12.345679"}));
  const std::vector<double> flat(4000, 1.0);
  EXPECT_TRUE(PrProfileText({flat, 0.5, "Bore 3\t/ left\r\n", SavedAt()})
                  .starts_with("Profil Bore3/left\r\n"
                               "X-Ma\xDF = 2.00 X-Aufl\xF6sung 2000.00 Punkte/Zeile : 4000\r\n1.000000\r\n"));
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
      const bool isPrf = writer.extension == ".prf";
      EXPECT_TRUE(AllNear(back.profile.heightsUM, heights, isPrf ? 5.1e-6 : 5.1e-7)) << writer.extension;
      // PR keeps two decimals of points per mm.
      EXPECT_TRUE(Near(back.profile.spacingUM, spacingUM, writer.extension == ".pr" ? 5e-6 * spacingUM : 1e-9));
      const std::string name = back.profile.identification;
      EXPECT_EQ(name, isPrf                        ? "SHAFT1_0"
                      : writer.extension == ".sdf" ? "SHAFT1 of"
                      : writer.extension == ".pr"  ? "SHAFT1of12"
                                                   : "SHAFT1 of 12");
    }
    ScriptedPrompts prompts;
    std::filesystem::path path = folder / "none";
    EXPECT_FALSE(writer.write(path, {{}, 1.0, "", SavedAt()}, prompts).ok());
    EXPECT_FALSE(writer.write(path, {kHeights, 0.0, "", SavedAt()}, prompts).ok());
    EXPECT_FALSE(std::filesystem::exists(path));
    EXPECT_EQ(prompts.messages.size(), 2u);
  }
}

const std::string kPrf = PrfProfileText({kHeights, 0.5, "SHAFT1", SavedAt()});

TEST(Prf, RefusesDamagedFilesInTheseWords) {
  struct Case {
    std::string bytes;
    std::vector<std::string> messages;
  };
  const std::string one = "Error reading record one.";
  const std::string two = "Error reading record 2.";
  const std::string three = "Error reading record 3.";
  const Case cases[] = {
      {"2 2\n", {}},
      {std::string(100, '\0'), {}},
      {"0 2\n", {"Error reading record 1."}},
      {Replaced(kPrf, "1 2", "12 2"), {"ASCII File Not Found", one}},
      {Replaced(kPrf, "1 2", "1 4"), {"Invalid Version", one}},
      {"1 2\r\n", {"Error in File", one}},
      {Replaced(kPrf, "PRF", "MOD"), {"Not a true PRF File", one}},
      {Replaced(kPrf, "CX M", "CX Q"), {"Error: Invalid Data Type", one}},
      {Replaced(kPrf, "CZ M", "CY M"), {"Z-Axis Info not found!!!", one}},
      {"1 2\nSHAFT1 0 PRF\nEOR\n", {"Z-Axis Info not found!!!", one}},
      {Replaced(kPrf, "CZ M 4.000000e+000 MM", "CZ M 4.000000e+000 ELL"), {"Error in File", one}},
      {Replaced(kPrf, "5.000000e-004 MM\r\nMAP", "x MM\r\nMAP"), {two}},
      {Replaced(kPrf, "SPACING CX", "SPACING CZ"), {two}},
      {Replaced(kPrf, "150000", "abc"), {three}},
      {Replaced(kPrf, "CZ M 4.0", "CZ M 5.0"), {three}},
      {Replaced(kPrf, "CZ M 4.000000e+000", "CZ M 2.000000e+009"), {three}},
      {kPrf.substr(0, kPrf.find("MAP")), {two}},
  };
  for (const Case& c : cases) {
    const Reading reading = Read(ReadPrfProfile, c.bytes);
    EXPECT_EQ(reading.prompts.messages, c.messages) << c.bytes.substr(0, 200);
    EXPECT_EQ(reading.result.status,
              c.messages.empty() ? ReadResult::Status::kNotRecognised : ReadResult::Status::kRefused);
    EXPECT_LE(reading.profile.heightsUM.capacity(), 16u);
  }
}

TEST(Prf, TakesWhatOtherProgramsWrite) {
  const Reading version3 = Read(ReadPrfProfile, Replaced(Replaced(kPrf, "1 2", "1 3"), "SHAFT1 0", "\"Shaft\" 0"));
  EXPECT_EQ(version3.profile.identification, "Shaft");
  const Reading shortName = Read(ReadPrfProfile, Replaced(kPrf, "SHAFT1", "AB"));
  EXPECT_EQ(shortName.profile.identification, "AB 0.0_0");
  const Reading inUM = Read(ReadPrfProfile, Replaced(kPrf, "CX 5.000000e-004 MM", "CX 0.7 UM"));
  EXPECT_DOUBLE_EQ(inUM.profile.spacingUM, 0.7);
  EXPECT_EQ(inUM.profile.warnings.size(), 1u) << "the X axis contradicts";
  const Reading axisOnly = Read(ReadPrfProfile, Replaced(kPrf, "SPACING CX", "SPACED CX"));
  EXPECT_DOUBLE_EQ(axisOnly.profile.spacingUM, 0.5);
  const Reading noX = Read(ReadPrfProfile, Replaced(kPrf, "CX M", "CQ M"));
  EXPECT_EQ(noX.profile.heightsUM.size(), kHeights.size());
}

TEST(Prf, TakesEveryNthPointOfALongRecord) {
  constexpr std::size_t kPoints = 1'600'001;
  std::string text =
      "1 2\nSHAFT1 0 PRF\nCZ M " + std::to_string(kPoints) + " MM 1e-3 D\nEOR\nSPACING CX 1e-3 MM\nEOR\n";
  for (std::size_t i = 0; i < kPoints; ++i) text += IntegerText(static_cast<std::int64_t>(i)) + "\n";
  const Reading reading = Read(ReadPrfProfile, text);
  ASSERT_EQ(reading.result.status, ReadResult::Status::kRead) << reading.result.reason;
  ASSERT_EQ(reading.profile.heightsUM.size(), 533'334u);
  EXPECT_DOUBLE_EQ(reading.profile.spacingUM, 3.0);
  EXPECT_DOUBLE_EQ(reading.profile.heightsUM[1000], 3000.0);
}

TEST(Mod, ResamplesUnevenPositions) {
  const std::string head =
      "1 2\nTXRN_  0.0 MOD\nCX A 5 MM 1 D\nCZ A 5 MM 1 D\nEOR\nNUMBER_MOD_POINTS "
      "5\nEOR\n0\n0.001\n0.0025\n0.003\n0.004\n";
  const Reading reading = Read(ReadModProfile, head + "0\n0.001\n0.0025\n0.003\n0.004\nEOR\nEOF\n");
  ASSERT_EQ(reading.result.status, ReadResult::Status::kRead) << reading.result.reason;
  EXPECT_TRUE(AllNear(reading.profile.heightsUM, std::vector<double>{0, 1, 2, 3, 4}, 1e-12));
  EXPECT_EQ(reading.profile.warnings.size(), 1u);
  EXPECT_EQ(reading.profile.identification, "TXRN_ _0");
  EXPECT_EQ(Read(ReadModProfile, head + "0\n1\n").result.status, ReadResult::Status::kRefused);
  EXPECT_EQ(Read(ReadModProfile, Replaced(head, "0.0025", "0.0005") + "0\n1\n2\n3\n4\n").result.status,
            ReadResult::Status::kRefused)
      << "positions that go back";
}

const std::string kSdf = SdfProfileText({kHeights, 0.5, "SHAFT1", SavedAt()});

TEST(Sdf, IsReadByPositionWithItsAsymmetries) {
  EXPECT_EQ(Read(ReadSdfProfile, kSdf).profile.date, "040320150905");
  const Reading noEquals = Read(ReadSdfProfile, Replaced(kSdf, "Xscale      =", "Xscale"));
  EXPECT_DOUBLE_EQ(noEquals.profile.spacingUM, 0.0005);
  const std::string integers =
      Replaced(Replaced(kSdf, "DataType    = 7", "DataType    = 5"), "1.000000e-006", "1.000000e+002");
  EXPECT_DOUBLE_EQ(Read(ReadSdfProfile, Replaced(integers, "-0.000004", "250")).profile.heightsUM[0], 2.5);
  const Reading scaled = Read(ReadSdfProfile, Replaced(kSdf, "1.000000e-006", "1.000000e-009"));
  EXPECT_DOUBLE_EQ(scaled.profile.heightsUM[2], 1.5) << "the Z scale is not applied";
  EXPECT_EQ(scaled.profile.warnings.size(), 1u);
  const Reading cut = Read(ReadSdfProfile, kSdf.substr(0, kSdf.find("1.500000\r\n")));
  EXPECT_EQ(cut.profile.heightsUM.size(), 2u);
  EXPECT_EQ(cut.profile.warnings.size(), 1u);
  const Reading bad = Read(ReadSdfProfile, Replaced(kSdf, "-0.000006", "BAD"));
  EXPECT_TRUE(Near(bad.profile.heightsUM[1], (1.5 - 0.000004) / 2.0, 1e-12));
  for (const std::string& refused :
       {Replaced(kSdf, "DataType    = 7", "DataType    = 3"),
        Replaced(kSdf, "aNIST-1.0\r\n", "aNIST-1.0\r\nExtra = 1\r\n"), std::string(5000, '\0')}) {
    const Reading reading = Read(ReadSdfProfile, refused);
    EXPECT_EQ(reading.prompts.messages, std::vector<std::string>{"SDF Error: Integer data required."});
  }
}

TEST(Sdf, GivesRowsColumnsAndAllOfAGrid) {
  const std::string text = SdfGridText();
  const std::string binary = SdfGridBinary();
  struct Case {
    std::size_t line;
    std::vector<double> heights;
    double spacingUM;
    std::string name;
  };
  const Case cases[] = {{0, {1, 2, 3}, 1.0, "ISO (x:1)"},
                        {1, {4, 5, 6}, 1.0, "ISO (x:2)"},
                        {2, {1, 4}, 5.0, "ISO (y:1)"},
                        {5, {1, 2, 3, 4, 5, 6}, 1.0, "ISO (chained in 'x')"}};
  for (const std::string& bytes : {text, binary}) {
    for (const Case& c : cases) {
      for (const bool isAsked : {true, false}) {
        ImportOptions options;
        if (!isAsked) options.profileChoice = static_cast<std::int32_t>(c.line) + 1;
        const Reading reading = Read(ReadSdfProfile, bytes, options, c.line);
        ASSERT_EQ(reading.result.status, ReadResult::Status::kRead) << reading.result.reason;
        EXPECT_TRUE(AllNear(reading.profile.heightsUM, c.heights, 1e-12)) << c.name;
        EXPECT_DOUBLE_EQ(reading.profile.spacingUM, c.spacingUM);
        EXPECT_EQ(reading.profile.identification, c.name);
        if (!isAsked) continue;
        EXPECT_EQ(reading.prompts.title, "Input File: x.y");
        EXPECT_EQ(reading.prompts.lines.size(), 6u);
      }
    }
    EXPECT_EQ(Read(ReadSdfProfile, bytes, {.profileChoice = 7}).result.status, ReadResult::Status::kRefused);
  }
  EXPECT_EQ(Read(ReadSdfProfile, text).prompts.lines[1], " 2: \tISO (x:2) \t0102");
  EXPECT_EQ(Read(ReadSdfProfile, Replaced(text, "NumPoints = 3", "NumPoints = 2000000000")).result.status,
            ReadResult::Status::kRefused);
}

TEST(Pr, ReadsEveryWordingOfItsSecondLine) {
  struct Case {
    std::string line;
    std::size_t warnings;
  };
  const Case cases[] = {
      {"X-Ma\xDF = 0.01 X-Aufl\xF6sung 400.00 Punkte/Zeile : 3", 0},
      {"X-Ma\xE1 = 0.01 X-Aufl\x94sung = 400.00 Punkte/Zeile : 3", 0},
      {"X-Ma\xC3\x9F = 0,01 X-Aufl\xC3\xB6sung = 400,00 Punkte/Zeile : 3", 0},
      {"X-len = 0.005 X-resolution = 400 points/scanline: 3", 0},
      {"X-len = 5.0 X-resolution = 400 points/scanline: 3", 1},
      {"X-len = 0.0075 X-resolution = 0 points/scanline: 3", 0},
      {"X-len = 0.01 X-resolution = 400 points/scanline: 4", 1},
  };
  for (const Case& c : cases) {
    const Reading reading = Read(ReadPrProfile, "Profil Bore3\n" + c.line + "\n1\n2\n3");
    EXPECT_EQ(reading.result.status, ReadResult::Status::kRead) << c.line;
    EXPECT_TRUE(Near(reading.profile.spacingUM, 2.5, 1e-12)) << c.line;
    EXPECT_EQ(reading.profile.heightsUM, (std::vector<double>{1, 2, 3})) << c.line;
    EXPECT_EQ(reading.profile.warnings.size(), c.warnings) << c.line;
    EXPECT_EQ(reading.profile.identification, "Bore3");
  }
  EXPECT_EQ(Read(ReadPrProfile, "Something\n").result.status, ReadResult::Status::kNotRecognised);
  for (const char* damaged :
       {"Profil a", "Profil a\nX-len = 1 points: 3\n1\n", "Profil a\nX-len = 1 X-res = 2 points: 0\n1\n",
        "Profil a\nX-len = 1 X-res = 2 points: 2\n1\nx\n"}) {
    EXPECT_EQ(Read(ReadPrProfile, damaged).prompts.messages.size(), 1u) << damaged;
  }
}

}  // namespace
}  // namespace texturon
