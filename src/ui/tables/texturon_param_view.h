// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QWidget>

#include "presentation/table_rows.h"
#include "ui/tables/grid_ctrl.h"
#include "ui/window/texturon_doc.h"

class QLabel;
class QMenu;
class QToolButton;

namespace texturon {

/// The parameters of the document as a table, some side by side as the settings say. Rows out of tolerance stand out by
/// colour and by word, undecided ones by another. While nobody has chosen among the parameters, the common ones are
/// shown, and all of them by a click.
class CTexturonParamView : public QWidget {
  Q_OBJECT

public:
  explicit CTexturonParamView(CTexturonDoc& doc, QWidget* parent = nullptr);

  CGridCtrl& Grid() { return *grid_; }
  const TableChoice& Choice() const { return choice_; }
  /// Kept from one start to the next.
  void Choose(const TableChoice& choice);
  /// Turns to the first row that is out of tolerance, or else undecided.
  void ShowFirstBad();
  /// The menu of the right button over a record of the grid: its rows and its value to copy, its limits, what it is.
  void FillMenu(QMenu& menu, int record);

signals:
  /// Its settings are asked for; the name is that of the catalogue.
  void ParameterActivated(const QString& name);
  void ChoiceChanged();

private:
  void Update();
  void Explain(int record);

  CTexturonDoc& doc_;
  TableChoice choice_;
  QLabel* count_;
  QToolButton* all_;
  CGridCtrl* grid_;
  QStringList names_;  ///< of the grid's records
};

}  // namespace texturon
