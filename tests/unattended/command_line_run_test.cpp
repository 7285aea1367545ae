// SPDX-License-Identifier: Apache-2.0

#include "unattended/command_line_run.h"

#include <ctime>
#include <filesystem>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "base/number_text.h"
#include "platform/append_file.h"
#include "platform/platform.h"
#include "support/child_process.h"
#include "support/scratch_folder.h"
#include "support/small_profiles.h"
#include "unattended/plan_results.h"

namespace texturon {
namespace {

constexpr int kPoints = 400;

/// Heights +1 and -1 um in turn, 10 um apart: nothing of them passes the filter, so that primary and roughness are the
/// heights themselves.
std::string AlternatingRecord() {
  std::string text =
      "1 2\r\nALTERN 0.000000 PRF\r\nCX M 4.000000e+002 MM 1.000000e-002 D\r\n"
      "CZ M 4.000000e+002 MM 1.000000e-008 D\r\nEOR\r\nSTYLUS_RADIUS 0.000000e+000 MM\r\n"
      "SPACING CX 1.000000e-002 MM\r\nEOR\r\n";
  for (int i = 0; i < kPoints; ++i) text += i % 2 == 0 ? "100000\r\n" : "-100000\r\n";
  return text + "EOR\r\nEOF\r\n";
}

std::string ProfileFile(int count, int first) {
  std::string text = "Talyseries Surface\r\nNumPoints=" + IntegerText(count) + "\r\nmm mm\r\n";
  for (int i = first; i < first + count; ++i) {
    text += FixedText(0.01 * i, 6) + (i % 2 == 0 ? " 0.001000\r\n" : " -0.001000\r\n");
  }
  return text;
}

/// A run's folders and clock, Wed, 04 Mar 2015 09:05:07, and the folder of the program.
class CommandLineRun : public ::testing::Test {
protected:
  CommandLineRun() {
    std::filesystem::create_directories(folder_ / "program");
    std::filesystem::create_directories(folder_ / "work");
    environment_.localTime = [] {
      std::tm time{};
      time.tm_year = 115;
      time.tm_mon = 2;
      time.tm_mday = 4;
      time.tm_wday = 3;
      time.tm_hour = 9;
      time.tm_min = 5;
      time.tm_sec = 7;
      return time;
    };
    environment_.workingFolder = folder_ / "work";
    environment_.programFolder = folder_ / "program";
    folder_.Write("S1234.prf", AlternatingRecord());
  }

  void SwitchLogOn() { folder_.Write("program/Texturon.ini", "[AUTO_LOADING]\r\nLogEventsWhenAutoLoading=1\r\n"); }

  RunOutcome Run(const std::string& plan, const std::string& data = "S1234.prf",
                 const std::string& planName = "p.INI") {
    folder_.Write(planName, plan);
    return RunCommandLine(
        CommandLineText({(folder_ / planName).string(), (folder_ / data).string(), (folder_ / "out").string()}),
        environment_);
  }

  std::string Status() const { return folder_.Read("work/TexturonCommandLine-Status.txt"); }
  std::string Log() const { return folder_.Read("work/TexturonCommandLine-Event.Log"); }
  std::string Results() const { return folder_.Read("out/RESULTS.S4"); }

