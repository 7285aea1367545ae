// SPDX-License-Identifier: Apache-2.0

// Rules of the source tree that a compiler does not check.

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <map>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

namespace {

namespace fs = std::filesystem;

const fs::path kRoot = TEXTURON_SOURCE_DIR;

std::string ReadAll(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

std::vector<std::string> LinesOf(const fs::path& path) {
  std::vector<std::string> lines;
  std::istringstream stream(ReadAll(path));
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

std::vector<fs::path> SourcesBelow(const char* folder, const std::set<fs::path>& extensions = {".cpp", ".h"}) {
  std::vector<fs::path> sources;
  for (const auto& entry : fs::recursive_directory_iterator(kRoot / folder)) {
    if (extensions.contains(entry.path().extension())) sources.push_back(entry.path());
  }
  std::sort(sources.begin(), sources.end());
  EXPECT_FALSE(sources.empty()) << folder;
  return sources;
}

/// "base/units.h" of a path below src/.
std::string NameBelowSrc(const fs::path& path) {
  return path.lexically_relative(kRoot / "src").generic_string();
}

/// The floors from the ground up; two of the same height do not know each other.
const std::map<std::string, int> kHeights = {
    {"base", 0},       {"record", 1},       {"platform", 1}, {"signal", 2},   {"settings", 3},
    {"formats", 4},    {"parameters", 4},   {"export", 5},   {"analysis", 6}, {"presentation", 7},
    {"unattended", 7}, {"verification", 7}, {"ui", 8},       {"app", 9}};

/// The floor of a file below src/: its first folder.
std::string FloorOf(const std::string& name) {
  return name.substr(0, name.find('/'));
}

TEST(House, ArrowsPointDown) {
  const std::regex ownInclude("^#include \"([a-z0-9_]+(/[a-z0-9_]+)+\\.h)\"");
  for (const fs::path& path : SourcesBelow("src")) {
    const std::string name = NameBelowSrc(path);
    const std::string floor = FloorOf(name);
    ASSERT_TRUE(kHeights.contains(floor)) << name << " is on no known floor";
    for (const std::string& line : LinesOf(path)) {
      std::smatch match;
      if (line.starts_with("#include \"")) {
        ASSERT_TRUE(std::regex_search(line, match, ownInclude)) << name << ": " << line;
        const std::string target = FloorOf(match[1]);
        ASSERT_TRUE(kHeights.contains(target)) << name << ": " << line;
        EXPECT_TRUE(target == floor || kHeights.at(target) < kHeights.at(floor)) << name << ": " << line;
        EXPECT_TRUE(fs::exists(kRoot / "src" / match[1].str())) << name << ": " << line;
        const bool isDisplay = match[1] == "settings/display_settings.h" || match[1] == "settings/settings.h";
        EXPECT_FALSE(isDisplay && (kHeights.at(floor) == 4 || floor == "export")) << name << " reads how things look";
      }
      const bool isQt = std::regex_search(line, std::regex("^#include <(Q[A-Z]|qcustomplot)"));
      EXPECT_FALSE(isQt && floor != "ui" && !name.starts_with("app/desktop")) << name << ": " << line;
    }
  }
}

// A verdict that somebody makes by himself would not follow the decision rule.
TEST(House, VerdictsAreSaidInOnePlace) {
  const std::regex judges("\\b(IsWithin|AcceptLimit|Accept)\\(");
  for (const char* folder : {"src", "python"}) {
    for (const fs::path& path : SourcesBelow(folder)) {
      const std::string name = path.stem().string();
      if (name == "catalogue" || name == "acceptance" || name == "decision") continue;
      EXPECT_FALSE(std::regex_search(ReadAll(path), judges)) << path << " judges; analysis/decision does that";
    }
  }
}

TEST(House, EveryFloorIsATargetOfItsFolder) {
  const std::string list = ReadAll(kRoot / "src/CMakeLists.txt");
  for (const auto& entry : fs::directory_iterator(kRoot / "src")) {
    if (!entry.is_directory()) continue;
    const std::string floor = entry.path().filename().string();
    const std::regex target("(texturon_floor|add_subdirectory)\\(" + floor + "[ )]");
    EXPECT_TRUE(kHeights.contains(floor)) << floor;
    EXPECT_TRUE(std::regex_search(list, target)) << floor;
  }
}

TEST(House, EverySourceSaysItsLicence) {
  for (const char* folder : {"src", "tests", "bench", "samples", "packaging", "python"}) {
    for (const fs::path& path : SourcesBelow(folder)) {
      EXPECT_TRUE(ReadAll(path).starts_with("// SPDX-License-Identifier: Apache-2.0\n")) << path;
    }
  }
  for (const fs::path& path : SourcesBelow("python", {".py", ".pyi"})) {
    EXPECT_TRUE(ReadAll(path).starts_with("# SPDX-License-Identifier: Apache-2.0\n")) << path;
  }
}

TEST(House, TheTopFolderHoldsOnlyWhatBelongsThere) {
  constexpr std::string_view kNames =
      " bench build CHANGELOG.md cmake CMakeLists.txt CMakePresets.json CONTRIBUTING.md docs LICENSE packaging "
      "pyproject.toml python README.md samples scripts setup.py share src tests ";
  for (const auto& entry : fs::directory_iterator(kRoot)) {
    const std::string name = entry.path().filename().string();
    const bool isHidden = name.starts_with('.');  // of git, editors and tools
    EXPECT_TRUE(isHidden || kNames.find(" " + name + " ") != std::string_view::npos) << name;
  }
  for (const auto& entry : fs::directory_iterator(kRoot / "samples")) {
    EXPECT_FALSE(entry.path().filename().string().starts_with('.')) << entry.path() << " is left of a run";
  }
}

TEST(House, NumbersBecomeTextInOneModuleAndThePlatformIsOneFile) {
  const std::regex forbidden(
      "\\b(strtod|strtof|strtold|stod|stof|stold|atof|v?s?n?f?scanf|v?s?n?f?printf|setlocale|to_string|imbue)\\s*\\(");
  const std::regex platformHeader("^#include <(unistd|fcntl|windows|io|dirent|poll|signal|spawn|sys/[a-z]+)\\.h>");
  for (const fs::path& path : SourcesBelow("src")) {
    const std::string name = NameBelowSrc(path);
    for (const std::string& line : LinesOf(path)) {
      EXPECT_FALSE(std::regex_search(line, forbidden)) << name << ": " << line;
      EXPECT_FALSE(name != "platform/system_calls.cpp" && std::regex_search(line, platformHeader))
          << name << ": " << line;
    }
  }
}

TEST(House, ElementaryFunctionsAreOurOwn) {
  // Those of the C libraries differ in the last digit.
  const std::regex forbidden(
      "\\bstd::(a?(sin|cos|tan)h?|atan2|exp2?|expm1|log(2|10|1p)?|pow|erfc?|hypot|cbrt|[tl]gamma|fma|polar)\\(");
  for (const fs::path& path : SourcesBelow("src")) {
    const std::string name = NameBelowSrc(path);
    if (FloorOf(name) == "ui") continue;
    for (const std::string& line : LinesOf(path)) {
      EXPECT_FALSE(std::regex_search(line, forbidden)) << name << ": " << line;
    }
  }
}

/// A braced block of code: what stands before its brace, and the lines from brace to brace.
struct Block {
  std::string header;
  std::size_t firstLine = 0;
  std::size_t lastLine = 0;
};

/// All blocks of a source without its comments, strings and preprocessor lines.
std::vector<Block> BlocksOf(const std::vector<std::string>& lines) {
  std::vector<Block> blocks;
  std::vector<std::size_t> open;
  std::string statement;
  for (std::size_t n = 0; n < lines.size(); ++n) {
    std::string line = std::regex_replace(lines[n], std::regex(R"("(\\.|[^"\\])*"|'(\\.|[^'\\])')"), "0");
    line = line.substr(0, line.find("//"));
    if (line.starts_with("#")) continue;
    for (const char c : line) {
      if (c == '{') {
        open.push_back(blocks.size());
        blocks.push_back({statement, n, n});
        statement.clear();
      } else if (c == '}') {
        if (!open.empty()) {
          blocks[open.back()].lastLine = n;
          open.pop_back();
        }
        statement.clear();
      } else if (c == ';') {
        statement.clear();
      } else if (!statement.empty() || c != ' ') {
        statement += c;
      }
    }
    if (!statement.empty()) statement += ' ';
  }
  return blocks;
}

TEST(House, FilesAndFunctionsStaySmall) {
  constexpr std::size_t kMostLinesOfAFile = 600;
  constexpr std::size_t kMostLinesOfAFunction = 100;
  const std::regex noFunction("^(namespace|class|struct|enum|if|for|while|switch|else|do|case)\\b|=\\s*$");
  std::size_t functions = 0;
  for (const fs::path& path : SourcesBelow("src")) {
    const std::vector<std::string> lines = LinesOf(path);
    if (path.stem().string().ends_with("_table")) continue;
    EXPECT_LE(lines.size(), kMostLinesOfAFile) << NameBelowSrc(path);
    for (const Block& block : BlocksOf(lines)) {
      if (block.header.find('(') == std::string::npos || std::regex_search(block.header, noFunction)) continue;
      ++functions;
      EXPECT_LE(block.lastLine - block.firstLine, kMostLinesOfAFunction) << NameBelowSrc(path) << ": " << block.header;
    }
  }
  EXPECT_GT(functions, 300u) << "the functions are no longer recognised";
}

/// The words of a text with one blank between them.
std::string Words(const std::string& text) {
  std::istringstream stream(text);
  std::string words;
  for (std::string word; stream >> word;) words += (words.empty() ? "" : " ") + word;
  return words;
}

TEST(House, EveryFaultToTryStandsOnceInItsFile) {
  std::size_t faults = 0;
  for (const auto& entry : fs::directory_iterator(kRoot / "tests/mutants")) {
    std::string name, file, old;
    std::vector<std::string> lines = LinesOf(entry.path());
    lines.emplace_back("==");
    for (const std::string& line : lines) {
      if (line.starts_with("-- ")) old += line.substr(3) + " ";
      if (!line.starts_with("==")) continue;
      if (!name.empty()) {
        ++faults;
        const std::string text = Words(ReadAll(kRoot / "src" / file));
        const std::size_t at = text.find(Words(old));
        EXPECT_TRUE(at != std::string::npos && text.find(Words(old), at + 1) == std::string::npos) << name;
      }
      old.clear();
      std::istringstream(line.substr(line.find(' ') + 1)) >> name >> file;
    }
  }
  EXPECT_GT(faults, 50u);
}

/// Without blank lines and comments.
std::size_t LinesOfCode(const char* folder) {
  std::size_t count = 0;
  for (const fs::path& path : SourcesBelow(folder, {".cpp", ".h", ".py", ".pyi"})) {
    const std::string comment = path.extension().string().starts_with(".py") ? "#" : "//";
    for (const std::string& line : LinesOf(path)) {
      const std::size_t first = line.find_first_not_of(" \t\r");
      count += first != std::string::npos && !line.substr(first).starts_with(comment);
    }
  }
  return count;
}

TEST(House, TestsAreAThirdOfTheCode) {
  constexpr std::size_t kMostPercent = 34;
  const std::size_t code = LinesOfCode("src") + LinesOfCode("python/engine") + LinesOfCode("python/texturon");
  const std::size_t tests = LinesOfCode("tests") + LinesOfCode("python/tests");
  EXPECT_LE(100 * tests, kMostPercent * code) << tests << " lines of tests for " << code << " of code";
}

TEST(House, ThePythonModuleOnlyBinds) {
  constexpr std::size_t kMostLinesOfTheBinding = 800;
  const std::size_t binding = LinesOfCode("python/engine");
  EXPECT_LE(binding, kMostLinesOfTheBinding);
  EXPECT_LE(2 * LinesOfCode("python/tests"), binding + LinesOfCode("python/texturon"));
  const std::regex numerics("^#include <(numeric|numbers|complex|valarray|random)>|\\bstd::(sqrt|pow|lerp|abs|fma)\\(");
  for (const fs::path& path : SourcesBelow("python/engine")) {
    for (const std::string& line : LinesOf(path)) {
      EXPECT_FALSE(std::regex_search(line, numerics)) << path << ": " << line;
      const bool isOwn = line == "#include \"binding.h\"";
      EXPECT_TRUE(!line.starts_with("#include \"") || isOwn || kHeights.contains(FloorOf(line.substr(10)))) << line;
      EXPECT_FALSE(line.starts_with("#include \"app/") || line.starts_with("#include \"ui/")) << path << ": " << line;
    }
  }
}

}  // namespace
