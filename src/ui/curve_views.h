#pragma once

#include <QWidget>
#include <qcustomplot.h>

#include "ui/texturon_doc.h"

namespace texturon {

// The curves themselves, for the views and the report.
void DrawBearingRatio(QCustomPlot& plot, const Document& document);
void DrawSpectrum(QCustomPlot& plot, const Document& document);

/// Bearing-ratio curve and amplitude distribution of the roughness, with the lines of the core roughness.
class CTexturonBRCView : public QWidget {
  Q_OBJECT

public:
  explicit CTexturonBRCView(CTexturonDoc& doc, QWidget* parent = nullptr);

protected:
  void showEvent(QShowEvent* event) override;

private:
  /// Draws where it can be seen; what is hidden is drawn once it is shown.
  void Update();

  CTexturonDoc& doc_;
  QCustomPlot* plot_;
};

/// Amplitude over wavelength of the form-suppressed profile.
class CTexturonSpectView : public QWidget {
  Q_OBJECT

public:
  explicit CTexturonSpectView(CTexturonDoc& doc, QWidget* parent = nullptr);

protected:
  void showEvent(QShowEvent* event) override;

private:
  /// Draws where it can be seen; what is hidden is drawn once it is shown.
  void Update();

  CTexturonDoc& doc_;
  QCustomPlot* plot_;
};

}  // namespace texturon
