// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QList>
#include <QSet>
#include <QStringList>
#include <QTableWidget>
#include <utility>
#include <vector>

namespace texturon {

/// A table of text that is only read and copied. Its records stand in groups of columns side by side and are read down
/// each group; a group has only the columns in which one of its records says something. The groups fill the width, and
/// there are fewer of them where they would not fit into it. Ctrl+C takes the records of the selected cells, or all of
/// them, as text with tabs, one record a line.
class CGridCtrl : public QTableWidget {
  Q_OBJECT

public:
  struct Record {
    QStringList cells;  ///< as many as there are titles
    bool standsOut = false;
    QString tip = {};
    bool isHeading = false;    ///< only the first cell counts; is not copied
    bool isUndecided = false;  ///< stands out in another colour
  };

  /// `numbers`: the columns that hold numbers, from 0.
  explicit CGridCtrl(const QStringList& titles, const QSet<int>& numbers = {}, QWidget* parent = nullptr);

  /// `groups`: the most side by side.
  void Show(const QList<Record>& records, int groups = 1);
  const QList<Record>& Records() const { return records_; }
  /// How many groups stand side by side.
  int Groups() const;
  /// The record in a cell; none: -1.
  int RecordAt(int row, int column) const;
  /// Turns to a record.
  void Select(int record);
  /// The selected records, or the whole table with its titles where at most one cell is selected.
  QString AsText() const;

signals:
  /// A record was double-clicked or entered.
  void RecordActivated(int record);

protected:
  void keyPressEvent(QKeyEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

private:
  /// Lays out as many groups as fit.
  void Fit();
  void FitInto(int room);
  int LayOut(int groups);
  void LayOutGroup(int group);
  void SetCell(int row, int column, const Record& record, int cell);
  void Activate(int row, int column);

  QStringList titles_;
  QSet<int> numbers_;
  QList<Record> records_;
  int mostGroups_ = 1;
  int fittedWidth_ = -1;
  bool isFitting_ = false;
  int rowsOfGroup_ = 0;
  std::vector<std::pair<int, int>> cutColumns_;  ///< narrower than what they hold, with the width that would do
  QList<int> groupOfColumn_;                     ///< -1: the gap between two groups
};

}  // namespace texturon
