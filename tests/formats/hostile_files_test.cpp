// SPDX-License-Identifier: Apache-2.0

// Whatever a file holds, every reader answers with a reason or a plausible profile, in bounded memory. Under the
// sanitizers this also shows that none reads out of bounds.

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <functional>
#include <gtest/gtest.h>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "base/text.h"
#include "formats/allocation_peak.h"
#include "formats/import.h"
#include "formats/recognition.h"
#include "formats/sample_texts.h"
#include "record/profile_set.h"
#include "support/mutate.h"
#include "support/scratch_folder.h"
#include "support/scripted_prompts.h"

namespace texturon {
namespace {

/// Takes the middle of a list.
class HostilePrompts : public ScriptedPrompts {
public:
  std::optional<std::size_t> ChooseFromList(std::string_view /*title*/, std::span<const std::string> lines) override {
    if (lines.empty()) return std::nullopt;
    return lines.size() / 2;
  }
};

class HostileFiles : public ::testing::Test {
protected:
  HostileFiles() {
    for (int i = 0; i < 12; ++i) table_ += "1.5\t-2\t3e1\r\n";
    folder_.Write("x.LMTd", table_);
  }

  /// Runs the reader and checks its answer and the memory that it took.
  ReadResult Try(const ProfileReader& reader, const std::string& bytes, int round) {
    HostilePrompts prompts;
    prompts.textAnswer = round % 3 == 0 ? "-7" : "2";
    ImportOptions options;
    if (round % 5 == 0) options.profileChoice = round % 7;
    ImportedProfile profile;
    const std::filesystem::path path = folder_ / "x.LMTH";
    const AllocationPeak memory;
    ReadResult result = RunReader(reader, {path, bytes, options, prompts}, profile);
    EXPECT_LE(profile.heightsUM.capacity(), bytes.size() + table_.size() + 8) << "no false count is allocated";
    constexpr std::size_t kBuffer = kPointCapacity * sizeof(double);
    constexpr std::size_t kTexts = 20'000;  // messages, and the table beside the header file
    EXPECT_LE(memory.Bytes(), 4 * bytes.size() + 3 * kBuffer + kTexts) << reader.name;
    if (result.status != ReadResult::Status::kRead) {
      EXPECT_FALSE(result.reason.empty()) << reader.name;
      return result;
    }
    EXPECT_LE(profile.heightsUM.size(), static_cast<std::size_t>(kPointCapacity)) << reader.name;
    EXPECT_FALSE(profile.heightsUM.empty()) << reader.name;
    EXPECT_TRUE(std::isfinite(profile.spacingUM)) << reader.name;
    EXPECT_TRUE(std::all_of(profile.heightsUM.begin(), profile.heightsUM.end(), [](double z) {
      return std::isfinite(z);
    })) << reader.name;
    return result;
  }

