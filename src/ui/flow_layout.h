// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QLayout>
#include <QList>

namespace texturon {

/// Items from left to right, in as many lines as the width asks for. Each has its own preferred size.
class CFlowLayout : public QLayout {
public:
  CFlowLayout();
  ~CFlowLayout() override;

  void addItem(QLayoutItem* item) override { items_ << item; }
  int count() const override { return static_cast<int>(items_.size()); }
  QLayoutItem* itemAt(int index) const override { return items_.value(index); }
  QLayoutItem* takeAt(int index) override;
  Qt::Orientations expandingDirections() const override { return {}; }
  bool hasHeightForWidth() const override { return true; }
  int heightForWidth(int width) const override { return PutInto(QRect(0, 0, width, 0), false); }
  /// One line.
  QSize sizeHint() const override;
  /// The widest item.
  QSize minimumSize() const override;
  void setGeometry(const QRect& place) override;

private:
  /// The height that the items take; with `moves` they are put there.
  int PutInto(const QRect& place, bool moves) const;

  QList<QLayoutItem*> items_;
};

}  // namespace texturon
