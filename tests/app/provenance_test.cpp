// SPDX-License-Identifier: Apache-2.0

// Results that tell where they come from, and analyses that are repeated from what results tell.

#include <cmath>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <vector>

#include "base/sha256.h"
#include "support/program_run.h"
#include "support/scratch_folder.h"
#include "support/small_profiles.h"

namespace texturon {
namespace {

using nlohmann::json;

// Every kind of request that results depend on, repeated from the object alone.
TEST(Provenance, AnObjectIsEnoughToRepeatItsAnalysis) {
  const ScratchFolder folder;
  const std::string budget = folder
                                 .Write("b.ini",
                                        "[UNCERTAINTY_BUDGET]\nHeightNoiseUM=0.01\nAmplificationPercent=1\n"
                                        "RepeatabilityPercent.Ra=1.5\n")
                                 .string();
  const std::string table = folder
                                .Write("t.txt",
                                       [] {
                                         std::string text;
                                         for (int i = 0; i < 400; ++i) text += std::to_string(0.01 * i) + "\n";
                                         return text;
                                       }())
                                .string();
  const std::vector<std::vector<std::string>> calls = {
      {Sample("turned.lmt"), "--region", "1,0.25,0,3", "--exclude", "100,900", "--set", "ANALYSIS.FilterType=0"},
      {Sample("ground.lmt"), "--whole-cutoffs", "--invert", "--set", "ROUGHNESS_BEARING_RATIOS.Selected02=1", "--set",
       "PARAMETERS.Selected05=0", "--set", "PARAMETERS.Toleranced01=1", "--set", "PARAMETERS.MetricUpperTolLimit01=3"},
      {Sample("asphere.lmt"), "--settings", Sample("asphere.ini"), "--all-data-for-form"},
      {Sample("freeform.lmt"), "--settings", Sample("freeform.ini")},
      {Sample("honed.lmt"), "--budget", budget, "--trials", "20", "--seed", "7", "--interval", "shortest",
       "--sensitivities"},
      {table, "--spacing", "2.5", "--set", "ANALYSIS.LcCutoffMM=0.08"},
      {Sample("turned.lmt"), "--edition", "both", "--feature", "P: FC; D; Wolfprune 5 %; All; HDh; Mean"},
      // An open side of a drawing's limits is infinite.
      {Sample("turned.lmt"), "--indication", "L Ra 1", "--sections", "4", "--budget", budget, "--trials", "20",
       "--decision-rule", "guarded"},
      // Two analyses, and the requirements in an object of their own.
      {Sample("turned.lmt"), "--indication", "Rz 8 | Ra 3 Sc2", "--sections", "4"},
  };
  for (std::vector<std::string> call : calls) {
    const std::string file = call.front();
    call.insert(call.begin(), {"analyze", "--json", "--no-trace", "--quiet"});
    const Outcome first = Texturon(call);
    ASSERT_EQ(first.status, 0) << file << first.error;
    const std::string object = folder.Write("r.json", first.out).string();
    const Outcome again = Texturon({"analyze", "--again", object, file, "--quiet"});
    EXPECT_EQ(again.status, 0) << file << again.out << again.error;
    EXPECT_NE(again.out.find(" figures, to the bit."), std::string::npos);
  }
}

TEST(Provenance, WhatIsNotTheSameIsNamed) {
  const ScratchFolder folder;
  const std::string a = folder.Write("a.lmt", SmallProfile(400, 1.0)).string();
  const std::string b = folder.Write("b.lmt", SmallProfile(400, 1.0) + "\n").string();
  const std::string text =
      Texturon({"analyze", "--json", "--no-trace", a, "--set", "PARAMETERS.AvailableParameters=3"}).out;
  json object = json::parse(text);
  EXPECT_EQ(object["input"]["sha256"], Sha256Of(folder.Read("a.lmt")));
  EXPECT_EQ(object["input"]["bytes"], folder.Read("a.lmt").size());
  object["program"]["version"] = "9.9";
  object["file"] = "elsewhere";
  const auto again = [&](const std::string& file) {
    return Texturon({"analyze", "--again", folder.Write("r.json", object.dump()).string(), file});
  };
  EXPECT_EQ(again(a).status, 0);
  Outcome run = again(b);
  EXPECT_EQ(run.status, 1);
  EXPECT_NE(run.out.find("\ninput.sha256 "), std::string::npos) << run.out;
  object["parameters"][1]["value"] = std::nextafter(object["parameters"][1]["value"].get<double>(), 9.0);
  object["parameters"][2]["value"] = nullptr;
  run = again(a);
  EXPECT_EQ(run.status, 1);
  EXPECT_NE(run.out.find("Not the same: 2 places."), std::string::npos) << run.out;
  EXPECT_NE(run.out.find("\nparameters.Pt.value "), std::string::npos) << run.out;
  object["settings"]["in_force"]["ANALYSIS.Nothing"] = 1;
  EXPECT_NE(again(a).error.find("there is no key \"Nothing\""), std::string::npos);
  EXPECT_EQ(Texturon({"analyze", "--again", a, a}).status, 1);
  EXPECT_EQ(Texturon({"analyze", "--again", a, a, "--invert"}).status, 2);
}

// Beside the rows, a line a run and a line a file, which no later run takes for a measurement.
TEST(Provenance, RowsHaveACompanion) {
  const ScratchFolder folder;
  for (const char* name : {"a.lmt", "b.lmt"}) folder.Write(name, SmallProfile(400, 1.0));
  const std::string rows = (folder / "rows.csv").string();
  for (int run = 0; run < 2; ++run) {
    const Outcome batch = Texturon({"batch", folder.path().string(), "--mask", "*", "--parameter-file", rows, "--set",
                                    "ANALYSIS.LcCutoffMM=0.25"});
    EXPECT_TRUE(batch.out.starts_with("2 analysed, 0 failed\n")) << batch.out << batch.error;
  }
  std::istringstream lines(folder.Read("rows.csv.provenance.json"));
  std::vector<json> objects;
  for (std::string line; std::getline(lines, line);) objects.push_back(json::parse(line));
  ASSERT_EQ(objects.size(), 6u);
  EXPECT_EQ(objects[3]["settings"]["in_force"]["ANALYSIS.LcCutoffMM"], 0.25);
  EXPECT_TRUE(objects[3]["request"]["region"].is_null());
  EXPECT_EQ(objects[5]["file"], (folder / "b.lmt").string());
  EXPECT_EQ(objects[5]["input"]["sha256"], Sha256Of(folder.Read("b.lmt")));
}

}  // namespace
}  // namespace texturon
