// SPDX-License-Identifier: Apache-2.0

#include "ui/flow_layout.h"

#include <QStyle>
#include <algorithm>

namespace texturon {

CFlowLayout::CFlowLayout() {
  setContentsMargins(0, 0, 0, 0);
}

CFlowLayout::~CFlowLayout() {
  while (QLayoutItem* const item = takeAt(0)) delete item;
}

QLayoutItem* CFlowLayout::takeAt(int index) {
  return index >= 0 && index < items_.size() ? items_.takeAt(index) : nullptr;
}

QSize CFlowLayout::sizeHint() const {
  QSize size(0, 0);
  for (const QLayoutItem* const item : items_) {
    const QSize wanted = item->sizeHint();
    size = QSize(size.width() + wanted.width() + (size.width() > 0 ? spacing() : 0),
                 std::max(size.height(), wanted.height()));
  }
  return size;
}

QSize CFlowLayout::minimumSize() const {
  QSize size(0, 0);
  for (const QLayoutItem* const item : items_) size = size.expandedTo(item->sizeHint());
  return size;
}

void CFlowLayout::setGeometry(const QRect& place) {
  QLayout::setGeometry(place);
  PutInto(place, true);
}

int CFlowLayout::PutInto(const QRect& place, bool moves) const {
  QPoint at = place.topLeft();
  int lineHeight = 0;
  for (QLayoutItem* const item : items_) {
    if (item->isEmpty()) continue;
    const QSize size = item->sizeHint();
    if (at.x() > place.left() && at.x() + size.width() > place.left() + place.width()) {
      at = QPoint(place.left(), at.y() + lineHeight + spacing());
      lineHeight = 0;
    }
    if (moves) item->setGeometry(QRect(at, size));
    at.rx() += size.width() + spacing();
    lineHeight = std::max(lineHeight, size.height());
  }
  return at.y() + lineHeight - place.top();
}

}  // namespace texturon
