// SPDX-License-Identifier: Apache-2.0

#include "ui/language.h"

#include <QCoreApplication>
#include <QFile>
#include <QLibraryInfo>
#include <QRegularExpression>
#include <QSettings>
#include <QTranslator>
#include <algorithm>
#include <memory>
#include <vector>

#include "ui/qt_text.h"

namespace texturon {
namespace {

constexpr const char* kLanguageKey = "language";
constexpr Language kLanguages[] = {{"en", "English"}, {"de", "Deutsch"}};

/// What a line of the file writes as \n, \t, \\ and \u00B5.
QString Unescaped(const QString& text) {
  QString out;
  for (qsizetype i = 0; i < text.size(); ++i) {
    if (text[i] != '\\' || i + 1 == text.size()) {
      out += text[i];
      continue;
    }
    const QChar letter = text[++i];
    if (letter == 'u') {
      constexpr int kDigits = 4;
      out += QChar(text.mid(i + 1, kDigits).toUShort(nullptr, 16));
      i += kDigits;
    } else {
      out += letter == 'n' ? QChar('\n') : letter == 't' ? QChar('\t') : letter;
    }
  }
  return out;
}

/// A place of a sentence: its number, and what stands behind that.
const QRegularExpression& Place() {
  static const QRegularExpression place("\\{(\\d)(?: ([^}]*))?\\}");
  return place;
}

/// A sentence of the engine with places.
struct Sentence {
  QRegularExpression english;
  std::vector<int> order;  ///< which place each capture is
  QString other;
  qsizetype letters = 0;  ///< outside the places
};

Sentence SentenceOf(const QString& english, const QString& other) {
  Sentence sentence;
  sentence.other = other;
  QString pattern;
  qsizetype from = 0;
  for (auto places = Place().globalMatch(english); places.hasNext();) {
    const auto place = places.next();
    const QString between = english.mid(from, place.capturedStart() - from);
    const QString noun = place.captured(2);
    pattern += QRegularExpression::escape(between);
    sentence.letters += between.size();
    if (noun.isEmpty()) {
      pattern += "(.+?)";
    } else if (noun == "deg") {
      pattern += QString::fromUtf8("(\\S+\u00B0)");
    } else if (noun == "mm" || noun == "um" || noun == "%") {
      pattern += "(\\S+ \\S+)";
    } else {
      pattern += "(\\w+) " + QRegularExpression::escape(noun) + "s?";
    }
    sentence.order.push_back(place.captured(1).toInt());
    from = place.capturedEnd();
  }
  pattern += QRegularExpression::escape(english.mid(from));
  sentence.letters += english.size() - from;
  sentence.english =
      QRegularExpression(QRegularExpression::anchoredPattern(pattern), QRegularExpression::DotMatchesEverythingOption);
  return sentence;
}

/// The one catalogue in use. A text has one translation, wherever it stands.
class CWords : public QTranslator {
public:
  explicit CWords(const QString& code) : words_(ReadWords(code)) {
    for (auto word = words_.cbegin(); word != words_.cend(); ++word) {
      if (word.key().contains(Place())) sentences_.push_back(SentenceOf(word.key(), word.value()));
    }
    // The one that says most of the text itself.
    std::sort(sentences_.begin(), sentences_.end(), [](const Sentence& a, const Sentence& b) {
      return a.letters != b.letters ? a.letters > b.letters : a.other < b.other;
    });
  }

  bool isEmpty() const override { return words_.isEmpty(); }

  QString translate(const char* /*context*/, const char* source, const char* /*remark*/, int n) const override {
    if (isOff) return {};
    const QString english = QString::fromUtf8(source);
    const QString word = words_.value(english);
    if (word.isNull()) return {};
    return english.contains("%n") ? word.section('|', n == 1 ? 0 : 1, n == 1 ? 0 : 1) : word;
  }

