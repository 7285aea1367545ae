#include <algorithm>
#include <cmath>
#include <filesystem>
#include <gtest/gtest.h>
#include <random>
#include <set>
#include <string>

#include "core/profile_set.h"
#include "core/text.h"
#include "formats/extension_table.h"
#include "formats/sample_texts.h"
#include "support/mutate.h"
#include "support/near.h"
#include "support/scratch_folder.h"
#include "support/scripted_prompts.h"

namespace texturon {
namespace {

/// Takes the first of a list, and answers a question for a number with one that is hostile or not.
class HostilePrompts : public ScriptedPrompts {
public:
  std::optional<std::size_t> ChooseFromList(std::string_view /*title*/, std::span<const std::string> lines) override {
    if (lines.empty()) return std::nullopt;
    return lines.size() / 2;
  }
};

void ExpectPlausible(const ReadResult& result, const ImportedProfile& profile, std::string_view reader) {
  if (result.status != ReadResult::Status::kRead) {
    EXPECT_FALSE(result.reason.empty()) << reader;
    return;
  }
  ASSERT_LE(profile.heightsUM.size(), static_cast<std::size_t>(kPointCapacity)) << reader;
  EXPECT_FALSE(profile.heightsUM.empty()) << reader;
  EXPECT_TRUE(std::isfinite(profile.spacingUM)) << reader;
  EXPECT_TRUE(std::all_of(profile.heightsUM.begin(), profile.heightsUM.end(), [](double z) {
    return std::isfinite(z);
  })) << reader;
}

class HostileFiles : public ::testing::Test {
protected:
  HostileFiles() {
    std::string table;
    for (int i = 0; i < 12; ++i) table += "1.5\t-2\t3e1\r\n";
    folder_.Write("x.LMTd", table);
  }

  void Try(const ProfileReader& reader, const std::string& bytes, int round) {
    HostilePrompts prompts;
    prompts.textAnswer = round % 3 == 0 ? "-7" : "2";
    ImportOptions options;
    if (round % 5 == 0) options.profileChoice = round % 7;
    ImportedProfile profile;
    const std::filesystem::path path = folder_ / "x.LMTH";
    const ReadResult result = RunReader(reader, {path, bytes, options, prompts}, profile);
    ExpectPlausible(result, profile, reader.name);
  }

  ScratchFolder folder_;
};

/// Whatever a file holds, every reader answers, and what it reads is a profile. Under the sanitizers this also shows
/// that none reads out of bounds.
TEST_F(HostileFiles, AreAnsweredByEveryReader) {
  std::mt19937_64 random(2);
  std::set<std::string_view> done;
  for (const ExtensionEntry& entry : ExtensionTable()) {
    for (const ProfileReader& reader : entry.chain) {
      if (!done.insert(reader.name).second) continue;
      Try(reader, "", 0);
      Try(reader, std::string(300, '\0'), 1);
      for (const SampleText& sample : SampleTexts()) {
        const bool own = sample.reader == reader.name || reader.name == "native header with table";
        for (int round = 0; round < (own ? 2000 : 5); ++round) Try(reader, Mutate(sample.bytes, random), round);
        for (std::size_t cut = 0; own && cut < 64; ++cut) {
          Try(reader, sample.bytes.substr(0, sample.bytes.size() * cut / 64), 1);
        }
      }
    }
  }
}

/// Every layout is taken by its own reader and by no other of its chain, with the right heights and spacing.
TEST(SampleFiles, AreTakenByTheirOwnReaderOnly) {
  for (const SampleText& sample : SampleTexts()) {
    bool taken = false;
    for (const ExtensionEntry& entry : ExtensionTable()) {
      if (!EqualIgnoringCase(entry.extension, sample.extension)) continue;
      for (const ProfileReader& reader : entry.chain) {
        HostilePrompts prompts;
        prompts.textAnswer = "2";
        const std::filesystem::path path = "x" + sample.extension;
        const ImportOptions options;
        ImportedProfile profile;
        const ReadResult result = RunReader(reader, {path, sample.bytes, options, prompts}, profile);
        if (sample.reader != reader.name) {
          EXPECT_TRUE(taken || result.status != ReadResult::Status::kRead) << sample.reader << " by " << reader.name;
          continue;
        }
        taken = true;
        EXPECT_EQ(result.status, ReadResult::Status::kRead) << sample.reader << ": " << result.reason;
        EXPECT_TRUE(Near(profile.spacingUM, sample.spacingUM, 1e-12)) << sample.reader;
        EXPECT_TRUE(AllNear(profile.heightsUM, sample.heightsUM, 1e-12)) << sample.reader;
      }
    }
    EXPECT_TRUE(taken) << sample.reader << " is not among the readers of " << sample.extension;
  }
}

}  // namespace
}  // namespace texturon
