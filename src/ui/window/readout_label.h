// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QLabel>

namespace texturon {

/// The read-out of the cursors in the status line. Where the line is too narrow the places go first, which stand beside
/// the cursors, then the slope, then the differences; the tool tip has the whole.
class CReadoutLabel : public QLabel {
  Q_OBJECT

public:
  explicit CReadoutLabel(QWidget* parent);

  void SetReadout(const QString& readout);
  QString Readout() const { return whole_; }

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

protected:
  void resizeEvent(QResizeEvent* event) override;

private:
  void Fit();

  QString whole_;
};

/// The read-out in no more than so many pixels. Its parts are separated by two blanks or more.
QString ShortReadout(const QString& readout, int width, const QFontMetrics& metrics);

}  // namespace texturon
