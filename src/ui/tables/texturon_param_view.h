// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QWidget>

#include "ui/tables/grid_ctrl.h"
#include "ui/window/texturon_doc.h"

namespace texturon {

/// The parameters of the document as a table, some side by side as the settings say. Rows out of tolerance stand out by
/// colour and by word.
class CTexturonParamView : public QWidget {
  Q_OBJECT

public:
  explicit CTexturonParamView(CTexturonDoc& doc, QWidget* parent = nullptr);

  CGridCtrl& Grid() { return *grid_; }

signals:
  /// Its settings are asked for; the name is that of the catalogue.
  void ParameterActivated(const QString& name);

private:
  void Update();

  CTexturonDoc& doc_;
  CGridCtrl* grid_;
  QStringList names_;  ///< of the grid's records
};

}  // namespace texturon
