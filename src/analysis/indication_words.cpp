// SPDX-License-Identifier: Apache-2.0

#include "analysis/indication_words.h"

#include <algorithm>

#include "base/number_text.h"
#include "base/text.h"
#include "base/units.h"
#include "parameters/edition2021/feature_text.h"

namespace texturon {
namespace {

bool IsSeparator(char c) {
  return c == ' ' || c == '\t' || c == ';' || c == '\r';
}

}  // namespace

std::vector<TextPart> LinesOf(std::string_view text) {
  std::vector<TextPart> lines;
  for (std::size_t begin = 0; begin <= text.size();) {
    const std::size_t end = std::min(text.find_first_of("\n|", begin), text.size());
    lines.push_back({text.substr(begin, end - begin), begin});
    begin = end + 1;
  }
  return lines;
}

void WordList::SkipSeparators() {
  while (!IsAtEnd() && IsSeparator(line_.text[at_])) ++at_;
}

std::size_t WordList::EndOfWord() const {
  int open = 0;
  std::size_t end = at_;
  for (; end < line_.text.size(); ++end) {
    const char c = line_.text[end];
    if (c == '(') ++open;
    if (c == ')') --open;
    if (open <= 0 && IsSeparator(c)) break;
  }
  return end;
}

/// Behind the statistic of a feature that begins here; 0 where none does.
std::size_t WordList::EndOfFeature() const {
  constexpr int kSeparators = 5;
  const std::string_view rest = line_.text.substr(at_);
  const std::size_t colon = rest.find(':');
  const bool hasLetter = colon != std::string_view::npos && TrimBlanks(rest.substr(0, colon)).size() == 1;
  std::size_t begin = hasLetter ? colon + 1 : 0;
  if (!IsFeatureText(rest.substr(begin))) return 0;
  for (int i = 0; i < kSeparators; ++i) {
    begin = rest.find(';', begin);
    if (begin == std::string_view::npos) return line_.text.size();
    ++begin;
  }
  const auto wordEnd = [rest](std::size_t from) {
    while (from < rest.size() && rest[from] == ' ') ++from;
    return std::min(rest.find(' ', from), rest.size());
  };
  std::size_t end = wordEnd(begin);
  if (EqualIgnoringCase(TrimBlanks(rest.substr(begin, end - begin)), "Perc")) end = wordEnd(end);
  return at_ + end;
}

std::string WordList::Peek() const {
  return std::string(line_.text.substr(at_, EndOfWord() - at_));
}

Word WordList::Take() {
  Word word{Peek(), Place()};
  at_ += word.text.size();
  SkipSeparators();
  return word;
}

Word WordList::TakeName() {
  if (const std::size_t end = EndOfFeature(); end > 0) {
    Word name{std::string(line_.text.substr(at_, end - at_)), Place()};
    at_ = end;
    SkipSeparators();
    return name;
  }
  Word name = Take();
  if (Peek().starts_with('(')) name.text += Take().text;
  return name;
}

std::optional<Edition> WordList::TakeEdition() {
  const WordList before = *this;
  std::string word = Take().text;
  if (EqualIgnoringCase(word, "ISO")) word += Take().text;
  const std::string_view number = std::string_view(word).substr(std::min<std::size_t>(word.size(), 3));
  if (EqualIgnoringCase(std::string_view(word).substr(0, 3), "ISO")) {
    if (number.starts_with("21920")) return Edition::k2021;
    if (number.starts_with("1302")) return Edition::k1997;
  }
  *this = before;
  return std::nullopt;
}

void WordList::TakeSymbol() {
  for (const std::string_view symbol : {"APA", "MRR", "NMR"}) {
    if (!Is(symbol)) continue;
    Take();
    return;
  }
}

std::optional<double> NumberOf(std::string_view text) {
  const std::string pointed = PointsForCommas(text);
  const ParsedDouble number = ParseDouble(pointed);
  if (!number.usable() || number.length == 0 || number.length != pointed.size()) return std::nullopt;
  return number.value;
}

std::optional<std::pair<double, std::int32_t>> ProductOf(std::string_view text) {
  const std::size_t times = text.find_first_of("xX\xD7");
  if (times == std::string_view::npos) return std::nullopt;
  const auto length = NumberOf(text.substr(0, times));
  const auto count = NumberOf(text.substr(times + 1));
  constexpr double kMost = 1000.0;
  if (!length || !count || !(*length > 0.0) || !(*count >= 1.0 && *count <= kMost)) return std::nullopt;
  const std::int32_t whole = RoundToIndex(*count);
  if (static_cast<double>(whole) != *count) return std::nullopt;
  return std::pair(*length, whole);
}

std::string PointsForCommas(std::string_view name) {
  std::string pointed(name);
  const std::size_t bracket = std::min(pointed.find('('), pointed.size());
  const bool commasSeparate = pointed.find(';', bracket) == std::string::npos;
  std::replace(pointed.begin(), commasSeparate ? pointed.begin() + static_cast<std::ptrdiff_t>(bracket) : pointed.end(),
               ',', '.');
  return pointed;
}

}  // namespace texturon
