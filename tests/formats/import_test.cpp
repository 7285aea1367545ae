// SPDX-License-Identifier: Apache-2.0

// The way from a file's name to its reader, and what the table of extensions says beyond the readers.

#include "formats/import.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "formats/native_format.h"
#include "formats/sample_texts.h"
#include "support/near.h"
#include "support/scratch_folder.h"
#include "support/scripted_prompts.h"

namespace texturon {
namespace {

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
  for (const ExtensionEntry& entry : ExtensionTable()) {
    if (entry.extension != ".TXT" && entry.extension != ".DAT") continue;
    EXPECT_EQ(load(("a" + std::string(entry.extension)).c_str(), "nothing").size(), entry.chain.size())
        << "each of the chain was asked";
  }
  EXPECT_TRUE(prompts.messages.empty());
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
      ASSERT_FALSE(outcome.attempts.empty()) << name << ": " << outcome.reason;
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

TEST(Import, IsDocumentedForEveryExtension) {
  const std::string page = BytesOf(TEXTURON_SOURCE_DIR "/docs/formats.md");
  for (const ExtensionEntry& entry : ExtensionTable()) {
    EXPECT_NE(page.find("`" + std::string(entry.extension) + "`"), std::string::npos) << entry.extension;
  }
}

}  // namespace
}  // namespace texturon