  ScratchFolder folder_;
  Environment environment_;
};

TEST_F(CommandLineRun, WritesEveryByteOfAStandardAndAWavinessPass) {
  SwitchLogOn();
  const RunOutcome outcome = Run(
      "[a]\r\nParameters=Pt,Ra;Rz, Wt,Rfoo\r\nFormOption=0\r\nWavFilter=0\r\n[limits]\r\nRa_Checked=1\r\nRa_Max=0.9\r\n"
      "Pt_Checked=1\r\nPt_Min=1\r\nPt_Max=3\r\nRz_Checked=1\r\nRz_Min=2\r\nWt_Checked=1\r\nWt_Max=0.0\r\n");
  ASSERT_TRUE(outcome.done) << outcome.reason;
  EXPECT_EQ(Status(), "File processed.  Results written.");
  EXPECT_EQ(Results(),
            "04/03/2015 09:05:07\r\nPRIMARY : GAUSSIAN/ none\r\nResult = PASS\r\nPt = 2.000 um\r\n"
            "ROUGHNESS : GAUSSIAN/0.8000 -    mm\r\nResult = FAIL\r\nRa = 1.000 um\r\nResult = ?\r\nRz = 2.000 um\r\n"
            "Result = ?\r\nRfoo = ****\r\nWAVINESS : GAUSSIAN/0.8000 -    mm\r\nResult = PASS\r\nWt = 0.000 um\r\n");
  EXPECT_EQ(folder_.Read("out/PRIMARY.S4"), ProfileFile(kPoints, 0));
  EXPECT_EQ(folder_.Read("out/ROUGHNESS.S4").substr(0, 60), ProfileFile(kPoints, 0).substr(0, 60));
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder_ / "out"), {}), 4);
  const std::string time = "Wed, 04 Mar 2015 09:05:07: ";
  std::string log =
      "Nizais.\r\nRegurioz  Instrument Control Event Log\r\n- see end of file for latest information.\r\n\r\n";
  const std::string path = folder_.path().string();
  for (const std::string& line : {std::string("5 arguments"),
                                  std::string("Command line arguments:"),
                                  "0: " + path + "/p.INI",
                                  std::string("1:  "),
                                  "2: " + path + "/S1234.prf",
                                  std::string("3:  "),
                                  "4: " + path + "/out",
                                  std::string("INI detected in command line. Reading settings..."),
                                  std::string("2 sections found in INI."),
                                  std::string("Section 0: a..."),
                                  std::string("Section 1: limits..."),
                                  std::string("WARNING:  'Rfoo' - Parameter not implemented."),
                                  std::string("STD: 3 parameters detected"),
                                  std::string("Settings successfully read from command line."),
                                  "OutputFolder: " + path + "/out",
                                  "Opening DataFile: " + path + "/S1234.prf...",
                                  std::string("OutputExtension: S4"),
                                  std::string("Data loaded"),
                                  std::string("Writing profiles..."),
                                  std::string("W: 1 parameters detected"),
                                  std::string("Writing profiles..."),
                                  std::string("RK: 0 parameters detected"),
                                  std::string("MOTIF: 0 parameters detected"),
                                  std::string("Writing results..."),
                                  std::string("Output written...")}) {
    log += time + line + "\r\n";
  }
  EXPECT_EQ(Log(), log);
}

TEST_F(CommandLineRun, WhatCannotBeHadKeepsItsLines) {
  const RunOutcome outcome =
      Run("Parameters=Pq\r\n[a]\r\nParameters=Rfoo,Wfoo\r\nMaxHybrids=2\r\nHybrids_0_Type=Wmr\r\n"
          "Hybrids_1_Type=Rhsc\r\nHybrids_1_Label=spots\r\nHybrids_1_Mode=1\r\nspots_Checked=1\r\nspots_Max=1\r\n");
  ASSERT_TRUE(outcome.done) << outcome.reason;
  EXPECT_EQ(Results(),
            "04/03/2015 09:05:07\r\nResult = ?\r\nWmr = ****\r\nResult = ?\r\nRfoo = ****\r\n"
            "Result = ?\r\nspots = ****\r\nResult = ?\r\nWfoo = ****\r\n");
}

TEST_F(CommandLineRun, LimitsThatAreNoNumbersAreRemarkedOn) {
  const RunOutcome outcome = Run("[a]\r\nParameters=Ra,Pt\r\nRa_Checked=1\r\nRa_Max=0,8\r\nPt_Max= 1e1 \r\n");
  ASSERT_TRUE(outcome.done) << outcome.reason;
  EXPECT_EQ(outcome.remarks, std::vector<std::string>{"The plan's Ra_Max=0,8 is read as 0."});
}

TEST_F(CommandLineRun, FirstPassThatAnalysesLoadsTheData) {
  SwitchLogOn();
  ASSERT_TRUE(Run("[a]\r\nParameters=Wa\r\n").done);
  const std::string log = Log();
  EXPECT_LT(log.find("WARNING: Waviness analysis with no filter given"), log.find("W: 1 parameters detected"));
  EXPECT_LT(log.find("W: 1 parameters detected"), log.find("Data loaded"));
  EXPECT_FALSE(std::filesystem::exists(folder_ / "out/PRIMARY.S4"));
}

