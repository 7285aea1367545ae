#include <algorithm>
#include <cmath>
#include <filesystem>
#include <gtest/gtest.h>
#include <random>
#include <string>

#include "core/profile_set.h"
#include "formats/extension_table.h"
#include "support/mutate.h"
#include "support/scratch_folder.h"
#include "support/scripted_prompts.h"

namespace texturon {
namespace {

/// Whatever a file holds, every reader answers, and what it reads is a profile. Under the sanitizers this also shows
/// that none reads out of bounds.
TEST(HostileFiles, AreAnsweredByEveryReader) {
  const ScratchFolder folder;
  std::string table;
  for (int i = 0; i < 12; ++i) table += "1.5\t-2\t3e1\r\n";
  folder.Write("x.LMTd", table);
  const std::filesystem::path path = folder / "x.LMTH";
  const ImportOptions options;
  const std::string seeds[] = {
      "Lumetrace_Data 1.0\r\nIDENTIFICATION: Shaft 12\r\nDATE: 04 Mar 2015 - 09:05:07\r\nSPACING_UM: 0.500000\r\n"
      "NUMBER_OF_POINTS: 12\r\nPROFILE_UM:\r\n   -0.123456\r\n 1 2 3 4 5 6 7 8 9\r\n    0.5\r\n    7.25\r\n",
      "",
      std::string(300, '\0'),
  };
  std::mt19937_64 random(2);
  for (const ExtensionEntry& entry : ExtensionTable()) {
    for (const ProfileReader* reader : entry.chain) {
      for (int round = 0; round < 3000; ++round) {
        const std::string bytes = Mutate(seeds[round % 10 == 0 ? 2 : round % 10 == 1 ? 1 : 0], random);
        ScriptedPrompts prompts;
        prompts.textAnswer = round % 3 == 0 ? "-7" : "2";
        ImportedProfile profile;
        const ReadResult result = reader->read({path, bytes, options, prompts}, profile);
        if (result.status != ReadResult::Status::kRead) {
          EXPECT_FALSE(result.reason.empty()) << reader->name;
          continue;
        }
        ASSERT_LE(profile.heightsUM.size(), static_cast<std::size_t>(kPointCapacity)) << reader->name;
        EXPECT_FALSE(profile.heightsUM.empty()) << reader->name;
        EXPECT_TRUE(std::isfinite(profile.spacingUM));
        EXPECT_TRUE(std::all_of(profile.heightsUM.begin(), profile.heightsUM.end(), [](double z) {
          return std::isfinite(z);
        })) << reader->name;
      }
    }
  }
}

}  // namespace
}  // namespace texturon
