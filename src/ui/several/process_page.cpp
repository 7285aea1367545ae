// SPDX-License-Identifier: Apache-2.0

#include "ui/several/process_page.h"

#include <QBuffer>
#include <QFontMetrics>
#include <QPainter>
#include <QPdfWriter>
#include <algorithm>
#include <functional>
#include <string_view>

#include "platform/platform.h"
#include "ui/language.h"
#include "ui/plots/plot_axes.h"
#include "ui/plots/plot_items.h"
#include "ui/qt_text.h"
#include "ui/report/report.h"
#include "ui/report/report_pictures.h"

namespace texturon {
namespace {

constexpr int kMarginMM = 15;
constexpr QSize kPictureAlone(960, 480);
constexpr double kTextPoints = 9.0;

/// A plot on white ground.
class PaperPlot {
public:
  PaperPlot(int fontPixels, const std::function<void(QCustomPlot&)>& draw) {
    plot_.setPalette(QPalette(QColor(Qt::white)));
    QFont font = plot_.font();
    font.setPixelSize(fontPixels);
    plot_.axisRect()->setupFullAxesBox(true);
    for (QCPAxis* const axis : {plot_.xAxis, plot_.yAxis, plot_.xAxis2, plot_.yAxis2}) {
      axis->setTickLabelFont(font);
      axis->setLabelFont(font);
    }
    plot_.xAxis->setTicker(MakeTicker());
    plot_.yAxis->setTicker(MakeTicker());
    ApplyPalette(plot_);
    draw(plot_);
    QObject::connect(&plot_, &QCustomPlot::afterLayout, &plot_, [this] { SpreadLabels(plot_); });
    for (int i = 0; i < plot_.itemCount(); ++i) {
      if (auto* const label = qobject_cast<QCPItemText*>(plot_.item(i))) label->setFont(font);
    }
    MakeOpaque(plot_);
  }
  QCustomPlot& operator*() { return plot_; }
  QCustomPlot* operator->() { return &plot_; }

private:
  QCustomPlot plot_;
};

/// Lines and charts one below the other on a page.
class PageWriter {
public:
  explicit PageWriter(QPdfWriter& device) {
    painter_.begin(&device);
    painter_.setMode(QCPPainter::pmVectorized);
    painter_.setMode(QCPPainter::pmNoCaching);
    QFont font = painter_.font();
    font.setPointSizeF(kTextPoints);
    KeepLettersApart(font);
    painter_.setFont(font);
    width_ = device.width();
  }

  void Line(const QString& text, bool isBold = false) {
    QFont font = painter_.font();
    font.setBold(isBold);
    painter_.setFont(font);
    top_ += LineHeight();
    painter_.drawText(0, top_, Fitting(text, width_));
  }

  /// A row of the statistics; that of the titles is two lines high.
  void Row(const QStringList& cells, bool isTitle) {
    QFont font = painter_.font();
    font.setBold(isTitle);
    painter_.setFont(font);
    const int height = (isTitle ? 2 : 1) * LineHeight();
    int left = 0;
    for (int i = 0; i < cells.size(); ++i) {
      const auto column = static_cast<std::size_t>(i);
      const int width = width_ * kShares[std::min(column, std::size(kShares) - 1)] / 100;
      const QRect place(left, top_, width - LineHeight() / 2, height);
      const int flags =
          static_cast<int>(Qt::AlignBottom) |
          static_cast<int>(kIsText[std::min(column, std::size(kIsText) - 1)] ? Qt::AlignLeft : Qt::AlignRight) |
          (isTitle ? static_cast<int>(Qt::TextWordWrap) : 0);
      painter_.drawText(place, flags, isTitle ? cells[i] : Fitting(cells[i], place.width()));
      left += width;
    }
    top_ += height;
  }

  void Chart(int lines, const std::function<void(QCustomPlot&)>& draw) {
    const int height = lines * LineHeight();
    top_ += LineHeight();
    PaperPlot plot(QFontInfo(painter_.font()).pixelSize() * kReportResolution / painter_.device()->logicalDpiY(), draw);
    painter_.save();
    painter_.translate(0, top_);
    plot->toPainter(&painter_, width_, height);
    painter_.restore();
    top_ += height;
  }

  int LineHeight() const { return QFontMetrics(painter_.font(), painter_.device()).height(); }
  int LinesLeft(const QPdfWriter& device) const { return (device.height() - top_) / LineHeight(); }

private:
  /// Columns of the statistics in hundredths of the width: parameter, files, four figures, unit, out of tolerance.
  static constexpr int kShares[] = {27, 8, 12, 12, 12, 12, 6, 11};
  static constexpr bool kIsText[] = {true, false, false, false, false, false, true, false};

  QString Fitting(const QString& text, int width) const {
    return QFontMetrics(painter_.font(), painter_.device()).elidedText(Readable(text), Qt::ElideMiddle, width);
  }

  QCPPainter painter_;
  int width_ = 0;
  int top_ = 0;
};

QByteArray PageOf(const TrendSeries& series, const ProcessPage& page) {
  QByteArray bytes;
  QBuffer buffer(&bytes);
  buffer.open(QIODevice::WriteOnly);
  {
    QPdfWriter device(&buffer);
    device.setPdfVersion(QPagedPaintDevice::PdfVersion_A1b);
    device.setResolution(kReportResolution);
    device.setPageSize(QPageSize(QPageSize::A4));
    device.setPageMargins(QMarginsF(kMarginMM, kMarginMM, kMarginMM, kMarginMM), QPageLayout::Millimeter);
    device.setCreator("Texturon");
    constexpr int kTrendLines = 24;
    constexpr int kHistogramLines = 14;
    PageWriter writer(device);
    writer.Line(series.title, true);
    for (const QString& line : page.heading) writer.Line(line);
    writer.Line(CapabilityText(series));
    writer.Chart(kTrendLines, [&series](QCustomPlot& plot) { DrawTrend(plot, series); });
    writer.Chart(kHistogramLines, [&series](QCustomPlot& plot) { DrawHistogram(plot, series); });
    writer.Line({});
    writer.Row(page.titles, true);
    for (const CGridCtrl::Record& record : page.statistics) {
      if (writer.LinesLeft(device) < 2) {
        writer.Line(QObject::tr("More rows are in the table of the window."));
        break;
      }
      writer.Row(record.cells, false);
    }
  }
  return bytes;
}

}  // namespace

bool WriteProcess(const QString& file, const TrendSeries& series, const ProcessPage& page, QString& reason) {
  const EnglishScope english;
  const auto endsWith = [&file](const char* ending) { return file.endsWith(ending, Qt::CaseInsensitive); };
  QByteArray bytes;
  if (endsWith(".pdf")) {
    bytes = PageOf(series, page);
  } else {
    constexpr int kFontPixels = 12;
    PaperPlot plot(kFontPixels, [&series](QCustomPlot& each) { DrawTrend(each, series); });
    if (endsWith(".svg")) {
      bytes = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n" + SvgOf(*plot, kPictureAlone, "t");
    } else {
      QBuffer buffer(&bytes);
      buffer.open(QIODevice::WriteOnly);
      ImageOf(*plot, kPictureAlone).save(&buffer, "PNG");
    }
  }
  if (bytes.isEmpty()) {
    reason = QObject::tr("The picture cannot be made.");
    return false;
  }
  const std::string_view content(bytes.constData(), static_cast<std::size_t>(bytes.size()));
  const FileOutcome outcome = ReplaceFile(ToPath(file), content);
  if (!outcome.ok()) reason = FromText(FileSentence(ToPath(file), outcome.reason));
  return outcome.ok();
}

}  // namespace texturon
