// SPDX-License-Identifier: Apache-2.0

#include "ui/tables/grid_ctrl.h"

#include <QApplication>
#include <QClipboard>
#include <QHeaderView>
#include <QKeyEvent>
#include <algorithm>
#include <set>

namespace texturon {
namespace {

/// Columns that every group has.
constexpr int kAlwaysShown = 2;

}  // namespace

CGridCtrl::CGridCtrl(const QStringList& titles, const QSet<int>& numbers, QWidget* parent)
    : QTableWidget(parent), titles_(titles), numbers_(numbers) {
  setEditTriggers(QAbstractItemView::NoEditTriggers);
  setAlternatingRowColors(true);
  verticalHeader()->setVisible(false);
  verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 4);
  horizontalHeader()->setHighlightSections(false);
  horizontalHeader()->setMinimumSectionSize(fontMetrics().averageCharWidth());
  setTabKeyNavigation(false);
  setWordWrap(false);
  connect(this, &QTableWidget::cellDoubleClicked, this, [this](int row, int column) {
    if (const int record = RecordAt(row, column); record >= 0) emit RecordActivated(record);
  });
  Show({}, 1);
}

void CGridCtrl::SetCell(int row, int column, const QString& text, Qt::Alignment alignment, bool standsOut) {
  auto* const cell = new QTableWidgetItem(text);
  cell->setTextAlignment(alignment | Qt::AlignVCenter);
  if (standsOut) {
    // White on it reads well beside a light and a dark ground.
    cell->setBackground(QColor(0xB0, 0x48, 0x00));
    cell->setForeground(Qt::white);
    QFont bold = font();
    bold.setBold(true);
    cell->setFont(bold);
  }
  setItem(row, column, cell);
}

void CGridCtrl::Show(const QList<Record>& records, int groups) {
  setUpdatesEnabled(false);
  records_ = records;
  const int count = static_cast<int>(records.size());
  rowsOfGroup_ = (count + groups - 1) / groups;
  groupOfColumn_.clear();
  clear();
  setColumnCount(0);
  setRowCount(rowsOfGroup_);
  const int used = count == 0 ? 1 : (count + rowsOfGroup_ - 1) / rowsOfGroup_;
  for (int group = 0; group < used; ++group) LayOutGroup(group);
  resizeColumnsToContents();
  for (int column = 0; column < columnCount(); ++column) {
    if (groupOfColumn_[column] < 0) setColumnWidth(column, fontMetrics().averageCharWidth() * 2);
  }
  setUpdatesEnabled(true);
}

void CGridCtrl::LayOutGroup(int group) {
  const int first = group * rowsOfGroup_;
  const int end = std::min(first + rowsOfGroup_, static_cast<int>(records_.size()));
  const auto append = [this](const QString& title, int owner) {
    const int column = columnCount();
    insertColumn(column);
    setHorizontalHeaderItem(column, new QTableWidgetItem(title));
    groupOfColumn_ << owner;
    return column;
  };
  if (group > 0) append({}, -1);
  for (int title = 0; title < titles_.size(); ++title) {
    const bool says = std::any_of(records_.begin() + first, records_.begin() + end,
                                  [title](const Record& record) { return !record.cells[title].isEmpty(); });
    if (!says && title >= kAlwaysShown) continue;
    const int column = append(titles_[title], group);
    const Qt::Alignment alignment = numbers_.contains(title) ? Qt::AlignRight : Qt::AlignLeft;
    horizontalHeaderItem(column)->setTextAlignment(alignment | Qt::AlignVCenter);
    for (int i = first; i < end; ++i) {
      SetCell(i - first, column, records_[i].cells[title], alignment, records_[i].standsOut);
    }
  }
}

int CGridCtrl::RecordAt(int row, int column) const {
  if (row < 0 || column < 0 || column >= groupOfColumn_.size() || groupOfColumn_[column] < 0) return -1;
  const int record = groupOfColumn_[column] * rowsOfGroup_ + row;
  return record < records_.size() ? record : -1;
}

QString CGridCtrl::AsText() const {
  std::set<int> chosen;
  for (const QModelIndex& index : selectedIndexes()) {
    if (const int record = RecordAt(index.row(), index.column()); record >= 0) chosen.insert(record);
  }
  const bool isWhole = selectedIndexes().size() <= 1;
  QStringList lines;
  if (isWhole) lines << titles_.join('\t');
  for (int i = 0; i < records_.size(); ++i) {
    if (isWhole || chosen.contains(i)) lines << records_[i].cells.join('\t');
  }
  return lines.join('\n') + '\n';
}

void CGridCtrl::keyPressEvent(QKeyEvent* event) {
  if (event->matches(QKeySequence::Copy)) {
    QApplication::clipboard()->setText(AsText());
    return;
  }
  if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
    if (const int record = RecordAt(currentRow(), currentColumn()); record >= 0) emit RecordActivated(record);
    return;
  }
  QTableWidget::keyPressEvent(event);
}

}  // namespace texturon
