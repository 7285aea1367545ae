// SPDX-License-Identifier: Apache-2.0

#include "ui/qt_text.h"

#include <QFontMetrics>
#include <QRegularExpression>
#include <QScreen>
#include <QWidget>
#include <algorithm>

#include "base/charset.h"
#include "platform/platform.h"

namespace texturon {

QString FromText(std::string_view windows1252) {
  return QString::fromStdString(Utf8FromWindows1252(windows1252));
}

std::string ToText(const QString& text) {
  return Windows1252FromUtf8(text.toStdString());
}

QString FromPath(const std::filesystem::path& path) {
  return QString::fromStdString(SystemTextFromPath(path));
}

std::filesystem::path ToPath(const QString& path) {
  return PathFromSystemText(path.toStdString());
}

namespace {

QString Raised(const QString& digits) {
  constexpr char16_t kDigits[] = u"\u2070\u00B9\u00B2\u00B3\u2074\u2075\u2076\u2077\u2078\u2079";
  QString text;
  for (const QChar digit : digits) text += digit.isDigit() ? QChar(kDigits[digit.digitValue()]) : QChar(0x207B);
  return text;
}

/// Replaces every match by what `made` makes of it.
template <typename Make>
void Replace(QString& text, const QRegularExpression& pattern, const Make& made) {
  qsizetype from = 0;
  for (auto match = pattern.match(text); match.hasMatch(); match = pattern.match(text, from)) {
    const QString next = made(match);
    text.replace(match.capturedStart(), match.capturedLength(), next);
    from = match.capturedStart() + next.size();
  }
}

}  // namespace

QString Readable(QString text) {
  // Most numbers of an axis, at every pan.
  const auto isPlain = [](QChar letter) { return letter.isDigit() || letter == '.'; };
  if (std::all_of(text.cbegin(), text.cend(), isPlain)) return text;
  static const QRegularExpression zero("(?<![\\w.\\-])-(?=0(\\.0*)?(?![\\w.]))");
  // Of a whole number only: a digest of hexadecimal digits may end as one with an exponent does.
  static const QRegularExpression exponent("(?<![\\w.])([0-9]+\\.?[0-9]*)[eE]([+-]?)0*([0-9]+)(?![\\w.])");
  static const QRegularExpression unit("\\b(m|mm|\u00B5m|in|\u00B5in)(-?[2-9])\\b");
  static const QRegularExpression minus("(?<![\\w.\\-])-(?=[0-9])");
  text.replace(zero, "");
  Replace(text, exponent, [](const QRegularExpressionMatch& match) {
    if (match.captured(3) == "0") return match.captured(1);
    return match.captured(1) + QString::fromUtf8("\u00B710") +
           Raised((match.captured(2) == "-" ? "-" : "") + match.captured(3));
  });
  Replace(text, unit,
          [](const QRegularExpressionMatch& match) { return match.captured(1) + Raised(match.captured(2)); });
  text.replace(minus, QString(QChar(0x2212)));
  return text;
}

void ResizeInCharacters(QWidget& window, int characters, int lines) {
  constexpr double kShareOfScreen = 0.9;
  const QFontMetrics metrics = window.fontMetrics();
  const QSize wanted(metrics.averageCharWidth() * characters, metrics.height() * lines);
  window.resize(wanted.boundedTo(window.screen()->availableSize() * kShareOfScreen));
}

}  // namespace texturon
