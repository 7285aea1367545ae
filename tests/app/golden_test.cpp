// SPDX-License-Identifier: Apache-2.0

// What the console program answers, as whole transcripts: tests/golden/console/*.txt hold calls ("$ texturon ...") with
// what they print, lines of standard error behind "! " and the exit status where it is not 0. They run in a folder that
// holds the samples and a copy of tests/golden/files.

#include "support/golden.h"

#include <gtest/gtest.h>
#include <iterator>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "base/program_version.h"
#include "support/child_process.h"
#include "support/program_run.h"
#include "support/scratch_folder.h"

namespace texturon {
namespace {

std::string Answer(const std::string& call, const ScratchFolder& folder) {
  std::istringstream stream(call);
  std::vector<std::string> words{std::istream_iterator<std::string>(stream), {}};
  if (words.front() == "cat") return folder.Read(words.at(1));
  words.erase(words.begin());
  const Outcome run = Texturon(words);
  std::string text = run.out;
  if (!text.empty() && !text.ends_with('\n')) text += '\n';
  std::istringstream errors(run.error);
  for (std::string line; std::getline(errors, line);) text += "! " + line + "\n";
  const std::string version = "\"version\": \"" + std::string(ProgramVersion()) + "\"";
  for (std::size_t at; (at = text.find(version)) != std::string::npos;) {
    text.replace(at, version.size(), "\"version\": \"VERSION\"");
  }
  if (run.status != 0) text += "= " + std::to_string(run.status) + "\n";
  return text;
}

std::string TranscriptOf(const std::filesystem::path& file) {
  const ScratchFolder folder;
  std::filesystem::copy(GoldenFolder() / "files", folder.path(), std::filesystem::copy_options::recursive);
  std::filesystem::copy(std::filesystem::path(TEXTURON_SOURCE_DIR) / "samples", folder / "samples");
  const std::filesystem::path former = std::filesystem::current_path();
  std::filesystem::current_path(folder.path());
  std::ifstream lines(file);
  std::string transcript;
  for (std::string line; std::getline(lines, line);) {
    if (line.starts_with("$ ")) transcript += line + "\n" + Answer(line.substr(2), folder);
    if (line.starts_with("#")) transcript += line + "\n";
  }
  std::filesystem::current_path(former);
  return transcript;
}

TEST(Golden, TheConsoleAnswersWordForWord) {
  TEXTURON_NEEDS_POSIX();  // slashes in what is answered
  std::set<std::filesystem::path> files;
  for (const auto& entry : std::filesystem::directory_iterator(GoldenFolder() / "console")) files.insert(entry.path());
  ASSERT_FALSE(files.empty());
  for (const std::filesystem::path& file : files) {
    EXPECT_TRUE(MatchesGolden("console" / file.filename(), TranscriptOf(file)));
  }
}

}  // namespace
}  // namespace texturon
