// SPDX-License-Identifier: Apache-2.0

#include "unattended/command_line_run.h"

#include <algorithm>
#include <ctime>
#include <filesystem>
#include <functional>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "base/number_text.h"
#include "platform/append_file.h"
#include "platform/platform.h"
#include "support/child_process.h"
#include "support/golden.h"
#include "support/scratch_folder.h"
#include "support/small_profiles.h"
#include "unattended/plan_results.h"

namespace texturon {
namespace {

constexpr int kPoints = 400;

/// +1 and -1 um in turn: nothing of it passes a filter, so that primary and roughness are the heights themselves.
double Alternating(int i) {
  return i % 2 == 0 ? 1.0 : -1.0;
}

/// A record of heights in steps of 1e-5 um, 10 um apart.
std::string Record(int points, const std::function<double(int)>& heightUM) {
  const std::string n = ScientificText(points, 6);
  std::string text =
      "1 2\r\nRECORD 0.000000 PRF\r\nCX M " + n + " MM 1.000000e-002 D\r\nCZ M " + n +
      " MM 1.000000e-008 D\r\nEOR\r\nSTYLUS_RADIUS 0.000000e+000 MM\r\nSPACING CX 1.000000e-002 MM\r\nEOR\r\n";
  for (int i = 0; i < points; ++i) text += FixedText(1e5 * heightUM(i), 0) + "\r\n";
  return text + "EOR\r\nEOF\r\n";
}

/// A written profile of samples `first` to `last` of such a record.
std::string ProfileFile(int first, int last, const std::function<double(int)>& heightUM) {
  std::string text = "Talyseries Surface\r\nNumPoints=" + IntegerText(last - first + 1) + "\r\nmm mm\r\n";
  for (int i = first; i <= last; ++i) text += FixedText(0.01 * i, 6) + " " + FixedText(0.001 * heightUM(i), 6) + "\r\n";
  return text;
}

/// A run's folders and clock, Wed, 04 Mar 2015 09:05:07, and the folder of the program.
class CommandLineRun : public ::testing::Test {
protected:
  CommandLineRun() {
    std::filesystem::create_directories(folder_ / "program");
    std::filesystem::create_directories(folder_ / "work");
    environment_.localTime = [] {
      return std::tm{.tm_sec = 7, .tm_min = 5, .tm_hour = 9, .tm_mday = 4, .tm_mon = 2, .tm_year = 115, .tm_wday = 3};
    };
    environment_.workingFolder = folder_ / "work";
    environment_.programFolder = folder_ / "program";
    folder_.Write("S1234.prf", Record(kPoints, Alternating));
    folder_.Write("program/Texturon.ini", "[AUTO_LOADING]\r\nLogEventsWhenAutoLoading=1\r\n");
  }

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
  int FilesWritten() const {
    return static_cast<int>(std::distance(std::filesystem::directory_iterator(folder_ / "out"), {}));
  }
  /// What a run says and writes besides profiles, its folder as FOLDER.
  std::string Story(const RunOutcome& outcome) const {
    std::string text = outcome.done ? "done\n" : outcome.reason + "\n";
    for (const std::string& remark : outcome.remarks) text += remark + "\n";
    text += Status() + "\n" + Results() + Log();
    for (std::size_t at; (at = text.find(folder_.path().string())) != std::string::npos;) {
      text.replace(at, folder_.path().string().size(), "FOLDER");
    }
    if (std::filesystem::path::preferred_separator != '/') std::replace(text.begin(), text.end(), '\\', '/');
    return text;
  }

