// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QHash>
#include <QString>
#include <span>
#include <string_view>

namespace texturon {

// The language of the window. Texts stand in English in the sources; another language is a file of
// ui/translations, with a line for each. What is written to files, reports included, is always English.

struct Language {
  const char* code;  ///< "de", also the name of its file
  const char* name;  ///< in itself
};

/// English first.
std::span<const Language> Languages();

/// The code of what the user has chosen for his windows; "en" where he has chosen none.
QString ChosenLanguage();
/// From the next start on.
void ChooseLanguage(const QString& code);

/// What is translated from now on is in this language; English for a code that there is none for.
void UseLanguage(const QString& code);

/// English texts and what they are in a language. Where the English has %n, the other has "singular|plural". In texts
/// of the engine {0}, {1} ... stand for what is put in, {0 mm} for a measure, {0 deg} for an angle, {0 peak} for a
/// count with its noun, which the other language gives as {0 singular|plural}.
QHash<QString, QString> ReadWords(const QString& code);

/// A text of the engine (Windows-1252) as a window shows it. What is put into its sentences is translated too; what is
/// not known stays as it is.
QString EngineText(std::string_view windows1252);

/// A read-out of the engine: its parts, which gaps of two blanks and more stand between, one by one.
QString EngineReadout(std::string_view windows1252);

/// English while it lives: around what draws or writes a file.
class EnglishScope {
public:
  EnglishScope();
  ~EnglishScope();
  EnglishScope(const EnglishScope&) = delete;
  EnglishScope& operator=(const EnglishScope&) = delete;

private:
  bool before_;
};

}  // namespace texturon