  std::string table_;
  ScratchFolder folder_;
};

/// Every reader of the table once, by its name.
std::vector<ProfileReader> AllReaders() {
  std::vector<ProfileReader> readers;
  std::set<std::string_view> names;
  for (const ExtensionEntry& entry : ExtensionTable()) {
    for (const auto& chain : {entry.chain, entry.chosenChain}) {
      for (const ProfileReader& reader : chain) {
        if (names.insert(reader.name).second) readers.push_back(reader);
      }
    }
  }
  return readers;
}

/// Calls `use` with every copy of the text in which one of its integers is a huge, a negative or no count.
void WithOddCounts(const std::string& text, const std::function<void(const std::string&)>& use) {
  const std::string digits = "0123456789";
  for (std::size_t at = text.find_first_of(digits); at != std::string::npos; at = text.find_first_of(digits, at)) {
    const std::size_t end = std::min(text.find_first_not_of(digits, at), text.size());
    for (const char* count : {"0", "750000", "750001", "2000000000", "4294967297", "99999999999999999999", "1e999"}) {
      use(text.substr(0, at) + count + text.substr(end));
    }
    if (at == 0 || text[at - 1] != '-') use(text.substr(0, at) + "-" + text.substr(at));
    at = end;
  }
}

TEST_F(HostileFiles, AreAnsweredByEveryReader) {
  std::mt19937_64 random(2);
  const std::vector<ProfileReader> readers = AllReaders();
  EXPECT_GT(readers.size(), 60u);
  for (const ProfileReader& reader : readers) {
    Try(reader, "", 0);
    Try(reader, std::string(300, '\0'), 1);
    for (const SampleText& sample : SampleTexts()) {
      const bool own = sample.reader == reader.name || reader.name == "native header with table";
      const std::size_t size = sample.bytes.size();
      for (std::size_t cut = 0; cut < 64; ++cut) Try(reader, sample.bytes.substr(0, size * cut / 64), 1);
      for (int round = 0; round < (own ? 1000 : 5); ++round) Try(reader, Mutate(sample.bytes, random), round);
      if (!own) continue;
      for (int flip = 0; flip < 256; ++flip) {
        std::string bytes = sample.bytes;
        bytes[random() % size] ^= static_cast<char>(1 + random() % 255);
        Try(reader, bytes, flip);
      }
      WithOddCounts(sample.bytes, [&](const std::string& bytes) { Try(reader, bytes, 1); });
    }
  }
}

TEST_F(HostileFiles, OfManyColumnsAndEmptyLinesTakeBoundedMemory) {
  std::string wide;
  for (int row = 0; row < 40'000; ++row) {
    for (int i = 0; i < 31; ++i) wide += "1 ";
    wide += "2\n";
  }
  for (const ProfileReader& reader : AllReaders()) {
    if (reader.read == nullptr) continue;
    const std::string lines(3'000'000, '\n');
    for (const std::string& bytes : {wide, lines, wide.substr(0, 64) + lines, std::string(3'000'000, '1')}) {
      Try(reader, bytes, 1);
    }
  }
  folder_.Write("x.LMTd", std::string(3'000'000, '\n'));
  for (const SampleText& sample : SampleTexts()) {
    if (sample.reader != "native format") continue;
    HostilePrompts prompts;
    const AllocationPeak memory;
    EXPECT_FALSE(LoadProfileFile(folder_.Write("x.LMTH", sample.bytes), {}, prompts).attempts.empty());
    EXPECT_LE(memory.Bytes(), 4 * 3'000'000u);
  }
}

/// A table reader of a later entry takes what an earlier one with a narrower heading takes as well.
bool MayTakeToo(const std::string& own, std::string_view other) {
  const std::vector<std::string> tables = {"text with a unit pair", "distance table", "two-column text",
                                           "plain softgauge text"};
  return std::find(tables.begin(), tables.end(), own) != tables.end() &&
         (other == "two-column text" || other == "generic text");
}

TEST(SampleFiles, AreTakenByTheirOwnReaderOnly) {
  for (const SampleText& sample : SampleTexts()) {
    const std::filesystem::path path = sample.name;
    bool taken = false;
    for (const ExtensionEntry& entry : ExtensionTable()) {
      if (!EqualIgnoringCase(entry.extension, path.extension().string())) continue;
      for (const ProfileReader& reader : entry.chain) {
        HostilePrompts prompts;
        prompts.textAnswer = "2";
        const ImportOptions options;
        ImportedProfile profile;
        const ReadResult result = RunReader(reader, {path, sample.bytes, options, prompts}, profile);
        const bool isLate = taken && MayTakeToo(sample.reader, reader.name);
        const bool isOwn = sample.reader == reader.name;
        EXPECT_TRUE(isLate || isOwn == (result.status == ReadResult::Status::kRead))
            << sample.name << " by " << reader.name << ": " << result.reason;
        taken = taken || isOwn;
      }
    }
    EXPECT_TRUE(taken) << sample.reader << " is not among the readers of " << sample.name;
  }
}

/// So that no reader that delivers heights is left out of the tests above.
TEST(SampleFiles, ThereIsOneForEveryReaderThatReads) {
  std::set<std::string, std::less<>> sampled = {"native header with table"};
  for (const SampleText& sample : SampleTexts()) sampled.insert(sample.reader);
  for (const ProfileReader& reader : AllReaders()) {
    EXPECT_TRUE(reader.read == nullptr || sampled.contains(reader.name)) << reader.name;
  }
}

}  // namespace
}  // namespace texturon
