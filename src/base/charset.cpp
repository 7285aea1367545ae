// SPDX-License-Identifier: Apache-2.0

#include "base/charset.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace texturon {
namespace {

constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";

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

/// Signs of a file's text without a byte of their own that have a likeness: the Greek mu, minus signs and hyphens,
/// blanks of odd widths, the sign of the Angstrom; 0 for marks that show nothing.
char LikenessOf(char32_t codePoint) {
  if (codePoint >= 0x2000 && codePoint <= 0x200A) return ' ';
  switch (codePoint) {
    case 0x03BC:
      return '\xB5';
    case 0x2010:
    case 0x2011:
    case 0x2212:
      return '-';
    case 0x202F:
    case 0x205F:
      return ' ';
    case 0x212B:
      return '\xC5';
    case 0x200B:
    case 0xFEFF:
      return '\0';
    default:
      return ByteOfCodePoint(codePoint);
  }
}

std::size_t FirstAboveAscii(std::string_view text, std::size_t from) {
  constexpr std::uint64_t kHighBits = 0x8080808080808080ULL;
  using Block = std::array<std::uint64_t, 8>;
  for (; from + sizeof(Block) <= text.size(); from += sizeof(Block)) {
    Block block;
    std::memcpy(block.data(), text.data() + from, sizeof block);
    std::uint64_t any = 0;
    for (const std::uint64_t bytes : block) any |= bytes;
    if ((any & kHighBits) != 0) break;
  }
  while (from < text.size() && static_cast<unsigned char>(text[from]) < 0x80) ++from;
  return from;
}

/// A file's text of UTF-8 as Windows-1252.
std::string TextFromUtf8(std::string_view text) {
  std::string bytes;
  bytes.reserve(text.size());
  for (std::size_t position = 0; position < text.size();) {
    const std::size_t end = FirstAboveAscii(text, position);
    bytes.append(text.substr(position, end - position));
    position = end;
    if (position == text.size()) break;
    const char byte = LikenessOf(NextCodePoint(text, position));
    if (byte != '\0') bytes.push_back(byte);
  }
  return bytes;
}

/// Whether bytes are a text rather than a binary file or fields between control characters; what ends a text may be
/// filled up with NUL and 1A.
bool IsText(std::string_view bytes) {
  constexpr std::string_view kFill("\0\x1A", 2);
  const std::size_t end = bytes.find_last_not_of(kFill) + 1;
  return std::none_of(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(end), [](char c) {
    const auto byte = static_cast<unsigned char>(c);
    return byte < ' ' && (byte < '\t' || byte > '\r') && byte != 0x1A;
  });
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

bool IsAscii(std::string_view text) {
  return FirstAboveAscii(text, 0) == text.size();
}

bool IsUtf8(std::string_view bytes) {
  if (bytes.starts_with(kUtf8Mark)) return true;
  std::size_t position = FirstAboveAscii(bytes, 0);
  if (position == bytes.size()) return false;
  while (position < bytes.size()) {
    const LeadByte lead = ReadLeadByte(static_cast<unsigned char>(bytes[position]));
    if (!lead.wellFormed || position + lead.followers >= bytes.size()) return false;
    const std::size_t next = position + lead.followers + 1;
    std::size_t read = position;
    NextCodePoint(bytes, read);
    if (read != next) return false;
    position = FirstAboveAscii(bytes, next);
  }
  return true;
}

std::string TextOfFile(std::string_view text, bool isUtf8) {
  return isUtf8 ? TextFromUtf8(text) : std::string(text);
}

std::string_view PlainText(std::string_view bytes, std::string& storage) {
  const bool hasMark = bytes.starts_with(kUtf8Mark);
  const std::string_view unmarked = bytes.substr(hasMark ? kUtf8Mark.size() : 0);
  if (FirstAboveAscii(unmarked, 0) == unmarked.size() && !LooksWide(bytes)) return unmarked;
  if (hasMark || (!LooksWide(bytes) && IsUtf8(bytes) && IsText(bytes))) {
    storage = TextFromUtf8(unmarked);
    return storage;
  }
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
  storage = TextFromUtf8(utf8);
  return storage;
}

}  // namespace texturon
