// SPDX-License-Identifier: Apache-2.0

#include "formats/native_format.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "formats/import.h"
#include "formats/reading.h"
#include "support/scratch_folder.h"

namespace texturon {
namespace {

const std::string kHeader =
    "Lumetrace_Data 1.0\r\nIDENTIFICATION: Shaft 12\r\nDATE: 04 Mar 2015 - 09:05:07\r\nSPACING_UM: 0.500000\r\n";

Reading Read(const std::string& bytes) {
  return Read(ReadNativeProfile, bytes);
}

TEST(NativeFormat, WritesExactlyTheseBytes) {
  const std::vector<double> heights = {-0.123456, 0.0, 123456.7890126, -12345678.5};
  EXPECT_EQ(NativeProfileText({heights, 0.5, "Shaft 12", SavedAt()}),
            kHeader +
                "NUMBER_OF_POINTS: 4\r\nPROFILE_UM:\r\n   -0.123456\r\n    0.000000\r\n123456.789013\r\n"
                "-12345678.500000\r\n");
  EXPECT_NE(NativeProfileText({{}, 0.5, "two\r\nlines", SavedAt()}).find("IDENTIFICATION: two  lines\r\n"),
            std::string::npos);
}

TEST(NativeFormat, TakesLooseFiles) {
  struct Case {
    const char* what;
    std::string bytes;
    std::vector<double> heights;
  };
  const std::string lf =
      "lUMETRACE_dATA\n1.0\nidentification: Shaft 12\nDate: x\nspacing_um:\n0.5\nnumber_of_points: 3\n";
  const Case cases[] = {
      {"any case, LF, no last line end", lf + "profile_um:\n1 2\t\n\n3", {1, 2, 3}},
      {"more heights than points", kHeader + "NUMBER_OF_POINTS: 2\r\nPROFILE_UM:\r\n1\r\n2\r\n3\r\n", {1, 2}},
      {"CR",
       "Lumetrace_Data 1.0\rIDENTIFICATION: Shaft 12\rDATE: x\rSPACING_UM: 0.5\rNUMBER_OF_POINTS: "
       "2\rPROFILE_UM:\r1\r2\r",
       {1, 2}},
      {"exponents, plus signs", kHeader + "NUMBER_OF_POINTS: 3\r\nPROFILE_UM:\r\n1e1 +2 -.5\r\n", {10, 2, -0.5}},
      {"a token that is no number",
       kHeader + "NUMBER_OF_POINTS: 4\r\nPROFILE_UM:\r\n1\r\nabc\r\n3\r\n4\r\n",
       {1, 0, 0, 0}},
      {"infinity", kHeader + "NUMBER_OF_POINTS: 3\r\nPROFILE_UM:\r\n1\r\ninf\r\n3\r\n", {1, 0, 0}},
  };
  for (const Case& c : cases) {
    const Reading reading = Read(c.bytes);
    EXPECT_EQ(reading.result.status, ReadResult::Status::kRead) << c.what << ": " << reading.result.reason;
    EXPECT_EQ(reading.profile.heightsUM, c.heights) << c.what;
    EXPECT_EQ(reading.profile.identification, "Shaft 12") << c.what;
    const bool tolerated = std::string_view(c.what).starts_with("a token") || std::string_view(c.what) == "infinity";
    EXPECT_EQ(reading.prompts.notices.size(), tolerated ? 1u : 0u) << c.what;
    EXPECT_TRUE(reading.prompts.messages.empty()) << c.what;
  }
}

TEST(NativeFormat, RefusesDamagedFilesInTheseWords) {
  const std::string points = kHeader + "NUMBER_OF_POINTS: ";
  const std::string long254(254, 'i');
  struct Case {
    std::string bytes;
    std::string message;
  };
  const Case cases[] = {
      {"SomethingElse 1.0", "Invalid file format."},
      {"", "Invalid file format."},
      {"Lumetrace_Data 1.00\n", "Invalid file revision."},
      {"Lumetrace_Data 1.0\nNAME: x\n", "Invalid 'IDENTIFICATION:' designator."},
      {"Lumetrace_Data 1.0\nIDENTIFICATION:\nDATE: x\nSPACING_UM: 1\n", "Invalid 'DATE:' designator."},
      {"Lumetrace_Data 1.0\nIDENTIFICATION: " + long254 + "x\nDATE: d\n", "Invalid 'DATE:' designator."},
      {"Lumetrace_Data 1.0\nIDENTIFICATION: a\nDATE: d\nSPACING: 1\n", "Invalid 'SPACING_UM:' designator."},
      {kHeader + "POINTS: 3\n", "Invalid 'NUMBER_OF_POINTS:' designator."},
      {points + "0\nPROFILE_UM:\n", "Invalid number of points."},
      {points + "-5\nPROFILE_UM:\n", "Invalid number of points."},
      {points + "x\nPROFILE_UM:\n", "Invalid number of points."},
      {points + "750001\nPROFILE_UM:\n1\n", "Invalid number of points."},
      {points + "99999999999999999999\nPROFILE_UM:\n1\n", "Invalid number of points."},
      {points + "3\nHEIGHTS:\n1 2 3\n", "Invalid 'PROFILE_UM:' designator."},
      {points + "3\nPROFILE_UM:\n1\n2\n", "Unexpected end of file."},
      {points + "750000\nPROFILE_UM:\n1\n2\n", "Unexpected end of file."},
      {points + "3\nPROFILE_UM:", "Unexpected end of file."},
  };
  for (const Case& c : cases) {
    const Reading reading = Read(c.bytes);
    EXPECT_EQ(reading.result.status, ReadResult::Status::kRefused) << c.message;
    EXPECT_EQ(reading.prompts.messages, std::vector<std::string>{c.message});
    EXPECT_NE(reading.result.reason.find(c.message), std::string::npos) << reading.result.reason;
    EXPECT_LE(reading.profile.heightsUM.capacity(), 16u) << "a false count must not be allocated";
  }
}

TEST(NativeFormat, LosesTheLastOf254IdentificationCharacters) {
  const std::string tail = "\r\nDATE: d\r\nSPACING_UM: 1\r\nNUMBER_OF_POINTS: 1\r\nPROFILE_UM:\r\n5\r\n";
  const std::string long254(254, 'i');
  EXPECT_EQ(Read("Lumetrace_Data 1.0\r\nIDENTIFICATION: " + long254 + tail).profile.identification,
            std::string(253, 'i'));
  EXPECT_EQ(Read("Lumetrace_Data 1.0\r\nIDENTIFICATION: " + std::string(253, 'i') + tail).profile.identification,
            std::string(253, 'i'));
}

class NativeTable : public ::testing::Test {
protected:
  ImportOutcome Load(const std::string& table, std::int32_t points, std::int32_t presetColumn = 1) {
    folder_.Write("t.LMTH", kHeader + "NUMBER_OF_POINTS: " + std::to_string(points) + "\r\nanything\r\n");
    folder_.Write("t.LMTd", table);
    return LoadProfileFile(folder_ / "t.LMTH", {.column = presetColumn}, prompts_);
  }
  static std::string Rows(int count) {
    std::string table;
    for (int i = 1; i <= count; ++i) {
      const std::string n = std::to_string(i);
      table += n + ".5\t\t-" + n + "\t" + (i == 4 ? "x" : "1e" + std::to_string(i % 3)) + "\r\n";
    }
    return table;
  }

