// SPDX-License-Identifier: Apache-2.0

#include <algorithm>
#include <cstdlib>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "support/near.h"
#include "support/program_run.h"
#include "support/scratch_folder.h"

namespace texturon {
namespace {

using nlohmann::json;

json Parameter(const json& analysis, const std::string& name) {
  for (const json& row : analysis["parameters"]) {
    if (row["name"] == name) return row;
  }
  return {};
}

TEST(CommandLine, AnalysesASampleIntoTheAgreedJson) {
  const Outcome run = Texturon({"analyze", "--json", "--profiles", "--no-trace", Sample("ground.lmt")});
  ASSERT_EQ(run.status, 0) << run.error;
  EXPECT_EQ(run.error, "");
  const json analysis = json::parse(run.out);
  for (const char* key :
       {"file", "identification", "date", "spacing_um", "point_count", "tip_radius_mm", "form", "ranges", "flags",
        "parameters", "material_ratios", "htps", "rk", "messages", "profiles", "spectrum"}) {
    EXPECT_TRUE(analysis.contains(key)) << key;
  }
  EXPECT_EQ(analysis["point_count"], 8000);
  EXPECT_EQ(analysis["form"]["applied"], 1);
  EXPECT_EQ(analysis["ranges"]["evaluation"], json({0, 7999, 8000}));
  EXPECT_EQ(analysis["parameters"].size(), 107u);
  EXPECT_EQ(analysis["profiles"]["roughness"].size(), 8000u);
  EXPECT_EQ(analysis["profiles"]["closing"].size(), 8000u);
  const json ra = Parameter(analysis, "Ra");
  EXPECT_EQ(ra["unit"], "\xC2\xB5m");
  EXPECT_EQ(Parameter(analysis, "Rmr1")["unit"], "%");
  double sum = 0.0;
  for (const json& z : analysis["profiles"]["roughness"]) sum += std::abs(z.get<double>());
  EXPECT_TRUE(Near(ra["value"].get<double>(), sum / 8000.0, 1e-12));
}

TEST(CommandLine, TakesSettingsFromFileThenAssignments) {
  const Outcome run =
      Texturon({"analyze", "--json", "--no-trace", "--settings", Sample("production.ini"), "--set",
                "PARAMETERS.MetricUpperTolLimit00=0.1", "--set", "analysis.filtertype=1", Sample("arc.lmt")});
  ASSERT_EQ(run.status, 0) << run.error;
  const json analysis = json::parse(run.out);
  EXPECT_EQ(analysis["parameters"].size(), 4u);
  EXPECT_EQ(Parameter(analysis, "Ra")["verdict"], "FAIL");
  EXPECT_TRUE(Parameter(analysis, "Pt")["verdict"].is_null());
  EXPECT_TRUE(Near(analysis["form"]["radius_um"].get<double>(), 12'000.0, 1e-3));
  EXPECT_EQ(analysis["ranges"]["evaluation"][0], 800);
}

TEST(CommandLine, ReportsThePlaceOfAsphereFreeFormAndFixedRadius) {
  const auto form = [](std::vector<std::string> options) {
    options.insert(options.begin(), {"analyze", "--json", "--no-trace"});
    const Outcome run = Texturon(options);
    EXPECT_EQ(run.status, 0) << run.error;
    return json::parse(run.out)["form"];
  };
  const json asphere = form({"--settings", Sample("asphere.ini"), Sample("asphere.lmt")});
  EXPECT_EQ(asphere["applied"], 6);
  EXPECT_TRUE(Near(asphere["apex_x_mm"].get<double>(), 5.7, 1e-3));  // waviness of 0.05 um moves it by 1 um
  EXPECT_TRUE(Near(asphere["tilt_degrees"].get<double>(), 0.4985, 2e-3));
  EXPECT_EQ(asphere["curvature_per_mm"], -0.025);
  EXPECT_TRUE(Near(asphere["radius_um"].get<double>(), -40'000.0, 1e-12));
  EXPECT_TRUE(Near(asphere["conic"].get<double>(), -0.8, 1e-12));
  EXPECT_TRUE(asphere.contains("apex_z_um"));
  const json free = form({"--settings", Sample("freeform.ini"), Sample("freeform.lmt")});
  EXPECT_EQ(free["applied"], 7);
  EXPECT_TRUE(Near(free["shift_x_mm"].get<double>(), -1.25, 1e-3));
  EXPECT_TRUE(Near(free["shift_y_mm"].get<double>(), 0.04, 1e-3));
  EXPECT_TRUE(Near(free["theta_degrees"].get<double>(), 0.0, 1e-3));
  const json arc =
      form({"--set", "ANALYSIS.FormRemovalType=3", "--set", "ANALYSIS.FixedRadiusMM=-12", Sample("arc.lmt")});
  EXPECT_EQ(arc["applied"], 3);
  EXPECT_EQ(arc["radius_um"], -12'000.0);
  EXPECT_TRUE(Near(arc["center_x_um"].get<double>(), 2300.0, 1e-3));
  EXPECT_TRUE(Near(arc["center_y_um"].get<double>(), -12'000.0, 1e-5));
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

TEST(CommandLine, TakesNamesInTheTerminalsCharacters) {
  const Outcome run =
      Texturon({"analyze", "--json", "--no-trace", "--set", "PARAMETERS.Name00=X\xC3\xA9", Sample("arc.lmt")});
  const json analysis = json::parse(run.out);
  EXPECT_EQ(analysis["messages"], json({"X\xC3\xA9 - Unknown profile"}));
  EXPECT_EQ(analysis["parameters"][0]["name"], "X\xC3\xA9");
  EXPECT_NE(run.error.find("X\xC3\xA9 - Unknown profile"), std::string::npos);
}

TEST(CommandLine, ShowsTheConfigurableRowsAndTheCoreRoughness) {
  const std::vector<std::string> options = {"analyze",
                                            "--no-trace",
                                            "--set",
                                            "ROUGHNESS_BEARING_RATIOS.Selected02=1",
                                            "--set",
                                            "ROUGHNESS_BEARING_RATIOS.MeanReferenced02=1",
                                            "--set",
                                            "ROUGHNESS_BEARING_RATIOS.DepthUM02=0",
                                            "--set",
                                            "PRIMARY_HTPS.Selected09=1",
                                            "--set",
                                            "PRIMARY_HTPS.Toleranced09=1",
                                            "--set",
                                            "PRIMARY_HTPS.UpperTolLimitUM09=1e-6",
                                            "--set",
                                            "PARAMETERS.AvailableParameters=1",
                                            "--set",
                                            "PARAMETERS.Name00=Ra",
                                            Sample("ground.lmt")};
  const auto with = [&options](std::vector<std::string> more) {
    more.insert(more.begin(), options.begin(), options.end());
    return Texturon(more);
  };
  const json analysis = json::parse(with({"--json"}).out);
  EXPECT_FALSE(json::parse(with({"--json", "--profiles"}).out)["profiles"].contains("closing")) << "no row asks for it";
  ASSERT_EQ(analysis["material_ratios"].size(), 1u);
  const json ratio = analysis["material_ratios"][0];
  EXPECT_EQ(ratio["name"], "Rmr");
  EXPECT_EQ(ratio["row"], 2);
  EXPECT_EQ(ratio["label"], "   (Mean + 0.0 \xC2\xB5m)");
  EXPECT_TRUE(Near(ratio["value"].get<double>(), 50.0, 0.2)) << "ground steel is nearly symmetric about its mean line";
  const json htp = analysis["htps"][0];
  EXPECT_EQ(htp["name"], "PHtp");
  EXPECT_EQ(htp["row"], 9);
  EXPECT_EQ(htp["verdict"], "FAIL");
  EXPECT_EQ(analysis["rk"]["valid"], true) << "without a row that asks for it";
  EXPECT_TRUE(Near(analysis["rk"]["upper_line"].get<double>() - analysis["rk"]["lower_line"].get<double>(),
                   analysis["rk"]["Rk"].get<double>(), 1e-12));
  EXPECT_NE(with({}).out.find("\nPHtp 10 "), std::string::npos);
  EXPECT_TRUE(with({"--csv"}).out.starts_with("File,Identification,Date,Ra,Rmr 3,PHtp 10\n,,,\xC2\xB5m,%,\xC2\xB5m\n"));
}

TEST(CommandLine, PrintsATableForPeopleAndOneForSpreadsheets) {
  const Outcome table = Texturon({"analyze", "--no-trace", Sample("honed.lmt")});
  EXPECT_EQ(table.status, 0);
  EXPECT_NE(table.out.find("Plateau-honed; generated"), std::string::npos);
  EXPECT_NE(table.out.find("\nRa "), std::string::npos);
  const Outcome csv = Texturon({"analyze", "--csv", "--no-trace", Sample("honed.lmt"), Sample("turned.lmt")});
  EXPECT_EQ(std::count(csv.out.begin(), csv.out.end(), '\n'), 4);
  const Outcome several = Texturon({"analyze", "--json", "--no-trace", Sample("honed.lmt"), Sample("turned.lmt")});
  EXPECT_EQ(std::count(several.out.begin(), several.out.end(), '\n'), 2) << "one line a file";
}

TEST(CommandLine, RefusesWithOneSentenceAndStatusOne) {
  const ScratchFolder folder;
  const std::string tooShort =
      folder
          .Write("short.lmt",
                 "Lumetrace_Data 1.0\nIDENTIFICATION: a\nDATE: d\nSPACING_UM: 1\nNUMBER_OF_POINTS: 3\n"
                 "PROFILE_UM:\n1 2 3\n")
          .string();
  struct Case {
    std::vector<std::string> arguments;
    std::string named;
  };
  const Case cases[] = {
      {{"analyze", (folder / "none.lmt").string()}, "none.lmt"},
      {{"analyze", folder.path().string()}, folder.path().string()},
      {{"analyze", folder.Write("empty.lmt", "").string()}, "empty.lmt"},
      {{"analyze", folder.Write("odd.xyz", "1").string()}, "odd.xyz"},
      {{"analyze", folder.Write("bad.lmt", "Lumetrace_Data 2.0").string()}, "Invalid file revision."},
      {{"analyze", "--no-trace", tooShort}, "short.lmt"},
      {{"analyze", "--settings", (folder / "none.ini").string(), Sample("arc.lmt")}, "none.ini"},
      {{"analyze", "--settings", folder.path().string(), Sample("arc.lmt")}, folder.path().string()},
      {{"analyze", "--no-trace", "--settings",
        folder.Write("rubbish.ini", "[ANALYSIS]\nIniVersion=2\nLcCutoffMM=abc\n").string(), Sample("arc.lmt")},
       "rubbish.ini"},
      {{"analyze", "--no-trace", "--settings", Sample("arc.lmt"), Sample("arc.lmt")}, "no section"},
      {{"convert", Sample("arc.lmt"), (folder / "no folder" / "x.lmt").string()}, "Could not write file."},
      {{"settings", "--check", folder.Write("unknown.ini", "[ANALYSIS]\nNoSuchKey=1\n").string()}, ""},
      {{"plan.ini", "data", "out"}, "plan.ini does not exist"},
      {{"one", "two", "three"}, "First command line argument was not an INI."},
  };
  for (const Case& c : cases) {
    const Outcome run = Texturon(c.arguments);
    EXPECT_EQ(run.status, 1) << c.named;
    EXPECT_NE(run.error.find(c.named), std::string::npos) << run.error;
  }
  const json refused = json::parse(Texturon({"analyze", "--json", "--no-trace", tooShort}).out);
  EXPECT_EQ(refused["messages"], json({"Insufficient data for calculation."}));
  EXPECT_EQ(refused["form"]["applied"], -99);
  EXPECT_TRUE(Parameter(refused, "Ra")["value"].is_null());
}

TEST(CommandLine, CallsAWrongCommandLineStatusTwo) {
  const std::vector<std::vector<std::string>> cases = {
      {},
      {"analyse", "x.lmt"},
      {"analyze"},
      {"analyze", "--nonsense", "x"},
      {"analyze", "--profiles", Sample("arc.lmt")},
      {"analyze", "--region", "1,2,3", Sample("arc.lmt")},
      {"analyze", "--region", "a,2,3,4", Sample("arc.lmt")},
      {"analyze", "--exclude", "5", Sample("arc.lmt")},
      {"analyze", "--set", "ANALYSIS.Nothing=1", Sample("arc.lmt")},
      {"analyze", "--set", "ANALYSIS.LcCutoffMM=0,8", Sample("arc.lmt")},
      {"analyze", "--set", "x", Sample("arc.lmt")},
      {"analyze", "--spacing", "0", Sample("arc.lmt")},
      {"analyze", "--answer", "perhaps", Sample("arc.lmt")},
      {"analyze", "--json", "--csv", Sample("arc.lmt")},
  };
  for (const auto& arguments : cases) {
    const Outcome run = Texturon(arguments);
    EXPECT_EQ(run.status, 2) << (arguments.empty() ? "nothing" : arguments.back());
    EXPECT_NE(run.error, "");
    EXPECT_EQ(run.out, "");
  }
}

TEST(CommandLine, ConvertsAndReadsBack) {
  const ScratchFolder folder;
  const std::string copy = (folder / "copy.lmt").string();
  ASSERT_EQ(Texturon({"convert", Sample("turned.lmt"), copy}).status, 0);
  const auto heightsOf = [](const std::string& file) {
    return json::parse(Texturon({"analyze", "--json", "--profiles", "--no-trace", file}).out)["profiles"]["raw"];
  };
  EXPECT_EQ(heightsOf(copy), heightsOf(Sample("turned.lmt")));
  for (const char* name : {"copy.prf", "copy.sdf", "copy.pr"}) {
    const std::string other = (folder / name).string();
    EXPECT_EQ(Texturon({"convert", copy, other}).status, 0) << name;
    EXPECT_TRUE(Near(heightsOf(other)[77].get<double>(), heightsOf(copy)[77].get<double>(), 1e-5)) << name;
  }
  const Outcome renamed = Texturon({"convert", copy, (folder / "x.doc").string()});
  EXPECT_EQ(renamed.status, 0);
  EXPECT_NE(renamed.error.find("x.lmt"), std::string::npos) << renamed.error;
}

TEST(CommandLine, InspectsAFile) {
  const ScratchFolder folder;
  const Outcome read = Texturon({"inspect", Sample("turned.lmt")});
  EXPECT_EQ(read.status, 0) << read.error;
  for (const char* row : {"read by         native format", "(header line SPACING_UM)", "tip radius      not stated"}) {
    EXPECT_NE(read.out.find(row), std::string::npos) << row << "\n" << read.out;
  }
  const Outcome steep =
      Texturon({"inspect", folder.Write("s.pr", "Profil a\nX-len = 1 X-res = 1000 points: 2\n0\n20000\n").string()});
  EXPECT_NE(steep.out.find("the heights range over 20.000 mm"), std::string::npos) << steep.out;
  EXPECT_NE(steep.out.find("the mean slope is 90.0 degrees"), std::string::npos) << steep.out;
  const Outcome refused = Texturon({"inspect", folder.Write("b.prf", "0 2\n").string()});
  EXPECT_EQ(refused.status, 1);
  EXPECT_NE(refused.out.find("refused by      Taylor Hobson PRF: line 1"), std::string::npos) << refused.out;
  EXPECT_NE(refused.out.find("not taken by    profile-view export"), std::string::npos) << refused.out;
  EXPECT_EQ(std::count(refused.error.begin(), refused.error.end(), '\n'), 1);
}

TEST(CommandLine, InspectsFilesForPrograms) {
  const ScratchFolder folder;
  const std::string good =
      folder.Write("g\xC3\xBCt 1.sdf", "x\nID = S\n\nM = 5\nN = 3\nP = 1\nX = 1e-6\nY\nZ = 1\n\n\nT = 7\n\n* 1 2 -4\n")
          .string();
  const std::string damaged = folder.Write("b.prf", "0 2\n").string();
  const Outcome run = Texturon({"inspect", "--json", good, damaged});
  EXPECT_EQ(run.status, 1) << "one of them is refused";
  std::istringstream lines(run.out);
  std::string line;
  std::getline(lines, line);
  const json first = json::parse(line);
  EXPECT_EQ(first["file"], good);
  EXPECT_EQ(first["loaded"], true);
  EXPECT_EQ(first["attempts"], json::parse(R"([{"reader": "Standard Data Format", "status": "read", "reason": ""}])"));
  EXPECT_EQ(first["identification"], "S");
  EXPECT_EQ(first["date"], "5");
  EXPECT_EQ(first["point_count"], 3);
  EXPECT_TRUE(Near(first["spacing_um"].get<double>(), 1.0, 1e-12));
  EXPECT_TRUE(Near(first["length_mm"].get<double>(), 0.002, 1e-12));
  EXPECT_EQ(first["spacing_source"], "header line 7 (Xscale)");
  EXPECT_EQ(first["lowest_um"], -4.0);
  EXPECT_EQ(first["highest_um"], 2.0);
  EXPECT_EQ(first["tip_radius_mm"], -1.0);
  EXPECT_EQ(first["warnings"].size(), 2u) << "the Z scale and the slope";
  std::getline(lines, line);
  const json second = json::parse(line);
  EXPECT_EQ(second["loaded"], false);
  EXPECT_FALSE(second.contains("point_count"));
  EXPECT_EQ(second["attempts"].size(), 4u);
  EXPECT_EQ(second["attempts"][0]["status"], "not_recognised");
  EXPECT_EQ(second["attempts"][1]["status"], "refused");
  EXPECT_NE(second["reason"].get<std::string>().find("Error reading record 1."), std::string::npos);
}

TEST(CommandLine, SaysInOneSentenceWhyAFileIsNotRead) {
  const ScratchFolder folder;
  const std::string zeros(2'000'000, '\0');
  std::filesystem::create_directory(folder / "f\xC3\xBCr sp\xC3\xA4ter.sdf");
  struct Case {
    std::filesystem::path file;
    std::string reason;
  };
  const Case cases[] = {
      {folder.Write("leer \xC3\xA4.prf", ""), "is empty."},
      {folder / "f\xC3\xBCr sp\xC3\xA4ter.sdf", "is a directory."},
      {folder / "none.txt", "does not exist."},
      {folder.Write("none", "1"), "has an extension that no reader is known for."},
      {folder.Write("n.lmt", zeros), "line 1: Invalid file format."},
      {folder.Write("n.txt", zeros), "line 1: the file ends with fewer than three rows of numbers."},
      {folder.Write("n.sdf", zeros), "line 1: SDF Error: Integer data required."},
      {folder.Write("n \xC3\xA4.hdr", "IDENT"), "Could not find n \xC3\xA4.dat."},
      {folder.Write(
           "s.lmt",
           "Lumetrace_Data 1.0\nIDENTIFICATION: a\nDATE: d\nSPACING_UM: 0\nNUMBER_OF_POINTS: 1\nPROFILE_UM:\n1\n"),
       "has a point spacing that is not above 0."},
  };
  for (const Case& c : cases) {
    const Outcome run = Texturon({"inspect", c.file.string()});
    EXPECT_EQ(run.status, 1);
    EXPECT_TRUE(run.error.starts_with("texturon: " + c.file.string() + " ")) << run.error;
    EXPECT_TRUE(run.error.ends_with(c.reason + "\n")) << run.error;
    EXPECT_EQ(std::count(run.error.begin(), run.error.end(), '\n'), 1) << run.error;
  }
}

TEST(CommandLine, ShowsWhatAReaderWarnsOf) {
  const ScratchFolder folder;
  std::string text = "// Header\nVersion;x;1\n// Condition-A\nProfile;R_ISO97\nPitch;0,5;um\n// CalcData\n";
  for (int i = 0; i < 100; ++i) text += i % 2 == 0 ? "0,1\n" : "0\n";
  const Outcome run = Texturon({"analyze", "--no-trace", folder.Write("r.txt", text).string()});
  EXPECT_NE(run.error.find("WARNING: Filtered data found!"), std::string::npos) << run.error;
}

TEST(CommandLine, ListsWhatThereIs) {
  const Outcome parameters = Texturon({"parameters"});
  EXPECT_EQ(parameters.status, 0);
  EXPECT_EQ(std::count(parameters.out.begin(), parameters.out.end(), '\n'), 108);
  EXPECT_NE(Texturon({"formats"}).out.find(".LMTH"), std::string::npos);
  EXPECT_NE(Texturon({"settings"}).out.find("ANALYSIS.LcCutoffMM"), std::string::npos);
  EXPECT_EQ(Texturon({"settings", "--check", Sample("production.ini")}).status, 0);
  EXPECT_EQ(Texturon({"--version"}).status, 0);
  EXPECT_EQ(Texturon({"analyze", "--help"}).status, 0);
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
  std::ostringstream percent;
  percent.imbue(std::locale::classic());
  percent.precision(17);
  percent << 10.0 * total / meanHeight;
  const json analysis = run({"--set", "ANALYSIS.PsmPzPercent=" + percent.str(), "--set",
                             "ANALYSIS.PsmSamplingLengthPercent=0", "--set", "PARAMETERS.Name00=Pc"});
  const auto value = [&analysis](const char* name) { return Parameter(analysis, name)["value"].get<double>(); };
  struct Printed {
    const char* name;
    double value, lastDigit;
  };
  const Printed printed[] = {{"Pa", 0.46434, 1e-5},  {"Pq", 0.55994, 1e-5}, {"Psk", -0.13265, 1e-5},
                             {"Pku", 2.36461, 1e-5}, {"Pt", 2.8623, 1e-4},  {"Pp", 1.39459, 1e-5},
                             {"Pv", 1.4677, 1e-4},   {"Pc", 1.21012, 1e-5}, {"Psm", 0.04609835, 1e-8}};
  for (const Printed& p : printed) EXPECT_LE(std::abs(value(p.name) - p.value), 0.5001 * p.lastDigit) << p.name;
}

}  // namespace
}  // namespace texturon
