// SPDX-License-Identifier: Apache-2.0

#include "ui/tables/grid_ctrl.h"

#include <QApplication>
#include <QClipboard>
#include <QHeaderView>
#include <QKeyEvent>
#include <algorithm>
#include <set>

#include "ui/colours.h"
#include "ui/qt_text.h"

namespace texturon {
namespace {

/// Columns that every group has.
constexpr int kAlwaysShown = 2;
/// Of a last column that is cut.
constexpr int kFewestCharacters = 12;

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
  connect(this, &QTableWidget::cellDoubleClicked, this, [this](int row, int column) { Activate(row, column); });
  Show({}, 1);
}

void CGridCtrl::Activate(int row, int column) {
  const int record = RecordAt(row, column);
  if (record >= 0 && !records_[record].isHeading) emit RecordActivated(record);
}

void CGridCtrl::Select(int record) {
  if (record < 0 || record >= records_.size()) return;
  const int group = record / rowsOfGroup_;
  setCurrentCell(record % rowsOfGroup_, static_cast<int>(groupOfColumn_.indexOf(group)));
  scrollToItem(currentItem(), QAbstractItemView::PositionAtCenter);
  setFocus();
}

void CGridCtrl::resizeEvent(QResizeEvent* event) {
  QTableWidget::resizeEvent(event);
  Fit();
}

void CGridCtrl::SetCell(int row, int column, const Record& record, int cell) {
  auto* const item = new QTableWidgetItem(Readable(record.cells[cell]));
  const bool isNumber = numbers_.contains(cell) && !record.isHeading;
  item->setTextAlignment((isNumber ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter);
  item->setToolTip(record.tip);
  QFont bold = font();
  bold.setBold(true);
  if (record.standsOut || record.isUndecided) {
    item->setBackground(record.standsOut ? VerdictGround(false) : UndecidedGround());
    item->setForeground(Qt::white);
    item->setFont(bold);
  }
  if (record.isHeading) {
    item->setFont(bold);
    item->setFlags(Qt::ItemIsEnabled);
  }
  setItem(row, column, item);
}

void CGridCtrl::Show(const QList<Record>& records, int groups) {
  records_ = records;
  mostGroups_ = std::max(groups, 1);
  fittedWidth_ = -1;
  Fit();
}

int CGridCtrl::Groups() const {
  const int last = groupOfColumn_.isEmpty() ? 0 : groupOfColumn_.back();
  return last + 1;
}

void CGridCtrl::Fit() {
  // Fewer groups are more rows, whose scroll bar takes of the width: it is fitted in again, but not for ever.
  if (isFitting_) return;
  isFitting_ = true;
  for (int round = 0; round < 2 && viewport()->width() != fittedWidth_; ++round) FitInto(viewport()->width());
  isFitting_ = false;
}

void CGridCtrl::FitInto(int room) {
  fittedWidth_ = room;
  setUpdatesEnabled(false);
  int width = LayOut(mostGroups_);
  // Before the table is seen its width means nothing.
  for (int groups = Groups() - 1; groups > 0 && width > room && isVisible(); --groups) width = LayOut(groups);
  if (width > room && Groups() == 1 && columnCount() > 0 && isVisible()) {
    // A remark is cut rather than the table moved sideways.
    const int last = columnCount() - 1;
    const int less = std::min(width - room, columnWidth(last) - fontMetrics().averageCharWidth() * kFewestCharacters);
    if (less > 0) setColumnWidth(last, columnWidth(last) - less);
    if (less > 0) width -= less;
  }
  // What was cut for the sake of more groups gets of the room that is left.
  for (const auto& [column, whole] : cutColumns_) {
    const int more =
        std::min(whole - columnWidth(column), std::max(room - width, 0) / static_cast<int>(cutColumns_.size()));
    setColumnWidth(column, columnWidth(column) + more);
    width += more;
  }
  if (width < room) {
    int left = room - width;
    for (int column = columnCount() - 1; column >= 0 && width > 0; --column) {
      const int more = column == 0 ? left : (room - width) * columnWidth(column) / width;
      setColumnWidth(column, columnWidth(column) + more);
      left -= more;
    }
  }
  setUpdatesEnabled(true);
}

int CGridCtrl::LayOut(int groups) {
  const int count = static_cast<int>(records_.size());
  rowsOfGroup_ = (count + groups - 1) / groups;
  groupOfColumn_.clear();
  clearSpans();
  clear();
  setColumnCount(0);
  setRowCount(rowsOfGroup_);
  const int used = count == 0 ? 1 : (count + rowsOfGroup_ - 1) / rowsOfGroup_;
  for (int group = 0; group < used; ++group) LayOutGroup(group);
  resizeColumnsToContents();
  cutColumns_.clear();
  constexpr int kMostCharacters = 36;  // of a remark, which its tip has whole
  for (int column = 0; column < columnCount() && used > 1; ++column) {
    const int whole = columnWidth(column);
    const int most = fontMetrics().averageCharWidth() * kMostCharacters;
    if (whole <= most) continue;
    cutColumns_.emplace_back(column, whole);
    setColumnWidth(column, most);
  }
  int width = 0;
  for (int column = 0; column < columnCount(); ++column) {
    if (groupOfColumn_[column] < 0) setColumnWidth(column, fontMetrics().averageCharWidth() * 2);
    width += columnWidth(column);
  }
  return width;
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
    const bool says = std::any_of(records_.begin() + first, records_.begin() + end, [title](const Record& record) {
      return !record.isHeading && !record.cells[title].isEmpty();
    });
    if (!says && title >= kAlwaysShown) continue;
    const int column = append(titles_[title], group);
    const Qt::Alignment alignment = numbers_.contains(title) ? Qt::AlignRight : Qt::AlignLeft;
    horizontalHeaderItem(column)->setTextAlignment(alignment | Qt::AlignVCenter);
    for (int i = first; i < end; ++i) SetCell(i - first, column, records_[i], title);
  }
  const int begin = static_cast<int>(groupOfColumn_.indexOf(group));
  const int columns = columnCount() - begin;
  for (int i = first; i < end; ++i) {
    if (records_[i].isHeading && columns > 1) setSpan(i - first, begin, 1, columns);
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
    if (records_[i].isHeading) continue;
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
    return Activate(currentRow(), currentColumn());
  }
  QTableWidget::keyPressEvent(event);
}

}  // namespace texturon
