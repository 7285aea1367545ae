// SPDX-License-Identifier: Apache-2.0

#include "presentation/readable_text.h"

#include <cstddef>
#include <utility>

namespace texturon {
namespace {

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

bool IsWord(char c) {
  return IsDigit(c) || c == '_' || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

/// Digits and a sign as raised ones.
std::string Raised(std::string_view number) {
  constexpr std::string_view kDigits[] = {"\u2070", "\u00B9", "\u00B2", "\u00B3", "\u2074",
                                          "\u2075", "\u2076", "\u2077", "\u2078", "\u2079"};
  std::string text;
  for (const char c : number) text += IsDigit(c) ? kDigits[static_cast<std::size_t>(c - '0')] : "\u207B";
  return text;
}

class Reader {
public:
  explicit Reader(std::string_view text) : text_(text) {}

  std::string Run() {
    while (at_ < text_.size()) {
      if (!TakeSign() && !TakeExponent() && !TakeUnit() && !TakeSpelling()) out_ += text_[at_++];
    }
    return std::move(out_);
  }

private:
  /// The character at a place; a blank outside the text.
  char At(std::size_t i) const { return i < text_.size() ? text_[i] : ' '; }
  char Before() const { return at_ > 0 ? text_[at_ - 1] : ' '; }
  bool EndsNumberAt(std::size_t i) const { return !IsWord(At(i)) && At(i) != '.'; }

  bool TakeSign() {
    const char before = Before();
    if (text_[at_] != '-' || IsWord(before) || before == '.' || before == '-' || !IsDigit(At(at_ + 1))) return false;
    std::size_t end = at_ + 1;
    if (At(end) == '0') {
      ++end;
      if (At(end) == '.') ++end;
      while (At(end) == '0') ++end;
    }
    const bool isZero = end > at_ + 1 && EndsNumberAt(end);
    if (!isZero) out_ += "\u2212";
    ++at_;
    return true;
  }

  /// Whether what stands before is a number with nothing before it: a digest of hexadecimal digits is none.
  bool IsBehindNumber() const {
    std::size_t first = at_;
    int points = 0;
    for (; first > 0 && (IsDigit(text_[first - 1]) || text_[first - 1] == '.'); --first) {
      if (text_[first - 1] == '.') ++points;
    }
    return first < at_ && IsDigit(text_[first]) && points < 2 && !(first > 0 && IsWord(text_[first - 1]));
  }

  bool TakeExponent() {
    if ((text_[at_] != 'e' && text_[at_] != 'E') || !IsBehindNumber()) return false;
    std::size_t first = at_ + 1;
    const bool isNegative = At(first) == '-';
    if (isNegative || At(first) == '+') ++first;
    std::size_t end = first;
    while (IsDigit(At(end))) ++end;
    if (end == first || !EndsNumberAt(end)) return false;
    while (first + 1 < end && text_[first] == '0') ++first;
    const std::string_view power = text_.substr(first, end - first);
    if (power != "0") out_ += "\u00B710" + Raised((isNegative ? "-" : "") + std::string(power));
    at_ = end;
    return true;
  }

  bool TakeUnit() {
    if (IsWord(Before())) return false;
    for (const std::string_view unit : {"mm", "m", "in"}) {
      if (text_.substr(at_, unit.size()) != unit) continue;
      const std::size_t power = at_ + unit.size();
      const std::size_t digit = power + (At(power) == '-' ? 1 : 0);
      if (At(digit) < '2' || At(digit) > '9' || IsWord(At(digit + 1))) continue;
      out_ += std::string(unit) + Raised(text_.substr(power, digit + 1 - power));
      at_ = digit + 1;
      return true;
    }
    return false;
  }

  /// Micrometres, and counts for a length, as texts for files spell them.
  bool TakeSpelling() {
    constexpr std::pair<std::string_view, std::string_view> kSpellings[] = {
        {"um by um", "\u00B5m by \u00B5m"}, {"(um)", "(\u00B5m)"}, {"#/cm", "1/cm"}, {"#/in", "1/in"}};
    for (const auto& [spelled, shown] : kSpellings) {
      if (text_.substr(at_, spelled.size()) != spelled || IsWord(Before()) || IsWord(At(at_ + spelled.size())))
        continue;
      out_ += shown;
      at_ += spelled.size();
      return true;
    }
    if (text_.substr(at_, 3) != " um" || IsWord(At(at_ + 3)) || !IsDigit(Before())) return false;
    out_ += " \u00B5m";
    at_ += 3;
    return true;
  }

  std::string_view text_;
  std::size_t at_ = 0;
  std::string out_;
};

}  // namespace

std::string ReadableText(std::string_view utf8) {
  return Reader(utf8).Run();
}

}  // namespace texturon
