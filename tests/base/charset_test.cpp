// SPDX-License-Identifier: Apache-2.0

#include "base/charset.h"

#include <gtest/gtest.h>
#include <string>
#include <string_view>

namespace texturon {
namespace {

TEST(Charset, EveryByteComesBack) {
  std::string bytes;
  for (int i = 0; i < 256; ++i) bytes.push_back(static_cast<char>(i));
  EXPECT_EQ(Windows1252FromUtf8(Utf8FromWindows1252(bytes)), bytes);
}

TEST(Charset, KnownCodePoints) {
  EXPECT_EQ(Utf8FromWindows1252("5 \xB5m at 90\xB0, 3 \x80, \x96, \x9F, \x81"),
            "5 \u00B5m at 90\u00B0, 3 \u20AC, \u2013, \u0178, \xC2\x81");
}

TEST(Charset, ControlCharactersDoNothingToATerminal) {
  EXPECT_EQ(EscapedControls("a\x1b[31m\tb\r\n\x7f"), "a\\x1B[31m\\tb\\r\\n\\x7F");
  EXPECT_EQ(EscapedControls("\xC2\x9B \x9B \xE2\x9B \xC2\xB5\xE2\x82\xAC?\xF0\x9F\x98\x80\xC4"),
            "\\x9B \\x9B \xE2\\x9B \xC2\xB5\xE2\x82\xAC?\xF0\x9F\x98\x80\xC4");
}

TEST(Charset, WhatHasNoByteBecomesAQuestionMark) {
  struct Case {
    std::string_view utf8, expected;
  };
  const Case cases[] = {
      {"\u03BCm", "?m"},                // Greek mu is not the micro sign
      {"a\U0001F600b", "a?b"},          // four bytes, one character
      {"\xC3", "?"},                    // cut
      {"\xE2\x82", "?"},                // cut later
      {"\xE2\x82z", "?z"},              // cut by another character
      {"\xB5m", "?m"},                  // Windows-1252 given as UTF-8
      {"\xC0\xAF", "??"},               // overlong
      {"\xE0\x80\xAF", "???"},          // overlong
      {"\xED\xA0\x80", "???"},          // surrogate
      {"\xF4\x90\x80\x80", "????"},     // beyond the last code point
      {"\xFF\xFE\x41", "??A"},          // never in UTF-8
      {"\xC2\x80 \xC2\x81", "? \x81"},  // U+0080 has no byte, U+0081 has
  };
  for (const Case& c : cases) EXPECT_EQ(Windows1252FromUtf8(c.utf8), c.expected) << c.utf8;
}

}  // namespace
}  // namespace texturon
