// SPDX-License-Identifier: Apache-2.0

#include "export/parameter_csv.h"

#include <chrono>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <vector>

#include "base/charset.h"
#include "export/parameter_file.h"
#include "platform/append_file.h"
#include "support/golden.h"
#include "support/scratch_folder.h"
#include "support/scripted_prompts.h"

namespace texturon {
namespace {

// Header and row in both systems, every value 1.23456789: um are 48.605035 uin, mm are 0.048605 in, and counts a
// centimetre x 2.54 are counts an inch.
TEST(ParameterCsv, WritesHeaderAndRowInBothSystems) {
  std::vector<ParameterSelection> selection;
  for (const char* name : {"Ra", "Rsm", "AR", "Rpc", "Rhsc", "Phsc", "Wc", "Rku", "Rmr1", "Rdq", "RSm"}) {
    selection.push_back({.name = name, .selected = std::string_view(name) != "Rdq"});
  }
  ParameterCatalogue catalogue = MakeWorkingList(selection);
  for (ParameterDef& row : catalogue.rows) {
    row.valid = row.name != "Rmr1";
    row.value = 1.23456789;
  }
  AnalysisSettings settings;
  settings.primaryMaterialRatios[3] = {.selected = true, .depthUM = 0.25, .offsetPercent = 5.0};
  settings.roughnessMaterialRatios[0] = {.selected = true, .meanReferenced = true, .depthUM = -0.75};
  settings.roughnessMaterialRatios[9] = {.selected = true, .meanReferenced = true, .depthUM = 1.0};
  settings.primaryHtps[1] = {.selected = true, .upperPercent = 60.0, .lowerPercent = 10.0};
  settings.roughnessHtps[0] = {.selected = true, .upperPercent = 50.0, .lowerPercent = 2.5};
  RatioRowResults primary{}, roughness{}, primaryHtps{}, roughnessHtps{};
  primary[3] = {true, 12.345};
  roughness[0] = {true, 99.0};
  primaryHtps[1] = {true, 2.0};
  std::string text;
  for (const bool metric : {true, false}) {
    const ParameterCsvInput input{.catalogue = catalogue,
                                  .settings = settings,
                                  .primaryMaterialRatios = primary,
                                  .roughnessMaterialRatios = roughness,
                                  .primaryHtps = primaryHtps,
                                  .roughnessHtps = roughnessHtps,
                                  .time = "04 Mar 2015 - 09:05:07",
                                  .source = "c:\\a,b\\S1.prf",
                                  .identification = "Shaft 1",
                                  .description = "form / filter",
                                  .metric = metric,
                                  .primaryRatioTitle = metric ? "Pmr" : "Tpa",
                                  .roughnessRatioTitle = metric ? "Rmr" : "Tpi",
                                  .traverseLengthUM = 5600.0,
                                  .evaluationLengthUM = 4000.0};
    text += ParameterCsvHeader(input) + ParameterCsvRow(input);
  }
  EXPECT_TRUE(MatchesGolden("export/parameter_rows.csv", Utf8FromWindows1252(text)));
}

constexpr std::string_view kTitles = "\"Time\", \"Source\", \"Identification\", \"Settings\"\r\n";

TEST(ParameterFile, GetsItsHeaderOnceAndARowEachTime) {
  const ScratchFolder folder;
  ScriptedPrompts prompts;
  const auto path = folder / "rows.csv";
  EXPECT_TRUE(AppendParameters(path, kTitles, "a\r\n", prompts).written);
  EXPECT_TRUE(AppendParameters(path, "x\r\n", "b\r\n", prompts).written);
  EXPECT_EQ(folder.Read("rows.csv"), std::string(kTitles) + "a\r\nb\r\n");
  EXPECT_TRUE(prompts.messages.empty());
  EXPECT_FALSE(AppendParameters(folder.path(), kTitles, "a\r\n", prompts).written);
  ASSERT_EQ(prompts.messages.size(), 1u);
  EXPECT_TRUE(prompts.messages[0].ends_with(" is a directory.")) << prompts.messages[0];
}

// Whatever a spreadsheet made of one is a parameter file still; a foreign file stays as it is.
TEST(ParameterFile, NothingElseIsAppendedTo) {
  const ScratchFolder folder;
  ScriptedPrompts prompts;
  const struct {
    std::string content;
    bool takes;
  } cases[] = {{"", true},
               {"\"Time\", \"Sou", true},  // torn
               {"Time,Source,Identification,Settings,Ra\nlast line without an end", true},
               {"\xEF\xBB\xBFTime;Source;Identification;Settings\r\n", true},
               {"'Time'\t'Source'\t'Identification'\t'Settings'\r\n", true},
               {"h\r\nlast line without an end", false},
               {"Time,Source,Identification\r\nSettings\r\n", false},
               {"Time,Source,Identification,SettingsOfAll\r\n", false},
               {"TimeSource,Identification,Settings\r\n", false},
               {std::string(300, '"') + "Time,Source,Identification,Settings\r\n", false}};
  for (const auto& c : cases) {
    folder.Write("rows.csv", c.content);
    EXPECT_EQ(AppendParameters(folder / "rows.csv", kTitles, "b\r\n", prompts).written, c.takes) << c.content;
    EXPECT_EQ(folder.Read("rows.csv").ends_with("b\r\n"), c.takes);
    EXPECT_TRUE(folder.Read("rows.csv").starts_with(c.content));
  }
}

// A row that lost its end would swallow the next one; what is whole, or a spreadsheet's, stays.
TEST(ParameterFile, ATornLastRowIsTakenOff) {
  const ScratchFolder folder;
  ScriptedPrompts prompts;
  const std::string titles = "\"Time\", \"Source\", \"Identification\", \"Settings\", \"Ra\"\r\n";
  const struct {
    std::string content, kept;
  } cases[] = {{titles + "\"t\", \"s\", \"i", titles},
               {titles + "\"t\", \"s\", \"i\"", titles},
               {titles + "22 Nov", titles},
               {titles.substr(0, 6), titles},
               {titles + "\"t\", \"a,b\", \"i\", \"s\", 1", titles + "\"t\", \"a,b\", \"i\", \"s\", 1\r\n"},
               {"Time,Source,Identification,Settings,Ra\nt,s", "Time,Source,Identification,Settings,Ra\nt,s\r\n"}};
  for (const auto& c : cases) {
    folder.Write("rows.csv", c.content);
    EXPECT_TRUE(AppendParameters(folder / "rows.csv", titles, "b\r\n", prompts).written) << c.content;
    EXPECT_EQ(folder.Read("rows.csv"), c.kept + "b\r\n");
  }
}

TEST(ParameterFile, InUseIsTriedTwiceAndThenTheRowIsLost) {
  const ScratchFolder folder;
  ScriptedPrompts prompts;
  folder.Write("rows.csv", kTitles);
  auto holder = std::make_unique<AppendFile>(folder / "rows.csv");
  ASSERT_EQ(holder->state(), AppendFile::State::kHeld);
  const auto start = std::chrono::steady_clock::now();
  EXPECT_FALSE(AppendParameters(folder / "rows.csv", kTitles, "a\r\n", prompts).written);
  EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(1500)) << "the second try comes later";
  EXPECT_EQ(prompts.messages, std::vector<std::string>{"rows.csv:  File is in use - parameters not written."});
  holder.reset();  // some systems let nobody else read meanwhile
  EXPECT_EQ(folder.Read("rows.csv"), kTitles);
}

}  // namespace
}  // namespace texturon
