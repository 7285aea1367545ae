// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <string>
#include <string_view>

namespace texturon {

// Texts are Windows-1252 bytes; only the letters A to Z have two cases here.

constexpr char LowerAscii(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c;
}

constexpr char UpperAscii(char c) {
  return c >= 'a' && c <= 'z' ? static_cast<char>(c - ('a' - 'A')) : c;
}

std::string LowerAscii(std::string_view text);
bool EqualIgnoringCase(std::string_view a, std::string_view b);
bool StartsWithIgnoringCase(std::string_view text, std::string_view prefix);
bool ContainsIgnoringCase(std::string_view text, std::string_view part);

/// "text", for messages.
std::string Quoted(std::string_view text);

/// The text with blanks for its line breaks.
std::string OnOneLine(std::string_view text);

/// The text without white space (blanks, tabs and line ends) at its ends.
std::string_view TrimBlanks(std::string_view text);

}  // namespace texturon