  ScratchFolder folder_;
  ScriptedPrompts prompts_;
};

TEST_F(NativeTable, AsksForTheColumnAndClampsTheAnswer) {
  struct Case {
    std::optional<std::string> answer;
    double third;
  };
  const Case cases[] = {{"2", -3.0}, {"7", 1.0}, {"0", 3.5}, {"-4", 3.5}, {std::nullopt, -3.0}, {"abc", 3.5}};
  for (const Case& c : cases) {
    prompts_ = {};
    prompts_.textAnswer = c.answer;
    const ImportOutcome outcome = Load(Rows(12), 11, 2);
    ASSERT_TRUE(outcome.loaded) << outcome.reason;
    EXPECT_EQ(outcome.profile.heightsUM.size(), 11u);
    EXPECT_EQ(outcome.profile.heightsUM[2], c.third) << c.answer.value_or("cancelled");
    EXPECT_EQ(prompts_.questions, std::vector<std::string>{"Enter the column number (1:3):"});
    EXPECT_EQ(prompts_.presets, std::vector<std::string>{"2"});
    EXPECT_EQ(outcome.profile.column, c.third == -3.0 ? 2 : c.third == 1.0 ? 3 : 1) << "remembered for the next file";
    if (c.answer == "7") {
      EXPECT_EQ(outcome.profile.heightsUM[3], 0.0) << "a field that is no number";
    }
  }
}

TEST_F(NativeTable, RefusesShortAndRaggedTablesWithoutAMessage) {
  std::string ragged = Rows(12);
  ragged.insert(ragged.find("\t\t"), "\t9");
  for (const std::string& table : {Rows(9), ragged, Rows(10), std::string()}) {
    EXPECT_FALSE(Load(table, 11).loaded);
    EXPECT_TRUE(prompts_.messages.empty());
  }
  std::filesystem::rename(folder_ / "t.LMTd", folder_ / "t.lmtd");
  prompts_.textAnswer = "1";
  folder_.Write("t.lmtd", Rows(11));
  EXPECT_TRUE(LoadProfileFile(folder_ / "t.LMTH", {}, prompts_).loaded) << "written in another case";
  std::filesystem::remove(folder_ / "t.lmtd");
  EXPECT_FALSE(LoadProfileFile(folder_ / "t.LMTH", {}, prompts_).loaded);
}

TEST(NativeFormat, WritesUnderItsOwnExtensionOrSaysSo) {
  const ScratchFolder folder;
  ScriptedPrompts prompts;
  const std::vector<double> heights = {1.0};
  ProfileToWrite profile{.heightsUM = heights, .spacingUM = 0.5, .identification = "Shaft 12", .savedAt = SavedAt()};
  std::filesystem::path path = folder / "run1.txt";
  EXPECT_TRUE(WriteNativeProfile(path, profile, prompts).ok());
  EXPECT_EQ(path, folder / "run1.lmt");
  EXPECT_EQ(folder.Read("run1.lmt"), kHeader + "NUMBER_OF_POINTS: 1\r\nPROFILE_UM:\r\n    1.000000\r\n");
  profile.spacingUM = 4e-7;
  EXPECT_NE(WriteNativeProfile(path, profile, prompts).reason.find("4e-07 um as 0"), std::string::npos);
  EXPECT_EQ(prompts.messages.size(), 1u);
  EXPECT_NE(folder.Read("run1.lmt"), "") << "the former file is unharmed";
  profile.spacingUM = 0.5;
  path = folder / "no such folder" / "x.lmt";
  EXPECT_FALSE(WriteNativeProfile(path, profile, prompts).ok());
  EXPECT_EQ(prompts.messages.back(), "Could not write file.");
}

}  // namespace
}  // namespace texturon
