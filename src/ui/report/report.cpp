// SPDX-License-Identifier: Apache-2.0

#include "ui/report/report.h"

#include <QBuffer>
#include <QImage>
#include <QPageRanges>
#include <QPdfWriter>
#include <QPixmap>
#include <functional>
#include <vector>

#include "analysis/curve_step.h"
#include "platform/platform.h"
#include "presentation/curve_readouts.h"
#include "presentation/report_texts.h"
#include "ui/plots/plot_items.h"
#include "ui/plots/probability_graph.h"
#include "ui/plots/profile_plot.h"
#include "ui/plots/texturon_brc_view.h"
#include "ui/plots/texturon_spect_view.h"
#include "ui/qt_text.h"

namespace texturon {
namespace {

constexpr int kMarginMM = 15;
constexpr int kGap = 12;
constexpr int kLineGap = 4;
constexpr int kColumnGap = 16;

/// A report is read on white, whatever the screen's colours.
void PutOnWhite(QCustomPlot& plot) {
  // Sizes in pixels, because the screen that the plot takes its measures from has dots of another size.
  QFont font("sans-serif");
  font.setPixelSize(kReportResolution / 9);
  font.setHintingPreference(QFont::PreferNoHinting);
  for (QCPAxis* const axis : {plot.xAxis, plot.yAxis, plot.xAxis2}) {
    axis->setLabelFont(font);
    axis->setTickLabelFont(font);
  }
  for (QCPAxis* const axis : {plot.xAxis, plot.yAxis}) axis->setTicker(MakeTicker());
  plot.legend->setFont(font);
  plot.setPalette(QPalette(Qt::black, Qt::white, Qt::white, Qt::darkGray, Qt::gray, Qt::black, Qt::white));
  ApplyPalette(plot);
}

/// Lays a report out, page by page, then paints the pages one after the other.
class ReportPrinter {
public:
  ReportPrinter(QPagedPaintDevice& device, const Document& document, std::string_view time)
      : device_(device), document_(WithAllCurves(document)), texts_(MakeReportTexts(document_, time)) {}

  int Print() {
    if (!painter_.begin(&device_)) return 0;
    painter_.setMode(QCPPainter::pmVectorized);
    painter_.setMode(QCPPainter::pmNoCaching);
    page_ = QRect(0, 0, device_.width(), device_.height());
    AddGraphs();
    AddLines();
    const QPageRanges wanted = device_.pageRanges();
    int printed = 0;
    for (std::size_t i = 0; i < pages_.size(); ++i) {
      if (!wanted.isEmpty() && !wanted.contains(static_cast<int>(i) + 1)) continue;
      if (printed > 0 && !device_.newPage()) return 0;
      PaintFrame(i);
      pages_[i]();
      ++printed;
    }
    return painter_.end() ? printed : 0;
  }

private:
  static QFont Font(double points, bool bold = false) {
    QFont font("sans-serif");
    font.setPointSizeF(points);
    font.setBold(bold);
    font.setHintingPreference(QFont::PreferNoHinting);
    return font;
  }
  int LineHeight(const QFont& font) const { return QFontMetrics(font, &device_).height() + kLineGap; }
  /// What is left of the page between head and foot.
  QRect Body() const { return page_.adjusted(0, LineHeight(Font(9)) + kGap, 0, -LineHeight(Font(8)) - kGap); }

  void Text(const QRect& where, const QString& text, const QFont& font, int flags = Qt::AlignLeft) {
    painter_.setFont(font);
    const QString fitting = QFontMetrics(font, &device_).elidedText(text, Qt::ElideMiddle, where.width());
    painter_.drawText(where, flags | Qt::AlignVCenter | Qt::TextSingleLine, fitting);
  }

  void PaintFrame(std::size_t number) {
    painter_.setPen(QPen(Qt::black));
    const int height = LineHeight(Font(9));
    const QRect head(page_.left(), page_.top(), page_.width(), height);
    Text(head, FromText(texts_.company), Font(9, true));
    Text(head.adjusted(page_.width() / 3, 0, 0, 0), FromText(texts_.identification), Font(9), Qt::AlignRight);
    const QRect foot(page_.left(), page_.bottom() - height, page_.width(), height);
    Text(foot.adjusted(0, 0, -page_.width() / 4, 0), FromText(document_.profiles.sourcePath), Font(8));
    Text(foot, QObject::tr("Page %1 of %2").arg(number + 1).arg(pages_.size()), Font(8), Qt::AlignRight);
    painter_.setPen(QPen(Qt::gray, 1));
    painter_.drawLine(head.bottomLeft(), head.bottomRight());
    painter_.drawLine(foot.topLeft(), foot.topRight());
    painter_.setPen(QPen(Qt::black));
  }

  /// Lines of name and text; returns the rectangle that is left below them.
  QRect PaintLines(QRect where, const std::vector<ReportLine>& lines) {
    const int height = LineHeight(Font(9));
    const int column = where.width() / 5;
    for (const auto& [name, text] : lines) {
      const QRect line(where.left(), where.top(), where.width(), height);
      Text(line.adjusted(0, 0, column - where.width(), 0), FromText(name), Font(9, true));
      Text(line.adjusted(column, 0, 0, 0), FromText(text), Font(9));
      where.setTop(where.top() + height);
    }
    return where;
  }

