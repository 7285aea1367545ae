// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QString>
#include <filesystem>
#include <string>
#include <string_view>

class QWidget;

namespace texturon {

// Texts and paths between the engine (Windows-1252, std) and Qt.

QString FromText(std::string_view windows1252);
std::string ToText(const QString& text);
QString FromPath(const std::filesystem::path& path);
std::filesystem::path ToPath(const QString& path);

/// A text of the engine as it is read on a screen: a minus sign for a hyphen before a number, no sign before a zero,
/// raised figures behind a unit (mm², µm⁻²) and a power of ten for an exponent. Not for what is copied or filed.
QString Readable(const QString& text);

/// The same with no more than seven figures where a number has nine decimals and more.
QString WithShortNumbers(const QString& text);
/// A remark of the engine as a sentence: with a capital, unless it begins with the name of a file, such numbers, the
/// sign of micrometres, and a full stop.
QString AsSentence(const QString& remark);

/// Makes a window so many characters wide and lines high, as far as its screen has room for that.
void ResizeInCharacters(QWidget& window, int characters, int lines);

}  // namespace texturon
