#include "core/text.h"
#include "formats/extension_table.h"
#include "formats/text_lines.h"

namespace texturon {
namespace {

// Marker texts stand in a file's header.
constexpr std::size_t kHeaderSize = 65'536;

std::string WhatToDo(const ProfileReader& reader) {
  return "this layout (" + std::string(reader.name) +
         ") is not read yet; export the profile as .lmt, .sdf, .smd or two-column text";
}

}  // namespace

ReadResult RunReader(const ProfileReader& reader, const ReaderInput& input, ImportedProfile& profile) {
  if (reader.read != nullptr) return reader.read(input, profile);
  if (reader.markers.empty()) return ReadResult::NotRecognised(WhatToDo(reader));
  const std::string_view header = input.bytes.substr(0, kHeaderSize);
  const auto holds = [header](std::string_view text) { return header.find(text) != std::string_view::npos; };
  for (const std::string_view marker : SplitAtEach(reader.markers, '|')) {
    if (!holds(marker)) return ReadResult::NotRecognised("the marker text " + Quoted(marker) + " is missing");
  }
  for (const Condition& condition : reader.conditions) {
    if (condition.text.empty() || holds(condition.text) == condition.mustBeThere) continue;
    return ReadResult::Refused(std::string(condition.message));
  }
  return ReadResult::Refused(WhatToDo(reader));
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
