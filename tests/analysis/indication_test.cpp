// SPDX-License-Identifier: Apache-2.0

#include "analysis/indication.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "base/number_text.h"
#include "support/scratch_folder.h"

namespace texturon {
namespace {

std::string Shown(const std::optional<double>& value) {
  return value ? ShortestText(*value) : "-";
}

/// "2021 U Rz 6.3 Tmax Sc3 | 0.8 2.5 | 0.8 x 5 = 4", with what is missing as an exclamation mark.
std::string Meaning(const Requirement& r) {
  return std::string(r.edition == Edition::k2021 ? "2021" : "2002") + (r.isUpper ? " U " : " L ") + r.name + " " +
         ShortestText(r.limit) + " " + r.ruleText + " " + (r.className.empty() ? "-" : r.className) + " | " +
         Shown(r.longIndexMM) + " " + Shown(r.shortIndexUM) + " | " + Shown(r.sectionMM) + " x " +
         (r.sections ? IntegerText(*r.sections) : "-") + " = " + Shown(r.lengthMM) + (r.missing.empty() ? "" : " !");
}

TEST(Indication, MeansWhatTheDrawingSays) {
  const std::pair<const char*, std::vector<std::string>> cases[] = {
      {"Rz 6.3", {"2021 U Rz 6.3 Tmax Sc3 | 0.8 2.5 | 0.8 x 5 = 4"}},
      {"U Rz 6,3 T16%", {"2021 U Rz 6.3 T16% Sc3 | 0.8 2.5 | 0.8 x 5 = 4"}},
      {"Ra 0.1", {"2021 U Ra 0.1 Tmax Sc2 | 0.25 2.5 | 0.25 x 5 = 1.25"}},
      {"Ra 0.11", {"2021 U Ra 0.11 Tmax Sc3 | 0.8 2.5 | 0.8 x 5 = 4"}},
      {"Rz 20", {"2021 U Rz 20 Tmax Sc4 | 2.5 8 | 2.5 x 5 = 12.5"}},
      {"Rz 81", {"2021 U Rz 81 Tmax Sc5 | 8 25 | 8 x 5 = 40"}},
      {"Rz 1.6; Sc2", {"2021 U Rz 1.6 Tmax Sc2 | 0.25 2.5 | 0.25 x 5 = 1.25"}},
      {"MRR Ra 0.8 Tmed OR(3)", {"2021 U Ra 0.8 Tmed Sc3 | 0.8 2.5 | 0.8 x 5 = 4"}},
      {"U Rz 4\nL Rz 0.1",
       {"2021 U Rz 4 Tmax Sc3 | 0.8 2.5 | 0.8 x 5 = 4", "2021 L Rz 0.1 Tmax Sc3 | 0.8 2.5 | 0.8 x 5 = 4"}},
      {"L Rz 1 | Ra 0.4",
       {"2021 L Rz 1 Tmax Sc3 | 0.8 2.5 | 0.8 x 5 = 4", "2021 U Ra 0.4 Tmax Sc3 | 0.8 2.5 | 0.8 x 5 = 4"}},
      {"U Rz 4 le=8 | L Rz 1 0.8x3 OR(2)",
       {"2021 U Rz 4 Tmax Sc3 | 0.8 2.5 | 0.8 x 10 = 8", "2021 L Rz 1 Tmax Sc3 | 0.8 2.5 | 0.8 x 3 = 2.4"}},
      {"U Rz 4 Sc2 S=0.008 | L Rz 1",
       {"2021 U Rz 4 Tmax Sc2 | 0.25 8 | 0.25 x 5 = 1.25", "2021 L Rz 1 Tmax Sc2 | 0.25 8 | 0.25 x 5 = 1.25"}},
      {"Rz 4 0.8x3", {"2021 U Rz 4 Tmax Sc3 | 0.8 2.5 | 0.8 x 3 = 2.4"}},
      {"Ra 1.6 le=8", {"2021 U Ra 1.6 Tmax Sc3 | 0.8 2.5 | 0.8 x 10 = 8"}},
      {"Rz 1.6 S=0.008 nsc=4", {"2021 U Rz 1.6 Tmax Sc3 | 0.8 8 | 0.8 x 4 = 3.2"}},
      {"Rz 1.6 G 0.008 G 2.5", {"2021 U Rz 1.6 Tmax Sc4 | 2.5 8 | 2.5 x 5 = 12.5"}},
      {"Rz 4 F=LSQ C 8 Sc2", {"2021 U Rz 4 Tmax Sc2 | 0.25 2.5 | 0.25 x 5 = 1.25"}},
      {"Rz 4 F=LSQ G 0.008 F= C LSQ", {"2021 U Rz 4 Tmax Sc3 | 0.8 8 | 0.8 x 5 = 4"}},
      {"Rk 1.5 Sc3", {"2021 U Rk 1.5 Tmax Sc3 | 0.8 2.5 | 0.8 x 5 = 4"}},
      {"Rk 1.5", {"2021 U Rk 1.5 Tmax - | - - | - x - = - !"}},
      {"Rq 0.4", {"2021 U Rq 0.4 Tmax - | - - | - x - = - !"}},
      {"Rsm 0.13 L=0.8", {"2021 U Rsm 0.13 Tmax Sc3 | 0.8 2.5 | 0.8 x 5 = 4"}},
      {"Rsm 0.13 L=1", {"2021 U Rsm 0.13 Tmax - | 1 - | 1 x 5 = 5 !"}},
      {"Rsm 0.13 L=1 S=G0.005", {"2021 U Rsm 0.13 Tmax - | 1 5 | 1 x 5 = 5"}},
      {"Rz 3 S=2.5", {"2021 U Rz 3 Tmax Sc3 | 0.8 2500 | 0.8 x 5 = 4 !"}},
      {"Rdc(10;80,5) 2 Sc3", {"2021 U Rdc(10;80,5) 2 Tmax Sc3 | 0.8 2.5 | 0.8 x 5 = 4"}},
      {"R: FC; V; Wolfprune 5 %; Bot 5; PVh; Mean 3 Sc2",
       {"2021 U R: FC; V; Wolfprune 5 %; Bot 5; PVh; Mean 3 Tmax Sc2 | 0.25 2.5 | 0.25 x 5 = 1.25"}},
      {"0.0025-0.8/Rz 6.3", {"2002 U Rz 6.3 16% - | 0.8 2.5 | 0.8 x 5 = 4"}},
      {"0.8-0.0025/Ra 3", {"2002 U Ra 3 16% - | 0.0025 800 | 0.0025 x 5 = 0.0125 !"}},
      {"-0.8/Ra3 3.1", {"2002 U Ra 3.1 16% - | 0.8 2.5 | 0.8 x 3 = 2.4"}},
      {"Rzmax 0.2", {"2002 U Rz 0.2 max - | 0.25 2.5 | 0.25 x 5 = 1.25"}},
      {"L Rz1max 3", {"2002 L Rz 3 max - | 0.8 2.5 | 0.8 x 1 = 0.8"}},
      {"0.008-/Ptmax 25", {"2002 U Pt 25 max - | - 8 | - x - = -"}},
      {"0.8-25/Wz3 10", {"2002 U Wz 10 16% - | 25 800 | 25 x 3 = 75 !"}},
      {"0.008-0.5/16/R 10", {"2002 U R 10 16% - | - 8 | - x - = 16"}},
      {"Rz 6.3 max", {"2002 U Rz 6.3 max - | 0.8 2.5 | 0.8 x 5 = 4"}},
      {"Wz 10 L=0.8", {"2021 U Wz 10 Tmax Sc3 | 0.8 2.5 | - x - = -"}},
      {"RSm 0.13 0.8x5", {"2002 U RSm 0.13 16% - | 0.8 2.5 | 0.8 x 5 = 4"}},
      {"RSm max 0.13 0.8x5", {"2002 U RSm 0.13 max - | 0.8 2.5 | 0.8 x 5 = 4"}},
      {"RSm 0.13 L=0.8", {"2021 U RSm 0.13 Tmax Sc3 | 0.8 2.5 | 0.8 x 5 = 4"}},
      {"Rsm 0.13 0.8x5", {"2021 U Rsm 0.13 Tmax - | - - | 0.8 x 5 = 4 !"}},
      {"0.8-8/Wt 10", {"2002 U Wt 10 16% - | 8 800 | 8 x 5 = 40"}},
      {"-8/Wt 10", {"2002 U Wt 10 16% - | 8 - | 8 x 5 = 40 !"}},
      {"Rk8 1", {"2002 U Rk 1 16% - | - - | - x 8 = - !"}},
      {"-0.8/8/Ra 3", {"2002 U Ra 3 16% - | 0.8 2.5 | 0.8 x 10 = 8"}},
      {"-0.8/3/Ra 3", {"2002 U Ra 3 16% - | 0.8 2.5 | 0.8 x 3 = 3"}},
      {"-/4/Ra5 3", {"2002 U Ra 3 16% - | 0.8 2.5 | 0.8 x 5 = 4"}},
      {"-0.8/Ra3 3 0.8x3", {"2002 U Ra 3 16% - | 0.8 2.5 | 0.8 x 3 = 2.4"}},
      {"N7", {"2002 U Ra 1.6 16% - | 0.8 2.5 | 0.8 x 5 = 4"}},
      {"ISO 1302:2002 Ra 1.6 0.8x3", {"2002 U Ra 1.6 16% - | 0.8 2.5 | 0.8 x 3 = 2.4"}},
      {"ISO21920 Rmrk1 10 Sc3", {"2021 U Rmrk1 10 Tmax Sc3 | 0.8 2.5 | 0.8 x 5 = 4"}},
  };
  for (const auto& [text, meanings] : cases) {
    const IndicationResult read = ReadIndication(text, BuiltInClasses());
    EXPECT_EQ(read.fault, "") << text;
    std::vector<std::string> found;
    for (const Requirement& requirement : read.requirements) found.push_back(Meaning(requirement));
    EXPECT_EQ(found, meanings) << text;
  }
}

TEST(Indication, IsCompletedByAClassBesideIt) {
  const std::pair<const char*, const char*> cases[] = {
      {"Rp 3", "2021 U Rp 3 Tmax Sc2 | 0.25 2.5 | 0.25 x 5 = 1.25"},
      {"Rp 3 S=0.008 nsc=3", "2021 U Rp 3 Tmax Sc2 | 0.25 8 | 0.25 x 3 = 0.75"},
      {"Rk 3 le=2", "2021 U Rk 3 Tmax Sc2 | 0.25 2.5 | 0.25 x 8 = 2"},
      {"Rk 3 le=2 nsc=4", "2021 U Rk 3 Tmax Sc2 | 0.25 2.5 | 0.5 x 4 = 2"},
      {"Rp 3 L=1.2", "2021 U Rp 3 Tmax Sc2 | 1.2 2.5 | 1.2 x 5 = 6"},
      {"Pt 3", "2021 U Pt 3 Tmax Sc2 | - 2.5 | - x - = -"},
      {"Rz 3", "2021 U Rz 3 Tmax Sc3 | 0.8 2.5 | 0.8 x 5 = 4"},
  };
  for (const auto& [text, meaning] : cases) {
    Requirement requirement = ReadIndication(text, BuiltInClasses()).requirements.at(0);
    CompleteRequirement(requirement, FindClass(BuiltInClasses(), "Sc2"), std::nullopt);
    EXPECT_EQ(Meaning(requirement), meaning) << text;
  }
}

TEST(Indication, PointsAtWhatItDoesNotUnderstand) {
  const std::pair<const char*, std::size_t> cases[] = {
      {"", 0},
      {"U", 1},
      {"Rz", 2},
      {"Rz x", 3},
      {"Rz 3 foo", 5},
      {"Rz 3 OR(x)", 5},
      {"Rzz 3", 0},
      {"Rz 3 | Rb 4", 7},
      {"Rz 3 L=x", 5},
      {"Rz 3 q=4", 5},
      {"0.8-/Rz", 7},
      {"0.8/Rz 3", 0},
      {"Rmr 4", 0},
      {"Rz 3 le=x", 8},
      {"Rz 3 nsc=2.5", 9},
      {"N7 x", 3},
      {"R: FC; P; None; All; Count 3", 0},
      {"Rz 3 Tmax T16%", 10},
      {"Rz 3 Sc2 Sc3", 9},
      {"Rz 3 L=0.8 G 0.0025 G 2.5", 20},
      {"Rz 3 le=4 0.8x3", 10},
      {"Rz 3 0.8x3 nsc=3", 11},
      {"Rz 3 F=", 7},
      {"Rz0 3", 0},
      {"N13", 0},
      {"-0.8/Ra3 3 2.5x3", 11},
      {"U -0.8/8/Ra3 3", 2},
  };
  for (const auto& [text, place] : cases) {
    const IndicationResult read = ReadIndication(text, BuiltInClasses());
    EXPECT_NE(read.fault, "") << text;
    EXPECT_EQ(read.place, place) << text << ": " << read.fault;
    EXPECT_TRUE(read.requirements.empty());
  }
}

TEST(Indication, HasTheBandOfAMotifEndAtAOrB) {
  const std::pair<const char*, std::vector<std::string>> cases[] = {
      {"0.008-0.5/16/R 10", {"A is 0.5 mm.", "Choose a region of this length."}},
      {"0.5-2.5/Wte 10", {"A is 0.5 mm.", "B is 2.5 mm."}},
      {"-2.5/AW 10", {"B is 2.5 mm."}}};
  for (const auto& [text, notes] : cases) {
    const Requirement requirement = ReadIndication(text, BuiltInClasses()).requirements.at(0);
    EXPECT_EQ(requirement.notes, notes) << text;
    AnalysisSettings settings;
    ApplyRequirement(requirement, settings);
    EXPECT_EQ(settings.MotifAMM, 0.5);
    EXPECT_EQ(settings.MotifBMM, 2.5);
    EXPECT_EQ(requirement.shortIndexUM.has_value(), text[2] == '0') << text;
  }
}

TEST(Indication, LeavesOpenWhatTheSettingsSay) {
  const auto lines = ReadIndication("0,08-0,5/R 10 | W 10 | W 5", BuiltInClasses()).requirements;
  const AnalysisSettings start;
  AnalysisSettings settings = start;
  ApplyRequirement(lines.at(0), settings);
  EXPECT_FALSE(AddRequirement(lines.at(1), start, settings)) << "its own short wave limit is that of the settings";
  settings = start;
  ApplyRequirement(lines.at(1), settings);
  EXPECT_FALSE(AddRequirement(lines.at(0), start, settings));
  EXPECT_TRUE(AddRequirement(lines.at(2), start, settings));
  EXPECT_NE(ReadIndication("2,5-0,5/W 10", BuiltInClasses()).requirements.at(0).missing, "") << "A above B";
}

TEST(Indication, AsksForACountWhereOneBelongs) {
  for (const char* const text : {"Rz 3 nsc=0", "Rz 3 nsc=2.5", "Rz 3 nsc=x"}) {
    const std::string fault = ReadIndication(text, BuiltInClasses()).fault;
    EXPECT_NE(fault.find("is no number of sections from 1 to 1000"), std::string::npos) << fault;
  }
}

TEST(ClassTableFile, IsRefusedWhereItIsInNoOrder) {
  const std::pair<const char*, const char*> cases[] = {
      {"[Sc3]\nRq=2.5\n[Sc4]\nRq=13\n", ""},
      {"[Sc4]\nRq=5\n[Sc3]\nRq=1\n", "has the class Sc3 behind Sc4, where a larger Nic belongs"},
      {"[Sc2]\nRq=3\n[Sc3]\n[Sc4]\nRq=2\n", "has a limit of Rq for Sc4 that is not above that for Sc2"},
      {"[Sc3]\nNis=900\n", "has a Nis (um) that is not below Nic (mm) in the class Sc3"},
      {"[Sc3]\nSpaceing=1\n", "holds \"1\" for Spaceing of Sc3, which is under no key of a class"},
      {"[Sc3]\nRzz=9\n", "holds \"9\" for Rzz of Sc3, which is under no key of a class"},
      {"[Sc3]\nRz=9\nRz=8\n", "has Rz in Sc3 twice"},
      {"[Sc3]\n[Sc3]\n", "has the class Sc3 twice"},
      {"[Sc3]\nSections=2000\n", "holds \"2000\" for Sections of Sc3, which is no number of sections from 1 to 1000"},
      {"[Sc3]\nRq=2,5\n", "holds \"2,5\" for Rq of Sc3, which is no number above 0"},
  };
  const ScratchFolder folder;
  for (const auto& [text, reason] : cases) {
    EXPECT_EQ(ReadClassTable(folder.Write("classes.ini", text)).reason, reason) << text;
  }
}

TEST(Indication, SaysWhyALimitFixesNoClass) {
  ClassTable classes(BuiltInClasses().begin(), BuiltInClasses().begin() + 2);
  const auto missing = [&classes](const char* text) {
    return ReadIndication(text, classes).requirements.at(0).missing;
  };
  EXPECT_NE(missing("Rz 3").find("it is above those of the classes for Rz;"), std::string::npos) << missing("Rz 3");
  EXPECT_NE(missing("Rq 3").find("for Rq are not known;"), std::string::npos) << missing("Rq 3");
  EXPECT_EQ(missing("Rz 0.8"), "");
}

TEST(Indication, JudgesByItsRule) {
  struct Case {
    const char* text;
    ValueSeries values;
    std::string verdict;
  };
  const Case cases[] = {
      {"Rz 6", {{5.0}}, "conforming by maximum"},
      {"Rz 6", {{5.0}, {6.0000001}}, "not conforming by maximum"},
      {"L Rz 6", {{6.0}, {7.0}}, "conforming by maximum"},
      {"L Rz 6", {{5.9}, {7.0}}, "not conforming by maximum"},
      {"Rz 6 T16%", {{4.1}}, "conforming by short procedure"},
      {"Rz 6 T16%", {{4.3}}, "undecided by fewer than three values"},
      {"Rz 6 T16%", {{5.0}, {5.0}, {7.0}, {5.0}, {5.0}, {5.0}}, "conforming by short procedure"},
      {"Rz 6 T16%", {{5.0}, {7.0}, {7.0}, {5.0}}, "not conforming by share"},
      {"Rz 6 Tmed", {{5.0}, {5.9}, {9.0}}, "conforming by median"},
      {"Rsk 0 Sc3", {{0.1}}, "not conforming by maximum"},
  };
  for (const Case& c : cases) {
    const Requirement requirement = ReadIndication(c.text, BuiltInClasses()).requirements.at(0);
    const AcceptanceResult result = AcceptLimit(c.values, requirement.limit, requirement.isUpper, requirement.rule);
    EXPECT_EQ(std::string(ConformityWord(result.verdict)) + " by " + std::string(result.by), c.verdict) << c.text;
  }
}

}  // namespace
}  // namespace texturon
