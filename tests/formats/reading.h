// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <ctime>
#include <filesystem>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "formats/profile_reader.h"
#include "support/scripted_prompts.h"

namespace texturon {

/// 4 March 2015, 09:05:07.
inline std::tm SavedAt() {
  std::tm time{};
  time.tm_year = 115;
  time.tm_mon = 2;
  time.tm_mday = 4;
  time.tm_hour = 9;
  time.tm_min = 5;
  time.tm_sec = 7;
  return time;
}

/// Takes a fixed line of a list and keeps its title and lines.
class ChoosingPrompts : public ScriptedPrompts {
public:
  std::size_t line = 0;
  std::string title;
  std::vector<std::string> lines;

  std::optional<std::size_t> ChooseFromList(std::string_view listTitle, std::span<const std::string> shown) override {
    title = listTitle;
    lines.assign(shown.begin(), shown.end());
    return line;
  }
};

/// What one reader made of some bytes.
struct Reading {
  ReadResult result;
  ImportedProfile profile;
  ChoosingPrompts prompts;
};

inline Reading Read(ReadFunction read, const std::string& bytes, const ImportOptions& options = {},
                    std::size_t line = 0) {
  Reading reading;
  reading.prompts.line = line;
  const std::filesystem::path path = "x.y";
  reading.result = read({path, bytes, options, reading.prompts}, reading.profile);
  return reading;
}

/// `text` with the first `part`, which must be there, replaced.
inline std::string Replaced(std::string text, const std::string& part, const std::string& by) {
  const std::size_t at = text.find(part);
  EXPECT_NE(at, std::string::npos) << part;
  return at == std::string::npos ? text : text.replace(at, part.size(), by);
}

}  // namespace texturon
