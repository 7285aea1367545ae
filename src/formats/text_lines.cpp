// SPDX-License-Identifier: Apache-2.0

#include "formats/text_lines.h"

#include <algorithm>
#include <array>
#include <utility>

#include "base/charset.h"
#include "base/number_text.h"
#include "base/text.h"

namespace texturon {
namespace {

constexpr std::size_t kLongestNumber = 400;

}  // namespace

LineCursor::LineCursor(std::string_view text, Nul nul)
    : rest_(nul == Nul::kEndsText ? TextBeforeEnd(text) : text),
      lineEnd_(rest_.find('\n') == std::string_view::npos ? '\r' : '\n') {}

std::optional<std::string_view> LineCursor::NextFilled() {
  auto line = Next();
  while (line && TrimBlanks(*line).empty()) line = Next();
  return line;
}

std::optional<std::string_view> LineCursor::Next() {
  if (rest_.empty()) return std::nullopt;
  ++lineNumber_;
  const std::size_t end = rest_.find(lineEnd_);
  std::string_view line = rest_.substr(0, end);
  rest_.remove_prefix(end == std::string_view::npos ? rest_.size() : end + 1);
  while (line.ends_with('\r')) line.remove_suffix(1);
  return line;
}

std::string_view TextBeforeEnd(std::string_view bytes) {
  const std::string_view text = bytes.substr(0, bytes.find('\0'));
  return text.substr(0, text.find('\x1A'));
}

std::string_view WithoutBlankLines(std::string_view text) {
  text.remove_prefix(std::min(text.find_first_not_of("\r\n"), text.size()));
  return text;
}

std::vector<std::string_view> SplitAtAny(std::string_view line, std::string_view separators) {
  std::vector<std::string_view> fields;
  while (fields.size() < kMostFields) {
    const std::size_t start = line.find_first_not_of(separators);
    if (start == std::string_view::npos) return fields;
    line.remove_prefix(start);
    const std::size_t length = std::min(line.find_first_of(separators), line.size());
    fields.push_back(line.substr(0, length));
    line.remove_prefix(length);
  }
  return fields;
}

std::vector<std::string_view> SplitAtEach(std::string_view line, char separator) {
  std::vector<std::string_view> fields;
  while (fields.size() < kMostFields) {
    const std::size_t end = line.find(separator);
    fields.push_back(line.substr(0, end));
    if (end == std::string_view::npos) return fields;
    line.remove_prefix(end + 1);
  }
  return fields;
}

std::optional<double> NumberField(std::string_view field, bool decimalComma) {
  field = TrimBlanks(field);
  if (field.empty() || field.size() > kLongestNumber || field.front() == ',') return std::nullopt;
  ParsedDouble number;
  if (decimalComma && field.find(',') != std::string_view::npos) {
    std::array<char, kLongestNumber> pointed;
    std::replace_copy(field.begin(), field.end(), pointed.begin(), ',', '.');
    number = ParseDouble({pointed.data(), field.size()});
  } else {
    number = ParseDouble(field);
  }
  if (!number.usable() || number.length != field.size()) return std::nullopt;
  return number.value;
}

std::string AtLine(std::size_t line, std::string_view text) {
  return "line " + IntegerText(static_cast<std::int64_t>(line)) + ": " + std::string(text);
}

std::string_view FixedField(std::string_view bytes, std::size_t at, std::size_t length) {
  const std::string_view field = bytes.substr(at, length);
  return TrimBlanks(field.substr(0, field.find('\0')));
}

}  // namespace texturon
