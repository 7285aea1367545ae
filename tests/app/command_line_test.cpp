// SPDX-License-Identifier: Apache-2.0

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <gtest/gtest.h>
#include <limits>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "base/json_writer.h"
#include "base/number_text.h"
#include "support/child_process.h"
#include "support/golden.h"
#include "support/near.h"
#include "support/program_run.h"
#include "support/scratch_folder.h"
#include "support/small_profiles.h"

namespace texturon {
namespace {

using nlohmann::json;

json Parameter(const json& analysis, const std::string& name) {
  for (const json& row : analysis["parameters"]) {
    if (row["name"] == name) return row;
  }
  return {};
}

// The members' names and order are in the golden transcripts.
TEST(CommandLine, GivesProfilesAndTheValuesMadeOfThem) {
  const Outcome run = Texturon({"analyze", "--json", "--profiles", "--no-trace", Sample("ground.lmt")});
  ASSERT_EQ(run.status, 0) << run.error;
  const json analysis = json::parse(run.out);
  EXPECT_EQ(analysis["parameters"].size(), 107u);
  EXPECT_EQ(analysis["profiles"]["closing"].size(), 8000u);
  double sum = 0.0;
  for (const json& z : analysis["profiles"]["roughness"]) sum += std::abs(z.get<double>());
  EXPECT_TRUE(Near(Parameter(analysis, "Ra")["value"].get<double>(), sum / 8000.0, 1e-12));
  const json& rk = analysis["rk"];
  EXPECT_TRUE(Near(rk["upper_line"].get<double>() - rk["lower_line"].get<double>(), rk["Rk"].get<double>(), 1e-12));
}

// As a script with an unset variable writes it: what was asked for is not quietly left out.
TEST(CommandLine, RefusesAnEmptyValue) {
  for (const char* const option : {"--settings", "--region", "--class", "--indication", "--append-to", "--set"}) {
    const Outcome run = Texturon({"analyze", Sample("ground.lmt"), option, ""});
    EXPECT_EQ(run.status, 2) << option;
    EXPECT_TRUE(run.error.starts_with(std::string(option) + ": is empty")) << run.error;
    EXPECT_EQ(run.out, "");
  }
  const Outcome run = Texturon({"analyze", "--settings=", Sample("turned.lmt"), Sample("ground.lmt")});
  EXPECT_EQ(run.status, 2) << "the next word is not its value";
}

TEST(CommandLine, TellsWhatEachParameterIs) {
  const json rows = json::parse(Texturon({"parameters", "--json"}).out);
  const json analysis = json::parse(Texturon({"analyze", "--json", "--no-trace", Sample("turned.lmt")}).out);
  ASSERT_EQ(rows.size(), analysis["parameters"].size());
  for (std::size_t i = 0; i < rows.size(); ++i) {
    const json& computed = analysis["parameters"][i];
    EXPECT_EQ(rows[i]["name"], computed["name"]);
    EXPECT_EQ(rows[i]["unit"], computed["unit"]);
    EXPECT_EQ(rows[i]["edition"], "1997");
    EXPECT_EQ(computed.contains("reason"), computed["value"].is_null()) << computed;
  }
  const auto highSpots = std::find_if(rows.begin(), rows.end(), [](const json& row) { return row["name"] == "Rhsc"; });
  EXPECT_EQ((*highSpots)["settings"], json({"ANALYSIS.RoughnessHSCHeight"}));
}

// To 0.01 of the unit: waviness moves an apex by 0.001 mm.
TEST(CommandLine, ReportsThePlaceOfAsphereFreeFormAndFixedRadius) {
  const std::vector<std::string> cases[] = {
      {"--settings", Sample("asphere.ini"), Sample("asphere.lmt")},
      {"--settings", Sample("freeform.ini"), Sample("freeform.lmt")},
      {"--set", "ANALYSIS.FormRemovalType=3", "--set", "ANALYSIS.FixedRadiusMM=-12", Sample("arc.lmt")}};
  std::string text;
  for (const std::vector<std::string>& options : cases) {
    std::vector<std::string> call = {"analyze", "--json", "--no-trace"};
    call.insert(call.end(), options.begin(), options.end());
    const json form = json::parse(Texturon(call).out)["form"];
    for (const auto& [key, value] : form.items()) {
      if (value.is_number()) text += key + ": " + FixedText(value.get<double>(), 2) + "\n";
    }
  }
  EXPECT_TRUE(MatchesGolden("app/forms.txt", text));
}

TEST(CommandLine, CarriesWhatASettingsFileCannot) {
  const auto analyse = [](std::vector<std::string> options) {
    options.insert(options.begin(), {"analyze", "--json", "--no-trace", Sample("ground.lmt")});
    const Outcome run = Texturon(options);
    EXPECT_EQ(run.status, 0) << run.error;
    return json::parse(run.out);
  };
  EXPECT_EQ(analyse({"--region", "1,0.5,0,2.5"})["ranges"]["compute"], json({1000, 6000, 5001}));
  EXPECT_EQ(analyse({"--whole-cutoffs"})["ranges"]["compute"], json({0, 7999, 8000}));
  const json plain = analyse({});
  const json inverted = analyse({"--invert"});
  EXPECT_TRUE(
      Near(Parameter(inverted, "Rp")["value"].get<double>(), Parameter(plain, "Rv")["value"].get<double>(), 1e-9));
  EXPECT_NE(analyse({"--exclude", "0,4000"})["form"]["slope"], plain["form"]["slope"]);
  EXPECT_EQ(analyse({"--exclude", "0,4000", "--all-data-for-form"})["form"]["slope"], plain["form"]["slope"]);
  const json imperial = analyse({"--imperial"});
  EXPECT_EQ(Parameter(imperial, "Ra")["value"], Parameter(plain, "Ra")["value"]);
  EXPECT_NE(imperial["form"]["caption"], plain["form"]["caption"]);
}

TEST(CommandLine, ConvertsAndReadsBack) {
  const ScratchFolder folder;
  const auto heightsOf = [](const std::string& file) {
    return json::parse(Texturon({"analyze", "--json", "--profiles", "--no-trace", file}).out)["profiles"]["raw"];
  };
  const json heights = heightsOf(Sample("turned.lmt"));
  for (const char* name : {"copy.lmt", "copy.prf", "copy.sdf", "copy.pr"}) {
    const std::string other = (folder / name).string();
    EXPECT_EQ(Texturon({"convert", Sample("turned.lmt"), other}).status, 0) << name;
    EXPECT_TRUE(Near(heightsOf(other)[77].get<double>(), heights[77].get<double>(), 1e-5)) << name;
  }
  EXPECT_EQ(heightsOf((folder / "copy.lmt").string()), heights);
}

TEST(CommandLine, TakesPathsOfAnyLetters) {
  TEXTURON_NEEDS_POSIX();
  const ScratchFolder folder;
  const std::string file = folder.Write("n \xC3\xA4.hdr", "IDENT").string();
  const Outcome run = Texturon({"inspect", file});
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.error, "texturon: " + file + " is refused by the reader of the header file with a data file .dat: " +
                           "Could not find n \xC3\xA4.dat.\n");
}

TEST(CommandLine, ReadsStandardInputAsAFile) {
  TEXTURON_NEEDS_POSIX();
  const ScratchFolder folder;
  const auto child = StartChild([&folder] {
    if (std::freopen(Sample("ground.lmt").c_str(), "rb", stdin) == nullptr) return 2;
    return Texturon({"convert", "-", (folder / "copy.lmt").string(), "--as", "lmt"}).status;
  });
  EXPECT_EQ(WaitForChild(child), 0);
  const auto heights = [](const std::string& file) {
    return json::parse(Texturon({"analyze", "--json", "--profiles", "--no-trace", file}).out)["profiles"]["raw"];
  };
  EXPECT_EQ(heights((folder / "copy.lmt").string()), heights(Sample("ground.lmt")));
}

// A cell that a spreadsheet would compute is a text; numbers stay numbers.
TEST(CommandLine, SpreadsheetsComputeNoCell) {
  const ScratchFolder folder;
  const std::string profile = SmallProfile(400, 1.0);
  const std::size_t line = profile.find("IDENTIFICATION: ") + 16;
  const std::size_t end = profile.find_first_of("\r\n", line);
  const std::pair<std::string, std::string> cases[] = {{"=HYPERLINK(\"x\")", ",\"'=HYPERLINK(\"\"x\"\")\","},
                                                       {"@SUM(A1)", ",\"'@SUM(A1)\","},
                                                       {"-1+1", ",\"'-1+1\","},
                                                       {"-1.5", ",-1.5,"},
                                                       {"a=b", ",a=b,"}};
  for (const auto& [name, cell] : cases) {
    const std::string file = folder.Write("a.lmt", profile.substr(0, line) + name + profile.substr(end)).string();
    const Outcome run = Texturon({"analyze", "--no-trace", "--csv", file});
    EXPECT_NE(run.out.find(cell), std::string::npos) << run.out;
  }
}

TEST(CommandLine, ListsWhatThereIs) {
  EXPECT_NE(Texturon({"formats"}).out.find(".LMTH"), std::string::npos);
  EXPECT_NE(Texturon({"settings"}).out.find("ANALYSIS.LcCutoffMM"), std::string::npos);
}

TEST(JsonWriter, WritesWhatAnotherReaderUnderstands) {
  const double numbers[] = {0.1, -1e300, 5e-324, 1.0 / 3.0, std::numeric_limits<double>::infinity()};
  for (const auto layout : {JsonWriter::Layout::kIndented, JsonWriter::Layout::kOneLine}) {
    JsonWriter writer(layout);
    writer.BeginObject();
    writer.Key("text");
    writer.Text("a\"b\\c\n\x01 \xC2\xB5");
    writer.Key("numbers");
    writer.Numbers(numbers);
    writer.EndObject();
    const json read = json::parse(writer.Result());
    EXPECT_EQ(read["text"], "a\"b\\c\n\x01 \xC2\xB5");
    for (std::size_t i = 0; i < 4; ++i) EXPECT_EQ(read["numbers"][i].get<double>(), numbers[i]);
    EXPECT_TRUE(read["numbers"][4].is_null());
    EXPECT_EQ(writer.Result().find('\n') == std::string::npos, layout == JsonWriter::Layout::kOneLine);
  }
}

/// The values that an institute printed for a measured surface, to the last digit printed.
TEST(MeasuredSurface, HasTheInstitutesValues) {
  const char* folder = std::getenv("TEXTURON_MEASURED");
  if (folder == nullptr) GTEST_SKIP() << "TEXTURON_MEASURED is not set";
  // A band of +-5 % of Pt stands for this percentage of the mean over five lengths, which the rows refer to.
  const std::string file = std::string(folder) + "/native/edm.lmt";
  const std::vector<std::string> base = {
      "analyze", "--json", "--no-trace", file, "--set", "ANALYSIS.FormRemovalType=0", "--set", "ANALYSIS.LsCutoffMM=0"};
  const auto run = [&base](std::vector<std::string> more) {
    more.insert(more.begin(), base.begin(), base.end());
    return json::parse(Texturon(more).out);
  };
  const json heights = run({"--profiles"});
  const auto z = heights["profiles"]["primary"].get<std::vector<double>>();
  const std::size_t fifth = z.size() / 5;
  double meanHeight = 0.0;
  for (std::size_t k = 0; k < 5; ++k) {
    const auto begin = z.begin() + static_cast<std::ptrdiff_t>(k * fifth);
    const auto [low, high] = std::minmax_element(begin, begin + static_cast<std::ptrdiff_t>(fifth));
    meanHeight += (*high - *low) / 5.0;
  }
  const double total = Parameter(heights, "Pt")["value"].get<double>();
  const json analysis = run({"--set", "ANALYSIS.PsmPzPercent=" + ShortestText(10.0 * total / meanHeight), "--set",
                             "ANALYSIS.PsmSamplingLengthPercent=0", "--set", "PARAMETERS.Name00=Pc"});
  const struct {
    const char* name;
    double value, lastDigit;
  } printed[] = {{"Pa", 0.46434, 1e-5},  {"Pq", 0.55994, 1e-5}, {"Psk", -0.13265, 1e-5},
                 {"Pku", 2.36461, 1e-5}, {"Pt", 2.8623, 1e-4},  {"Pp", 1.39459, 1e-5},
                 {"Pv", 1.4677, 1e-4},   {"Pc", 1.21012, 1e-5}, {"Psm", 0.04609835, 1e-8}};
  for (const auto& p : printed) {
    EXPECT_LE(std::abs(Parameter(analysis, p.name)["value"].get<double>() - p.value), 0.5001 * p.lastDigit) << p.name;
  }
}

}  // namespace
}  // namespace texturon