  QRect PaintTitle(QRect where) {
    int height = 2 * LineHeight(Font(16));
    const QImage logo(FromPath(PathFromText(document_.settings.display.LogoFile)));
    if (!logo.isNull()) {
      const QSize size = logo.size().scaled(where.width() / 3, height, Qt::KeepAspectRatio);
      painter_.drawImage(QRect(QPoint(where.right() - size.width(), where.top()), size), logo);
    } else {
      height = LineHeight(Font(16));
    }
    Text(QRect(where.left(), where.top(), where.width() * 2 / 3, height), QObject::tr("Surface Texture Report"),
         Font(16, true));
    where.setTop(where.top() + height + kGap);
    std::vector<ReportLine> lines = texts_.facts;
    lines.insert(lines.begin(), {"Identification", texts_.identification});
    where = PaintLines(where, lines);
    if (!texts_.summary.empty()) {
      const QRect line(where.left(), where.top() + kGap / 2, where.width(), LineHeight(Font(10)));
      Text(line, FromText(texts_.summary), Font(10, true));
      where.setTop(line.bottom());
    }
    return where.adjusted(0, kGap, 0, 0);
  }

  void PaintPlot(QCustomPlot& plot, const QRect& where, const QString& title) {
    const int height = LineHeight(Font(10));
    Text(QRect(where.left(), where.top(), where.width(), height), title, Font(10, true));
    painter_.save();
    painter_.translate(where.left(), where.top() + height);
    plot.toPainter(&painter_, where.width(), where.height() - height - kGap);
    painter_.restore();
  }

  void PaintProfiles(const QRect& where, const QString& title, const ShownProfiles& shown) {
    CClickableProfileGraph graph;
    PutOnWhite(graph);
    DrawProfiles(graph, document_, shown, true);
    PaintPlot(graph, where, title);
  }

  void PaintCurve(const QRect& where, void (*draw)(QCustomPlot&, const Document&), const QString& title) {
    QCustomPlot plot;
    plot.axisRect()->setupFullAxesBox(true);
    PutOnWhite(plot);
    draw(plot, document_);
    QObject::connect(&plot, &QCustomPlot::afterLayout, &plot, [&plot] { SpreadLabels(plot); });
    PaintPlot(plot, where, title);
  }

  void AddGraphs() {
    pages_.push_back([this] {
      QRect where = PaintTitle(Body());
      const int height = where.height() / 2;
      ShownProfiles shown{};
      shown[static_cast<std::size_t>(ProfileKind::kPrimary)] = true;
      shown[static_cast<std::size_t>(ProfileKind::kWaviness)] = true;
      PaintProfiles({where.left(), where.top(), where.width(), height}, QObject::tr("Primary and waviness"), shown);
      shown = {};
      shown[static_cast<std::size_t>(ProfileKind::kRoughness)] = true;
      PaintProfiles({where.left(), where.top() + height, where.width(), height}, QObject::tr("Roughness"), shown);
    });
    pages_.push_back([this] {
      const QRect where = Body();
      const int height = where.height() / 3;
      ShownProfiles raw{};
      raw[static_cast<std::size_t>(ProfileKind::kRaw)] = true;
      PaintProfiles({where.left(), where.top(), where.width(), height}, QObject::tr("As measured"), raw);
      const QRect middle(where.left(), where.top() + height, where.width(), height);
      const bool hasLines = !ProbabilityTexts(document_).empty();
      const int half = middle.width() / 2 - kColumnGap;
      PaintCurve(hasLines ? middle.adjusted(0, 0, -half - kColumnGap, 0) : middle, DrawBearingRatio,
                 BearingTitle(document_));
      if (hasLines) {
        PaintCurve(middle.adjusted(half + kColumnGap, 0, 0, 0), DrawProbability,
                   QObject::tr("Material Probability, Roughness"));
      }
      PaintCurve(middle.translated(0, height), DrawSpectrum, QObject::tr("Wavelength Content"));
    });
  }

  /// Cells from left to right; widths in hundredths of the width.
  void PaintRow(const QRect& line, const QStringList& cells, const QFont& font) {
    constexpr int kWidths[] = {34, 15, 11, 14, 14, 12};
    int left = line.left();
    for (int i = 0; i < cells.size(); ++i) {
      const int width = line.width() * kWidths[i] / 100;
      const bool isNumber = i == 1 || i == 3 || i == 4;
      Text(QRect(left, line.top(), width - kColumnGap, line.height()), cells[i], font,
           isNumber ? Qt::AlignRight : Qt::AlignLeft);
      left += width;
    }
  }

  void PaintTableHead(const QRect& line) {
    PaintRow(line,
             {QObject::tr("Parameter"), QObject::tr("Value"), QObject::tr("Unit"), QObject::tr("Lower limit"),
              QObject::tr("Upper limit"), QObject::tr("Verdict")},
             Font(8.5, true));
    painter_.drawLine(line.bottomLeft(), line.bottomRight());
  }

