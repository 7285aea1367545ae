// SPDX-License-Identifier: Apache-2.0

#include "base/charset.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

namespace texturon {
namespace {

// Code points of the bytes 80 to 9F; all other bytes are their own.
constexpr std::array<char32_t, 32> kUpperControls = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178,
};

char ByteOfCodePoint(char32_t codePoint) {
  if (codePoint < 0x80 || (codePoint >= 0xA0 && codePoint <= 0xFF)) return static_cast<char>(codePoint);
  const auto found = std::find(kUpperControls.begin(), kUpperControls.end(), codePoint);
  return found == kUpperControls.end() ? '?' : static_cast<char>(0x80 + (found - kUpperControls.begin()));
}

void AppendUtf8(std::string& out, char32_t codePoint) {
  if (codePoint < 0x80) {
    out.push_back(static_cast<char>(codePoint));
  } else if (codePoint < 0x800) {
    out.push_back(static_cast<char>(0xC0 | (codePoint >> 6)));
    out.push_back(static_cast<char>(0x80 | (codePoint & 0x3F)));
  } else {
    out.push_back(static_cast<char>(0xE0 | (codePoint >> 12)));
    out.push_back(static_cast<char>(0x80 | ((codePoint >> 6) & 0x3F)));
    out.push_back(static_cast<char>(0x80 | (codePoint & 0x3F)));
  }
}

// What a lead byte allows: how many bytes follow, and the range of the first of them, which leaves out overlong forms,
// surrogates and what lies beyond the last code point.
struct LeadByte {
  std::size_t followers = 0;
  unsigned char least = 0x80;
  unsigned char most = 0xBF;
  bool wellFormed = true;
};

LeadByte ReadLeadByte(unsigned char byte) {
  if (byte < 0x80) return {};
  if (byte >= 0xC2 && byte <= 0xDF) return {1};
  if (byte == 0xE0) return {2, 0xA0, 0xBF};
  if (byte == 0xED) return {2, 0x80, 0x9F};
  if (byte >= 0xE1 && byte <= 0xEF) return {2};
  if (byte == 0xF0) return {3, 0x90, 0xBF};
  if (byte >= 0xF1 && byte <= 0xF3) return {3};
  if (byte == 0xF4) return {3, 0x80, 0x8F};
  return {0, 0x80, 0xBF, false};
}

// Reads the code point at `position` and moves past it, or past the ill-formed sequence there: then '?'.
char32_t NextCodePoint(std::string_view text, std::size_t& position) {
  const auto first = static_cast<unsigned char>(text[position++]);
  const LeadByte lead = ReadLeadByte(first);
  if (!lead.wellFormed) return U'?';
  if (lead.followers == 0) return first;
  char32_t codePoint = first & (0x3FU >> lead.followers);
  unsigned char least = lead.least;
  unsigned char most = lead.most;
  for (std::size_t i = 0; i < lead.followers; ++i) {
    if (position == text.size()) return U'?';
    const auto byte = static_cast<unsigned char>(text[position]);
    if (byte < least || byte > most) return U'?';
    codePoint = (codePoint << 6) | (byte & 0x3FU);
    ++position;
    least = 0x80;
    most = 0xBF;
  }
  return codePoint;
}

/// A code unit as UTF-8; halves of surrogate pairs stay apart and become two question marks.
void AppendCodeUnit(std::string& utf8, unsigned unit) {
  if (unit < 0x80) {
    utf8.push_back(static_cast<char>(unit));
  } else if (unit < 0x800) {
    utf8.push_back(static_cast<char>(0xC0 | (unit >> 6)));
    utf8.push_back(static_cast<char>(0x80 | (unit & 0x3F)));
  } else if (unit >= 0xD800 && unit <= 0xDFFF) {
    utf8.push_back('?');
  } else {
    utf8.push_back(static_cast<char>(0xE0 | (unit >> 12)));
    utf8.push_back(static_cast<char>(0x80 | ((unit >> 6) & 0x3F)));
    utf8.push_back(static_cast<char>(0x80 | (unit & 0x3F)));
  }
}

/// Whether a text without a mark begins with letters of two bytes, the higher of which is 0 and comes second.
bool LooksWide(std::string_view bytes) {
  constexpr std::size_t kLetters = 8;
  if (bytes.size() < 2 * kLetters) return false;
  for (std::size_t i = 0; i < 2 * kLetters; i += 2) {
    const auto byte = static_cast<unsigned char>(bytes[i]);
    const bool isLetter = byte >= ' ' || byte == '\t' || byte == '\r' || byte == '\n';
    if (!isLetter || bytes[i + 1] != '\0') return false;
  }
  return true;
}

}  // namespace

std::string Utf8FromWindows1252(std::string_view text) {
  std::string utf8;
  utf8.reserve(text.size() + text.size() / 8);
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    AppendUtf8(utf8, byte >= 0x80 && byte <= 0x9F ? kUpperControls[byte - 0x80U] : byte);
  }
  return utf8;
}

std::string Windows1252FromUtf8(std::string_view text) {
  std::string bytes;
  bytes.reserve(text.size());
  for (std::size_t position = 0; position < text.size();) {
    bytes.push_back(ByteOfCodePoint(NextCodePoint(text, position)));
  }
  return bytes;
}

std::string EscapedControls(std::string_view utf8) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  std::string shown;
  shown.reserve(utf8.size());
  const auto append = [&shown, kDigits](unsigned char byte) {
    const bool isControl = byte < 0x20 || (byte >= 0x7F && byte <= 0x9F);
    if (!isControl) {
      shown += static_cast<char>(byte);
    } else if (byte == '\n' || byte == '\r' || byte == '\t') {
      shown += byte == '\n' ? "\\n" : byte == '\r' ? "\\r" : "\\t";
    } else {
      shown += {'\\', 'x', kDigits[byte >> 4], kDigits[byte & 0x0F]};
    }
  };
  for (std::size_t position = 0; position < utf8.size();) {
    const std::size_t start = position;
    const char32_t codePoint = NextCodePoint(utf8, position);
    const std::string_view bytes = utf8.substr(start, position - start);
    if (codePoint <= 0x9F && bytes.size() <= 2 && codePoint != U'?') {
      append(static_cast<unsigned char>(codePoint));
    } else if (codePoint != U'?') {
      shown += bytes;
    } else {
      for (const char byte : bytes) append(static_cast<unsigned char>(byte));
    }
  }
  return shown;
}

std::string_view PlainText(std::string_view bytes, std::string& storage) {
  if (bytes.starts_with("\xEF\xBB\xBF")) return bytes.substr(3);
  const bool isBigEndian = bytes.starts_with("\xFE\xFF");
  const bool isMarked = isBigEndian || bytes.starts_with("\xFF\xFE");
  if (!isMarked && !LooksWide(bytes)) return bytes;
  std::string utf8;
  utf8.reserve(bytes.size() / 2);
  for (std::size_t i = isMarked ? 2 : 0; i + 1 < bytes.size(); i += 2) {
    const unsigned first = static_cast<unsigned char>(bytes[i]);
    const unsigned second = static_cast<unsigned char>(bytes[i + 1]);
    AppendCodeUnit(utf8, isBigEndian ? first << 8 | second : second << 8 | first);
  }
  storage = Windows1252FromUtf8(utf8);
  return storage;
}

}  // namespace texturon
