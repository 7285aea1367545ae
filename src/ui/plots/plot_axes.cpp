// SPDX-License-Identifier: Apache-2.0

#include "ui/plots/plot_axes.h"

#include <algorithm>

#include "ui/qt_text.h"

namespace texturon {
namespace {

class ReadableTicker : public QCPAxisTicker {
protected:
  QString getTickLabel(double tick, const QLocale& locale, QChar format, int precision) override {
    return Readable(QCPAxisTicker::getTickLabel(tick, locale, format, precision));
  }
};

}  // namespace

void FitTicks(QCustomPlot& plot) {
  constexpr int kUsual = 5;
  const int fitting = plot.axisRect()->height() / (2 * plot.fontMetrics().height());
  const int count = std::clamp(fitting, 1, kUsual);
  if (plot.yAxis->ticker()->tickCount() == count) return;
  plot.yAxis->ticker()->setTickCount(count);
  plot.replot(QCustomPlot::rpQueuedReplot);
}

QSharedPointer<QCPAxisTicker> MakeTicker() {
  return QSharedPointer<ReadableTicker>::create();
}

void ApplyPalette(QCustomPlot& plot) {
  const QPalette palette = plot.palette();
  const QColor ink = palette.color(QPalette::Text);
  QColor faint = ink;
  faint.setAlphaF(0.2F);
  QColor zero = ink;
  zero.setAlpha(55);
  plot.setBackground(palette.color(QPalette::Base));
  plot.legend->setBrush(palette.color(QPalette::Base));
  plot.legend->setTextColor(ink);
  for (QCPAxis* const axis : {plot.xAxis, plot.yAxis, plot.xAxis2, plot.yAxis2}) {
    for (const auto setPen : {&QCPAxis::setBasePen, &QCPAxis::setTickPen, &QCPAxis::setSubTickPen}) {
      (axis->*setPen)(QPen(ink));
    }
    axis->setLabelColor(ink);
    axis->setTickLabelColor(ink);
    axis->grid()->setPen(QPen(faint, 0.0, Qt::DotLine));
    axis->grid()->setZeroLinePen(QPen(zero, 0.0));
  }
}

void PutLegendAbove(QCustomPlot& plot, int mostInARow) {
  plot.legend->setVisible(true);
  if (plot.legend->layout() == plot.plotLayout()) return;
  plot.axisRect()->insetLayout()->take(plot.legend);
  plot.plotLayout()->insertRow(0);
  plot.plotLayout()->addElement(0, 0, plot.legend);
  plot.plotLayout()->setRowStretchFactor(0, 0.001);
  plot.plotLayout()->setRowSpacing(0);
  plot.legend->setWrap(mostInARow);
  plot.legend->setFillOrder(QCPLayoutGrid::foColumnsFirst);
  plot.legend->setBorderPen(Qt::NoPen);
  plot.legend->setMargins(QMargins(8, 2, 8, 0));
  // One without names would have the axes below it be as narrow as itself.
  plot.legend->setMaximumSize(QWIDGETSIZE_MAX / 2, QWIDGETSIZE_MAX);
}

}  // namespace texturon
