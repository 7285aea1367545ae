// SPDX-License-Identifier: Apache-2.0

// One program for every reader of the extension table: TEXTURON_FUZZ_READER names the one to run, "recognised" all
// those without a routine. With TEXTURON_FUZZ_LIST set the program prints the names instead; with TEXTURON_FUZZ_SEEDS
// it also writes the reader's samples into that folder first.

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "base/charset.h"
#include "base/text.h"
#include "formats/import.h"
#include "formats/native_format.h"
#include "formats/recognition.h"
#include "formats/sample_texts.h"
#include "platform/prompts.h"
#include "record/profile_set.h"

namespace texturon {
namespace {

constexpr std::string_view kRecognised = "recognised";

struct Target {
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

std::vector<Target> Targets() {
  std::vector<Target> targets = {{std::string(kRecognised), {}}};
  for (const ExtensionEntry& entry : ExtensionTable()) {
    for (const auto& chain : {entry.chain, entry.chosenChain}) {
      for (const ProfileReader& reader : chain) {
        const std::string name = reader.read == nullptr ? std::string(kRecognised) : Word(reader.name);
        auto found = std::find_if(targets.begin(), targets.end(), [&name](const Target& t) { return t.name == name; });
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

const Target& Chosen() {
  static const Target target = [] {
    const char* const name = std::getenv("TEXTURON_FUZZ_READER");
    for (Target& candidate : Targets()) {
      if (name != nullptr && candidate.name == name) return candidate;
    }
    std::cerr << "TEXTURON_FUZZ_READER names no reader\n";
    std::exit(2);
  }();
  return target;
}

const std::filesystem::path& HeaderPath() {
  static const std::filesystem::path path =
      std::filesystem::temp_directory_path() / ("texturon-fuzz-" + std::to_string(std::random_device()())) / "x.LMTH";
  return path;
}

void WriteTable(std::string_view bytes) {
  std::filesystem::create_directories(HeaderPath().parent_path());
  std::filesystem::path path = HeaderPath();
  std::ofstream(path.replace_extension(".LMTd"), std::ios::binary)
      .write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

constexpr std::string_view kHeader =
    "Lumetrace_Data 1.0\nIDENTIFICATION: a\nDATE: d\nSPACING_UM: 1\nNUMBER_OF_POINTS: 12\n";

void WriteSeeds(const std::filesystem::path& folder) {
  int number = 0;
  for (const SampleText& sample : SampleTexts()) {
    const bool isOwn = Word(sample.reader) == Chosen().name || Chosen().name == kRecognised;
    if (isOwn) std::ofstream(folder / ("sample-" + std::to_string(number++)), std::ios::binary) << sample.bytes;
  }
  if (Chosen().readers.front().read == ReadNativeHeaderWithTable) {
    std::ofstream(folder / "header", std::ios::binary) << kHeader << std::string(1 - kHeader.size() % 2, '\n');
    std::ofstream(folder / "table", std::ios::binary)
        << "1\t2\n1\t2\n1\t2\n1\t2\n1\t2\n1\t2\n1\t2\n1\t2\n1\t2\n1\t2\n1\t2\n1\t2\n";
  }
  for (const ProfileReader& reader : Chosen().readers) {
    if (reader.read != nullptr) continue;
    std::string markers(reader.markers);
    std::replace(markers.begin(), markers.end(), '|', '\n');
    std::ofstream(folder / Word(reader.name), std::ios::binary) << markers;
  }
}

void Expect(bool isTrue) {
  if (!isTrue) __builtin_trap();
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

}  // namespace
}  // namespace texturon

extern "C" int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/) {
  using namespace texturon;
  if (std::getenv("TEXTURON_FUZZ_LIST") != nullptr) {
    for (const Target& target : Targets()) std::cout << target.name << "\n";
    std::exit(0);
  }
  if (const char* const folder = std::getenv("TEXTURON_FUZZ_SEEDS")) WriteSeeds(folder);
  WriteTable(
      std::string_view("1\t2\t3\n1\t2\t3\n1\t2\t3\n1\t2\t3\n1\t2\t3\n1\t2\t3\n1\t2\t3\n1\t2\t3\n1\t2\t3\n1\t2\t3\n"));
  std::atexit([] {
    std::error_code ignored;
    std::filesystem::remove_all(HeaderPath().parent_path(), ignored);
  });
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace texturon;
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  for (const ProfileReader& reader : Chosen().readers) {
    const bool isTable = reader.read == ReadNativeHeaderWithTable && size % 2 == 0;
    if (isTable) WriteTable(bytes);
    RunOne(reader, isTable ? kHeader : bytes, size);
  }
  return 0;
}
