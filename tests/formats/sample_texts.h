// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

namespace texturon {

/// A short valid file of tests/golden/files/formats and the reader that takes it.
struct SampleText {
  std::string name;
  std::string reader;
  std::string bytes;
};

inline std::filesystem::path SampleFolder() {
  return TEXTURON_SOURCE_DIR "/tests/golden/files/formats";
}

inline std::string BytesOf(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

/// One for every layout that is read: the list is samples.txt of that folder, name and reader a line.
inline std::vector<SampleText> SampleTexts() {
  std::vector<SampleText> samples;
  std::istringstream list(BytesOf(SampleFolder() / "samples.txt"));
  for (SampleText sample; std::getline(list, sample.name, '\t') && std::getline(list, sample.reader);) {
    sample.bytes = BytesOf(SampleFolder() / sample.name);
    samples.push_back(sample);
  }
  return samples;
}

}  // namespace texturon
