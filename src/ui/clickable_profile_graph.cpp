#include "ui/clickable_profile_graph.h"

#include <algorithm>
#include <cmath>

namespace texturon {

CClickableProfileGraph::CClickableProfileGraph(QWidget* parent) : QCustomPlot(parent) {
  setInteractions(QCP::iRangeDrag | QCP::iRangeZoom | QCP::iSelectLegend);
  axisRect()->setupFullAxesBox(true);
  xAxis->setLabel(tr("X in mm"));
  legend->setVisible(true);
  axisRect()->insetLayout()->setInsetAlignment(0, Qt::AlignTop | Qt::AlignRight);
  setNoAntialiasingOnDrag(true);
  setPlottingHint(QCP::phFastPolylines, true);
  setFocusPolicy(Qt::StrongFocus);
  setMouseTracking(true);
  ApplyPalette(*this);
}

void CClickableProfileGraph::SetCurves(std::span<const Curve> curves, bool showsAll) {
  clearGraphs();
  for (const Curve& curve : curves) {
    QCPGraph* const graph = addGraph();
    graph->setName(curve.name);
    graph->setPen(QPen(curve.colour, curve.width));
    QVector<QCPGraphData> points(static_cast<qsizetype>(curve.heights.size()));
    for (std::size_t i = 0; i < curve.heights.size(); ++i) {
      points[static_cast<qsizetype>(i)] = {curve.firstX + static_cast<double>(i) * curve.step,
                                           curve.heights[i] * curve.heightFactor};
    }
    graph->data()->set(points, true);
  }
  if (showsAll) {
    rescaleAxes();
    history_.clear();
  }
}

void CClickableProfileGraph::SetMarks(std::span<const Mark> marks) {
  for (QCPAbstractItem* const item : marks_) removeItem(item);
  marks_.clear();
  for (const Mark& mark : marks) {
    if (mark.first == mark.last) {
      auto* const line = new QCPItemStraightLine(this);
      line->point1->setCoords(mark.first, 0.0);
      line->point2->setCoords(mark.first, 1.0);
      line->setPen(QPen(mark.brush.color(), 0.0, Qt::DotLine));
      line->setLayer("grid");
      marks_.push_back(line);
      continue;
    }
    auto* const area = new QCPItemRect(this);
    for (QCPItemPosition* const corner : {area->topLeft, area->bottomRight}) {
      corner->setTypeY(QCPItemPosition::ptAxisRectRatio);
    }
    area->topLeft->setCoords(mark.first, 0.0);
    area->bottomRight->setCoords(mark.last, 1.0);
    area->setPen(Qt::NoPen);
    area->setBrush(mark.brush);
    area->setLayer("grid");
    marks_.push_back(area);
  }
}

void CClickableProfileGraph::ShowAll() {
  Remember(Now());
  rescaleAxes();
  replot();
}

bool CClickableProfileGraph::ShowAllEquallyScaled(double heightUnits, double leastShare) {
  const View before = Now();
  rescaleAxes();
  const double width = std::max(axisRect()->width(), 1);
  const double height = std::max(axisRect()->height(), 1);
  // Length units in a pixel, so that both axes hold their curves.
  const double acrossX = xAxis->range().size() / width;
  const double acrossY = yAxis->range().size() / heightUnits / height;
  if (acrossY < leastShare * acrossX) {
    xAxis->setRange(before.first);
    yAxis->setRange(before.second);
    return false;
  }
  Remember(before);
  const double unit = std::max(acrossX, acrossY);
  xAxis->setRange(xAxis->range().center(), unit * width, Qt::AlignCenter);
  yAxis->setRange(yAxis->range().center(), unit * height * heightUnits, Qt::AlignCenter);
  replot();
  // Other numbers beside the axis have left another room for the curves.
  yAxis->setScaleRatio(xAxis, heightUnits);
  replot();
  return true;
}

void CClickableProfileGraph::Remember(const View& view) {
  constexpr std::size_t kMostViews = 100;
  if (!history_.empty() && history_.back() == view) return;
  history_.push_back(view);
  if (history_.size() > kMostViews) history_.erase(history_.begin());
}

void CClickableProfileGraph::GoBack() {
  if (history_.empty()) return;
  xAxis->setRange(history_.back().first);
  yAxis->setRange(history_.back().second);
  history_.pop_back();
  replot();
}

void CClickableProfileGraph::Zoom(double factor) {
  Remember(Now());
  xAxis->scaleRange(factor);
  replot();
}

void CClickableProfileGraph::MakeCursors() {
  addLayer("cursors", layer("main"));
  layer("cursors")->setMode(QCPLayer::lmBuffered);
  for (QCPItemStraightLine*& cursor : cursors_) {
    cursor = new QCPItemStraightLine(this);
    cursor->setLayer("cursors");
    cursor->setVisible(false);
  }
}

void CClickableProfileGraph::ShowCursors(bool upright, bool level) {
  if (cursors_[0] == nullptr) MakeCursors();
  for (std::size_t i = 0; i < cursors_.size(); ++i) cursors_[i]->setVisible(i < 2 ? upright : level);
  DrawCursors();
}

void CClickableProfileGraph::FetchCursors() {
  for (std::size_t i = 0; i < places_.size(); ++i) {
    const QCPRange range = (i < 2 ? xAxis : yAxis)->range();
    places_[i] = range.lower + range.size() * (i % 2 == 0 ? 0.25 : 0.75);
  }
  DrawCursors();
}

void CClickableProfileGraph::SetUprightCursors(double first, double second) {
  places_[0] = first;
  places_[1] = second;
  DrawCursors();
}

void CClickableProfileGraph::MoveCursor(std::size_t cursor, double place) {
  active_ = cursor;
  places_[cursor] = place;
  DrawCursors();
}

void CClickableProfileGraph::DrawCursors() {
  if (cursors_[0] == nullptr) return;
  const QColor ink = palette().color(QPalette::Text);
  for (std::size_t i = 0; i < cursors_.size(); ++i) {
    const bool isUpright = i < 2;
    cursors_[i]->point1->setCoords(isUpright ? places_[i] : 0.0, isUpright ? 0.0 : places_[i]);
    cursors_[i]->point2->setCoords(isUpright ? places_[i] : 1.0, isUpright ? 1.0 : places_[i]);
    cursors_[i]->setPen(QPen(ink, i == active_ ? 2.0 : 1.0, i % 2 == 0 ? Qt::SolidLine : Qt::DashLine));
  }
  layer("cursors")->replot();
  emit CursorsMoved();
}

std::size_t CClickableProfileGraph::CursorAt(const QPointF& position) const {
  constexpr double kReach = 6.0;
  std::size_t found = kNoCursor;
  double nearest = kReach;
  for (std::size_t i = 0; i < cursors_.size(); ++i) {
    if (cursors_[i] == nullptr || !cursors_[i]->visible()) continue;
    const double at =
        i < 2 ? xAxis->coordToPixel(places_[i]) - position.x() : yAxis->coordToPixel(places_[i]) - position.y();
    if (std::abs(at) > nearest) continue;
    nearest = std::abs(at);
    found = i;
  }
  return found;
}

void CClickableProfileGraph::mousePressEvent(QMouseEvent* event) {
  const bool isLeft = event->button() == Qt::LeftButton;
  const bool marks = isLeft && event->modifiers().testFlag(Qt::ShiftModifier);
  pressed_ = Now();
  grabbed_ = isLeft && !marks && axisRect()->rect().contains(event->pos()) ? CursorAt(event->position()) : kNoCursor;
  if (grabbed_ != kNoCursor) return;
  setSelectionRectMode(marks ? QCP::srmZoom : QCP::srmNone);
  QCustomPlot::mousePressEvent(event);
}

void CClickableProfileGraph::mouseMoveEvent(QMouseEvent* event) {
  if (grabbed_ != kNoCursor) {
    MoveCursor(grabbed_,
               grabbed_ < 2 ? xAxis->pixelToCoord(event->position().x()) : yAxis->pixelToCoord(event->position().y()));
    return;
  }
  const std::size_t under = event->buttons() == Qt::NoButton ? CursorAt(event->position()) : kNoCursor;
  setCursor(under == kNoCursor ? Qt::ArrowCursor : under < 2 ? Qt::SplitHCursor : Qt::SplitVCursor);
  QCustomPlot::mouseMoveEvent(event);
}

void CClickableProfileGraph::mouseReleaseEvent(QMouseEvent* event) {
  if (grabbed_ != kNoCursor) {
    grabbed_ = kNoCursor;
    return;
  }
  QCustomPlot::mouseReleaseEvent(event);
  setSelectionRectMode(QCP::srmNone);
  if (Now() != pressed_) Remember(pressed_);
}

void CClickableProfileGraph::mouseDoubleClickEvent(QMouseEvent* event) {
  QCustomPlot::mouseDoubleClickEvent(event);
  ShowAll();
  pressed_ = Now();
}

void CClickableProfileGraph::wheelEvent(QWheelEvent* event) {
  // One turn of the wheel is many events but one step back.
  constexpr qint64 kPauseMS = 500;
  if (!sinceWheel_.isValid() || sinceWheel_.elapsed() > kPauseMS) Remember(Now());
  sinceWheel_.start();
  const bool alongXOnly = event->modifiers().testFlag(Qt::ControlModifier);
  axisRect()->setRangeZoom(alongXOnly ? Qt::Horizontal : Qt::Horizontal | Qt::Vertical);
  QCustomPlot::wheelEvent(event);
}

void CClickableProfileGraph::keyPressEvent(QKeyEvent* event) {
  constexpr double kZoomStep = 0.8;
  const bool isUpright = active_ < 2;
  QCPAxis* const axis = isUpright ? xAxis : yAxis;
  const int pixels = event->modifiers().testFlag(Qt::ControlModifier) ? 20 : 1;
  const double step =
      axis->range().size() * pixels / std::max(isUpright ? axisRect()->width() : axisRect()->height(), 1);
  const auto moves = [&](bool upright) {
    return cursors_[0] != nullptr && isUpright == upright && cursors_[active_]->visible();
  };
  switch (event->key()) {
    case Qt::Key_Plus:
      return Zoom(kZoomStep);
    case Qt::Key_Minus:
      return Zoom(1.0 / kZoomStep);
    case Qt::Key_Home:
      return ShowAll();
    case Qt::Key_Backspace:
      return GoBack();
    case Qt::Key_C:
      for (std::size_t i = 1; cursors_[0] != nullptr && i <= cursors_.size(); ++i) {
        const std::size_t next = (active_ + i) % cursors_.size();
        if (cursors_[next]->visible()) return MoveCursor(next, places_[next]);
      }
      break;
    case Qt::Key_Left:
    case Qt::Key_Right:
      if (moves(true)) return MoveCursor(active_, places_[active_] + (event->key() == Qt::Key_Left ? -step : step));
      break;
    case Qt::Key_Up:
    case Qt::Key_Down:
      if (moves(false)) return MoveCursor(active_, places_[active_] + (event->key() == Qt::Key_Down ? -step : step));
      break;
    default:
      break;
  }
  QCustomPlot::keyPressEvent(event);
}

QColor CurveColour(int number) {
  // After Okabe and Ito, "Color Universal Design" (2008).
  constexpr QRgb kColours[] = {0xFF0072B2, 0xFFD55E00, 0xFF009E73, 0xFFCC79A7, 0xFFE69F00, 0xFF56B4E9, 0xFF808080};
  return QColor::fromRgb(kColours[static_cast<std::size_t>(number) % std::size(kColours)]);
}

void ApplyPalette(QCustomPlot& plot) {
  const QPalette palette = plot.palette();
  const QColor ink = palette.color(QPalette::Text);
  QColor faint = ink;
  faint.setAlphaF(0.2F);
  plot.setBackground(palette.color(QPalette::Base));
  plot.legend->setBrush(palette.color(QPalette::Base));
  plot.legend->setTextColor(ink);
  plot.legend->setBorderPen(QPen(faint));
  for (QCPAxis* const axis : {plot.xAxis, plot.yAxis, plot.xAxis2, plot.yAxis2}) {
    for (const auto setPen : {&QCPAxis::setBasePen, &QCPAxis::setTickPen, &QCPAxis::setSubTickPen}) {
      (axis->*setPen)(QPen(ink));
    }
    axis->setLabelColor(ink);
    axis->setTickLabelColor(ink);
    axis->grid()->setPen(QPen(faint, 0.0, Qt::DotLine));
  }
}

}  // namespace texturon
