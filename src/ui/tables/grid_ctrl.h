// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QList>
#include <QSet>
#include <QStringList>
#include <QTableWidget>

namespace texturon {

/// A table of text that is only read and copied. Its records stand in groups of columns side by side and are read down
/// each group; a group has only the columns in which one of its records says something. Ctrl+C takes the records of the
/// selected cells, or all of them, as text with tabs, one record a line.
class CGridCtrl : public QTableWidget {
  Q_OBJECT

public:
  struct Record {
    QStringList cells;  ///< as many as there are titles
    bool standsOut = false;
  };

  /// `numbers`: the columns that hold numbers, from 0.
  explicit CGridCtrl(const QStringList& titles, const QSet<int>& numbers = {}, QWidget* parent = nullptr);

  void Show(const QList<Record>& records, int groups = 1);
  const QList<Record>& Records() const { return records_; }
  /// The record in a cell; none: -1.
  int RecordAt(int row, int column) const;
  /// The selected records, or the whole table with its titles where at most one cell is selected.
  QString AsText() const;

signals:
  /// A record was double-clicked or entered.
  void RecordActivated(int record);

protected:
  void keyPressEvent(QKeyEvent* event) override;

private:
  void LayOutGroup(int group);
  void SetCell(int row, int column, const QString& text, Qt::Alignment alignment, bool standsOut);

  QStringList titles_;
  QSet<int> numbers_;
  QList<Record> records_;
  int rowsOfGroup_ = 0;
  QList<int> groupOfColumn_;  ///< -1: the gap between two groups
};

}  // namespace texturon