  QString OfEngine(const QString& english, int depth = 0) const {
    if (isOff || english.isEmpty()) return english;
    if (const auto word = words_.constFind(english); word != words_.cend()) return *word;
    constexpr int kDeepest = 3;
    for (const Sentence& sentence : sentences_) {
      if (depth == kDeepest) break;
      if (const auto match = sentence.english.match(english); match.hasMatch()) return Filled(sentence, match, depth);
    }
    return english;
  }

  static inline bool isOff = false;

private:
  QString Filled(const Sentence& sentence, const QRegularExpressionMatch& match, int depth) const {
    QString text;
    qsizetype from = 0;
    for (auto places = Place().globalMatch(sentence.other); places.hasNext();) {
      const auto place = places.next();
      text += sentence.other.mid(from, place.capturedStart() - from);
      from = place.capturedEnd();
      const auto at = std::find(sentence.order.begin(), sentence.order.end(), place.captured(1).toInt());
      const QString english = match.captured(static_cast<int>(at - sentence.order.begin()) + 1);
      text += OfEngine(english, depth + 1);
      const QStringList nouns = place.captured(2).split('|');
      if (nouns.size() == 2) text += " " + nouns[english == "one" ? 0 : 1];
    }
    return text + sentence.other.mid(from);
  }

  QHash<QString, QString> words_;
  std::vector<Sentence> sentences_;
};

std::unique_ptr<CWords>& Words() {
  static std::unique_ptr<CWords> words;
  return words;
}

}  // namespace

std::span<const Language> Languages() {
  return kLanguages;
}

QString ChosenLanguage() {
  return QSettings().value(kLanguageKey, kLanguages[0].code).toString();
}

void ChooseLanguage(const QString& code) {
  QSettings().setValue(kLanguageKey, code);
}

void UseLanguage(const QString& code) {
  Words().reset();  // takes itself off
  static QTranslator library;
  QCoreApplication::removeTranslator(&library);
  const auto isCode = [&code](const Language& language) { return code == language.code; };
  if (std::none_of(std::begin(kLanguages), std::end(kLanguages), isCode)) return;
  // The library's own texts, where the system has them; those that matter are among ours. English has its singulars.
  if (code != kLanguages[0].code &&
      library.load("qtbase_" + code, QLibraryInfo::path(QLibraryInfo::TranslationsPath))) {
    QCoreApplication::installTranslator(&library);
  }
  Words() = std::make_unique<CWords>(code);
  QCoreApplication::installTranslator(Words().get());
}

QHash<QString, QString> ReadWords(const QString& code) {
  QHash<QString, QString> words;
  QFile file(":/translations/" + code + ".txt");
  if (!file.open(QIODevice::ReadOnly)) return words;
  for (const QString& line : QString::fromUtf8(file.readAll()).split('\n')) {
    const qsizetype tab = line.indexOf('\t');
    if (tab < 0 || line.startsWith('#')) continue;
    words.insert(Unescaped(line.left(tab)), Unescaped(line.mid(tab + 1)));
  }
  return words;
}

QString EngineText(std::string_view windows1252) {
  const QString english = FromText(windows1252);
  return Words() == nullptr ? english : Words()->OfEngine(english);
}

QString EngineReadout(std::string_view windows1252) {
  static const QRegularExpression gap(" {2,}");
  const QString english = FromText(windows1252);
  QString text;
  const auto add = [&text](const QString& part) {
    const bool isRemark = part.startsWith('(') && part.endsWith(')');
    const QString shown = EngineText(ToText(isRemark ? part.sliced(1, part.size() - 2) : part));
    text += isRemark ? '(' + shown + ')' : shown;
  };
  qsizetype from = 0;
  for (auto gaps = gap.globalMatch(english); gaps.hasNext();) {
    const auto found = gaps.next();
    add(english.mid(from, found.capturedStart() - from));
    text += found.captured();
    from = found.capturedEnd();
  }
  add(english.mid(from));
  return text;
}

EnglishScope::EnglishScope() : before_(CWords::isOff) {
  CWords::isOff = true;
}

EnglishScope::~EnglishScope() {
  CWords::isOff = before_;
}

}  // namespace texturon
