// SPDX-License-Identifier: Apache-2.0

#include "ui/report/table_fit.h"

#include <algorithm>
#include <numeric>

#include "ui/qt_text.h"

namespace texturon {
namespace {

/// In pieces that fit, as far as its words let it.
QStringList Wrapped(const QString& text, int width, const QFontMetrics& letters) {
  QStringList pieces = {QString()};
  for (const QString& word : text.split(' ')) {
    const QString longer = pieces.back().isEmpty() ? word : pieces.back() + ' ' + word;
    if (!pieces.back().isEmpty() && letters.horizontalAdvance(Readable(longer.trimmed())) > width) {
      pieces.back() = pieces.back().trimmed();
      pieces << word;
    } else {
      pieces.back() = longer;
    }
  }
  return pieces;
}

}  // namespace

FittedTable FitTable(const QStringList& titles, const QList<QStringList>& lines, const std::vector<bool>& isNumber,
                     int width, int gap, const QFontMetrics& letters, const QFontMetrics& headLetters) {
  std::vector<int> widths;
  for (const QString& title : titles) widths.push_back(headLetters.horizontalAdvance(title) + gap);
  for (const QStringList& cells : lines) {
    for (std::size_t i = 0; i < widths.size(); ++i) {
      const QString cell = Readable(cells[static_cast<qsizetype>(i)]);
      widths[i] = std::max(widths[i], letters.horizontalAdvance(cell) + gap);
    }
  }
  // A pixel more, for rounding.
  for (int& each : widths) ++each;
  const int numbers = std::accumulate(widths.begin() + 1, widths.end() - 1, 0);
  const int rest = std::max(width - numbers, 0);
  widths.back() = std::min(widths.back(), std::max(rest - widths.front(), rest / 2));
  widths.front() = std::min(widths.front(), rest - widths.back());
  const int spare = rest - widths.front() - widths.back();
  // The first column and the last share what is left.
  widths.front() += spare / 2;
  widths.back() += spare - spare / 2;
  FittedTable table;
  for (std::size_t i = 0; i < widths.size(); ++i) table.columns.push_back({100.0 * widths[i] / width, isNumber[i]});
  for (const QStringList& cells : lines) {
    const QStringList first = Wrapped(cells.front(), widths.front() - gap, letters);
    const QStringList last = Wrapped(cells.back(), widths.back() - gap, letters);
    for (qsizetype part = 0; part < std::max(first.size(), last.size()); ++part) {
      QStringList line = part == 0 ? cells : QStringList(cells.size());
      line.front() = first.value(part);
      line.back() = last.value(part);
      table.lines << line;
    }
  }
  return table;
}

}  // namespace texturon
