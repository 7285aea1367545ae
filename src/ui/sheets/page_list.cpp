// SPDX-License-Identifier: Apache-2.0

#include "ui/sheets/page_list.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QGridLayout>
#include <QLabel>
#include <QListWidget>
#include <QSet>
#include <QStackedWidget>
#include <algorithm>
#include <utility>

namespace texturon {
namespace {

/// "Polynomial &order": the first letter of a word that is free, else the first that is free at all.
QString WithLetter(QString text, QSet<QChar>& taken) {
  text.replace("&&", "\x1");
  text.remove('&');
  const auto take = [&](bool beginsWord) {
    for (qsizetype i = 0; i < text.size(); ++i) {
      const QChar letter = text[i].toUpper();
      const bool begins = i == 0 || !text[i - 1].isLetterOrNumber();
      if (letter < 'A' || letter > 'Z' || taken.contains(letter) || (beginsWord && !begins)) continue;
      taken << letter;
      text.insert(i, '&');
      return true;
    }
    return false;
  };
  if (!take(true)) take(false);
  return text.replace("\x1", "&&");
}

void CollectStops(const QLayout& layout, QList<QWidget*>& stops) {
  QList<std::pair<std::pair<int, int>, int>> order;
  const auto* const grid = qobject_cast<const QGridLayout*>(&layout);
  for (int i = 0; i < layout.count(); ++i) {
    int row = i;
    int column = 0;
    int rows = 0;
    int columns = 0;
    if (grid != nullptr) grid->getItemPosition(i, &row, &column, &rows, &columns);
    order << std::pair(std::pair(row, column), i);
  }
  std::sort(order.begin(), order.end());
  for (const auto& [place, i] : order) {
    QLayoutItem* const item = layout.itemAt(i);
    if (item->layout() != nullptr) CollectStops(*item->layout(), stops);
    QWidget* const widget = item->widget();
    if (widget == nullptr) continue;
    if ((widget->focusPolicy() & Qt::TabFocus) != 0 && widget->focusProxy() == nullptr) stops << widget;
    if (widget->layout() != nullptr) CollectStops(*widget->layout(), stops);
  }
}

}  // namespace

CPageList::CPageList(QWidget* parent)
    : QWidget(parent), list_(new QListWidget(this)), box_(new QComboBox(this)), pages_(new QStackedWidget(this)) {
  list_->setAccessibleName(tr("Pages"));
  list_->setObjectName("pages");
  list_->setSizeAdjustPolicy(QAbstractItemView::AdjustToContents);
  list_->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Expanding);
  list_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  box_->setAccessibleName(tr("Pages"));
  box_->setMaxVisibleItems(20);
  auto* const layout = new QGridLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(box_, 0, 0, 1, 2);
  layout->addWidget(list_, 1, 0);
  layout->addWidget(pages_, 1, 1);
  layout->setColumnStretch(1, 1);
  SetNarrow(false);
  connect(box_, &QComboBox::currentIndexChanged, list_, [this](int row) { list_->setCurrentRow(row); });
  connect(list_, &QListWidget::currentRowChanged, this, [this](int row) {
    pages_->setCurrentIndex(row);
    box_->setCurrentIndex(row);
    emit CurrentChanged();
  });
}

void CPageList::Add(QWidget* page, const QString& title) {
  pages_->addWidget(page);
  list_->addItem(title);
  box_->addItem(title);
  list_->setFixedWidth(list_->sizeHintForColumn(0) + 3 * fontMetrics().averageCharWidth());
  if (list_->currentRow() < 0) list_->setCurrentRow(0);
}

void CPageList::SetNarrow(bool narrow) {
  list_->setVisible(!narrow);
  box_->setVisible(narrow);
  // Whoever asks next how wide it must be is told so.
  for (QWidget* widget = this; widget != nullptr; widget = widget->parentWidget()) {
    if (widget->layout() != nullptr) widget->layout()->invalidate();
    widget->updateGeometry();
  }
}

QWidget& CPageList::Chooser() {
  return list_->isHidden() ? static_cast<QWidget&>(*box_) : *list_;
}

int CPageList::count() const {
  return pages_->count();
}

QWidget* CPageList::widget(int index) const {
  return pages_->widget(index);
}

QWidget* CPageList::currentWidget() const {
  return pages_->currentWidget();
}

int CPageList::currentIndex() const {
  return pages_->currentIndex();
}

void CPageList::setCurrentIndex(int index) {
  list_->setCurrentRow(index);
}

QString CPageList::Title(int index) const {
  return list_->item(index)->text();
}

void OrderTabs(QWidget& page) {
  QList<QWidget*> stops;
  if (page.layout() != nullptr) CollectStops(*page.layout(), stops);
  for (qsizetype i = 1; i < stops.size(); ++i) QWidget::setTabOrder(stops[i - 1], stops[i]);
}

void AssignLetters(QWidget& widget, const QString& taken) {
  QSet<QChar> letters(taken.begin(), taken.end());
  for (QAbstractButton* const button : widget.findChildren<QAbstractButton*>()) {
    if (!button->text().isEmpty()) button->setText(WithLetter(button->text(), letters));
  }
  for (QLabel* const label : widget.findChildren<QLabel*>()) {
    if (label->buddy() != nullptr) label->setText(WithLetter(label->text(), letters));
  }
}

}  // namespace texturon
