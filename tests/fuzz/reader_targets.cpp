// SPDX-License-Identifier: Apache-2.0

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "base/charset.h"
#include "base/text.h"
#include "formats/import.h"
#include "formats/native_format.h"
#include "formats/recognition.h"
#include "formats/sample_texts.h"
#include "fuzz/fuzz_targets.h"
#include "platform/prompts.h"
#include "record/profile_set.h"

namespace texturon {
namespace {

constexpr std::string_view kRecognised = "recognised";

/// The readers that go by one name.
struct Readers {
  std::string name;
  std::vector<ProfileReader> readers;
};

/// A reader's name as a word: "native_format".
std::string Word(std::string_view name) {
  std::string word = LowerAscii(name);
  std::replace_if(
      word.begin(), word.end(), [](char c) { return !(c >= 'a' && c <= 'z') && !(c >= '0' && c <= '9'); }, '_');
  return word;
}

std::vector<Readers> NamedReaders() {
  std::vector<Readers> targets = {{std::string(kRecognised), {}}};
  for (const ExtensionEntry& entry : ExtensionTable()) {
    for (const auto& chain : {entry.chain, entry.chosenChain}) {
      for (const ProfileReader& reader : chain) {
        const std::string name = reader.read == nullptr ? std::string(kRecognised) : Word(reader.name);
        auto found = std::find_if(targets.begin(), targets.end(), [&name](const Readers& t) { return t.name == name; });
        if (found == targets.end()) found = targets.insert(found, {name, {}});
        const bool isNew = std::none_of(found->readers.begin(), found->readers.end(),
                                        [&reader](const ProfileReader& r) { return r.name == reader.name; });
        if (isNew) found->readers.push_back(reader);
      }
    }
  }
  return targets;
}

/// Answers by the input's size, so that a finding repeats itself.
class SizedPrompts : public SilentPrompts {
public:
  explicit SizedPrompts(std::size_t size) : size_(size) {}
  std::optional<std::string> AskText(std::string_view /*prompt*/, std::string_view preset) override {
    const std::string answers[] = {std::string(preset), "3", "-1", "1e-300"};
    if (size_ % 5 == 4) return std::nullopt;
    return answers[size_ % 5];
  }
  std::optional<std::size_t> ChooseFromList(std::string_view /*title*/, std::span<const std::string> lines) override {
    if (lines.empty()) return std::nullopt;
    return size_ % lines.size();
  }

private:
  std::size_t size_;
};

const std::filesystem::path& HeaderPath() {
  static const std::filesystem::path path = FuzzFolder() / "x.LMTH";
  return path;
}

void WriteTable(std::string_view bytes) {
  std::filesystem::path path = HeaderPath();
  std::ofstream(path.replace_extension(".LMTd"), std::ios::binary)
      .write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

constexpr std::string_view kHeader =
    "Lumetrace_Data 1.0\nIDENTIFICATION: a\nDATE: d\nSPACING_UM: 1\nNUMBER_OF_POINTS: 12\n";

void WriteSeeds(const Readers& chosen, const std::filesystem::path& folder) {
  int number = 0;
  for (const SampleText& sample : SampleTexts()) {
    const bool isOwn = Word(sample.reader) == chosen.name || chosen.name == kRecognised;
    if (isOwn) std::ofstream(folder / ("sample-" + std::to_string(number++)), std::ios::binary) << sample.bytes;
  }
  if (chosen.readers.front().read == ReadNativeHeaderWithTable) {
    std::ofstream(folder / "header", std::ios::binary) << kHeader << std::string(1 - kHeader.size() % 2, '\n');
    std::ofstream(folder / "table", std::ios::binary)
        << "1\t2\n1\t2\n1\t2\n1\t2\n1\t2\n1\t2\n1\t2\n1\t2\n1\t2\n1\t2\n1\t2\n1\t2\n";
  }
  for (const ProfileReader& reader : chosen.readers) {
    if (reader.read != nullptr) continue;
    std::string markers(reader.markers);
    std::replace(markers.begin(), markers.end(), '|', '\n');
    std::ofstream(folder / Word(reader.name), std::ios::binary) << markers;
  }
}

void RunOne(const ProfileReader& reader, std::string_view bytes, std::size_t size) {
  SizedPrompts prompts(size);
  ImportOptions options;
  if (size % 7 == 0) options.profileChoice = static_cast<std::int32_t>(size % 11);
  ImportedProfile profile;
  std::string storage;
  const ReadResult result = RunReader(reader, {HeaderPath(), PlainText(bytes, storage), options, prompts}, profile);
  if (result.status != ReadResult::Status::kRead) return Expect(!result.reason.empty());
  Expect(!profile.heightsUM.empty() && profile.heightsUM.size() <= static_cast<std::size_t>(kPointCapacity));
  Expect(std::isfinite(profile.spacingUM));
  for (const double z : profile.heightsUM) Expect(std::isfinite(z));
}

void RunReaders(const Readers& chosen, std::string_view bytes) {
  for (const ProfileReader& reader : chosen.readers) {
    const bool isTable = reader.read == ReadNativeHeaderWithTable && bytes.size() % 2 == 0;
    if (isTable) WriteTable(bytes);
    RunOne(reader, isTable ? kHeader : bytes, bytes.size());
  }
}

}  // namespace

void AddReaderTargets(std::vector<FuzzTarget>& targets) {
  WriteTable("1\t2\t3\n1\t2\t3\n1\t2\t3\n1\t2\t3\n1\t2\t3\n1\t2\t3\n1\t2\t3\n1\t2\t3\n1\t2\t3\n1\t2\t3\n");
  for (const Readers& readers : NamedReaders()) {
    targets.push_back({readers.name, [readers](std::string_view bytes) { RunReaders(readers, bytes); },
                       [readers](const std::filesystem::path& folder) { WriteSeeds(readers, folder); }});
  }
}

}  // namespace texturon
