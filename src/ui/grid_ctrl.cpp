#include "ui/grid_ctrl.h"

#include <QApplication>
#include <QClipboard>
#include <QHeaderView>
#include <QKeyEvent>

namespace texturon {

CGridCtrl::CGridCtrl(const QStringList& titles, QWidget* parent)
    : QTableWidget(0, static_cast<int>(titles.size()), parent) {
  setHorizontalHeaderLabels(titles);
  setEditTriggers(QAbstractItemView::NoEditTriggers);
  setAlternatingRowColors(true);
  verticalHeader()->setVisible(false);
  verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 4);
  horizontalHeader()->setHighlightSections(false);
  setTabKeyNavigation(false);
}

void CGridCtrl::SetCell(int row, int column, const QString& text, Qt::Alignment alignment) {
  auto* const cell = new QTableWidgetItem(text);
  cell->setTextAlignment(alignment | Qt::AlignVCenter);
  setItem(row, column, cell);
}

QString CGridCtrl::AsText() const {
  const bool selectionOnly = selectedItems().size() > 1;
  QStringList lines;
  if (!selectionOnly) {
    QStringList titles;
    for (int column = 0; column < columnCount(); ++column) titles << horizontalHeaderItem(column)->text();
    lines << titles.join('\t');
  }
  for (int row = 0; row < rowCount(); ++row) {
    QStringList cells;
    for (int column = 0; column < columnCount(); ++column) {
      const QTableWidgetItem* const cell = item(row, column);
      if (cell != nullptr && (!selectionOnly || cell->isSelected())) cells << cell->text();
    }
    if (!cells.isEmpty()) lines << cells.join('\t');
  }
  return lines.join('\n') + '\n';
}

void CGridCtrl::keyPressEvent(QKeyEvent* event) {
  if (event->matches(QKeySequence::Copy)) {
    QApplication::clipboard()->setText(AsText());
    return;
  }
  QTableWidget::keyPressEvent(event);
}

}  // namespace texturon
