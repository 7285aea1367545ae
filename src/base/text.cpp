// SPDX-License-Identifier: Apache-2.0

#include "base/text.h"

#include <algorithm>

namespace texturon {
namespace {

bool SameLetter(char a, char b) {
  return LowerAscii(a) == LowerAscii(b);
}

}  // namespace

std::string LowerAscii(std::string_view text) {
  std::string lower(text);
  std::transform(lower.begin(), lower.end(), lower.begin(), [](char c) { return LowerAscii(c); });
  return lower;
}

bool EqualIgnoringCase(std::string_view a, std::string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(), SameLetter);
}

bool StartsWithIgnoringCase(std::string_view text, std::string_view prefix) {
  return EqualIgnoringCase(text.substr(0, prefix.size()), prefix);
}

bool ContainsIgnoringCase(std::string_view text, std::string_view part) {
  return std::search(text.begin(), text.end(), part.begin(), part.end(), SameLetter) != text.end();
}

std::string Quoted(std::string_view text) {
  std::string quoted = "\"";
  quoted.append(text).push_back('"');
  return quoted;
}

std::string OnOneLine(std::string_view text) {
  std::string line(text);
  std::replace_if(
      line.begin(), line.end(), [](char c) { return c == '\r' || c == '\n'; }, ' ');
  return line;
}

std::string_view TrimBlanks(std::string_view text) {
  constexpr std::string_view kBlanks = " \t\r\n\v\f";
  const std::size_t first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

}  // namespace texturon
