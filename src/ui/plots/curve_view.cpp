// SPDX-License-Identifier: Apache-2.0

#include "ui/plots/curve_view.h"

#include <QLabel>
#include <QVBoxLayout>

#include "ui/plots/clickable_profile_graph.h"
#include "ui/plots/plot_axes.h"
#include "ui/qt_text.h"

namespace texturon {
namespace {

/// Of a view with its title and read-out, in lines of text.
constexpr int kLeastLines = 11;

}  // namespace

CCurveView::CCurveView(CTexturonDoc& doc, const WantedResults& wanted, QWidget* parent)
    : QWidget(parent),
      doc_(doc),
      wanted_(wanted),
      title_(new QLabel(this)),
      plot_(new QCustomPlot(this)),
      readout_(new QLabel(this)) {
  auto* const layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  for (QLabel* const label : {title_, readout_}) {
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    label->setMargin(fontMetrics().height() / 4);
    label->setMinimumWidth(1);
  }
  readout_->setWordWrap(true);
  readout_->setObjectName("curveReadout");
  readout_->setVisible(false);
  layout->addWidget(title_);
  layout->addWidget(plot_, 1);
  layout->addWidget(readout_);
  plot_->setMinimumSize(fontMetrics().averageCharWidth() * 24, fontMetrics().height() * 4);
  plot_->setInteractions(QCP::iRangeDrag | QCP::iRangeZoom);
  plot_->axisRect()->setupFullAxesBox(true);
  plot_->setFocusPolicy(Qt::StrongFocus);
  plot_->setPlottingHint(QCP::phFastPolylines, true);
  plot_->installEventFilter(this);
  for (QCPAxis* const axis : {plot_->xAxis, plot_->yAxis}) axis->setTicker(MakeTicker());
  ApplyPalette(*plot_);
  connect(plot_, &QCustomPlot::afterLayout, this, [this] { FitTicks(*plot_); });
  connect(&doc_, &CTexturonDoc::Changed, this, &CCurveView::Update);
  for (QCPAxis* const axis : {plot_->xAxis, plot_->yAxis}) {
    connect(axis, qOverload<const QCPRange&>(&QCPAxis::rangeChanged), this, [this] {
      if (isDrawing_) return;
      isZoomed_ = true;
      OnViewChanged();
    });
  }
}

QString CCurveView::Title() const {
  return title_->text();
}

QString CCurveView::Readout() const {
  return readout_->text();
}

void CCurveView::SetTitle(const QString& title) {
  title_->setText(title);
  plot_->setAccessibleName(title);
}

void CCurveView::SetReadout(const QString& text) {
  readout_->setText(Readable(text));
  ShowWords();
}

void CCurveView::ShowWords() {
  // In a small pane the curve comes first; what it is stands above it in the list.
  const bool hasRoom = height() > kLeastLines * fontMetrics().height();
  title_->setVisible(hasRoom);
  readout_->setVisible(hasRoom && !readout_->text().isEmpty());
  plot_->setToolTip(hasRoom ? QString() : title_->text() + '\n' + readout_->text());
}

void CCurveView::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  ShowWords();
}

void CCurveView::ShowAll() {
  isZoomed_ = false;
  Update();
}

void CCurveView::Update() {
  if (!isVisible()) return;
  const Document& document = doc_.document();
  const bool isSame = shownRecord_ == document.profiles.sourceFile && shownMetric_ == document.settings.display.Metric;
  shownRecord_ = document.profiles.sourceFile;
  shownMetric_ = document.settings.display.Metric;
  const QCPRange across = plot_->xAxis->range();
  const QCPRange up = plot_->yAxis->range();
  isDrawing_ = true;
  Draw();
  isZoomed_ = isZoomed_ && isSame;
  if (isZoomed_) {
    plot_->xAxis->setRange(across);
    plot_->yAxis->setRange(up);
  }
  isDrawing_ = false;
  OnViewChanged();
  plot_->replot();
}

void CCurveView::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  doc_.SetWanted(this, wanted_);
  Update();
}

void CCurveView::hideEvent(QHideEvent* event) {
  QWidget::hideEvent(event);
  doc_.SetWanted(this, kNoCurves);
}

bool CCurveView::eventFilter(QObject* /*watched*/, QEvent* event) {
  constexpr double kZoomStep = 0.8;
  if (event->type() == QEvent::MouseButtonDblClick) {
    ShowAll();
    return true;
  }
  if (event->type() == QEvent::Wheel) {
    plot_->axisRect()->setRangeZoom(WheelZoom(static_cast<QWheelEvent*>(event)->modifiers()));
    return false;
  }
  if (event->type() == QEvent::PaletteChange) {
    ApplyPalette(*plot_);
    Update();
  }
  if (event->type() != QEvent::KeyPress) return false;
  switch (static_cast<QKeyEvent*>(event)->key()) {
    case Qt::Key_Plus:
      plot_->xAxis->scaleRange(kZoomStep);
      break;
    case Qt::Key_Minus:
      plot_->xAxis->scaleRange(1.0 / kZoomStep);
      break;
    case Qt::Key_Home:
      ShowAll();
      return true;
    default:
      return false;
  }
  plot_->replot();
  return true;
}

}  // namespace texturon
