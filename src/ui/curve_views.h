#pragma once

#include <QWidget>
#include <qcustomplot.h>

#include "ui/texturon_doc.h"

namespace texturon {

/// Bearing-ratio curve and amplitude distribution of the roughness, with the lines of the core roughness.
class CTexturonBRCView : public QWidget {
  Q_OBJECT

public:
  explicit CTexturonBRCView(CTexturonDoc& doc, QWidget* parent = nullptr);

private:
  void Update();

  CTexturonDoc& doc_;
  QCustomPlot* plot_;
};

/// Amplitude over wavelength of the form-suppressed profile.
class CTexturonSpectView : public QWidget {
  Q_OBJECT

public:
  explicit CTexturonSpectView(CTexturonDoc& doc, QWidget* parent = nullptr);

private:
  void Update();

  CTexturonDoc& doc_;
  QCustomPlot* plot_;
};

}  // namespace texturon