  void PaintTableRow(const QRect& line, std::size_t i) {
    const ReportRow& row = texts_.rows[i];
    const bool fails = row.verdict == Verdict::kFail;
    if (fails) painter_.fillRect(line, QColor(0xFB, 0xE3, 0xD6));
    const QString verdict = !row.verdict ? QString() : fails ? QObject::tr("out") : QObject::tr("pass");
    PaintRow(line,
             {FromText(row.title), row.value.empty() ? QString::fromUtf8("\u2013") : FromText(row.value),
              FromText(row.unit), FromText(row.lower), FromText(row.upper), verdict},
             Font(8.5, fails));
  }

  void PaintComparison(const QRect& line, const QStringList& cells, bool isHead) {
    PaintRow(line, cells, Font(8.5, isHead));
    if (isHead) painter_.drawLine(line.bottomLeft(), line.bottomRight());
  }

  void PaintSetting(const QRect& line, std::size_t i) {
    const auto& [name, text] = texts_.changedSettings[i];
    Text(line.adjusted(0, 0, -line.width() * 2 / 5, 0), FromText(name), Font(8.5));
    Text(line.adjusted(line.width() * 3 / 5 + kGap, 0, 0, 0), FromText(text), Font(8.5));
  }

  /// Lines that flow from page to page; their head stands above them on each.
  struct Section {
    std::function<void(const QRect&)> paintHead;
    std::function<void(const QRect&, std::size_t)> paintLine;
    std::size_t count = 0;
  };

  void AddLines() {
    const Section sections[] = {
        {[this](const QRect& line) { PaintTableHead(line); },
         [this](const QRect& line, std::size_t i) { PaintTableRow(line, i); }, texts_.rows.size()},
        {[this](const QRect& line) {
           PaintComparison(line,
                           {QObject::tr("Result of the instrument"), QObject::tr("Instrument"), QObject::tr("Unit"),
                            QObject::tr("Here"), QObject::tr("Difference")},
                           true);
         },
         [this](const QRect& line, std::size_t i) {
           const ComparedValue& value = texts_.instrumentValues[i];
           PaintComparison(line,
                           {FromText(value.name), FromText(value.instrument), FromText(value.unit),
                            FromText(value.here), FromText(value.difference)},
                           false);
         },
         texts_.instrumentValues.size()},
        {[this](const QRect& line) {
           Text(line, QObject::tr("Settings that differ from the defaults"), Font(9, true));
         },
         [this](const QRect& line, std::size_t i) { PaintSetting(line, i); }, texts_.changedSettings.size()}};
    const QRect body = Body();
    const int height = LineHeight(Font(8.5));
    std::vector<std::function<void()>> page;
    QRect line(body.left(), body.top(), body.width(), height);
    const auto endPage = [&] {
      if (page.empty()) return;
      pages_.push_back([parts = std::move(page)] {
        for (const auto& part : parts) part();
      });
      page.clear();
      line.moveTop(body.top());
    };
    const auto add = [&](const auto& paint) {
      page.push_back([paint, where = line] { paint(where); });
      line.translate(0, height);
    };
    for (const Section& section : sections) {
      for (std::size_t i = 0; i < section.count; ++i) {
        const int needed = i == 0 ? 2 * height : height;
        if (line.top() + needed > body.bottom()) endPage();
        if (i == 0 || page.empty()) add(section.paintHead);
        add([paintLine = section.paintLine, i](const QRect& where) { paintLine(where, i); });
      }
      line.translate(0, height);
    }
    endPage();
  }

  QPagedPaintDevice& device_;
  Document document_;
  ReportTexts texts_;
  QCPPainter painter_;
  QRect page_;
  std::vector<std::function<void()>> pages_;
};

}  // namespace

int PrintReport(QPagedPaintDevice& device, const Document& document, std::string_view time) {
  return ReportPrinter(device, document, time).Print();
}

bool WriteReport(const QString& file, const Document& document, std::string_view time, QString& reason) {
  QBuffer bytes;
  bytes.open(QIODevice::WriteOnly);
  {
    QPdfWriter writer(&bytes);
    writer.setResolution(kReportResolution);
    writer.setPageSize(QPageSize(QPageSize::A4));
    writer.setPageMargins(QMarginsF(kMarginMM, kMarginMM, kMarginMM, kMarginMM), QPageLayout::Millimeter);
    writer.setTitle(FromText(document.profiles.identification));
    writer.setCreator("Texturon");
    if (PrintReport(writer, document, time) == 0) {
      reason = QObject::tr("The report cannot be drawn.");
      return false;
    }
  }
  const QByteArray& data = bytes.data();
  const FileOutcome outcome =
      ReplaceFile(ToPath(file), std::string_view(data.constData(), static_cast<std::size_t>(data.size())));
  if (!outcome.ok()) reason = FromText(FileSentence(ToPath(file), outcome.reason));
  return outcome.ok();
}

}  // namespace texturon
