// SPDX-License-Identifier: Apache-2.0

#include "formats/recognition.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <optional>

#include "base/text.h"
#include "formats/companion_file.h"
#include "formats/reader_questions.h"
#include "formats/text_lines.h"
#include "platform/platform.h"

namespace texturon {
namespace {

// Marker texts stand in a file's header.
constexpr std::size_t kHeaderSize = 65'536;

/// The message where a companion is missing; empty: it is there, or none belongs to the layout.
std::optional<std::string> MissingCompanion(const Companion& companion, const ReaderInput& input) {
  if (companion.extension.empty()) return std::nullopt;
  std::error_code error;
  if (std::filesystem::exists(CompanionPath(input.path, companion.extension), error)) return std::nullopt;
  std::string message(companion.message);
  const std::size_t place = message.find("%s");
  if (place != std::string::npos) message.replace(place, 2, TextFromPath(input.path.stem()));
  return message;
}

/// Scales and units can make numbers of a file too large to be any.
bool IsFinite(const ImportedProfile& profile) {
  return std::isfinite(profile.spacingUM) &&
         std::all_of(profile.heightsUM.begin(), profile.heightsUM.end(), [](double z) { return std::isfinite(z); });
}

ReadResult RunRoutine(const ProfileReader& reader, const ReaderInput& input, ImportedProfile& profile) {
  ReadResult result = reader.read(input, profile);
  if (result.status != ReadResult::Status::kRead || IsFinite(profile)) return result;
  constexpr std::string_view kTooLarge = "The numbers of the file are too large.";
  input.prompts.ShowMessage(kTooLarge);
  return ReadResult::Refused(std::string(kTooLarge));
}

}  // namespace

ReadResult RunReader(const ProfileReader& reader, const ReaderInput& input, ImportedProfile& profile) {
  if (reader.read != nullptr) return RunRoutine(reader, input, profile);
  if (reader.markers.empty()) return ReadResult::NotRecognised("its layout is not known");
  const std::string_view header = input.bytes.substr(0, kHeaderSize);
  const auto holds = [header](std::string_view text) { return header.find(text) != std::string_view::npos; };
  for (const std::string_view marker : SplitAtEach(reader.markers, '|')) {
    if (!holds(marker)) return ReadResult::NotRecognised("the marker text " + Quoted(marker) + " is missing");
  }
  for (const Condition& condition : reader.conditions) {
    if (condition.text.empty() || holds(condition.text) == condition.mustBeThere) continue;
    return ReadResult::Refused(std::string(condition.message));
  }
  const auto missing = MissingCompanion(reader.companion, input);
  return ReadResult::Refused(missing ? *missing : NotReadYet(reader.name));
}

std::string WhatItTakes(const ProfileReader& reader) {
  if (reader.read != nullptr) return std::string(reader.takes);
  std::string text = reader.takes.empty() ? std::string() : std::string(reader.takes) + "; ";
  if (reader.markers.empty()) return text + "layout not known, not read";
  text += "recognised only, by";
  std::string_view separator = " ";
  for (const std::string_view marker : SplitAtEach(reader.markers, '|')) {
    text += std::string(separator) + Quoted(marker);
    separator = ", ";
  }
  return text;
}

}  // namespace texturon
