// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QWidget>
#include <filesystem>
#include <qcustomplot.h>

#include "ui/window/texturon_doc.h"

class QLabel;

namespace texturon {

/// A view of one curve of the document under its title, with a line below that says what the cursors stand on. The
/// wheel zooms, the left button drags, a double click or Home shows all; + and - zoom along X. Only while it can be
/// seen is it drawn and are its results made.
class CCurveView : public QWidget {
  Q_OBJECT

public:
  CCurveView(CTexturonDoc& doc, const WantedResults& wanted, QWidget* parent);

  QCustomPlot& Plot() { return *plot_; }
  QString Title() const;
  QString Readout() const;
  /// Zooms back to everything.
  void ShowAll();
  bool eventFilter(QObject* watched, QEvent* event) override;

protected:
  /// Draws everything, with axes that hold it all.
  virtual void Draw() = 0;
  /// The stretch in view has changed, or something else was drawn.
  virtual void OnViewChanged() {}
  void SetTitle(const QString& title);
  void SetReadout(const QString& text);
  const CTexturonDoc& Doc() const { return doc_; }
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

private:
  void Update();
  void ShowWords();

  CTexturonDoc& doc_;
  WantedResults wanted_;
  QLabel* title_;
  QCustomPlot* plot_;
  QLabel* readout_;
  bool isZoomed_ = false;
  bool isDrawing_ = false;
  std::filesystem::path shownRecord_;
  bool shownMetric_ = true;
};

}  // namespace texturon