TEST_F(CommandLineRun, EveryFailureSaysSoAndWritesNoResults) {
  struct Case {
    std::string plan;
    std::string data;
    std::string planName;
    std::string status;
    std::string lastEvent;
    std::string reason;
  };
  folder_.Write("damaged.prf", "1 2\r\nS 0.0 PRF\r\n");
  folder_.Write("short.lmt", SmallProfile(20, 1.0));
  const std::string plan = "[a]\r\nParameters=Ra\r\n";
  const Case cases[] = {
      {plan, "S1234.prf", "plan.txt", "", "First command line argument was not an INI.", "was not an INI."},
      {"Parameters=Ra\r\n", "S1234.prf", "p.ini", "Processing INI file...", "0 sections found in INI.",
       "has no section."},
      {plan, "none.prf", "p.Ini", "ERROR: Could not process data set.", "ERROR: Cannot process data file",
       "none.prf does not exist."},
      {plan, "damaged.prf", "p.ini", "ERROR: Could not process data set.", "ERROR: Cannot process data file",
       "damaged.prf is "},
      {plan, "short.lmt", "p.ini", "ERROR: Could not process data set.", "ERROR: Cannot process data file",
       "is not analysed: there are too few points to compute over."},
  };
  SwitchLogOn();
  for (const Case& c : cases) {
    std::filesystem::remove(folder_ / "work/TexturonCommandLine-Status.txt");
    const RunOutcome outcome = Run(c.plan, c.data, c.planName);
    EXPECT_FALSE(outcome.done);
    EXPECT_NE(outcome.reason.find(c.reason), std::string::npos) << outcome.reason;
    EXPECT_FALSE(outcome.reason.ends_with("..")) << outcome.reason;
    EXPECT_EQ(Status(), c.status);
    EXPECT_TRUE(Log().ends_with(": " + c.lastEvent + "\r\n")) << Log();
    EXPECT_FALSE(std::filesystem::exists(folder_ / "out"));
  }
  EXPECT_FALSE(RunCommandLine("\"one.ini\"", environment_).done);
  EXPECT_TRUE(Log().ends_with(": Not enough command line arguements\r\n"));
}

TEST_F(CommandLineRun, OutputThatCannotBeWrittenIsAFailure) {
  folder_.Write("out", "a file where the folder should be");
  const RunOutcome outcome = Run("[a]\r\nParameters=Ra\r\n");
  EXPECT_FALSE(outcome.done);
  EXPECT_NE(outcome.reason.find("PRIMARY.S4"), std::string::npos) << outcome.reason;
  EXPECT_EQ(Status(), "ERROR: Could not process data set.");
}

TEST_F(CommandLineRun, NoEarlierStatusOutlivesItsRunInAFolderThatTakesNoFile) {
  namespace fs = std::filesystem;
  fs::permissions(folder_.path(), fs::perms::all);
  folder_.Write("work/TexturonCommandLine-Status.txt", "File processed.  Results written.");
  constexpr auto kNoNewFiles = static_cast<fs::perms>(0555);
  fs::permissions(folder_ / "work", kNoNewFiles);
  const pid_t child = StartChild([this] {
    constexpr uid_t kNobody = 65534;
    if (::getuid() == 0) {
      if (::chown((folder_ / "work/TexturonCommandLine-Status.txt").c_str(), kNobody, kNobody) != 0) return 2;
      if (::setuid(kNobody) != 0) return 2;
    }
    return Run("[a]\r\nParameters=Ra\r\n", "none.prf").done ? 1 : 0;
  });
  EXPECT_EQ(WaitForChild(child), 0);
  fs::permissions(folder_ / "work", fs::perms::owner_all);
  EXPECT_EQ(Status(), "ERROR: Could not process data set.");
}

TEST_F(CommandLineRun, LogIsDroppedWhileLockedAndReplacedWhereItCannotBe) {
  SwitchLogOn();
  {
    const AppendFile holder(folder_ / "work/TexturonCommandLine-Event.Log");
    EXPECT_FALSE(RunCommandLine("", environment_).done);
  }
  EXPECT_EQ(Log(), "");
  std::filesystem::remove(folder_ / "work/TexturonCommandLine-Event.Log");
  std::filesystem::create_directory(folder_ / "work/TexturonCommandLine-Event.Log");
  EXPECT_FALSE(RunCommandLine("", environment_).done);
  EXPECT_EQ(folder_.Read("work/TexturonCommandLine-Event-Alternative.log"),
            "Texturon Command Line Event Log\r\n"
            "**Could not open main event log so created alternative with single item in it.\r\n");
}

TEST_F(CommandLineRun, TheDocumentedExampleRuns) {
  const std::string page = ReadWholeFile(std::string(TEXTURON_SOURCE_DIR) + "/docs/test-plan.md").bytes;
  const std::size_t begin = page.find("```ini\n") + 7;
  const std::string plan = page.substr(begin, page.find("```", begin) - begin);
  folder_.Write("g.ini", plan);
  const RunOutcome outcome = RunCommandLine(
      CommandLineText({(folder_ / "g.ini").string(), std::string(TEXTURON_SOURCE_DIR) + "/samples/ground.lmt",
                       (folder_ / "out").string()}),
      environment_);
  ASSERT_TRUE(outcome.done) << outcome.reason;
  const std::string results = folder_.Read("out/RESULTS.gd");
  for (const char* line : {"\r\nPt = ", "\r\nRa = ", "\r\nRz = ", "\r\nRSm = ", "\r\nWt = ", "\r\nRk = ",
                           "\r\nRpk_Star = ", "\r\nR = ", "\r\nW = ", "\r\nRmr(0.5) = ", "\r\nPHtp = "}) {
    const std::size_t at = results.find(line);
    ASSERT_NE(at, std::string::npos) << line << results;
    EXPECT_EQ(results.substr(at).find("****"), std::string::npos) << line;
  }
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder_ / "out"), {}), 8);
}

