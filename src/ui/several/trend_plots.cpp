// SPDX-License-Identifier: Apache-2.0

#include "ui/several/trend_plots.h"

#include <QObject>
#include <algorithm>
#include <cmath>
#include <optional>

#include "base/number_text.h"
#include "ui/colours.h"
#include "ui/plots/clickable_profile_graph.h"
#include "ui/plots/plot_items.h"
#include "ui/qt_text.h"

namespace texturon {
namespace {

/// Which names go last where there is no room for all.
constexpr char kRank[] = "rank";
/// The most files of a class of a histogram.
constexpr char kMostFiles[] = "mostFiles";
/// Names of lines stand in steps below the top of a histogram, as shares of its height.
constexpr double kFirstStep = 0.01;
constexpr double kStep = 0.07;
constexpr int kSteps = 3;
enum class Rank : int { kLimit, kMean, kSigma };

/// A level that a chart marks.
struct Level {
  double value;
  QString name;
  QPen pen;
  Rank rank;
};

std::vector<Level> LevelsOf(const QCustomPlot& plot, const TrendSeries& series) {
  const ValueStatistics statistics = StatisticsOf(series.values);
  const ProcessCapability capability = CapabilityOf(statistics, series.limits.lower, series.limits.upper);
  const QPen limit(VerdictGround(false), 2.0);
  const QPen middle(CurveColour(1, plot.palette()), 1.5);
  const QPen sigma(CurveColour(1, plot.palette()), 1.0, Qt::DashLine);
  std::vector<Level> levels;
  const auto add = [&levels](const std::optional<double>& value, const QString& name, const QPen& pen, Rank rank) {
    if (value) levels.push_back({*value, name, pen, rank});
  };
  add(series.limits.lower, QObject::tr("lower limit"), limit, Rank::kLimit);
  add(series.limits.upper, QObject::tr("upper limit"), limit, Rank::kLimit);
  add(statistics.mean, QObject::tr("mean"), middle, Rank::kMean);
  add(capability.lowerLine,
      QString::fromUtf8("\u2212"
                        "3 s"),
      sigma, Rank::kSigma);
  add(capability.upperLine, "+3 s", sigma, Rank::kSigma);
  return levels;
}

/// Ticks of what is counted: there is no file 2.5.
class WholeTicker : public QCPAxisTicker {
protected:
  double getTickStep(const QCPRange& range) override {
    return std::max(1.0, std::round(QCPAxisTicker::getTickStep(range)));
  }
  int getSubTickCount(double /*tickStep*/) override { return 0; }
};

double PlaceOf(const TrendSeries& series, std::size_t i) {
  return series.timesS.empty() ? static_cast<double>(i + 1) : series.timesS[i];
}

/// An axis that holds all levels and values with some room.
void Hold(QCPAxis& axis, const TrendSeries& series, const std::vector<Level>& levels) {
  constexpr double kRoom = 1.2;  // the names of the outermost levels stay clear of what stands below the axis
  QCPRange range;
  bool isFirst = true;
  const auto add = [&](double value) {
    if (isFirst) range = QCPRange(value, value);
    range.expand(value);
    isFirst = false;
  };
  for (const Level& level : levels) add(level.value);
  for (const auto& value : series.values) {
    if (value && std::isfinite(*value)) add(*value);
  }
  if (range.size() <= 0.0)
    range = {range.lower - std::max(std::abs(range.lower) * 0.1, 1e-6),
             range.upper + std::max(std::abs(range.upper) * 0.1, 1e-6)};
  axis.setRange(range);
  axis.scaleRange(kRoom);
}

QCPGraph& AddPoints(QCustomPlot& plot, const QColor& colour, bool isLine) {
  constexpr double kPointPixels = 6.0;
  QCPGraph& graph = *plot.addGraph();
  graph.setPen(QPen(colour, 1.2));
  graph.setLineStyle(isLine ? QCPGraph::lsLine : QCPGraph::lsNone);
  graph.setScatterStyle(QCPScatterStyle(isLine ? QCPScatterStyle::ssDisc : QCPScatterStyle::ssSquare, kPointPixels));
  return graph;
}

QString Figure(double value) {
  constexpr int kDigits = 4;
  return Readable(QString::number(value, 'g', kDigits));
}

}  // namespace

void DrawTrend(QCustomPlot& plot, const TrendSeries& series) {
  ClearDrawing(plot);
  const std::vector<Level> levels = LevelsOf(plot, series);
  if (series.timesS.empty()) {
    plot.xAxis->setTicker(QSharedPointer<WholeTicker>::create());
    plot.xAxis->setLabel(QObject::tr("number of the file"));
  } else {
    const auto ticker = QSharedPointer<QCPAxisTickerDateTime>::create();
    ticker->setDateTimeFormat("yyyy-MM-dd\nhh:mm:ss");
    plot.xAxis->setTicker(ticker);
    plot.xAxis->setLabel(QObject::tr("time of the file"));
  }
  plot.yAxis->setLabel(series.title);
  QCPGraph& curve = AddPoints(plot, CurveColour(0, plot.palette()), true);
  QCPGraph& out = AddPoints(plot, VerdictGround(false), false);
  QCPGraph* const open = series.undecided.empty() ? nullptr : &AddPoints(plot, UndecidedGround(), false);
  for (std::size_t i = 0; i < series.values.size(); ++i) {
    const double value = series.values[i].value_or(std::nan(""));  // a gap
    curve.addData(PlaceOf(series, i), value);
    if (series.outOfLimit[i] && series.values[i]) out.addData(PlaceOf(series, i), value);
    if (open != nullptr && series.undecided[i] && series.values[i]) open->addData(PlaceOf(series, i), value);
  }
  Hold(*plot.yAxis, series, levels);
  plot.xAxis->rescale();
  if (plot.xAxis->range().size() <= 0.0)
    plot.xAxis->setRange(plot.xAxis->range().lower - 0.5, plot.xAxis->range().upper + 0.5);
  plot.xAxis->scaleRange(1.06);
  // The names stand in a margin of their own, as wide as they are.
  const QCPRange drawn = plot.xAxis->range();
  int widest = 0;
  for (const Level& level : levels) {
    AddSegment(plot, drawn.lower, level.value, drawn.upper, level.value, level.pen);
    QCPItemText& name = *AddLabel(plot, drawn.upper, level.value, " " + level.name, Qt::AlignLeft | Qt::AlignVCenter);
    name.setClipToAxisRect(false);
    name.setProperty(kRank, static_cast<int>(level.rank));
    name.position->setTypeX(QCPItemPosition::ptAxisRectRatio);
    name.position->setCoords(1.0, level.value);
    widest = std::max(widest, QFontMetrics(name.font()).horizontalAdvance(name.text() + " "));
  }
  plot.axisRect()->setMinimumMargins(QMargins(0, 0, widest, 0));
}

void DrawHistogram(QCustomPlot& plot, const TrendSeries& series) {
  ClearDrawing(plot);
  const std::vector<Level> levels = LevelsOf(plot, series);
  plot.xAxis->setLabel(series.title);
  plot.yAxis->setLabel(QObject::tr("number of files"));
  plot.yAxis->setTicker(QSharedPointer<WholeTicker>::create());
  std::size_t most = 1;
  QColor colour = CurveColour(0, plot.palette());
  for (const HistogramClass& each : HistogramOf(series.values)) {
    // A class of equal values is a line, which is given a width to be seen.
    const double half = each.to > each.from ? 0.0 : std::max(std::abs(each.from) * 0.01, 1e-6);
    const double from = each.from - half;
    const double to = each.to + half;
    const auto top = static_cast<double>(each.count);
    AddArea(plot, {{from, 0.0}, {from, top}, {to, top}, {to, 0.0}}, Tint(colour, 0.35));
    AddSegment(plot, from, top, to, top, QPen(colour, 1.2));
    most = std::max(most, each.count);
  }
  Hold(*plot.xAxis, series, levels);
  plot.yAxis->setRange(0.0, 1.3 * static_cast<double>(most));
  plot.setProperty(kMostFiles, static_cast<int>(most));
  // In steps, so that names of lines that lie together can be read, and never beyond the frame.
  std::vector<Level> sorted = levels;
  std::sort(sorted.begin(), sorted.end(), [](const Level& a, const Level& b) { return a.value < b.value; });
  int step = 0;
  for (const Level& level : sorted) {
    AddNamedLine(plot, level.value, {}, level.pen);
    const bool isLeft = level.value < plot.xAxis->range().center();
    QCPItemText& name = *AddLabel(plot, level.value, kFirstStep + kStep * (step++ % kSteps), " " + level.name + " ",
                                  (isLeft ? Qt::AlignLeft : Qt::AlignRight) | Qt::AlignTop, LabelPlace::kShareOfY);
    name.setProperty(kRank, static_cast<int>(level.rank));
  }
}

bool FitToRoom(QCustomPlot& plot) {
  const QFontMetrics metrics(plot.xAxis->labelFont());
  bool changed = false;
  // Twice the room of a line for numbers and title is more than a flat plot has.
  constexpr int kLeastLines = 11;
  const auto drop = [&](QCPAxis& axis, bool isCut) {
    if (!isCut || axis.label().isEmpty()) return;
    axis.setLabel({});
    changed = true;
  };
  const QRect frame = plot.axisRect()->rect();
  drop(*plot.xAxis, plot.height() < kLeastLines * metrics.height() ||
                        metrics.horizontalAdvance(plot.xAxis->label()) > frame.width());
  drop(*plot.yAxis, metrics.horizontalAdvance(plot.yAxis->label()) > frame.height());
  // The bars of a histogram end below the names, also where a line of them is much of the height.
  if (const int most = plot.property(kMostFiles).toInt(); most > 0) {
    const double line = 1.2 * plot.fontMetrics().height() / std::max(frame.height(), 1);
    const double top = most / (1.0 - std::clamp(kFirstStep + kStep * (kSteps - 1) + line, 0.23, 0.6));
    changed = changed || std::abs(plot.yAxis->range().upper - top) > 1e-3 * top;
    plot.yAxis->setRange(0.0, top);
  }
  std::vector<QCPItemText*> names;
  for (int i = 0; i < plot.itemCount(); ++i) {
    auto* const name = qobject_cast<QCPItemText*>(plot.item(i));
    if (name != nullptr && name->visible()) names.push_back(name);
  }
  // Limits stand first in the order of the levels of a chart, the mean behind them, in that of a histogram by height.
  const auto rank = [](const QCPItemText* name) { return name->property(kRank).toInt(); };
  std::stable_sort(names.begin(), names.end(), [&](auto* a, auto* b) { return rank(a) < rank(b); });
  std::vector<QRectF> taken;
  for (QCPItemText* const name : names) {
    const QRectF box(name->topLeft->pixelPosition(), name->bottomRight->pixelPosition());
    const bool isClear = std::none_of(
        taken.begin(), taken.end(), [&](const QRectF& other) { return other.adjusted(1, 1, -1, -1).intersects(box); });
    // Beside a chart they stand in its margin; in a histogram they lie within the frame.
    const bool isInside = name->clipToAxisRect() ? QRectF(frame).adjusted(-2, -2, 2, 2).contains(box)
                                                 : box.top() >= 0 && box.bottom() <= plot.height();
    if (isClear && isInside) {
      taken.push_back(box);
    } else {
      name->setVisible(false);
      changed = true;
    }
  }
  return changed;
}

QString CapabilityText(const TrendSeries& series) {
  const ValueStatistics statistics = StatisticsOf(series.values);
  const ProcessCapability capability = CapabilityOf(statistics, series.limits.lower, series.limits.upper);
  QStringList parts = {QString("n %1").arg(statistics.count)};
  const auto add = [&parts](const QString& name, const std::optional<double>& value, const QString& unit = {}) {
    if (value) parts << QString(name + " " + Figure(*value) + " " + unit).trimmed();
  };
  add(QObject::tr("mean"), statistics.mean, series.unit);
  add("s", statistics.standardDeviation, series.unit);
  add("Cp", capability.cp);
  add("Cpk", capability.cpk);
  return parts.join("    ");
}

std::optional<std::size_t> ValueAt(const QCustomPlot& plot, const TrendSeries& series, const QPointF& place) {
  constexpr double kReachPixels = 10.0;
  std::optional<std::size_t> nearest;
  double least = kReachPixels;
  for (std::size_t i = 0; i < series.values.size(); ++i) {
    if (!series.values[i]) continue;
    const double x = plot.xAxis->coordToPixel(PlaceOf(series, i)) - place.x();
    const double y = plot.yAxis->coordToPixel(*series.values[i]) - place.y();
    const double distance = std::hypot(x, y);
    if (distance > least) continue;
    least = distance;
    nearest = i;
  }
  return nearest;
}

}  // namespace texturon