  ScratchFolder folder_;
  Environment environment_;
};

TEST_F(CommandLineRun, WritesEveryByteOfAStandardAndAWavinessPass) {
  const RunOutcome outcome = Run(
      "[a]\r\nParameters=Pt,Ra;Rz, Wt,Rfoo\r\nFormOption=0\r\nWavFilter=0\r\n[limits]\r\nRa_Checked=1\r\nRa_Max=0.9\r\n"
      "Pt_Checked=1\r\nPt_Min=1\r\nPt_Max=3\r\nRz_Checked=1\r\nRz_Min=2\r\nWt_Checked=1\r\nWt_Max=0.0\r\n");
  EXPECT_TRUE(MatchesGolden("unattended/standard.txt", Story(outcome)));
  EXPECT_EQ(folder_.Read("out/PRIMARY.S4"), ProfileFile(0, kPoints - 1, Alternating));
  EXPECT_EQ(folder_.Read("out/ROUGHNESS.S4").substr(0, 60), ProfileFile(0, kPoints - 1, Alternating).substr(0, 60));
  EXPECT_EQ(FilesWritten(), 4);
}

TEST_F(CommandLineRun, WhatCannotBeHadKeepsItsLines) {
  const RunOutcome outcome =
      Run("Parameters=Pq\r\n[a]\r\nParameters=Rfoo,Wfoo\r\nMaxHybrids=2\r\nHybrids_0_Type=Wmr\r\n"
          "Hybrids_1_Type=Rhsc\r\nHybrids_1_Label=spots\r\nHybrids_1_Mode=1\r\nspots_Checked=1\r\nspots_Max=1\r\n");
  EXPECT_TRUE(MatchesGolden("unattended/not_to_be_had.txt", Story(outcome)));
}

// A waviness pass alone loads the data itself, after it has warned that there is no filter; a limit that is no number
// is remarked on.
TEST_F(CommandLineRun, FirstPassThatAnalysesLoadsTheData) {
  EXPECT_TRUE(MatchesGolden("unattended/waviness.txt",
                            Story(Run("[a]\r\nParameters=Wa\r\nWa_Checked=1\r\nWa_Min= -1 \r\nWa_Max=0,8\r\n"))));
  EXPECT_FALSE(std::filesystem::exists(folder_ / "out/PRIMARY.S4"));
}

// The lists of all sections are one; a limit is that of the section which lists the name. What has no effect, is no
// number or cannot be done is told to who started the run and in the log.
TEST_F(CommandLineRun, ReadsEverySectionAndTellsWhatHasNoEffect) {
  folder_.Write("program/Texturon.ini",
                "[AUTO_LOADING]\r\nLogEventsWhenAutoLoading=1\r\n[ANALYSIS]\r\nLcCutoffMM=x\r\n");
  EXPECT_TRUE(MatchesGolden(
      "unattended/sections.txt",
      Story(Run("FormOption=0\r\n[Limits]\r\nRa_Max=0.5\r\nRa_Checked=1\r\nWa_Max=\r\nWa_Checked=1\r\nWavFilter=BOX\r\n"
                "[Standard]\r\nParameters=Ra,Pt\r\nParameters=Rz\r\nRa_Max=1.5\r\nRoughCutOffLength=0,25\r\n"
                "[Waviness]\r\nParameters=Wa;Ra\r\nRa_Max=0.1\r\nWavCutOffLength=0.02\r\n[Rk]\r\nParameter=Rk\r\n"))));
}

// Heights of 1 and -1 um with U = 2 %: limits that Pt and the row of ratios keep by less are undecided.
TEST_F(CommandLineRun, JudgesByTheRuleOfThePlan) {
  folder_.Write("b.ini", "[UNCERTAINTY_BUDGET]\r\nAmplificationPercent=1\r\n");
  const std::string plan =
      "[a]\r\nParameters=Pa,Pt,Pq\r\nFormOption=0\r\nMaxHybrids=1\r\nHybrids_0_Type=PHtp\r\nHybrids_0_Val1=10\r\n"
      "Hybrids_0_Val2=90\r\nPHtp_Checked=1\r\nPHtp_Max=2.03\r\nPa_Checked=1\r\nPa_Max=1.1\r\nPt_Checked=1\r\n"
      "Pt_Max=2.01\r\nPq_Checked=1\r\nPq_Max=0.9\r\n";
  const auto results = [&](const std::string& keys) {
    const RunOutcome outcome = Run(plan + keys);
    std::string text = outcome.done ? "" : outcome.reason;
    for (const std::string& remark : outcome.remarks) text += remark + "\n";
    const std::string lines = Results();
    for (std::size_t at = 0; (at = lines.find("Result = ", at)) != std::string::npos; at += 9) text += lines[at + 9];
    return text;
  };
  EXPECT_EQ(results("DecisionRule=guarded\r\nBudgetFile=b.ini\r\n"), "PUFU");
  EXPECT_EQ(results("DecisionRule=guarded-fail\r\nBudgetFile=b.ini\r\n"), "PFFF");
  EXPECT_EQ(results(""), "PPFP");
  EXPECT_EQ(results("DecisionRule=guarded\r\n"),
            "The decision rule guarded needs an uncertainty, and there is no budget: no value with limits is "
            "decided.\nUUUU");
  EXPECT_TRUE(results("DecisionRule=strict\r\n").starts_with("The plan's DecisionRule=strict is read as simple"));
  const RunOutcome refused = Run(plan + "BudgetFile=none.ini\r\n");
  EXPECT_FALSE(refused.done);
  EXPECT_NE(refused.reason.find("none.ini does not exist"), std::string::npos) << refused.reason;
  folder_.Write("out/RESULTS.S4", "[UNCERTAINTY_BUDGET]\r\nAmplificationPercent=1\r\n");
  const RunOutcome clash = Run(plan + "BudgetFile=out/RESULTS.S4\r\n");
  EXPECT_FALSE(clash.done);
  EXPECT_NE(clash.reason.find("are one file"), std::string::npos) << clash.reason;
  EXPECT_TRUE(Results().starts_with("[UNCERTAINTY_BUDGET]")) << "the budget is still there";
}

TEST_F(CommandLineRun, EveryFailureSaysSoAndWritesNoResults) {
  TEXTURON_NEEDS_POSIX();  // the words of the system
  folder_.Write("damaged.lmt", "1");
  folder_.Write("short.lmt", SmallProfile(20, 1.0));
  const std::string plan = "[a]\r\nParameters=Ra\r\n";
  const std::string cases[][3] = {{plan, "S1234.prf", "plan.txt"},
                                  {"Parameters=Ra\r\n", "S1234.prf", "p.ini"},
                                  {plan, "none.prf", "p.Ini"},
                                  {plan, "damaged.lmt", "p.ini"},
                                  {plan, "short.lmt", "p.ini"}};
  std::string text;
  for (const auto& [content, data, planName] : cases) {
    std::filesystem::remove_all(folder_ / "work");
    std::filesystem::create_directories(folder_ / "work");
    text += Story(Run(content, data, planName)) + "\n";
    EXPECT_FALSE(std::filesystem::exists(folder_ / "out"));
  }
  text += Story(RunCommandLine("\"one.ini\"", environment_)) + "\n";
  folder_.Write("out", "a file where the folder should be");
  text += Story(Run(plan));
  EXPECT_TRUE(MatchesGolden("unattended/failures.txt", text));
}

TEST_F(CommandLineRun, NoEarlierStatusOutlivesItsRunInAFolderThatTakesNoFile) {
  TEXTURON_NEEDS_POSIX();
  namespace fs = std::filesystem;
  fs::permissions(folder_.path(), fs::perms::all);
  folder_.Write("work/TexturonCommandLine-Status.txt", "File processed.  Results written.");
  constexpr auto kNoNewFiles = static_cast<fs::perms>(0555);
  fs::permissions(folder_ / "work", kNoNewFiles);
  const auto child = StartChild([this] {
    if (!BecomeNobody(folder_ / "work/TexturonCommandLine-Status.txt")) return 2;
    return Run("[a]\r\nParameters=Ra\r\n", "none.prf").done ? 1 : 0;
  });
  EXPECT_EQ(WaitForChild(child), 0);
  fs::permissions(folder_ / "work", fs::perms::owner_all);
  EXPECT_EQ(Status(), "ERROR: Could not process data set.");
}

// What others may have put under the names that a run chooses.
TEST_F(CommandLineRun, NamesOfItsOwnNeverLeadElsewhere) {
  TEXTURON_NEEDS_POSIX();
  namespace fs = std::filesystem;
  fs::create_directory(folder_ / "out");
  for (const bool isHard : {false, true}) {
    for (const char* name : {"work/TexturonCommandLine-Status.txt", "work/TexturonCommandLine-Event.Log",
                             "work/TexturonCommandLine-Event-Alternative.log", "out/PRIMARY.S4", "out/RESULTS.S4"}) {
      const fs::path target = folder_.Write("target of " + fs::path(name).filename().string(), "precious");
      fs::remove(folder_ / name);
      isHard ? fs::create_hard_link(target, folder_ / name) : fs::create_symlink(target, folder_ / name);
    }
    const RunOutcome outcome = Run("[a]\r\nParameters=Ra\r\n");
    EXPECT_TRUE(outcome.done) << outcome.reason;
    EXPECT_EQ(Status(), "File processed.  Results written.");
    EXPECT_NE(Results().find("Ra = 1.000 um"), std::string::npos);
    for (const auto& entry : fs::directory_iterator(folder_.path())) {
      const std::string name = entry.path().filename().string();
      if (!name.starts_with("target of ")) continue;
      EXPECT_EQ(folder_.Read(name), "precious") << name;
    }
  }
}

TEST_F(CommandLineRun, AStatusThatCannotBeWrittenIsSaidAndResultsStand) {
  std::filesystem::create_directory(folder_ / "work/TexturonCommandLine-Status.txt");
  const RunOutcome outcome = Run("[a]\r\nParameters=Ra\r\n");
  EXPECT_FALSE(outcome.done);
  EXPECT_NE(outcome.reason.find("Status.txt"), std::string::npos) << outcome.reason;
  EXPECT_NE(Results().find("Ra = 1.000 um"), std::string::npos);
}

TEST_F(CommandLineRun, AnOutputThatIsAnInputIsNotWritten) {
  TEXTURON_NEEDS_POSIX();
  namespace fs = std::filesystem;
  const std::string data = folder_.Read("S1234.prf");
  fs::create_directory(folder_ / "out");
  for (const char* name : {"out/RESULTS.S4", "out/MOTIF_R.S4", "work/TexturonCommandLine-Event.Log",
                           "work/TexturonCommandLine-Status.txt"}) {
    fs::remove(folder_ / name);
    fs::create_symlink(folder_ / "S1234.prf", folder_ / name);
    const RunOutcome outcome = Run("[a]\r\nParameters=Ra\r\n");
    EXPECT_FALSE(outcome.done);
    EXPECT_NE(outcome.reason.find("are one file"), std::string::npos) << outcome.reason;
    EXPECT_EQ(folder_.Read("S1234.prf"), data) << name;
    EXPECT_FALSE(fs::exists(folder_ / "out/PRIMARY.S4"));
    EXPECT_EQ(Status(), std::string(name).ends_with("Status.txt") ? data : "ERROR: Could not process data set.");
    fs::remove(folder_ / name);
  }
}

TEST_F(CommandLineRun, LogIsDroppedWhileLockedAndReplacedWhereItCannotBe) {
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
  folder_.Write("ground.lmt", ReadWholeFile(std::string(TEXTURON_SOURCE_DIR) + "/samples/ground.lmt").bytes);
  ASSERT_TRUE(Run(page.substr(begin, page.find("```", begin) - begin), "ground.lmt").done);
  EXPECT_TRUE(MatchesGolden("unattended/example.txt", folder_.Read("out/RESULTS.gd")));
  EXPECT_EQ(FilesWritten(), 8);
}

// Ten teeth of 38 points, straight up by 1.9 um and down again, without a point at 0: their motifs are the teeth.
TEST_F(CommandLineRun, MotifsOfEqualTeethAreTheTeeth) {
  constexpr int kTooth = 38;
  const auto height = [](int i) { return 0.05 * (2 * std::min(i % kTooth, kTooth - i % kTooth) - 19); };
  folder_.Write("S14.prf", Record(10 * kTooth, height));
  ASSERT_TRUE(Run("[a]\r\nParameters=R,Rx,AR,W,Wte\r\nFormOption=0\r\nABLength=0.5,2.5\r\n"
                  "UseMaxMinLimits=0\r\nR_Checked=1\r\nR_Min=1.95\r\nR_Max=2\r\n",
                  "S14.prf")
                  .done);
  EXPECT_TRUE(MatchesGolden("unattended/motifs.txt", Results()));
  EXPECT_EQ(folder_.Read("out/PRIMARY_MOTIF.S4"), ProfileFile(0, 10 * kTooth - 1, height));
  // From the first peak to the last one. A flat envelope has no motifs.
  EXPECT_EQ(folder_.Read("out/MOTIF_R.S4"), ProfileFile(19, 19 + 9 * kTooth, height));
  EXPECT_FALSE(std::filesystem::exists(folder_ / "out/MOTIF_W.S4"));
}

TEST_F(CommandLineRun, RkPassLosesACutoffAtEachEnd) {
  constexpr int kCutoffPoints = 80;
  ASSERT_TRUE(Run("[a]\r\nParameters=Rk,CV\r\nFormOption=0\r\n").done);
  EXPECT_TRUE(Results().starts_with("04/03/2015 09:05:07\r\nRK : RK/0.8000 -    mm\r\nResult = ?\r\nRk = "));
  EXPECT_TRUE(Results().ends_with(" um3/um2\r\n")) << Results();
  // The line above the valleys is level, and the roughness has zero mean.
  EXPECT_EQ(folder_.Read("out/ROUGHNESS_RK.S4"), ProfileFile(kCutoffPoints, kPoints - kCutoffPoints - 1, Alternating));
}

TEST_F(CommandLineRun, NamesOfTheEditionOf2021SayIt) {
  ASSERT_TRUE(
      Run("[a]\r\nEdition=2021\r\nParameters=Rp,Rdc(10,80),Rzz;Rk\r\nFormOption=0\r\nRp_Checked=1\r\nRp_Max=0.5\r\n")
          .done);
  for (const char* const line : {"Result = FAIL\r\nRp/2021 = 1.000 um\r\n", "\r\nRdc(10;80)/2021 = 2.000 um\r\n",
                                 "\r\nRzz/2021 = ****\r\n", "RK : ROBUST-GAUSSIAN-2/0.8000", "\r\nRk/2021 = "}) {
    EXPECT_TRUE(Results().find(line) != std::string::npos) << line << Results();
  }
}

TEST_F(CommandLineRun, AnswersForTheFeaturesOfTheSettings) {
  folder_.Write("program/Texturon.ini",
                "[STANDARD]\r\nFeatures=2\r\nFeature00=W: FC; D; None; All; Count; Sum\r\n"
                "Feature01=R: FC; D; None; All; PVh; Mean\r\nCoreFilter=roughness\r\n");
  ASSERT_TRUE(Run("[a]\r\nEdition=2021\r\nParameters=Ra,Rk\r\nFormOption=0\r\nMaxHybrids=2\r\n"
                  "Hybrids_0_Type=Rpc\r\nHybrids_0_Val1=0.5\r\nHybrids_1_Type=Rhsc\r\n")
                  .done);
  for (const char* const line : {"\r\nRa/2021 = 1.000 um\r\n", "\r\nR: FC; D; None; All; PVh; Mean/2021 = 1.000 um\r\n",
                                 "WAVINESS : GAUSSIAN/0.8000", "\r\nW: FC; D; None; All; Count; Sum/2021 = ",
                                 "\r\nRpc = ****\r\n", "\r\nRhsc = ****\r\n", "RK : GAUSSIAN/0.8000"}) {
    EXPECT_TRUE(Results().find(line) != std::string::npos) << line << Results();
  }
}

TEST(TestPlan, SortsNamesIntoFamiliesAndWarnsOfWhatItCannotDo) {
  const IniFile file(
      "[a]\r\nParameters=Rk,Mr1,RSm,Wx,Wa,AW,Fp,CV\r\nRoughFilter=3\r\nRoughCutOffLength=0.25\r\n"
      "RoughBandWidthRatio=100\r\nRoughNumOfCuttOffs=4\r\nRKBandWidthRatio=300\r\nRKNumOfCuttOffs=0\r\nWavFilter="
      "spline\r\nFormOption=9\r\n"
      "ABLength=0.4,2\r\nMaxHybrids=5\r\nHybrids_0_Type=Wmr\r\nHybrids_1_Type=WHtp\r\nHybrids_2_Type=Phsc\r\n"
      "Hybrids_2_Mode=1\r\nHybrids_3_Type=Rpc\r\nHybrids_3_Val1=0.7\r\nHybrids_4_Type=Rmr\r\nHybrids_4_Val1=-1\r\n"
      "Hybrid_2_0_Type=RHtp\r\nHybrid_2_1_Type=PHtp\r\nHybrid_2_1_Val1=20\r\nHybrid_2_1_Val2=80\r\n");
  PlanKeys plan(file);
  std::string text;
  for (const Family family : {Family::kStandard, Family::kWaviness, Family::kRk, Family::kMotif}) {
    Document document = MakeDocument();
    std::string events;
    const auto pass =
        ReadTestPlan(plan, family, document, [&events](std::string_view event) { events.append(event) += "\n"; });
    ASSERT_TRUE(pass);
    for (const PlannedParameter& parameter : pass->parameters) text += parameter.name + " ";
    const AnalysisSettings& settings = document.settings.analysis;
    text += "\n" + events + "filter " + IntegerText(settings.FilterType) + ", form " +
            IntegerText(settings.FormRemovalType) + ", Lc " + ShortestText(settings.LcCutoffMM) + ", Ls " +
            FixedText(settings.LsCutoffMM, 6) + ", A " + ShortestText(settings.MotifAMM) + ", B " +
            ShortestText(settings.MotifBMM) + ", Rpc " + ShortestText(settings.RoughnessPcLevel) +
            (document.scope.region ? ", of a region\n\n" : "\n\n");
  }
  EXPECT_TRUE(MatchesGolden("unattended/passes.txt", text));
}

TEST(CommandLineArguments, CutsAtEveryQuote) {
  const std::vector<std::string> usual = {"a b.ini", " ", "c", " ", "d"};
  EXPECT_EQ(CommandLineArguments("\"a b.ini\" \"c\" \"d\""), usual);
  EXPECT_EQ(CommandLineText({"a b.ini", "c", "d"}), "\"a b.ini\" \"c\" \"d\"");
  EXPECT_TRUE(CommandLineArguments("").empty());
  EXPECT_EQ(OutputExtension("x/S1234.prf"), "S4");
  EXPECT_EQ(OutputExtension("7.lmt"), "77");
  EXPECT_EQ(OutputExtension(PathFromSystemText("\u00fc\u6e2c\u5b9a.lmt")), "\u00fc\u5b9a");
}

}  // namespace
}  // namespace texturon
