// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "analysis/indication.h"

// The words of a drawing indication, and its older style.
namespace texturon {

/// A piece of a text with the place where it begins.
struct TextPart {
  std::string_view text;
  std::size_t place = 0;
};

/// The lines of a text, which bars separate too.
std::vector<TextPart> LinesOf(std::string_view text);

struct Word {
  std::string text;
  std::size_t place = 0;
};

/// The words of a line; blanks and semicolons separate them, but not within brackets. Refers to the text.
class WordList {
public:
  explicit WordList(const TextPart& line) : line_(line) { SkipSeparators(); }

  bool IsAtEnd() const { return at_ >= line_.text.size(); }
  /// The next word; empty at the end.
  std::string Peek() const;
  bool Is(std::string_view word) const { return Peek() == word; }
  Word Take();
  /// The name of a parameter, with its arguments or as a whole feature.
  Word TakeName();
  /// Where the next word begins in the whole text.
  std::size_t Place() const { return line_.place + at_; }

  /// Takes "ISO21920", "ISO 1302:2002" and the like.
  std::optional<Edition> TakeEdition();
  /// Takes what the symbol says of the process: APA, MRR, NMR.
  void TakeSymbol();

private:
  void SkipSeparators();
  std::size_t EndOfWord() const;
  std::size_t EndOfFeature() const;

  TextPart line_;
  std::size_t at_ = 0;
};

/// A whole text as a number, with a decimal point or comma; infinity is none.
std::optional<double> NumberOf(std::string_view text);
/// "0.8x3".
std::optional<std::pair<double, std::int32_t>> ProductOf(std::string_view text);
/// Decimal commas as points; where semicolons stand between arguments, commas are decimal ones there too.
std::string PointsForCommas(std::string_view name);

/// True for RSm, RPc and RDq (or of P, W), which only the editions before spell so; the case counts.
bool IsOlderSpelling(std::string_view name);
/// True for words in the style of ISO 1302:2002.
bool IsOlderStyle(WordList words);

struct OlderReading {
  Requirement requirement;
  std::string fault;
  std::size_t place = 0;
};
OlderReading ReadOlderLine(WordList words);

}  // namespace texturon
