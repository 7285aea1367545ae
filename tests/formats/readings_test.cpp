// SPDX-License-Identifier: Apache-2.0

// What is read of many files, written as one text: tests/golden/formats/*.txt. There
//   $ NAME      begins a case with a file of tests/golden/files/formats, or with an empty one
//   - TEXT      is replaced, once, by the "+ TEXT" that follows; a "+" by itself is appended
//   : cut TEXT, answer TEXT, column N, choice N, spacing N, beside NAME TEXT, packed
//               cut the file off there, answer a question, preset the options, put a file beside it, make a container
//               of the parts that begin with lines "@@ NAME"
// and the lines that begin with blanks tell what came of it. \n \r \t \0 \\ and \xHH stand for bytes.

#include <gtest/gtest.h>
#include <iomanip>
#include <sstream>
#include <string>
#include <vector>

#include "formats/import.h"
#include "formats/sample_texts.h"
#include "formats/zip_archive.h"
#include "support/golden.h"
#include "support/scratch_folder.h"
#include "support/scripted_prompts.h"

namespace texturon {
namespace {

constexpr std::string_view kEscapes = "n\nr\rt\t\\\\0";  // and 0 for its own byte

std::string Unescaped(const std::string& text) {
  std::string bytes;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '\\') {
      bytes += text[i];
    } else if (text[++i] == 'x') {
      bytes += static_cast<char>(std::stoi(text.substr(i + 1, 2), nullptr, 16));
      i += 2;
    } else {
      bytes += text[i] == '0' ? '\0' : kEscapes[kEscapes.find(text[i]) + 1];
    }
  }
  return bytes;
}

std::string Printable(const std::string& bytes) {
  std::ostringstream text;
  for (const char c : bytes) {
    if (c >= ' ' && c <= '~') {
      text << c;
    } else {
      text << "\\x" << std::hex << std::uppercase << std::setw(2) << std::setfill('0') << (c & 0xFF);
    }
  }
  return text.str();
}

/// Chooses a profile by number and keeps the list.
class ReadingPrompts : public ScriptedPrompts {
public:
  std::size_t line = 0;
  std::vector<std::string> lines;
  std::optional<std::size_t> ChooseFromList(std::string_view title, std::span<const std::string> shown) override {
    lines.emplace_back(title);
    lines.insert(lines.end(), shown.begin(), shown.end());
    return line;
  }
};

struct Case {
  std::string name, bytes;
  bool isPacked = false;
  ImportOptions options;
  ReadingPrompts prompts;
};

void TakeOption(const std::string& line, const ScratchFolder& folder, Case& c) {
  const std::size_t blank = line.find(' ');
  const std::string key = line.substr(0, blank);
  const std::string value = line.substr(blank + 1);
  if (key == "cut") c.bytes.resize(c.bytes.find(Unescaped(value)));
  if (key == "answer") c.prompts.textAnswer = value;
  if (key == "line") c.prompts.line = std::stoul(value);
  if (key == "column") c.options.column = std::stoi(value);
  if (key == "choice") c.options.profileChoice = std::stoi(value);
  if (key == "spacing") c.options.spacingUM = std::stod(value);
  if (key == "packed") c.isPacked = true;
  if (key == "beside") folder.Write(value.substr(0, value.find(' ')), Unescaped(value.substr(value.find(' ') + 1)));
}

/// The container of the parts of a text.
std::string Packed(const std::string& text) {
  const std::string mark = "@@ ";
  std::vector<ZipPart> parts;
  for (std::size_t at = text.find(mark); at != std::string::npos;) {
    const std::size_t line = text.find('\n', at);
    const std::size_t next = text.find("\n" + mark, line);
    const std::string_view view = text;
    parts.push_back({view.substr(at + mark.size(), line - at - mark.size()), view.substr(line + 1, next - line - 1)});
    at = next == std::string::npos ? next : next + 1;
  }
  return ZipOf(parts);
}

