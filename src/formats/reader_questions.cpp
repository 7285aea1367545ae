// SPDX-License-Identifier: Apache-2.0

#include "formats/reader_questions.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "base/number_text.h"
#include "base/text.h"
#include "base/units.h"
#include "formats/text_lines.h"
#include "platform/platform.h"

namespace texturon {

namespace {

/// Spacing (um) of a trace whose length the user knows.
std::optional<double> AskTraceLength(const ReaderInput& input, std::size_t points) {
  input.prompts.Beside(BesideQuestion(input) + "\n" + IntegerText(static_cast<std::int64_t>(points)) +
                       " points lie at equal distances along it.");
  const auto answer = input.prompts.AskText("Enter the trace length (mm):", "");
  const auto length = answer ? NumberField(*answer, true) : std::nullopt;
  if (!length || points < 2) return std::nullopt;
  return *length * kMicrometresPerMillimetre / static_cast<double>(points - 1);
}

}  // namespace

std::string BesideQuestion(const ReaderInput& input) {
  return "File: " + TextFromPath(input.path.filename());
}

bool AskSpacing(const ReaderInput& input, double presetUM, ImportedProfile& profile, std::string_view origin) {
  const std::string preset = ShortestText(input.options.spacingUM.value_or(presetUM));
  std::string beside = BesideQuestion(input) + "\nIt states no usable point spacing for its " +
                       IntegerText(static_cast<std::int64_t>(profile.heightsUM.size())) + " points.";
  if (!origin.empty() && !input.options.spacingUM) beside += "\n" + std::string(origin);
  input.prompts.Beside(beside);
  const auto answer = input.prompts.AskText("Enter the data point spacing (um):", preset);
  const auto spacing = answer ? NumberField(*answer, true) : AskTraceLength(input, profile.heightsUM.size());
  if (!spacing || *spacing <= 0.0 || !std::isfinite(*spacing)) return false;
  profile.spacingUM = *spacing;
  profile.spacingSource = answer != preset ? "asked" : input.options.spacingUM ? "given by the caller" : "assumed";
  if (!input.options.spacingUM) {
    profile.warnings.push_back("the file states no usable point spacing; " + ShortestText(*spacing) + " um is taken");
  }
  return true;
}

std::size_t AskColumn(const ReaderInput& input, std::size_t columns, ImportedProfile& profile,
                      std::span<const std::string> titles) {
  std::string listed;
  for (const std::string& title : titles) {
    const auto number = static_cast<std::int64_t>(&title - titles.data()) + 1;
    listed += (listed.empty() ? "" : ", ") + IntegerText(number) + " " + OnOneLine(title);
  }
  input.prompts.Beside(BesideQuestion(input) + (listed.empty() ? "" : "\nColumns: " + listed));
  const std::string prompt = "Enter the column number (1:" + IntegerText(static_cast<std::int64_t>(columns)) + "):";
  const auto answer = input.prompts.AskText(prompt, IntegerText(input.options.column));
  const std::int32_t wanted = answer ? ParseInt32(*answer).value : input.options.column;
  const std::size_t column = std::min(static_cast<std::size_t>(std::max(wanted, 1)), columns);
  profile.column = static_cast<std::int32_t>(column);
  return column;
}

std::size_t AskHeightColumn(const ReaderInput& input, std::size_t columns, ImportedProfile& profile,
                            std::span<const std::string> titles) {
  return columns < 2 ? 1 : AskColumn(input, columns, profile, titles);
}

std::string NotReadYet(std::string_view layout) {
  return "this layout (" + std::string(layout) +
         ") is not read yet; export the profile as .lmt, .sdf, .smd or two-column text";
}

ReadResult RefuseAtLine(const ReaderInput& input, std::size_t line, std::string_view message) {
  input.prompts.ShowMessage(message);
  return ReadResult::Refused(AtLine(line, message));
}

ReadResult Refuse(const ReaderInput& input, std::string_view message) {
  input.prompts.ShowMessage(message);
  return ReadResult::Refused(std::string(message));
}

void WarnOfCount(double stated, ImportedProfile& profile) {
  const auto there = static_cast<double>(profile.heightsUM.size());
  if (stated == there) return;
  profile.warnings.push_back("the file says " + ShortestText(stated) + " points and holds " + ShortestText(there));
}

}  // namespace texturon
