// SPDX-License-Identifier: Apache-2.0

// Whole files of the Rk and motif passes, on records whose profiles are known without a filter.

#include <ctime>
#include <functional>
#include <gtest/gtest.h>
#include <string>

#include "base/number_text.h"
#include "support/scratch_folder.h"
#include "unattended/command_line_run.h"

namespace texturon {
namespace {

/// A record of heights in steps of 1e-5 um, 10 um apart.
std::string Record(int points, const std::function<int(int)>& countAt) {
  const std::string n = ScientificText(points, 6);
  std::string text =
      "1 2\r\nRECORD 0.000000 PRF\r\nCX M " + n + " MM 1.000000e-002 D\r\nCZ M " + n +
      " MM 1.000000e-008 D\r\nEOR\r\nSTYLUS_RADIUS 0.000000e+000 MM\r\nSPACING CX 1.000000e-002 MM\r\nEOR\r\n";
  for (int i = 0; i < points; ++i) text += IntegerText(countAt(i)) + "\r\n";
  return text + "EOR\r\nEOF\r\n";
}

std::string ProfileFile(int first, int last, const std::function<double(int)>& heightUM) {
  std::string text = "Talyseries Surface\r\nNumPoints=" + IntegerText(last - first + 1) + "\r\nmm mm\r\n";
  for (int i = first; i <= last; ++i) text += FixedText(0.01 * i, 6) + " " + FixedText(0.001 * heightUM(i), 6) + "\r\n";
  return text;
}

std::string RunPlan(const ScratchFolder& folder, const std::string& plan, const std::string& record) {
  Environment environment;
  environment.localTime = [] { return std::tm{.tm_mday = 1, .tm_year = 120}; };
  environment.workingFolder = folder.path();
  environment.programFolder = folder.path();
  const std::string planFile = folder.Write("plan.ini", plan).string();
  const std::string dataFile = folder.Write("S1.prf", record).string();
  const RunOutcome outcome =
      RunCommandLine(CommandLineText({planFile, dataFile, (folder / "out").string()}), environment);
  EXPECT_TRUE(outcome.done) << outcome.reason;
  return folder.Read("out/RESULTS.S1");
}

/// Ten teeth of 38 points, straight up by 1.9 um and down again, without a point at 0.
constexpr int kTooth = 38;
constexpr int kTeethPoints = 10 * kTooth;
int ToothStep(int i) {
  const int k = i % kTooth;
  return 2 * (k <= 19 ? k : kTooth - k) - 19;
}

TEST(PlanProfiles, MotifsOfEqualTeethAreTheTeeth) {
  const ScratchFolder folder;
  const auto height = [](int i) { return 0.05 * ToothStep(i); };
  const std::string results = RunPlan(folder, "[a]\r\nParameters=R,Rx,AR,W,Wte\r\nFormOption=0\r\nABLength=0.5,2.5\r\n",
                                      Record(kTeethPoints, [](int i) { return 5000 * ToothStep(i); }));
  EXPECT_EQ(results,
            "01/01/2020 00:00:00\r\nMOTIF : GAUSSIAN/ none             A:  0.5000   B: 2.5000\r\n"
            "Result = ?\r\nR = 1.900 um\r\nResult = ?\r\nRx = 1.900 um\r\nResult = ?\r\nAR = 380.000 um\r\n"
            "Result = ?\r\nW = ****\r\nResult = ?\r\nWte = 0.000 um\r\n");
  EXPECT_EQ(folder.Read("out/PRIMARY_MOTIF.S1"), ProfileFile(0, kTeethPoints - 1, height));
  // From the first peak to the last one. A flat envelope has no motifs.
  EXPECT_EQ(folder.Read("out/MOTIF_R.S1"), ProfileFile(19, 19 + 9 * kTooth, height));
  EXPECT_FALSE(std::filesystem::exists(folder / "out/MOTIF_W.S1"));
}

TEST(PlanProfiles, RkPassLosesACutoffAtEachEnd) {
  // +1 and -1 in turn: the line above the valleys is level, and the roughness has zero mean.
  constexpr int kPoints = 400;
  constexpr int kCutoffPoints = 80;
  const ScratchFolder folder;
  const std::string results = RunPlan(folder, "[a]\r\nParameters=Rk\r\nFormOption=0\r\n",
                                      Record(kPoints, [](int i) { return i % 2 == 0 ? 100000 : -100000; }));
  EXPECT_TRUE(results.starts_with("01/01/2020 00:00:00\r\nRK : RK/0.8000 -    mm\r\nResult = ?\r\nRk = ")) << results;
  EXPECT_EQ(folder.Read("out/ROUGHNESS_RK.S1"),
            ProfileFile(kCutoffPoints, kPoints - kCutoffPoints - 1, [](int i) { return i % 2 == 0 ? 1.0 : -1.0; }));
}

}  // namespace
}  // namespace texturon
