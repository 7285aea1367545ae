// SPDX-License-Identifier: Apache-2.0

#include "ui/qt_text.h"

#include <QFontMetrics>
#include <QRegularExpression>
#include <QScreen>
#include <QWidget>
#include <algorithm>

#include "base/charset.h"
#include "base/number_text.h"
#include "platform/platform.h"
#include "presentation/readable_text.h"

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

QString Readable(const QString& text) {
  // Most numbers of an axis, at every pan.
  const auto isPlain = [](QChar letter) { return letter.isDigit() || letter == '.'; };
  if (std::all_of(text.cbegin(), text.cend(), isPlain)) return text;
  return QString::fromStdString(ReadableText(text.toStdString()));
}

QString WithShortNumbers(const QString& text) {
  static const QRegularExpression number(R"((?<![\w.])\d+\.\d{9,}(?![\w.]))");
  constexpr int kFigures = 7;
  QString out;
  qsizetype from = 0;
  for (auto found = number.globalMatch(text); found.hasNext();) {
    const auto match = found.next();
    const double value = ParseDouble(match.captured().toStdString()).value;
    out += text.mid(from, match.capturedStart() - from) + FromText(SignificantText(value, kFigures));
    from = match.capturedEnd();
  }
  return out + text.mid(from);
}

QString AsSentence(const QString& remark) {
  QString text = WithShortNumbers(remark);
  static const QRegularExpression file("^\\S*[./\\\\]\\S");
  static const QRegularExpression micrometres("(?<=\\d) um\\b");
  text.replace(micrometres, QString::fromUtf8(" \u00B5m"));
  if (!text.isEmpty() && !file.match(text).hasMatch()) text[0] = text[0].toUpper();
  return text.isEmpty() || text.back().isPunct() ? text : text + '.';
}

void ResizeInCharacters(QWidget& window, int characters, int lines) {
  constexpr double kShareOfScreen = 0.9;
  const QFontMetrics metrics = window.fontMetrics();
  const QSize wanted(metrics.averageCharWidth() * characters, metrics.height() * lines);
  window.resize(wanted.boundedTo(window.screen()->availableSize() * kShareOfScreen));
}

}  // namespace texturon
