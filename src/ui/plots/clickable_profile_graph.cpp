// SPDX-License-Identifier: Apache-2.0

#include "ui/plots/clickable_profile_graph.h"

#include <algorithm>
#include <cmath>

#include "parameters/height_statistics.h"
#include "signal/envelope/column_envelope.h"
#include "ui/plots/plot_axes.h"
#include "ui/qt_text.h"

namespace texturon {
namespace {

/// Curves that would fill less of the height are not drawn with equal scales: nothing could be seen of them.
constexpr double kLeastShareOfHeight = 0.1;
/// Part of the height that stays free above and below the curves.
constexpr double kMargin = 0.04;

QCPRange Centred(double centre, double size) {
  return {centre - 0.5 * size, centre + 0.5 * size};
}

QCPRange HeightsOf(std::span<const double> heights, double factor) {
  const HeightExtremes extremes = FindExtremes(heights);
  return {extremes.lowest * factor, extremes.highest * factor};
}

/// Over the gaps of an overlay; nothing where it has gaps only.
std::optional<QCPRange> HeightsOfOverlay(const CClickableProfileGraph::Curve& curve) {
  std::optional<QCPRange> range;
  for (const double height : curve.heights) {
    if (!std::isfinite(height)) continue;
    const double shown = height * curve.heightFactor;
    if (!range) range = QCPRange(shown, shown);
    range->expand(QCPRange(shown, shown));
  }
  return range;
}

}  // namespace

CClickableProfileGraph::CClickableProfileGraph(QWidget* parent) : QCustomPlot(parent) {
  setInteractions(QCP::iRangeDrag | QCP::iRangeZoom);
  axisRect()->setupFullAxesBox(true);
  PutLegendAbove(*this, 5);
  setNoAntialiasingOnDrag(true);
  setPlottingHint(QCP::phFastPolylines, true);
  setFocusPolicy(Qt::StrongFocus);
  setMouseTracking(true);
  for (QCPAxis* const axis : {xAxis, yAxis}) axis->setTicker(MakeTicker());
  ApplyPalette(*this);
  connect(this, &QCustomPlot::afterLayout, this, &CClickableProfileGraph::OnLayout);
  connect(xAxis, qOverload<const QCPRange&>(&QCPAxis::rangeChanged), this, &CClickableProfileGraph::ViewChanged);
}

void CClickableProfileGraph::SetCurves(std::span<const Curve> curves, const WholeView& whole) {
  clearGraphs();
  curves_.clear();
  bool any = false;
  std::optional<QCPRange> outside;
  for (const Curve& curve : curves) {
    QCPGraph* const graph = addGraph();
    graph->setName(curve.name);
    if (curve.name.isEmpty()) graph->removeFromLegend();
    graph->setPen(QPen(curve.colour, curve.width, curve.style));
    graph->setAdaptiveSampling(false);
    curves_.push_back(
        {graph, {curve.heights.begin(), curve.heights.end()}, curve.firstX, curve.step, curve.heightFactor});
    if (curve.isOutside) outside = HeightsOfOverlay(curve);
    if (curve.isOverlay || curve.heights.empty()) continue;
    const QCPRange x(curve.firstX, curve.firstX + static_cast<double>(curve.heights.size() - 1) * curve.step);
    const QCPRange y = HeightsOf(curve.heights, curve.heightFactor);
    const QCPRange ofStretch = curve.ofStretch.empty() ? y : HeightsOf(curve.ofStretch, curve.heightFactor);
    extentX_ = any ? extentX_.expanded(x) : x;
    extentY_ = any ? extentY_.expanded(y) : y;
    stretchY_ = any ? stretchY_.expanded(ofStretch) : ofStretch;
    any = true;
  }
  if (any && whole.record) extentX_ = extentX_.expanded(*whole.record);
  if (any && outside) extentY_ = extentY_.expanded(*outside);
  whole_ = whole;
  showsStretch_ = showsStretch_ && HasStretchHeights();
  fittedFor_ = {};
}

void CClickableProfileGraph::SetXTitle(const QString& title) {
  xTitle_ = title;
  xAxis->setLabel(title);
}

void CClickableProfileGraph::ShowXValues(bool shown) {
  showsXValues_ = shown;
  xAxis->setTickLabels(shown);
  xAxis->setLabel(xTitle_);
}

void CClickableProfileGraph::OnLayout() {
  if (isWhole_ && fittedFor_ != axisRect()->size()) {
    // Other numbers beside the axes leave another room for the curves, so twice.
    for (int round = 0; round < 2; ++round) {
      FitWhole();
      for (const auto phase :
           {QCPLayoutElement::upPreparation, QCPLayoutElement::upMargins, QCPLayoutElement::upLayout})
        plotLayout()->update(phase);
    }
    FitWhole();
    fittedFor_ = axisRect()->size();
  }
  LabelEnds();
  Thin();
  FitTicks(*this);
  if (cursors_[0] != nullptr) PlaceLabels();
  // As many names side by side as there is room for.
  int widest = 1;
  for (const HeldCurve& curve : curves_) {
    widest = std::max(widest, QFontMetrics(legend->font()).horizontalAdvance(curve.graph->name()));
  }
  const int inARow = std::clamp(width() / (widest + legend->iconSize().width() + 3 * fontMetrics().height()), 1, 5);
  if (legend->wrap() == inARow) return;
  legend->setWrap(inARow);
  legend->setFillOrder(legend->fillOrder(), true);
  replot(rpQueuedReplot);
}

void CClickableProfileGraph::LabelEnds() {
  if (ends_[0] == nullptr) {
    for (std::size_t i = 0; i < ends_.size(); ++i) {
      QCPItemText* const end = ends_[i] = new QCPItemText(this);
      end->setLayer("axes");
      end->setClipToAxisRect(false);
      end->position->setType(QCPItemPosition::ptAxisRectRatio);
      end->position->setCoords(static_cast<double>(i), 1.0);
      end->setPositionAlignment(Qt::AlignTop | (i == 0 ? Qt::AlignLeft : Qt::AlignRight));
    }
  }
  const QVector<double> ticks = xAxis->tickVector();
  const bool labels = !showsXValues_ && ticks.size() > 1;
  for (QCPItemText* const end : ends_) end->setVisible(labels);
  if (!labels) return;
  const double division = ticks[1] - ticks[0];
  xAxis->setLabel(tr("%1, %2 per division").arg(xTitle_).arg(division, 0, 'g', 3));
  // To a hundredth of a division.
  const int decimals = std::clamp(2 - static_cast<int>(std::floor(std::log10(division))), 0, 9);
  const QCPRange view = xAxis->range();
  for (std::size_t i = 0; i < ends_.size(); ++i) {
    ends_[i]->setText(Readable(QString::number(i == 0 ? view.lower : view.upper, 'f', decimals)));
    ends_[i]->setFont(xAxis->labelFont());
    ends_[i]->setColor(palette().color(QPalette::Text));
    // Level with the axis's own words.
    ends_[i]->setPadding(QMargins(0, xAxis->tickLengthOut() + xAxis->labelPadding() - 2, 0, 0));
  }
}

void CClickableProfileGraph::Thin() {
  const auto columns =
      static_cast<std::size_t>(std::max(std::ceil(axisRect()->width() * bufferDevicePixelRatio()), 1.0));
  const QCPRange view = xAxis->range();
  for (const HeldCurve& curve : curves_) {
    const std::vector<std::uint32_t> seen = ColumnEnvelope(
        curve.heights, {(view.lower - curve.firstX) / curve.step, (view.upper - curve.firstX) / curve.step, columns});
    QVector<QCPGraphData> points(static_cast<qsizetype>(seen.size()));
    for (std::size_t i = 0; i < seen.size(); ++i) {
      points[static_cast<qsizetype>(i)] = {curve.firstX + static_cast<double>(seen[i]) * curve.step,
                                           curve.heights[seen[i]] * curve.heightFactor};
    }
    curve.graph->data()->set(points, true);
  }
}

QCPRange CClickableProfileGraph::HeightsWithMargin() const {
  const QCPRange extent = WholeHeights();
  const double size = extent.size();
  if (size > 0.0) return Centred(extent.center(), size * (1.0 + 2.0 * kMargin));
  return Centred(extent.center(), std::max(std::abs(extent.center()), 1.0));
}

void CClickableProfileGraph::FitWhole() {
  QCPRange x = extentX_;
  QCPRange y = whole_.heights.value_or(HeightsWithMargin());
  if (!(x.size() > 0.0)) x = Centred(x.center(), 1.0);
  if (whole_.hasEqualScales && !whole_.heights) {
    const double width = std::max(axisRect()->width(), 1);
    const double height = std::max(axisRect()->height(), 1);
    // Length units in a pixel, so that both axes hold their curves.
    const double acrossX = x.size() / width;
    const double acrossY = y.size() / whole_.heightsInLength / height;
    if (acrossY >= kLeastShareOfHeight * acrossX) {
      const double unit = std::max(acrossX, acrossY);
      x = Centred(x.center(), unit * width);
      y = Centred(y.center(), unit * height * whole_.heightsInLength);
    }
  }
  xAxis->setRange(x);
  yAxis->setRange(y);
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

void CClickableProfileGraph::StartAnew() {
  isWhole_ = true;
  showsStretch_ = false;
  fittedFor_ = {};
  FitWhole();
  back_.clear();
  forward_.clear();
  emit ViewChanged();
}

void CClickableProfileGraph::ShowAll() {
  Remember(Now());
  isWhole_ = true;
  showsStretch_ = false;
  fittedFor_ = {};
  replot();
  emit ViewChanged();
}

bool CClickableProfileGraph::HasStretchHeights() const {
  return whole_.isOverStretch && !whole_.heights && stretchY_ != extentY_;
}

bool CClickableProfileGraph::IsStretchFlat() const {
  constexpr double kHardlySeen = 0.05;
  return HasStretchHeights() && stretchY_.size() < kHardlySeen * extentY_.size();
}

void CClickableProfileGraph::ShowStretchHeights() {
  if (!HasStretchHeights()) return;
  const View before = Now();
  Remember(before);
  isWhole_ = before.isWhole;
  showsStretch_ = true;
  fittedFor_ = {};
  // A zoom along X stays.
  if (!isWhole_) yAxis->setRange(HeightsWithMargin());
  replot();
}

void CClickableProfileGraph::HoldHeights() {
  const View before = Now();
  showsStretch_ = false;
  if (isWhole_ && !before.isOfStretch) return;
  const bool isHeld = yAxis->range().contains(extentY_.lower) && yAxis->range().contains(extentY_.upper);
  if (whole_.heights || (!isWhole_ && isHeld)) return;
  Remember(before);
  isWhole_ = before.isWhole;
  fittedFor_ = {};
  if (!isWhole_) yAxis->setRange(HeightsWithMargin());
}

void CClickableProfileGraph::Show(const View& view) {
  isWhole_ = view.isWhole;
  showsStretch_ = view.isOfStretch;
  fittedFor_ = {};
  xAxis->setRange(view.x);
  yAxis->setRange(view.y);
  replot();
  emit ViewChanged();
}

void CClickableProfileGraph::Remember(const View& view) {
  constexpr std::size_t kMostViews = 100;
  isWhole_ = false;
  forward_.clear();
  if (!back_.empty() && back_.back() == view) return;
  back_.push_back(view);
  if (back_.size() > kMostViews) back_.erase(back_.begin());
}

void CClickableProfileGraph::GoBack() {
  if (back_.empty()) return;
  forward_.push_back(Now());
  const View view = back_.back();
  back_.pop_back();
  Show(view);
}

void CClickableProfileGraph::GoForward() {
  if (forward_.empty()) return;
  back_.push_back(Now());
  const View view = forward_.back();
  forward_.pop_back();
  Show(view);
}

void CClickableProfileGraph::ShowX(const QCPRange& range) {
  if (!(range.size() > 0.0)) return;
  Remember(Now());
  xAxis->setRange(range);
  replot();
}

bool CClickableProfileGraph::IsOneToOne() const {
  const double across = xAxis->range().size() / std::max(axisRect()->width(), 1);
  const double up = yAxis->range().size() / std::max(axisRect()->height(), 1) / whole_.heightsInLength;
  constexpr double kAgreement = 1e-3;
  return std::abs(up - across) < kAgreement * across;
}

void CClickableProfileGraph::ShowOneToOne() {
  if (IsOneToOne()) return;
  Remember(Now());
  // Other numbers beside the axis leave another room for the curves.
  for (int round = 0; round < 3 && !IsOneToOne(); ++round) {
    const double unit = xAxis->range().size() / std::max(axisRect()->width(), 1);
    yAxis->setRange(Centred(yAxis->range().center(), unit * axisRect()->height() * whole_.heightsInLength));
    replot();
  }
}

void CClickableProfileGraph::Zoom(double factor) {
  Remember(Now());
  xAxis->scaleRange(factor);
  replot();
}

void CClickableProfileGraph::ScrollX(const QCPRange& range) {
  RememberOnce();
  xAxis->setRange(range);
  replot(rpQueuedReplot);
}

void CClickableProfileGraph::RememberOnce() {
  constexpr qint64 kPauseMS = 500;
  if (!sinceStep_.isValid() || sinceStep_.elapsed() > kPauseMS) Remember(Now());
  isWhole_ = false;
  sinceStep_.start();
}

void CClickableProfileGraph::MakeCursors() {
  addLayer("cursors", layer("main"));
  layer("cursors")->setMode(QCPLayer::lmBuffered);
  for (QCPItemStraightLine*& cursor : cursors_) {
    cursor = new QCPItemStraightLine(this);
    cursor->setLayer("cursors");
    cursor->setVisible(false);
  }
  for (std::size_t i = 0; i < labels_.size(); ++i) {
    labels_[i] = new QCPItemText(this);
    labels_[i]->setLayer("cursors");
    labels_[i]->setVisible(false);
    labels_[i]->setPadding(QMargins(3, 1, 3, 1));
    labels_[i]->setTextAlignment(Qt::AlignLeft);
    labels_[i]->position->setTypeX(i < 2 ? QCPItemPosition::ptPlotCoords : QCPItemPosition::ptAxisRectRatio);
    labels_[i]->position->setTypeY(i < 2 ? QCPItemPosition::ptAxisRectRatio : QCPItemPosition::ptPlotCoords);
  }
}

void CClickableProfileGraph::SetCursorLabels(const std::array<QString, 4>& labels) {
  if (cursors_[0] == nullptr) return;
  QColor ground = palette().color(QPalette::Base);
  ground.setAlphaF(0.8F);
  for (std::size_t i = 0; i < labels.size(); ++i) {
    labels_[i]->setText(labels[i]);
    labels_[i]->setFont(font());
    labels_[i]->setColor(palette().color(QPalette::Text));
    labels_[i]->setBrush(ground);
  }
  PlaceLabels();
  layer("cursors")->replot();
}

void CClickableProfileGraph::PlaceLabels() {
  const auto sizeOf = [this](const QString& text) {
    return fontMetrics().boundingRect(QRect(0, 0, 1, 1), Qt::TextDontClip, text).size() +
           QSize(fontMetrics().height(), 2);
  };
  const auto widthOf = [&](const QString& text) { return sizeOf(text).width(); };
  // Off the frame and its ticks.
  const double gap = 2.0 * xAxis->tickLengthIn();
  const QRect frame = axisRect()->rect();
  const double below = 1.0 - gap / std::max(frame.height(), 1);
  const double between = std::abs(xAxis->coordToPixel(places_[0]) - xAxis->coordToPixel(places_[1]));
  // Between the two cursors where there is room, else beside them.
  const bool isInside = between > widthOf(labels_[0]->text()) + widthOf(labels_[1]->text());
  // In a small picture they would hide the curves; the status bar has them too.
  const bool hasRoom = frame.height() > 9 * fontMetrics().height() &&
                       frame.width() > widthOf(labels_[0]->text()) + widthOf(labels_[1]->text());
  std::array<QCPRange, 2> across;
  for (std::size_t i = 0; i < labels_.size(); ++i) {
    labels_[i]->setVisible(cursors_[i]->visible() && hasRoom);
    if (i < 2) {
      const bool isLeft = places_[i] < places_[1 - i] || (places_[0] == places_[1] && i == 0);
      bool isRightOfLine = isLeft == isInside;
      const double pixel = xAxis->coordToPixel(places_[i]);
      const double room = widthOf(labels_[i]->text()) + gap;
      if (isRightOfLine ? pixel + room > frame.right() : pixel - room < frame.left()) isRightOfLine = !isRightOfLine;
      const double beside = isRightOfLine ? std::max(pixel, frame.left() + gap) : std::min(pixel, frame.right() - gap);
      across[i] = isRightOfLine ? QCPRange(beside, beside + room) : QCPRange(beside - room, beside);
      // Where both stand between the cursors, but not side by side, they stand over each other.
      const bool isOver = i == 1 && across[1].lower < across[0].upper && across[0].lower < across[1].upper;
      const double up = isOver ? (sizeOf(labels_[0]->text()).height() + gap) / std::max(frame.height(), 1) : 0.0;
      labels_[i]->position->setCoords(xAxis->pixelToCoord(beside), below - up);
      labels_[i]->setPositionAlignment(Qt::AlignBottom | (isRightOfLine ? Qt::AlignLeft : Qt::AlignRight));
    } else {
      labels_[i]->position->setCoords(gap / std::max(frame.width(), 1), places_[i]);
      const bool fitsAbove = yAxis->coordToPixel(places_[i]) - sizeOf(labels_[i]->text()).height() - gap > frame.top();
      labels_[i]->setPositionAlignment(Qt::AlignLeft | (fitsAbove ? Qt::AlignBottom : Qt::AlignTop));
    }
  }
}

void CClickableProfileGraph::ShowCursors(bool upright, bool level) {
  if (cursors_[0] == nullptr) MakeCursors();
  for (std::size_t i = 0; i < cursors_.size(); ++i) cursors_[i]->setVisible(i < 2 ? upright : level);
  DrawCursors();
}

void CClickableProfileGraph::FetchCursors() {
  const QCPRange all[] = {extentX_, WholeHeights()};
  for (std::size_t i = 0; i < places_.size(); ++i) {
    QCPRange range = all[i / 2];
    const QCPRange seen = (i < 2 ? xAxis : yAxis)->range();
    // Before the first picture there is no view yet.
    if (!isWhole_ && seen.lower < range.upper && seen.upper > range.lower) {
      range = {std::max(seen.lower, range.lower), std::min(seen.upper, range.upper)};
    }
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
  PlaceLabels();
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
  // While it is dragged the view is no longer fitted to the window.
  if (event->buttons().testFlag(Qt::LeftButton)) isWhole_ = false;
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
  if (xAxis->range() == pressed_.x && yAxis->range() == pressed_.y) {
    isWhole_ = pressed_.isWhole;
    return;
  }
  Remember(pressed_);
  emit ViewChanged();
}

void CClickableProfileGraph::mouseDoubleClickEvent(QMouseEvent* event) {
  QCustomPlot::mouseDoubleClickEvent(event);
  ShowAll();
  pressed_ = Now();
}

void CClickableProfileGraph::wheelEvent(QWheelEvent* event) {
  RememberOnce();
  axisRect()->setRangeZoom(WheelZoom(event->modifiers()));
  QCustomPlot::wheelEvent(event);
}

Qt::Orientations WheelZoom(Qt::KeyboardModifiers keys) {
  if (keys.testFlag(Qt::ShiftModifier)) return Qt::Horizontal | Qt::Vertical;
  return keys.testFlag(Qt::ControlModifier) ? Qt::Vertical : Qt::Horizontal;
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
      return event->modifiers().testFlag(Qt::ShiftModifier) ? GoForward() : GoBack();
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

}  // namespace texturon
