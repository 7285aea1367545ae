// SPDX-License-Identifier: Apache-2.0

#include "formats/text_cursor.h"

#include <algorithm>
#include <array>
#include <span>

#include "base/number_text.h"
#include "formats/text_lines.h"

namespace texturon {
namespace {

constexpr bool IsWhiteSpace(char c) {
  return c == ' ' || (c >= '\t' && c <= '\r');
}

}  // namespace

TextCursor::TextCursor(std::string_view text)
    : text_(TextBeforeEnd(text)), lineEnd_(text_.find('\n') == std::string_view::npos ? '\r' : '\n') {}

std::size_t TextCursor::Line() const {
  const std::string_view before = text_.substr(0, position_);
  return 1 + static_cast<std::size_t>(std::count(before.begin(), before.end(), lineEnd_));
}

void TextCursor::SkipWhiteSpace() {
  while (!AtEnd() && IsWhiteSpace(text_[position_])) ++position_;
}

bool TextCursor::SkipIf(char c) {
  const bool isThere = !AtEnd() && text_[position_] == c;
  if (isThere) ++position_;
  return isThere;
}

std::string_view TextCursor::Token() {
  SkipWhiteSpace();
  const std::size_t start = position_;
  while (!AtEnd() && !IsWhiteSpace(text_[position_])) ++position_;
  return text_.substr(start, position_ - start);
}

void TextCursor::SkipOne() {
  if (AtEnd()) return;
  position_ += text_.substr(position_, 2) == "\r\n" ? 2 : 1;
}

std::string TextCursor::RestOfLine(std::size_t limit) {
  std::string line;
  while (!AtEnd() && line.size() < limit) {
    const std::size_t before = position_;
    SkipOne();
    const bool endsLine = text_[position_ - 1] == lineEnd_;
    line.push_back(endsLine ? '\n' : text_[before]);
    if (endsLine) break;
  }
  return line;
}

std::optional<double> TextCursor::Number() {
  const ParsedDouble number = ParseDouble(text_.substr(position_));
  if (!number.usable()) {
    SkipWhiteSpace();
    return std::nullopt;
  }
  position_ += number.length;
  return number.value;
}

void TextCursor::AppendNumbers(std::vector<double>& values, std::size_t most) {
  constexpr std::size_t kAtOnce = 256;
  constexpr std::size_t kOthers = 16;  // numbers of another kind that are taken before a plain one is expected again
  std::array<double, kAtOnce> plain;
  while (values.size() < most) {
    const auto room = std::span(plain).first(std::min(kAtOnce, most - values.size()));
    const ParsedDecimals parsed = ParsePlainDecimals(text_.substr(position_), room);
    values.insert(values.end(), plain.begin(), plain.begin() + static_cast<std::ptrdiff_t>(parsed.count));
    position_ += parsed.length;
    for (std::size_t k = 0; k < kOthers && parsed.count < room.size() && values.size() < most; ++k) {
      const auto number = Number();
      if (!number) return;
      values.push_back(*number);
    }
  }
}

std::optional<std::int32_t> TextCursor::Integer() {
  SkipWhiteSpace();
  const ParsedInt32 number = ParseInt32(text_.substr(position_));
  if (!number.found()) return std::nullopt;
  position_ += number.length;
  return number.value;
}

}  // namespace texturon
