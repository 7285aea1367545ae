// SPDX-License-Identifier: Apache-2.0

#include "ui/several/trend_pane.h"

#include <QComboBox>
#include <QDateTime>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QSplitter>
#include <QVBoxLayout>
#include <algorithm>

#include "ui/plots/plot_axes.h"
#include "ui/plots/plot_items.h"
#include "ui/qt_text.h"

namespace texturon {
namespace {

QString TitleOf(const ColumnValue& column) {
  const QString name = FromText(column.name);
  return column.unit.empty() ? name : QObject::tr("%1 in %2").arg(name, Readable(FromText(column.unit)));
}

QCustomPlot* MakePlot(QWidget* parent) {
  auto* const plot = new QCustomPlot(parent);
  plot->axisRect()->setupFullAxesBox(true);
  for (QCPAxis* const axis : {plot->xAxis, plot->yAxis}) axis->setTicker(MakeTicker());
  plot->setMinimumSize(plot->fontMetrics().averageCharWidth() * 24, plot->fontMetrics().height() * 6);
  ApplyPalette(*plot);
  QObject::connect(plot, &QCustomPlot::afterLayout, plot, [plot] {
    // In a flat chart names would only push each other away from their lines.
    constexpr int kFlat = 11;
    if (plot->height() >= kFlat * plot->fontMetrics().height()) SpreadLabels(*plot);
    if (FitToRoom(*plot)) plot->replot(QCustomPlot::rpQueuedReplot);
  });
  return plot;
}

}  // namespace

CTrendPane::CTrendPane(QWidget* parent)
    : QWidget(parent), parameter_(new QComboBox(this)), order_(new QComboBox(this)), capability_(new QLabel(this)) {
  auto* const outer = new QVBoxLayout(this);
  auto* const choices = new QHBoxLayout;
  const auto addChoice = [this, choices](const QString& title, QComboBox* box, const char* name) {
    auto* const label = new QLabel(title, this);
    label->setBuddy(box);
    box->setObjectName(name);
    choices->addWidget(label);
    choices->addWidget(box);
    connect(box, &QComboBox::currentIndexChanged, this, &CTrendPane::Draw);
  };
  addChoice(tr("Para&meter:"), parameter_, "trendParameter");
  order_->addItems({tr("Order of the files"), tr("Time of the files")});
  addChoice(tr("O&ver:"), order_, "trendOrder");
  parameter_->setSizeAdjustPolicy(QComboBox::AdjustToContents);
  choices->addStretch(1);
  capability_->setObjectName("capability");
  capability_->setTextInteractionFlags(Qt::TextSelectableByMouse);
  choices->addWidget(capability_);
  outer->addLayout(choices);
  auto* const plots = new QSplitter(this);
  chart_ = MakePlot(plots);
  histogram_ = MakePlot(plots);
  chart_->setAccessibleName(tr("Trend"));
  histogram_->setAccessibleName(tr("Histogram"));
  chart_->setToolTip(tr("Click a point to open its profile."));
  plots->addWidget(chart_);
  plots->addWidget(histogram_);
  plots->setStretchFactor(0, 3);
  plots->setStretchFactor(1, 2);
  // Few enough to stand side by side where it is narrow.
  constexpr int kHistogramTicks = 3;
  histogram_->xAxis->ticker()->setTickCount(kHistogramTicks);
  outer->addWidget(plots, 1);
  connect(chart_, &QCustomPlot::mouseRelease, this, [this](const QMouseEvent* event) {
    if (const auto file = ValueAt(*chart_, series_, event->position())) emit Activated(static_cast<int>(*file));
  });
}

void CTrendPane::Clear() {
  files_.clear();
  timesS_.clear();
  parameter_->clear();
  Draw();
}

void CTrendPane::Add(const std::vector<File>& files) {
  for (const File& file : files) {
    files_.push_back(file);
    timesS_.push_back(static_cast<double>(QFileInfo(FromPath(file.path)).lastModified().toMSecsSinceEpoch()) / 1000.0);
    if (parameter_->count() > 0) continue;
    QStringList titles;
    for (const ColumnValue& column : file.columns) titles << TitleOf(column);
    const QSignalBlocker quiet(parameter_);
    parameter_->addItems(titles);
    // What has limits is looked at first.
    const auto limited = std::find_if(file.columns.begin(), file.columns.end(), [](const ColumnValue& column) {
      return column.limits.lower || column.limits.upper;
    });
    if (limited != file.columns.end()) parameter_->setCurrentIndex(static_cast<int>(limited - file.columns.begin()));
  }
  Draw();
}

TrendSeries CTrendPane::SeriesOf(const QString& title) const {
  TrendSeries series{.title = title};
  for (const File& file : files_) {
    const auto column = std::find_if(file.columns.begin(), file.columns.end(),
                                     [&title](const ColumnValue& each) { return TitleOf(each) == title; });
    const bool isThere = column != file.columns.end();
    series.values.push_back(isThere ? column->value : std::nullopt);
    series.outOfLimit.push_back(isThere && column->outOfTolerance);
    series.undecided.push_back(isThere && column->undecided);
    if (!isThere) continue;
    series.limits = column->limits;
    series.unit = Readable(FromText(column->unit));
  }
  if (std::find(series.undecided.begin(), series.undecided.end(), true) == series.undecided.end()) {
    series.undecided.clear();
  }
  if (order_->currentIndex() == 1) series.timesS = timesS_;
  return series;
}

void CTrendPane::Draw() {
  series_ = SeriesOf(parameter_->currentText());
  DrawTrend(*chart_, series_);
  DrawHistogram(*histogram_, series_);
  SpaceTicks();
  capability_->setText(parameter_->count() > 0 ? CapabilityText(series_) : QString());
  chart_->replot(QCustomPlot::rpQueuedReplot);
  histogram_->replot(QCustomPlot::rpQueuedReplot);
}

void CTrendPane::SpaceTicks() {
  constexpr int kLinesOfTick = 3;
  constexpr int kMostTicks = 6;
  for (QCustomPlot* const plot : {chart_, histogram_}) {
    const int ticks = plot->height() / (kLinesOfTick * plot->fontMetrics().height());
    plot->yAxis->ticker()->setTickCount(std::clamp(ticks, 2, kMostTicks));
  }
}

void CTrendPane::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  // The plots have their sizes once the splitter has laid them out.
  QMetaObject::invokeMethod(this, &CTrendPane::Draw, Qt::QueuedConnection);
}

void CTrendPane::changeEvent(QEvent* event) {
  if (event->type() == QEvent::PaletteChange) {
    for (QCustomPlot* const plot : {chart_, histogram_}) ApplyPalette(*plot);
    Draw();
  }
  QWidget::changeEvent(event);
}

}  // namespace texturon
