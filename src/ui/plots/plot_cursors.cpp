// SPDX-License-Identifier: Apache-2.0

#include "ui/plots/plot_cursors.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <cmath>
#include <qcustomplot.h>
#include <utility>

#include "ui/plots/plot_items.h"

namespace texturon {

CPlotCursors::CPlotCursors(QCustomPlot& plot, bool hasLevel) : QObject(&plot), plot_(plot) {
  plot.addLayer(kCursorLayer);
  plot.layer(kCursorLayer)->setMode(QCPLayer::lmBuffered);
  upright_ = new QCPItemStraightLine(&plot);
  upright_->setLayer(kCursorLayer);
  if (hasLevel) {
    level_ = new QCPItemStraightLine(&plot);
    level_->setLayer(kCursorLayer);
  }
  plot.setMouseTracking(true);
  plot.installEventFilter(this);
}

void CPlotCursors::Put(double x, double y) {
  x_ = settle_ ? settle_(x) : x;
  y_ = y;
  Draw();
}

void CPlotCursors::Begin() {
  if (!std::isnan(x_)) return;
  const QCPRange across = plot_.xAxis->range();
  const bool isLog = plot_.xAxis->scaleType() == QCPAxis::stLogarithmic;
  Put(isLog ? std::sqrt(across.lower * across.upper) : across.center(), plot_.yAxis->range().center());
}

void CPlotCursors::SetVisible(bool visible) {
  upright_->setVisible(visible);
  if (level_ != nullptr) level_->setVisible(visible);
}

void CPlotCursors::Confine(std::function<double(double)> settle, std::function<double(double, int)> step) {
  settle_ = std::move(settle);
  step_ = std::move(step);
}

void CPlotCursors::Draw() {
  const QPen pen(plot_.palette().color(QPalette::Text), 1.0);
  upright_->point1->setCoords(x_, 0.0);
  upright_->point2->setCoords(x_, 1.0);
  upright_->setPen(pen);
  if (level_ != nullptr) {
    level_->point1->setCoords(plot_.xAxis->range().lower, y_);
    level_->point2->setCoords(plot_.xAxis->range().upper, y_);
    level_->setPen(pen);
  }
  plot_.layer(kCursorLayer)->replot();
  emit Moved();
}

CPlotCursors::Grabbed CPlotCursors::At(const QPointF& position) const {
  if (!upright_->visible() || !plot_.axisRect()->rect().contains(position.toPoint())) return Grabbed::kNone;
  const double reach = plot_.fontMetrics().height() / 2.0;
  const double across = std::abs(plot_.xAxis->coordToPixel(x_) - position.x());
  const double up = level_ == nullptr ? reach + 1.0 : std::abs(plot_.yAxis->coordToPixel(y_) - position.y());
  if (std::min(across, up) > reach) return Grabbed::kNone;
  return across <= up ? Grabbed::kUpright : Grabbed::kLevel;
}

bool CPlotCursors::OnKey(int key, bool fast) {
  if (!upright_->visible()) return false;
  const int steps = (fast ? 20 : 1) * (key == Qt::Key_Left || key == Qt::Key_Down ? -1 : 1);
  if (key == Qt::Key_Left || key == Qt::Key_Right) {
    const double x = step_ ? step_(x_, steps) : plot_.xAxis->pixelToCoord(plot_.xAxis->coordToPixel(x_) + steps);
    Put(x, y_);
    return true;
  }
  if (level_ == nullptr || (key != Qt::Key_Up && key != Qt::Key_Down)) return false;
  Put(x_, plot_.yAxis->pixelToCoord(plot_.yAxis->coordToPixel(y_) - steps));
  return true;
}

bool CPlotCursors::eventFilter(QObject* /*watched*/, QEvent* event) {
  switch (event->type()) {
    case QEvent::MouseButtonPress: {
      auto* const mouse = static_cast<QMouseEvent*>(event);
      grabbed_ = mouse->button() == Qt::LeftButton ? At(mouse->position()) : Grabbed::kNone;
      if (grabbed_ != Grabbed::kNone) plot_.setFocus();
      return grabbed_ != Grabbed::kNone;
    }
    case QEvent::MouseMove: {
      const QPointF position = static_cast<QMouseEvent*>(event)->position();
      if (grabbed_ == Grabbed::kNone) {
        const Grabbed under = At(position);
        plot_.setCursor(under == Grabbed::kNone      ? Qt::ArrowCursor
                        : under == Grabbed::kUpright ? Qt::SplitHCursor
                                                     : Qt::SplitVCursor);
        return false;
      }
      if (grabbed_ == Grabbed::kUpright) {
        Put(plot_.xAxis->pixelToCoord(position.x()), y_);
      } else {
        Put(x_, plot_.yAxis->pixelToCoord(position.y()));
      }
      return true;
    }
    case QEvent::MouseButtonRelease:
      return std::exchange(grabbed_, Grabbed::kNone) != Grabbed::kNone;
    case QEvent::KeyPress: {
      auto* const pressed = static_cast<QKeyEvent*>(event);
      return OnKey(pressed->key(), pressed->modifiers().testFlag(Qt::ControlModifier));
    }
    default:
      return false;
  }
}

}  // namespace texturon
