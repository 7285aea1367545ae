// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <string>
#include <string_view>

namespace texturon {

// Texts are Windows-1252 bytes inside the program; UTF-8 exists only at the terminal, in JSON and on the screen.

/// Every byte has a code point; the five that Windows-1252 leaves undefined (81, 8D, 8F, 90, 9D) become the control
/// characters of the same number.
std::string Utf8FromWindows1252(std::string_view text);

/// A code point without a byte, and each ill-formed sequence, becomes one '?'. The inverse of Utf8FromWindows1252 for
/// all that it gives.
std::string Windows1252FromUtf8(std::string_view text);

/// UTF-8 with its control characters as escapes (\n, \t, \x1B, \x9B), so that a name does nothing to a terminal. Bytes
/// that are no UTF-8 stay, but for those that a terminal of eight bits would take as control characters.
std::string EscapedControls(std::string_view utf8);

bool IsAscii(std::string_view text);

/// Whether a file is UTF-8: it begins with the mark of it, or holds letters beyond ASCII, all of them well-formed.
/// Anything else counts as Windows-1252.
bool IsUtf8(std::string_view bytes);

/// A text out of a file as Windows-1252. What has no byte becomes its likeness (the Greek mu, a minus sign, blanks of
/// odd widths), else '?'.
std::string TextOfFile(std::string_view text, bool isUtf8);

/// A file as Windows-1252 text: UTF-16 behind its byte-order mark, UTF-16LE without one too, and UTF-8 are converted;
/// what is no text, or in Windows-1252 already, stays as it stands. `storage` holds the text where it had to be made.
std::string_view PlainText(std::string_view bytes, std::string& storage);

}  // namespace texturon