TEST(TestPlan, SortsNamesIntoFamiliesAndWarnsOfWhatItCannotDo) {
  const IniFile plan(
      "[a]\r\nParameters=Rk,Mr1,RSm,Wx,Wa,AW,Fp,CV\r\nRoughFilter=3\r\nRoughCutOffLength=0.25\r\n"
      "RoughBandWidthRatio=100\r\nRoughNumOfCuttOffs=4\r\nRKBandWidthRatio=300\r\nWavFilter=spline\r\nFormOption=9\r\n"
      "ABLength=0.4,2\r\nMaxHybrids=5\r\nHybrids_0_Type=Wmr\r\nHybrids_1_Type=WHtp\r\nHybrids_2_Type=Phsc\r\n"
      "Hybrids_2_Mode=1\r\nHybrids_3_Type=Rpc\r\nHybrids_3_Val1=0.7\r\nHybrids_4_Type=Rmr\r\nHybrids_4_Val1=-1\r\n"
      "Hybrid_2_0_Type=RHtp\r\nHybrid_2_1_Type=PHtp\r\nHybrid_2_1_Val1=20\r\nHybrid_2_1_Val2=80\r\n");
  struct Case {
    Family family;
    std::vector<std::string> names;
    std::vector<std::string> events;
    std::int32_t filter;
    double cutoffMM;
    double shortCutoffMM;
  };
  const Case cases[] = {
      {Family::kStandard,
       {"RSm", "Fp", "Wmr", "WHtp", "Phsc", "Rpc", "Rmr"},
       {"WARNING: Only Primary and Roughness bearing ratios are supported",
        "WARNING: Only Primary and Roughness Htp's are supported", "WARNING: Phsc - must be relative to meanline.",
        "STD: 4 parameters detected"},
       kFilterRobustGaussian,
       0.25,
       0.0025},
      {Family::kWaviness, {"Wa"}, {"W: 1 parameters detected"}, kFilterSplineGaussian, 0.8, 0.0},
      {Family::kRk, {"Rk", "Mr1", "CV"}, {"RK: 3 parameters detected"}, kFilterIso13565, 0.8, 0.8 / 300.0},
      {Family::kMotif,
       {"Wx", "AW", "RHtp", "PHtp"},
       {"WARNING: Only Primary profiles are supported for motif Htps", "MOTIF: 3 parameters detected"},
       kFilterRobustGaussian,
       0.25,
       0.0025},
  };
  for (const Case& c : cases) {
    Document document = MakeDocument();
    std::vector<std::string> events;
    const auto pass = ReadTestPlan(plan, c.family, document, [&](std::string_view text) { events.emplace_back(text); });
    ASSERT_TRUE(pass);
    std::vector<std::string> names;
    for (const PlannedParameter& parameter : pass->parameters) names.push_back(parameter.name);
    EXPECT_EQ(names, c.names);
    EXPECT_EQ(events, c.events);
    const AnalysisSettings& settings = document.settings.analysis;
    EXPECT_EQ(settings.FilterType, c.filter);
    EXPECT_EQ(settings.LcCutoffMM, c.cutoffMM);
    EXPECT_EQ(settings.LsCutoffMM, c.shortCutoffMM);
    EXPECT_EQ(settings.FormRemovalType, kFormLine);
    EXPECT_EQ(settings.MotifAMM, 0.4);
    EXPECT_EQ(document.scope.region.has_value(), c.family == Family::kStandard);
    EXPECT_EQ(settings.RoughnessPcLevel, c.family == Family::kStandard ? 0.7 : 1.0);
  }
}

TEST(CommandLineArguments, CutsAtEveryQuote) {
  const std::vector<std::string> usual = {"a b.ini", " ", "c", " ", "d"};
  EXPECT_EQ(CommandLineArguments("\"a b.ini\" \"c\" \"d\""), usual);
  EXPECT_EQ(CommandLineText({"a b.ini", "c", "d"}), "\"a b.ini\" \"c\" \"d\"");
  EXPECT_EQ(CommandLineArguments("\"one\""), std::vector<std::string>{"one"});
  EXPECT_TRUE(CommandLineArguments("").empty());
  EXPECT_EQ(OutputExtension("x/S1234.prf"), "S4");
  EXPECT_EQ(OutputExtension("7.lmt"), "77");
}

}  // namespace
}  // namespace texturon