std::string Outcome(const ScratchFolder& folder, Case& c) {
  if (c.isPacked) c.bytes = Packed(c.bytes);
  const ImportOutcome outcome =
      LoadProfileBytes(folder / std::filesystem::path(c.name).filename().string(), c.bytes, c.options, c.prompts);
  const ImportedProfile& profile = outcome.profile;
  std::ostringstream text;
  text << std::setprecision(11);
  if (!outcome.loaded) {
    text << "  not loaded: " << Printable(outcome.reason) << "\n";
  } else {
    text << "  " << outcome.attempts.back().reader << ": " << profile.heightsUM.size() << " of " << profile.spacingUM
         << " um by " << profile.spacingSource << ":";
    for (std::size_t i = 0; i < profile.heightsUM.size() && i < 6; ++i) text << ' ' << profile.heightsUM[i];
    text << "\n";
    if (!profile.identification.empty()) text << "  named " << Printable(profile.identification) << "\n";
    if (!profile.date.empty()) text << "  dated " << Printable(profile.date) << "\n";
    if (profile.tipRadiusMM != -1.0) text << "  tip " << profile.tipRadiusMM << " mm\n";
    for (const InstrumentValue& value : profile.instrumentValues) {
      text << "  instrument " << Printable(value.name) << " " << value.value << " " << Printable(value.unit) << "\n";
    }
    if (profile.column != 0) text << "  column " << profile.column << "\n";
  }
  for (std::size_t i = 0; i < c.prompts.questions.size(); ++i)
    text << "  asks: " << c.prompts.questions[i] << " " << c.prompts.presets[i] << "\n";
  if (!c.prompts.questions.empty()) text << "  beside: " << Printable(c.prompts.beside) << "\n";
  for (const std::string& line : c.prompts.lines) text << "  list: " << Printable(line) << "\n";
  for (const std::string& message : c.prompts.messages) text << "  message: " << Printable(message) << "\n";
  for (const std::string& notice : c.prompts.notices) text << "  notice: " << Printable(notice) << "\n";
  return text.str();
}

void Replay(const std::filesystem::path& list, const std::filesystem::path& files) {
  std::istringstream script(BytesOf(GoldenFolder() / list));
  std::string actual;
  Case c;
  ScratchFolder folder;
  std::string replaced;
  const auto end = [&] {
    if (!c.name.empty()) actual += Outcome(folder, c);
    c = {};
  };
  for (std::string line; std::getline(script, line);) {
    if (line.starts_with("  ")) continue;
    if (line.empty() || line[0] == '$' || line[0] == '#') end();
    actual += line + "\n";
    if (line.size() < 2 || line[0] == '#') continue;
    const std::string rest = line.substr(2);
    if (line[0] == '$') {
      c.name = rest;
      c.bytes = BytesOf(files / rest);
    } else if (line[0] == ':') {
      TakeOption(rest, folder, c);
    } else if (line[0] == '-') {
      replaced = Unescaped(rest);
    } else {
      const std::size_t at = replaced.empty() ? c.bytes.size() : c.bytes.find(replaced);
      ASSERT_NE(at, std::string::npos) << c.name << ": " << replaced;
      c.bytes.replace(at, replaced.size(), Unescaped(rest));
      replaced.clear();
    }
  }
  end();
  EXPECT_TRUE(MatchesGolden(list, actual));
}

TEST(Readings, AreThoseOfTheList) {
  Replay("formats/readings.txt", SampleFolder());
}

TEST(Readings, OfLongRecordsTakeWhatFits) {
  struct Record {
    const char* name;
    std::size_t points, written, taken;
    double spacingUM, at1000;
    std::vector<std::string> warnings;
  };
  const Record records[] = {
      {"a.prf", 750'000, 750'000, 750'000, 1.0, 1000.0, {}},
      {"a.prf", 1'600'001, 1'600'001, 533'334, 3.0, 3000.0, {"of 1600001 points every 3rd is taken"}},
      {"a.sdf", 750'000, 750'001, 750'000, 1.0, 1000.0, {"there are more heights than the header says"}},
      {"a.sdf", 750'001, 750'001, 750'000, 1.0, 1000.0, {"only the first 750 000 points are taken"}},
  };
  for (const Record& c : records) {
    const std::string count = std::to_string(c.points);
    std::string text = c.name[2] == 'p'
                           ? "1 2\nSHAFT1 0 PRF\nCZ M " + count + " MM 1e-3 D\nEOR\nSPACING CX 1e-3 MM\nEOR\n"
                           : "aNIST-1.0\nA=\nB=\nC=\nN=" + count + "\nP=1\nX=1e-6\nY=1\nZ=1e-6\nR=\nC=\nD=7\nK=\n*\n";
    for (std::size_t i = 0; i < c.written; ++i) text += std::to_string(i) + "\n";
    ScriptedPrompts prompts;
    const ImportedProfile profile = LoadProfileBytes(c.name, text, {}, prompts).profile;
    ASSERT_EQ(profile.heightsUM.size(), c.taken) << c.name;
    EXPECT_DOUBLE_EQ(profile.spacingUM, c.spacingUM);
    EXPECT_DOUBLE_EQ(profile.heightsUM[1000], c.at1000);
    EXPECT_EQ(profile.warnings, c.warnings) << c.name << count;
  }
}

/// Files of real instruments, where they are at hand.
TEST(Readings, OfMeasuredFilesAreThoseOfTheList) {
  const char* folder = std::getenv("TEXTURON_MEASURED");
  if (folder == nullptr) GTEST_SKIP() << "TEXTURON_MEASURED is not set";
  Replay("formats/measured.txt", folder);
}

}  // namespace
}  // namespace texturon
