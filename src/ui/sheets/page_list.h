// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QWidget>

class QComboBox;
class QListWidget;
class QStackedWidget;

namespace texturon {

/// Pages of which one is seen, chosen from a list of their titles at the left, or from a box above them where that
/// would be too wide.
class CPageList : public QWidget {
  Q_OBJECT

public:
  explicit CPageList(QWidget* parent);

  void Add(QWidget* page, const QString& title);
  int count() const;
  QWidget* widget(int index) const;
  QWidget* currentWidget() const;
  int currentIndex() const;
  void setCurrentIndex(int index);
  QString Title(int index) const;
  QListWidget& List() { return *list_; }
  void SetNarrow(bool narrow);
  /// What the pages are chosen with.
  QWidget& Chooser();

signals:
  void CurrentChanged();

private:
  QListWidget* list_;
  QComboBox* box_;
  QStackedWidget* pages_;
};

/// Tab goes through the widgets of a page as its layout has them, row by row.
void OrderTabs(QWidget& page);

/// Gives every label with a field, every box and every button of a widget that can be seen an Alt letter of its own,
/// none of those that are taken.
void AssignLetters(QWidget& widget, const QString& taken);

}  // namespace texturon
