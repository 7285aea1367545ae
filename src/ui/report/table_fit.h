// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QFontMetrics>
#include <QList>
#include <QStringList>
#include <vector>

namespace texturon {

/// A column of a table: share of the width in hundredths, and whether it holds numbers.
struct TableColumn {
  double width;
  bool isNumber;
};

struct FittedTable {
  std::vector<TableColumn> columns;
  QList<QStringList> lines;
};

/// Gives every column the room of its longest cell, with `gap` behind it, in a table `width` wide, whose lines and
/// heads are written with these letters. Where that is too much, texts of the first and the last column go on in
/// further lines, whose other cells are empty.
FittedTable FitTable(const QStringList& titles, const QList<QStringList>& lines, const std::vector<bool>& isNumber,
                     int width, int gap, const QFontMetrics& letters, const QFontMetrics& headLetters);

}  // namespace texturon
