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

std::vector<fs::path> SourcesBelow(const char* folder) {
  std::vector<fs::path> sources;
  for (const auto& entry : fs::recursive_directory_iterator(kRoot / folder)) {
    if (entry.path().extension() == ".cpp" || entry.path().extension() == ".h") sources.push_back(entry.path());
  }
  std::sort(sources.begin(), sources.end());
  EXPECT_FALSE(sources.empty()) << folder;
  return sources;
}

/// "core/units.h" of a path below src/.
std::string NameBelowSrc(const fs::path& path) {
  return path.lexically_relative(kRoot / "src").generic_string();
}

/// Stems of the sources of core_run; everything else in src/core is core_base.
std::set<std::string> StemsOfCoreRun() {
  const std::string text = ReadAll(kRoot / "src/core/CMakeLists.txt");
  const std::string list = text.substr(text.find("texturon_library(core_run"));
  std::set<std::string> stems;
  const std::regex source("([a-z0-9_]+)\\.cpp");
  for (std::sregex_iterator it(list.begin(), list.end(), source), end; it != end; ++it) stems.insert((*it)[1]);
  EXPECT_FALSE(stems.empty());
  return stems;
}

/// The layer that a file below src/ belongs to.
std::string LayerOf(const std::string& name, const std::set<std::string>& coreRun) {
  const std::string folder = name.substr(0, name.find('/'));
  if (folder != "core") return folder;
  return coreRun.contains(fs::path(name).stem().string()) ? "core_run" : "core_base";
}

TEST(House, ArrowsPointDown) {
  const std::map<std::string, std::set<std::string>> mayInclude = {
      {"core_base", {}},
      {"signal", {"core_base"}},
      {"formats", {"core_base"}},
      {"parameters", {"core_base", "signal"}},
      {"export", {"core_base", "signal", "formats", "parameters"}},
      {"core_run", {"core_base", "signal", "formats", "parameters", "export"}},
      {"ui", {"core_base", "signal", "formats", "parameters", "export", "core_run"}},
      {"app", {"core_base", "signal", "formats", "parameters", "export", "core_run", "ui"}},
  };
  const std::set<std::string> coreRun = StemsOfCoreRun();
  const std::regex ownInclude("^#include \"([a-z0-9_]+/[a-z0-9_]+\\.h)\"");
  for (const fs::path& path : SourcesBelow("src")) {
    const std::string name = NameBelowSrc(path);
    const std::string layer = LayerOf(name, coreRun);
    ASSERT_TRUE(mayInclude.contains(layer)) << name << " is in no known layer";
    for (const std::string& line : LinesOf(path)) {
      std::smatch match;
      if (line.starts_with("#include \"")) {
        ASSERT_TRUE(std::regex_search(line, match, ownInclude)) << name << ": " << line;
        const std::string target = LayerOf(match[1], coreRun);
        EXPECT_TRUE(target == layer || mayInclude.at(layer).contains(target)) << name << ": " << line;
      }
      const bool isQt = std::regex_search(line, std::regex("^#include <(Q[A-Z]|qcustomplot)"));
      EXPECT_FALSE(isQt && layer != "ui" && !name.starts_with("app/desktop")) << name << ": " << line;
    }
  }
}

TEST(House, EverySourceIsInATarget) {
  for (const fs::path& path : SourcesBelow("src")) {
    if (path.extension() != ".cpp") continue;
    const std::string list = ReadAll(path.parent_path() / "CMakeLists.txt");
    EXPECT_NE(list.find(path.filename().string()), std::string::npos) << NameBelowSrc(path);
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
      EXPECT_FALSE(name != "core/system_calls.cpp" && std::regex_search(line, platformHeader)) << name << ": " << line;
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

}  // namespace
