// SPDX-License-Identifier: Apache-2.0

#include "formats/pr_format.h"

#include <algorithm>
#include <cmath>

#include "base/number_text.h"
#include "base/text.h"
#include "formats/reader_questions.h"
#include "formats/text_lines.h"
#include "record/profile_set.h"

namespace texturon {
namespace {

struct Scale {
  double length = 0.0;
  double resolution = 0.0;
  double count = 0.0;
};

/// The first number behind `key` in a header line: blanks, "=", ":" and the rest of the word stand between.
std::optional<double> NumberBehind(std::string_view line, std::string_view key) {
  const auto found = std::search(line.begin(), line.end(), key.begin(), key.end(),
                                 [](char a, char b) { return LowerAscii(a) == LowerAscii(b); });
  if (found == line.end()) return std::nullopt;
  std::string_view rest = line.substr(static_cast<std::size_t>(found - line.begin()) + key.size());
  rest.remove_prefix(std::min(rest.find_first_of("0123456789+-."), rest.size()));
  return NumberField(rest.substr(0, rest.find_first_of(" \t")), true);
}

/// Length, resolution and count in the old wording or in the new; the letters outside ASCII have several encodings and
/// are passed over.
std::optional<Scale> ReadScale(std::string_view line) {
  const auto length = NumberBehind(line, line.starts_with("X-Ma") ? "X-Ma" : "X-len");
  const auto resolution = NumberBehind(line, ContainsIgnoringCase(line, "X-res") ? "X-res" : "X-Aufl");
  const std::size_t colon = line.rfind(':');
  if (!resolution || colon == std::string_view::npos) return std::nullopt;
  const ParsedDouble count = ParseDouble(line.substr(colon + 1));
  if (!count.usable()) return std::nullopt;
  return Scale{length.value_or(0.0), *resolution, std::trunc(count.value)};
}

void TakeSpacing(const Scale& scale, ImportedProfile& profile) {
  const double fromLength = scale.length * 1000.0 / scale.count;
  if (scale.resolution <= 0.0) {
    profile.spacingUM = fromLength;
    profile.spacingSource = "header line 2, length";
    return;
  }
  profile.spacingUM = 1000.0 / scale.resolution;
  profile.spacingSource = "header line 2, resolution";
  // The length has two decimals and may count points or steps.
  const double stated = profile.spacingUM * scale.count * 1e-3;
  if (std::abs(stated - scale.length) > 0.0051 + 1.01 * profile.spacingUM * 1e-3 + 1e-4 * stated) {
    profile.warnings.push_back("the length of " + ShortestText(scale.length) +
                               " contradicts the resolution, which gives " + FixedText(stated, 2) +
                               " mm; the resolution is taken");
  }
}

}  // namespace

ReadResult ReadPrProfile(const ReaderInput& input, ImportedProfile& profile) {
  LineCursor lines(input.bytes);
  const std::string_view title = lines.Next().value_or(std::string_view{});
  constexpr std::string_view kTitle = "Profil";
  if (!StartsWithIgnoringCase(title, kTitle)) return ReadResult::NotRecognised("line 1 does not begin with \"Profil\"");
  const auto scale = ReadScale(lines.Next().value_or(std::string_view{}));
  if (!scale) return RefuseAtLine(input, 2, "Length, resolution and number of points are not understood.");
  if (scale->count < 1.0 || scale->count > kPointCapacity) return RefuseAtLine(input, 2, "Invalid number of points.");

  const auto count = static_cast<std::size_t>(scale->count);
  profile.heightsUM.reserve(std::min(count, (lines.Rest().size() + 1) / 2));
  bool hasMore = false;
  while (const auto line = lines.Next()) {
    if (TrimBlanks(*line).empty()) continue;
    const auto height = NumberField(*line, true);
    if (!height) return RefuseAtLine(input, lines.LineNumber(), "Not a number.");
    hasMore = profile.heightsUM.size() == count;
    if (hasMore) break;
    profile.heightsUM.push_back(*height);
  }
  if (profile.heightsUM.empty()) return RefuseAtLine(input, lines.LineNumber(), "Unexpected end of file.");
  TakeSpacing(*scale, profile);
  if (hasMore) profile.warnings.emplace_back("there are more heights than line 2 says");
  if (profile.heightsUM.size() < count) {
    profile.warnings.push_back("line 2 says " + IntegerText(static_cast<std::int64_t>(count)) +
                               " points, the data hold " +
                               IntegerText(static_cast<std::int64_t>(profile.heightsUM.size())));
  }
  profile.identification = TrimBlanks(title.substr(kTitle.size()));
  return ReadResult::Read();
}

std::string PrProfileText(const ProfileToWrite& profile) {
  std::string name(profile.identification);
  std::erase_if(name, [](char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; });
  const auto count = static_cast<double>(profile.heightsUM.size());
  const double lengthMM = count * profile.spacingUM * 0.001;
  std::string text;
  text.reserve(150 + name.size() + profile.heightsUM.size() * 12);
  text += "Profil " + name + "\r\nX-Ma\xDF = " + FixedText(lengthMM, 2) + " X-Aufl\xF6sung " +
          FixedText(count / lengthMM, 2) +
          " Punkte/Zeile : " + IntegerText(static_cast<std::int64_t>(profile.heightsUM.size())) + "\r\n";
  for (const double height : profile.heightsUM) {
    AppendFixed(text, height, 6);
    text += "\r\n";
  }
  return text;
}

FileOutcome WritePrProfile(std::filesystem::path& path, const ProfileToWrite& profile, Prompts& prompts) {
  constexpr double kCoarsest = 200'000.0;  // um; beyond it the resolution is written as 0.00
  if (profile.spacingUM >= kCoarsest) {
    FileOutcome outcome{"is not written: the format would hold the resolution of a spacing of " +
                        ShortestText(profile.spacingUM) + " um as 0"};
    prompts.ShowMessage("The file " + outcome.reason + ".");
    return outcome;
  }
  return WriteProfileText(path, ".pr", profile, 0.0, PrProfileText, prompts);
}

}  // namespace texturon
