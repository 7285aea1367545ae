#pragma once

#include <QWidget>

#include "ui/grid_ctrl.h"
#include "ui/texturon_doc.h"

namespace texturon {

/// The parameters of the document as a table. Rows out of tolerance stand out by colour and by word.
class CTexturonParamView : public QWidget {
  Q_OBJECT

public:
  explicit CTexturonParamView(CTexturonDoc& doc, QWidget* parent = nullptr);

  CGridCtrl& Grid() { return *grid_; }

private:
  void Update();

  CTexturonDoc& doc_;
  CGridCtrl* grid_;
};

}  // namespace texturon
