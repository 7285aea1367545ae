// SPDX-License-Identifier: Apache-2.0

// The way from a file's name to its reader, and what the table of extensions says beyond the readers.

#include "formats/import.h"

#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <string>
#include <vector>

#include "formats/native_format.h"
#include "formats/profile_choice.h"
#include "formats/reading.h"
#include "support/near.h"
#include "support/scratch_folder.h"

namespace texturon {
namespace {

TEST(Import, CleansTextsAndRefusesWhatIsNoProfile) {
  const ScratchFolder folder;
  ScriptedPrompts prompts;
  const std::string tail = "NUMBER_OF_POINTS: 1\nPROFILE_UM:\n5\n";
  const auto load = [&](const char* name, const std::string& bytes) {
    return LoadProfileFile(folder.Write(name, bytes), {}, prompts);
  };
  const ImportOutcome good =
      load("a.LmT", "Lumetrace_Data 1.0\nIDENTIFICATION: Shaft 4, left\nDATE: 1, 2\nSPACING_UM: 0.5\n" + tail);
  ASSERT_TRUE(good.loaded) << good.reason;
  EXPECT_EQ(good.profile.identification, "Shaft 4; left");
  EXPECT_EQ(good.profile.date, "1; 2");
  for (const char* spacing : {"0", "-1", "nan", "inf"}) {
    const std::string bytes =
        "Lumetrace_Data 1.0\nIDENTIFICATION: a\nDATE: d\nSPACING_UM: " + std::string(spacing) + "\n";
    EXPECT_FALSE(load("b.lmt", bytes + tail).loaded) << spacing;
  }
  for (const auto& path :
       {folder.Write("c.unknown", "x"), folder.Write("d.lmt", ""), folder / "missing.lmt", folder.path()}) {
    const ImportOutcome outcome = LoadProfileFile(path, {}, prompts);
    EXPECT_FALSE(outcome.loaded);
    EXPECT_FALSE(outcome.reason.empty()) << path;
  }
}

ReadResult LeavesHeightsAndRefuses(const ReaderInput& /*input*/, ImportedProfile& profile) {
  profile.heightsUM = {1.0};
  profile.spacingUM = 2.0;
  return ReadResult::Refused("damaged");
}

TEST(Import, FollowsTheTablesOddities) {
  const ScratchFolder folder;
  ScriptedPrompts prompts;
  const std::filesystem::path path = "x.out";
  const auto run = [&](const ExtensionEntry& entry, const ImportOptions& options, std::string_view bytes = "x") {
    return ReadThroughChain(entry, {path, bytes, options, prompts});
  };
  const ProfileReader refusing[] = {{"refusing", "", LeavesHeightsAndRefuses, "", {}}};
  const ProfileReader native[] = {{"native", "", ReadNativeProfile, "", {}}};
  EXPECT_TRUE(run({".OUT", refusing, {}, true}, {}).loaded) << "the result is ignored";
  EXPECT_FALSE(run({".OUT", refusing}, {}).loaded);
  EXPECT_EQ(run({".DAT", refusing, native}, {.profileChoice = 3}).attempts.front().reader, "native");
  EXPECT_EQ(run({".DAT", refusing, native}, {}).attempts.front().reader, "refusing");
  prompts.messages.clear();
  const auto load = [&](const char* name, const char* bytes) {
    return LoadProfileFile(folder.Write(name, bytes), {}, prompts).attempts;
  };
  EXPECT_EQ(load("a.HWP", "LT Type").front().reader, "HWP text") << "the first of two entries wins";
  for (const ExtensionEntry& entry : ExtensionTable()) {
    if (entry.extension != ".TXT" && entry.extension != ".DAT") continue;
    EXPECT_EQ(load(("a" + std::string(entry.extension)).c_str(), "nothing").size(), entry.chain.size())
        << "each of the chain was asked";
  }
  EXPECT_TRUE(prompts.messages.empty());
  EXPECT_NE(load("a.ruf", "Roughness Data").front().result.reason.find("not read yet"), std::string::npos);
  EXPECT_EQ(prompts.messages.size(), 1u);
  load("a.xml", "<DATA><MEASUREMENT>");
  EXPECT_EQ(prompts.messages[1], "Wrong file version.  Contact Corvane");
  EXPECT_EQ(prompts.messages.size(), 2u);
}

TEST(Import, SaysWhatRecognisedLayoutsLack) {
  const ScratchFolder folder;
  struct Case {
    const char* name;
    const char* bytes;
    const char* message;
  };
  const Case cases[] = {
      {"a b.hdr", "IDENT x", "Could not find a b.dat"},
      {"a.ruf", "Roughness Data, inches", "Metric data required."},
      {"a.asc", "# File Format BINARY", "ASCII data required."},
      {"a.smd", "Hommelwerke TIME", "Could not find CX info."},
      {"a.smd", "Hommelwerke CX", "Could not find TIME info."},
      {"a.xml", "<DATA/>", "Wrong file version.  Contact Corvane"},
  };
  for (const Case& c : cases) {
    ScriptedPrompts prompts;
    EXPECT_FALSE(LoadProfileFile(folder.Write(c.name, c.bytes), {}, prompts).loaded);
    EXPECT_EQ(prompts.messages, std::vector<std::string>{c.message});
  }
  folder.Write("a b.dat", "");
  ScriptedPrompts prompts;
  LoadProfileFile(folder / "a b.hdr", {}, prompts);
  EXPECT_NE(prompts.messages.at(0).find("not read yet"), std::string::npos);
}

TEST(Import, TakesNamesAndCharacterSetsAsTheyCome) {
  const ScratchFolder folder;
  ScriptedPrompts prompts;
  const std::string text = "mm;\xB5m\r\n0,1;1\r\n0,2;2\r\n0,3;4\r\n";
  std::string little = "\xFF\xFE";
  std::string big = "\xFE\xFF";
  std::string macintosh;
  for (const char c : text) {
    little += {c, '\0'};
    big += {'\0', c};
    if (c != '\n') macintosh += c;
  }
  for (const std::string& bytes : {text, little, little.substr(2), big, macintosh}) {
    for (const char* name : {".txt", "Welle \xC3\xBC 3.TXT", "a.b.txt"}) {
      const ImportOutcome outcome = LoadProfileFile(folder.Write(name, bytes), {}, prompts);
      EXPECT_EQ(outcome.attempts.back().reader, "text with a unit pair") << outcome.reason;
      EXPECT_EQ(outcome.profile.heightsUM, (std::vector<double>{1, 2, 4}));
      EXPECT_TRUE(Near(outcome.profile.spacingUM, 100.0, 1e-12));
    }
  }
  EXPECT_TRUE(prompts.progressTexts.empty());
  LoadProfileFile(folder.Write("long.txt", std::string(9'000'000, ' ')), {}, prompts);
  EXPECT_EQ(prompts.progressTexts, std::vector<std::string>{"Loading long.txt..."});
}

/// Cancels the first question and answers the second.
class LengthPrompts : public ScriptedPrompts {
public:
  std::optional<std::string> AskText(std::string_view prompt, std::string_view preset) override {
    ScriptedPrompts::AskText(prompt, preset);
    return questions.size() == 1 ? std::nullopt : textAnswer;
  }
};

TEST(Import, AsksForSpacingThenForTheTraceLength) {
  const ScratchFolder folder;
  LengthPrompts prompts;
  prompts.textAnswer = "0.5";
  const ImportOutcome outcome = LoadProfileFile(folder.Write("a.mes", "1,2,3,4,5,6,"), {}, prompts);
  EXPECT_TRUE(Near(outcome.profile.spacingUM, 100.0, 1e-12)) << outcome.reason;
  EXPECT_EQ(prompts.questions,
            (std::vector<std::string>{"Enter the data point spacing (um):", "Enter the trace length (mm):"}));
  prompts = {};
  EXPECT_FALSE(LoadProfileFile(folder / "a.mes", {}, prompts).loaded) << "neither is known";
}

TEST(Import, RefusesNumbersThatAScaleMakesInfinite) {
  const ScratchFolder folder;
  ScriptedPrompts prompts;
  const ImportOutcome outcome =
      LoadProfileFile(folder.Write("a.pr", "Profil a\nX-len = 1 X-res = 1e-320 points: 2\n1\n2\n"), {}, prompts);
  EXPECT_FALSE(outcome.loaded);
  EXPECT_EQ(prompts.messages, std::vector<std::string>{"The numbers of the file are too large."});
}

TEST(Import, IsDocumentedForEveryExtension) {
  std::ifstream file(TEXTURON_SOURCE_DIR "/docs/formats.md");
  const std::string page{std::istreambuf_iterator<char>(file), {}};
  for (const ExtensionEntry& entry : ExtensionTable()) {
    EXPECT_NE(page.find("`" + std::string(entry.extension) + "`"), std::string::npos) << entry.extension;
  }
}

TEST(Import, ListsProfilesInLinesOfOneShape) {
  EXPECT_EQ(ProfileListLine(3, std::string(70, 'n'), "01.02.2020 - 10:11"),
            " 3: \t" + std::string(62, 'n') + " \t01.02.2020");
  EXPECT_EQ(ProfileListLine(12, "", ""), "Profile 12: \t  \t");
}

}  // namespace
}  // namespace texturon
