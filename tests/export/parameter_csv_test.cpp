// SPDX-License-Identifier: Apache-2.0

#include "export/parameter_csv.h"

#include <chrono>
#include <gtest/gtest.h>
#include <initializer_list>
#include <map>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "export/parameter_file.h"
#include "platform/append_file.h"
#include "support/scratch_folder.h"
#include "support/scripted_prompts.h"

namespace texturon {
namespace {

/// An analysis with the rows given, each with the value 1.23456789 and computed unless its name says otherwise.
struct Analysis {
  explicit Analysis(std::initializer_list<const char*> names) {
    std::vector<ParameterSelection> selection;
    for (const char* name : names) {
      ParameterSelection row;
      row.name = name;
      selection.push_back(row);
    }
    catalogue = MakeWorkingList(selection);
    for (ParameterDef& row : catalogue.rows) {
      row.valid = true;
      row.value = 1.23456789;
    }
  }

  ParameterCsvInput Input() const {
    return {.catalogue = catalogue,
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
            .primaryRatioTitle = primaryRatioTitle,
            .roughnessRatioTitle = roughnessRatioTitle,
            .traverseLengthUM = 5600.0,
            .evaluationLengthUM = 4000.0};
  }

  ParameterCatalogue catalogue;
  AnalysisSettings settings;
  bool metric = true;
  const char* primaryRatioTitle = "Pmr";
  const char* roughnessRatioTitle = "Rmr";
  RatioRowResults primary{};
  RatioRowResults roughness{};
  RatioRowResults primaryHtps{};
  RatioRowResults roughnessHtps{};
};

constexpr const char* kTitles = R"("Time", "Source", "Identification", "Settings")";
constexpr const char* kBlanks = R"("   ", "     ", "             ", "       ")";
constexpr const char* kRowStart = R"("04 Mar 2015 - 09:05:07  ", "c:\a;b\S1.prf    ", "Shaft 1            ", )";

TEST(ParameterCsv, WritesHeaderAndRowInBothSystems) {
  Analysis analysis({"Ra", "Rsm", "AR", "Rpc", "Rhsc", "Phsc", "Wc", "Rku", "Rmr1", "Rdq"});
  analysis.catalogue.rows[8].valid = false;
  analysis.catalogue.rows[9].selected = false;
  EXPECT_EQ(ParameterCsvHeader(analysis.Input()),
            std::string(kTitles) +
                ", \"Ra\", \"Rsm\", \"AR\", \"Rpc\", \"Rhsc\", \"Phsc\", \"Wc\", \"Rku\", \"Rmr1\"\r\n" + kBlanks +
                ", \"\xB5m\", \"(z: 10 %    l: 1 %) (mm)\", \"\xB5m\", \"(1.00 \xB5m) #/cm\", \"(0.50 \xB5m)\", "
                "\"(0.50 \xB5m)\", \"(z: 10 %    l: 1 %) (\xB5m)\", \"\", \"%\"\r\n");
  EXPECT_EQ(ParameterCsvRow(analysis.Input()),
            kRowStart + std::string("\"LT 5.6 mm / Ln 4.00 mm / form / filter      \", 1.235, 1.234568, 1.234568, ") +
                "1.235, 1.235, 1.235, 1.235, 1.235, \" \"\r\n");

  analysis.metric = false;
  EXPECT_EQ(ParameterCsvHeader(analysis.Input()).substr(std::string(kTitles).size()),
            ", \"Ra\", \"Rsm\", \"AR\", \"Rpc\", \"Rhsc\", \"Phsc\", \"Wc\", \"Rku\", \"Rmr1\"\r\n" +
                std::string(kBlanks) +
                ", \"\xB5in\", \"(z: 10 %    l: 1 %) (in)\", \"\xB5in\", \"(39.4 \xB5in) #/in\", \"(19.69 \xB5in)\", "
                "\"(19.7 \xB5in)\", \"(z: 10 %    l: 1 %) (\xB5in)\", \"\", \"%\"\r\n");
  // 1.23456789 um = 48.605035 uin, mm = 0.048605 in; counts a centimetre x 2.54 are counts an inch.
  EXPECT_EQ(ParameterCsvRow(analysis.Input()),
            kRowStart +
                std::string("\"LT 0.22 in / Ln 4.000 mm / form / filter      \", 48.605, 0.048605, 48.605035, ") +
                "3.136, 1.235, 1.235, 48.605, 1.235, \" \"\r\n");
  Analysis otherwiseSpelt({"RSm"});
  EXPECT_TRUE(ParameterCsvRow(otherwiseSpelt.Input()).ends_with("\", 1.234568\r\n"));
}

TEST(ParameterCsv, AddsAColumnForEachSelectedRatioAndHeight) {
  Analysis analysis({});
  auto& settings = analysis.settings;
  settings.primaryMaterialRatios[3] = {.selected = true, .depthUM = 0.25, .offsetPercent = 5.0};
  settings.roughnessMaterialRatios[0] = {.selected = true, .meanReferenced = true, .depthUM = -0.75};
  settings.roughnessMaterialRatios[9] = {.selected = true, .meanReferenced = true, .depthUM = 1.0};
  settings.primaryHtps[1] = {.selected = true, .upperPercent = 60.0, .lowerPercent = 10.0};
  settings.roughnessHtps[0] = {.selected = true, .upperPercent = 50.0, .lowerPercent = 2.5};
  analysis.primary[3] = {true, 12.345};
  analysis.roughness[0] = {true, 99.0};
  analysis.primaryHtps[1] = {true, 2.0};
  const auto columnsOf = [](const std::string& line, const char* first) { return line.substr(line.find(first)); };
  EXPECT_EQ(columnsOf(ParameterCsvHeader(analysis.Input()), ", \"Pmr"),
            ", \"Pmr\", \"Rmr\", \"Rmr\", \"Phtp\", \"Rhtp\"\r\n" + std::string(kBlanks) +
                ", \"(0.25 \xB5m  5.0 %)\", (Mean - 0.75 \xB5m), (Mean + 1.00 \xB5m), \"(10.0 %  60.0 %)\", "
                "\"(2.5 %  50.0 %)\"\r\n");
  EXPECT_EQ(columnsOf(ParameterCsvRow(analysis.Input()), ", 12."), ", 12.35, 99.00, \" \", 2.000, \" \"\r\n");
  analysis.metric = false;
  analysis.primaryRatioTitle = "Tpa";
  analysis.roughnessRatioTitle = "Tpi";
  EXPECT_EQ(columnsOf(ParameterCsvHeader(analysis.Input()), ", \"Tpa"),
            ", \"Tpa\", \"Tpi\", \"Tpi\", \"Phtp\", \"Rhtp\"\r\n" + std::string(kBlanks) +
                ", \"(9.84 \xB5in  5.0 %)\", (Mean - 30 \xB5in), (Mean + 39 \xB5in), \"(10.0 %  60.0 %)\", "
                "\"(2.5 %  50.0 %)\"\r\n");
  EXPECT_EQ(columnsOf(ParameterCsvRow(analysis.Input()), ", 12."), ", 12.35, 99.00, \" \", 78.740, \" \"\r\n");
}

TEST(ParameterFile, GetsItsHeaderOnceAndARowEachTime) {
  const ScratchFolder folder;
  ScriptedPrompts prompts;
  const auto path = folder / "rows.csv";
  EXPECT_TRUE(AppendParameters(path, "h1\r\nh2\r\n", "a\r\n", prompts).written);
  EXPECT_TRUE(AppendParameters(path, "x\r\n", "b\r\n", prompts).written);
  EXPECT_EQ(folder.Read("rows.csv"), "h1\r\nh2\r\na\r\nb\r\n");
  folder.Write("edited.csv", "h\r\nlast line without an end");
  EXPECT_TRUE(AppendParameters(folder / "edited.csv", "x\r\n", "b\r\n", prompts).written);
  EXPECT_EQ(folder.Read("edited.csv"), "h\r\nlast line without an end\r\nb\r\n");
  EXPECT_TRUE(prompts.messages.empty());
  EXPECT_FALSE(AppendParameters(folder.path(), "h\r\n", "a\r\n", prompts).written);
  ASSERT_EQ(prompts.messages.size(), 1u);
  EXPECT_TRUE(prompts.messages[0].ends_with(" is a directory.")) << prompts.messages[0];
}

TEST(ParameterFile, InUseIsTriedTwiceAndThenTheRowIsLost) {
  const ScratchFolder folder;
  ScriptedPrompts prompts;
  folder.Write("rows.csv", "h\r\n");
  const AppendFile holder(folder / "rows.csv");
  ASSERT_EQ(holder.state(), AppendFile::State::kHeld);
  const auto start = std::chrono::steady_clock::now();
  EXPECT_FALSE(AppendParameters(folder / "rows.csv", "h\r\n", "a\r\n", prompts).written);
  const auto waited = std::chrono::steady_clock::now() - start;
  EXPECT_GE(waited, std::chrono::milliseconds(1500));
  EXPECT_LT(waited, std::chrono::milliseconds(2900));
  EXPECT_EQ(prompts.messages, std::vector<std::string>{"rows.csv:  File is in use - parameters not written."});
  EXPECT_EQ(folder.Read("rows.csv"), "h\r\n");
}

TEST(ParameterFile, RowsOfManyWritersNeitherTearNorGetLost) {
  const ScratchFolder folder;
  const auto path = folder / "rows.csv";
  constexpr int kWriters = 4;
  constexpr int kRows = 50;
  std::vector<std::thread> writers;
  for (int writer = 0; writer < kWriters; ++writer) {
    writers.emplace_back([&path, writer] {
      const std::string row(200, static_cast<char>('a' + writer));
      for (int i = 0; i < kRows; ++i) {
        EXPECT_TRUE(AppendToParameterFile(path, "head\r\n", row + "\r\n", InUse::kWait).written);
      }
    });
  }
  for (std::thread& writer : writers) writer.join();
  std::istringstream lines(folder.Read("rows.csv"));
  std::map<std::string, int> counts;
  for (std::string line; std::getline(lines, line);) ++counts[line];
  EXPECT_EQ(counts.size(), kWriters + 1u);
  EXPECT_EQ(counts["head\r"], 1);
  for (int writer = 0; writer < kWriters; ++writer) {
    EXPECT_EQ(counts[std::string(200, static_cast<char>('a' + writer)) + "\r"], kRows);
  }
}

}  // namespace
}  // namespace texturon
