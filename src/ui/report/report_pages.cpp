// SPDX-License-Identifier: Apache-2.0

#include "ui/report/report_pages.h"

#include <QImage>
#include <QPageRanges>
#include <algorithm>
#include <map>
#include <memory>
#include <qcustomplot.h>
#include <vector>

#include "platform/platform.h"
#include "presentation/report_texts.h"
#include "ui/qt_text.h"
#include "ui/report/page_flow.h"
#include "ui/report/report_pictures.h"
#include "ui/report/table_fit.h"

namespace texturon {
namespace {

constexpr int kGap = 12;
constexpr int kLineGap = 4;
constexpr int kColumnGap = 16;
constexpr int kPartsOfLines = 3;  // a name has one of them
constexpr int kGapBetweenTables = 48;
constexpr int kPlotFont = kReportResolution / 9;
/// Of the page between head and foot: what a curve needs, and what it takes where there is room.
constexpr double kLeastPicture = 0.2;
constexpr double kMostPicture = 0.4;

const QColor kFailGround(0xFB, 0xE3, 0xD6);

QColor GroundOf(ReportOutcome outcome) {
  constexpr QRgb kGrounds[] = {0xFFFFFF, 0xE2F0D9, 0xFFF2CC, 0xFBE3D6};
  return QColor::fromRgb(kGrounds[static_cast<std::size_t>(outcome)]);
}

using Columns = std::vector<TableColumn>;

QStringList Cells(const std::vector<std::string>& texts) {
  QStringList cells;
  for (const std::string& text : texts) cells.push_back(FromText(text));
  return cells;
}

QString ValueOf(const ReportRow& row) {
  return row.value.empty() ? QString::fromUtf8("\u2013") : FromText(row.value);
}

/// Turns the blocks into pieces of pages.
class ReportPrinter {
public:
  ReportPrinter(QPagedPaintDevice& device, const Document& document, std::string_view time, const ReportChoice& choice)
      : device_(device),
        document_(document),
        choice_(choice),
        texts_(MakeReportTexts(document, time, choice.several)) {}

  int Print() {
    if (!painter_.begin(&device_)) return 0;
    painter_.setMode(QCPPainter::pmVectorized);
    painter_.setMode(QCPPainter::pmNoCaching);
    page_ = QRect(0, 0, device_.width(), device_.height());
    body_ = page_.adjusted(0, LineHeight(Font(9)) + kGap, 0, -LineHeight(Font(8)) - kGap);
    PageFlow flow(body_, kGap);
    const auto& blocks = choice_.layout.blocks;
    for (std::size_t i = 0; i < blocks.size(); ++i) {
      if (i + 1 < blocks.size() && AddPair(flow, blocks[i].kind, blocks[i + 1].kind)) {
        ++i;
      } else {
        AddBlock(flow, blocks[i]);
      }
    }
    return Paint(flow.TakePages());
  }

private:
  static QFont Font(double points, bool bold = false) {
    QFont font("sans-serif");
    font.setPointSizeF(points);
    font.setBold(bold);
    font.setHintingPreference(QFont::PreferNoHinting);
    KeepLettersApart(font);
    return font;
  }
  QFontMetrics MetricsOf(const QFont& font) const { return {font, &device_}; }
  int LineHeight(const QFont& font) const { return MetricsOf(font).height() + kLineGap; }

  /// Smaller letters before any is left out: a number without its middle is another number.
  QFont Fitting(QFont font, const QString& text, int width) const {
    constexpr double kSmallestPoints = 6.0;
    constexpr double kStep = 0.25;
    while (font.pointSizeF() > kSmallestPoints && QFontMetrics(font, &device_).horizontalAdvance(text) > width)
      font.setPointSizeF(font.pointSizeF() - kStep);
    return font;
  }

  void Text(const QRect& where, const QString& text, const QFont& font, int flags = Qt::AlignLeft) {
    const QFont fittingFont = Fitting(font, Readable(text), where.width());
    painter_.setFont(fittingFont);
    const QString fitting =
        QFontMetrics(fittingFont, &device_).elidedText(Readable(text), Qt::ElideMiddle, where.width());
    painter_.drawText(where, flags | Qt::AlignVCenter | Qt::TextSingleLine, fitting);
  }

  int Paint(const std::vector<PageFlow::Page>& pages) {
    const QPageRanges wanted = device_.pageRanges();
    int printed = 0;
    for (std::size_t i = 0; i < pages.size(); ++i) {
      if (!wanted.isEmpty() && !wanted.contains(static_cast<int>(i) + 1)) continue;
      if (printed > 0 && !device_.newPage()) return 0;
      PaintFrame(i + 1, pages.size());
      pages[i]();
      ++printed;
    }
    return painter_.end() ? printed : 0;
  }

  void PaintFrame(std::size_t number, std::size_t count) {
    painter_.setPen(QPen(Qt::black));
    const int height = LineHeight(Font(9));
    const QRect head(page_.left(), page_.top(), page_.width(), height);
    Text(head, FromText(texts_.company), Font(9, true));
    Text(head.adjusted(page_.width() / 3, 0, 0, 0), FromText(texts_.identification), Font(9), Qt::AlignRight);
    const QRect foot(page_.left(), page_.bottom() - height, page_.width(), height);
    Text(foot.adjusted(0, 0, -page_.width() / 4, 0), FromText(document_.profiles.sourcePath), Font(8));
    Text(foot, QObject::tr("Page %1 of %2").arg(number).arg(count), Font(8), Qt::AlignRight);
    painter_.setPen(QPen(Qt::gray, 1));
    painter_.drawLine(head.bottomLeft(), head.bottomRight());
    painter_.drawLine(foot.topLeft(), foot.topRight());
    painter_.setPen(QPen(Qt::black));
  }

  void AddBlock(PageFlow& flow, const ReportBlock& block) {
    using Adder = void (ReportPrinter::*)(PageFlow&, const ReportBlock&);
    static const std::map<ReportBlockKind, Adder> adders = {
        {ReportBlockKind::kHead, &ReportPrinter::AddHead},
        {ReportBlockKind::kVerdict, &ReportPrinter::AddVerdict},
        {ReportBlockKind::kParameters, &ReportPrinter::AddParameters},
        {ReportBlockKind::kStatistics, &ReportPrinter::AddStatistics},
        {ReportBlockKind::kInstrument, &ReportPrinter::AddInstrument},
        {ReportBlockKind::kSettings, &ReportPrinter::AddSettings},
        {ReportBlockKind::kText, &ReportPrinter::AddText},
        {ReportBlockKind::kNewPage, &ReportPrinter::AddNewPage},
    };
    const auto adder = adders.find(block.kind);
    if (adder != adders.end()) {
      (this->*adder->second)(flow, block);
    } else {
      AddPicture(flow, block.kind);
    }
  }

  void AddHead(PageFlow& flow, const ReportBlock& /*block*/) {
    const QImage logo = LogoOf(document_);
    const int height = (logo.isNull() ? 1 : 2) * LineHeight(Font(16));
    flow.Add(
        PagePiece{.height = height, .paint = [this, logo](const QRect& where) {
                    if (!logo.isNull()) {
                      const QSize size = logo.size().scaled(where.width() / 3, where.height(), Qt::KeepAspectRatio);
                      painter_.drawImage(QRect(QPoint(where.right() - size.width(), where.top()), size), logo);
                    }
                    Text(where.adjusted(0, 0, -where.width() / 3, 0), FromText(choice_.layout.title), Font(16, true));
                  }});
    std::vector<ReportLine> lines = texts_.facts;
    lines.insert(lines.begin(), {"Identification", texts_.identification});
    const int lineHeight = LineHeight(Font(9));
    flow.Add(PagePiece{.height = static_cast<int>(lines.size()) * lineHeight,
                       .paint = [this, lines, lineHeight](const QRect& where) {
                         QRect line(where.left(), where.top(), where.width(), lineHeight);
                         for (const ReportLine& fact : lines) {
                           PaintNamed(line, fact, 9, 5);
                           line.translate(0, lineHeight);
                         }
                       }});
  }

  /// A name in bold in the first part of the width, its text behind it.
  void PaintNamed(const QRect& line, const ReportLine& fact, double points, int parts) {
    const int column = line.width() / parts;
    Text(line.adjusted(0, 0, column - line.width() - kColumnGap, 0), FromText(fact.first), Font(points, true));
    Text(line.adjusted(column, 0, 0, 0), FromText(fact.second), Font(points));
  }

  void AddVerdict(PageFlow& flow, const ReportBlock& /*block*/) {
    const bool hasVerdict = !texts_.summary.empty();
    const QString sentence = FromText(hasVerdict ? std::string_view(texts_.summary) : kNoVerdict);
    const int inset = hasVerdict ? kGap : 0;
    const QFont font = Font(10, hasVerdict);
    constexpr int kFlags = Qt::AlignLeft | Qt::AlignVCenter | Qt::TextWordWrap;
    const QRect room(0, 0, body_.width() - 2 * inset, body_.height());
    flow.Add(PagePiece{.height = QFontMetrics(font, &device_).boundingRect(room, kFlags, sentence).height() + inset,
                       .paint = [this, sentence, font, inset](const QRect& where) {
                         if (inset > 0) painter_.fillRect(where, GroundOf(texts_.outcome));
                         painter_.setFont(font);
                         painter_.drawText(where.adjusted(inset, 0, -inset, 0), kFlags, sentence);
                       }});
    AddTolerancedRows(flow);
  }

  std::vector<const ReportRow*> RowsWhere(bool (*belongs)(const ReportRow&)) const {
    std::vector<const ReportRow*> rows;
    for (const ReportRow& row : texts_.rows) {
      if (belongs(row)) rows.push_back(&row);
    }
    return rows;
  }

  void AddTolerancedRows(PageFlow& flow) {
    const auto rows = RowsWhere([](const ReportRow& row) { return row.isToleranced; });
    const Columns columns = {{26, false}, {18, true}, {14, true}, {14, true}, {8, false}, {20, false}};
    AddTable(flow, Cells(LimitTitles()), columns, rows.size(), [this, rows, columns](const QRect& line, std::size_t i) {
      const ReportRow& row = *rows[i];
      const bool fails = row.verdict == Acceptance::kFail;
      if (fails) painter_.fillRect(line, kFailGround);
      if (row.verdict == Acceptance::kUndecided) painter_.fillRect(line, GroundOf(ReportOutcome::kOpen));
      PaintRow(line, columns,
               {FromText(row.title), ValueOf(row), FromText(row.lower), FromText(row.upper), FromText(row.unit),
                FromText(VerdictText(row))},
               fails);
    });
  }

  void AddParameters(PageFlow& flow, const ReportBlock& /*block*/) {
    AddTitle(flow, QObject::tr("Parameters"));
    if (!choice_.layout.Has(ReportBlockKind::kVerdict)) AddTolerancedRows(flow);
    const auto rows = RowsWhere([](const ReportRow& row) { return !row.isToleranced && !row.value.empty(); });
    const Columns columns = {{54, false}, {31, true}, {15, false}};
    // Values with their uncertainty need the whole width.
    const std::size_t groups = document_.results.uncertainties.empty() ? 2 : 1;
    AddTable(
        flow, {QObject::tr("Parameter"), QObject::tr("Value"), QObject::tr("Unit")}, columns, rows.size(),
        [this, rows, columns](const QRect& line, std::size_t i) {
          PaintRow(line, columns, {FromText(rows[i]->title), ValueOf(*rows[i]), FromText(rows[i]->unit)}, false);
        },
        groups);
    AddNamedLines(flow, QObject::tr("Without a value"), texts_.reasons, kPartsOfLines);
    differences_ = Wrapped(texts_.differences, kPartsOfLines);
    AddNamedLines(flow, QObject::tr("Rows of 2021 that differ from those of the same name before"), differences_,
                  kPartsOfLines);
  }

  /// Texts that are too long for their line go on in further ones without a name.
  std::vector<ReportLine> Wrapped(const std::vector<ReportLine>& texts, int parts) {
    const QFontMetrics metrics(Font(8.5), &device_);
    const int width = body_.width() - body_.width() / parts - kColumnGap;
    std::vector<ReportLine> lines;
    for (const auto& [name, text] : texts) {
      lines.emplace_back(name, "");
      for (const QString& word : FromText(text).split(' ')) {
        const QString line = FromText(lines.back().second);
        const QString longer = line.isEmpty() ? word : line + ' ' + word;
        if (!line.isEmpty() && metrics.horizontalAdvance(longer) > width) {
          lines.emplace_back("", ToText(word));
        } else {
          lines.back().second = ToText(longer);
        }
      }
    }
    return lines;
  }

  void AddStatistics(PageFlow& flow, const ReportBlock& /*block*/) {
    if (choice_.several.rows.empty()) return;
    QList<QStringList> cells;
    for (const auto& line : StatisticsCells(choice_.several.rows, document_.settings.display.Metric))
      cells << Cells(line);
    const QStringList titles = Cells(StatisticsTitles());
    const FittedTable table = FitTable(titles, cells, {false, true, true, true, true, true, false, false},
                                       body_.width(), kColumnGap, MetricsOf(Font(8.5)), MetricsOf(Font(8.5, true)));
    AddTitle(flow, QObject::tr("Several profiles"));
    AddTable(flow, titles, table.columns, static_cast<std::size_t>(table.lines.size()),
             [this, table](const QRect& line, std::size_t i) {
               PaintRow(line, table.columns, table.lines[static_cast<qsizetype>(i)], false);
             });
    if (!choice_.several.profiles.empty()) AddNamedLines(flow, QObject::tr("Profiles"), choice_.several.profiles, 20);
  }

  void AddInstrument(PageFlow& flow, const ReportBlock& /*block*/) {
    const auto& values = texts_.instrumentValues;
    if (values.empty()) return;
    const Columns columns = {{36, false}, {18, true}, {18, true}, {18, true}, {10, false}};
    AddTable(flow,
             {QObject::tr("Result of the instrument"), QObject::tr("Instrument"), QObject::tr("Here"),
              QObject::tr("Difference"), QObject::tr("Unit")},
             columns, values.size(), [this, &values, columns](const QRect& line, std::size_t i) {
               const ComparedValue& value = values[i];
               PaintRow(line, columns,
                        {FromText(value.name), FromText(value.instrument), FromText(value.here),
                         FromText(value.difference), FromText(value.unit)},
                        false);
             });
  }

  void AddSettings(PageFlow& flow, const ReportBlock& /*block*/) {
    AddPairs(flow, QObject::tr("Settings that differ from the defaults"), texts_.changedSettings);
    AddPairs(flow, QObject::tr("Where this comes from"), texts_.origin);
  }

  /// What something is, and what it says, a pair a line.
  void AddPairs(PageFlow& flow, const QString& title, const std::vector<ReportLine>& pairs) {
    if (pairs.empty()) return;
    PageLines lines{.lineHeight = LineHeight(Font(8.5)), .count = pairs.size()};
    lines.paintHead = [this, title](const QRect& line) { Text(line, title, Font(9, true)); };
    // One column for all of a block: a digest needs most of the width.
    const bool hasDigest =
        std::any_of(pairs.begin(), pairs.end(), [](const ReportLine& pair) { return pair.second.size() > 60; });
    lines.paintLine = [this, &pairs, hasDigest](const QRect& line, std::size_t i) {
      const int from = hasDigest ? line.width() * 3 / 10 : line.width() * 3 / 5;
      Text(line.adjusted(0, 0, from - line.width(), 0), FromText(pairs[i].first), Font(8.5));
      Text(line.adjusted(from + kGap, 0, 0, 0), FromText(pairs[i].second), Font(8.5));
    };
    flow.Add(lines);
  }

  void AddText(PageFlow& flow, const ReportBlock& block) {
    const QString text = FromText(block.text);
    const QFont font = Font(9);
    constexpr int kFlags = Qt::AlignLeft | Qt::AlignTop | Qt::TextWordWrap;
    const QRect room(0, 0, body_.width(), body_.height());
    flow.Add(PagePiece{.height = QFontMetrics(font, &device_).boundingRect(room, kFlags, text).height(),
                       .paint = [this, text, font](const QRect& where) {
                         painter_.setFont(font);
                         painter_.drawText(where, kFlags, text);
                       }});
  }

  void AddNewPage(PageFlow& flow, const ReportBlock& /*block*/) { flow.EndPage(); }

  void AddTitle(PageFlow& flow, const QString& title) {
    // Never at the foot of a page: the head of a table and three of its lines go with it.
    flow.Add(PagePiece{.height = LineHeight(Font(10)),
                       .below = kGap + 4 * LineHeight(Font(8.5)),
                       .paint = [this, title](const QRect& where) { Text(where, title, Font(10, true)); }});
  }

  void AddNamedLines(PageFlow& flow, const QString& title, const std::vector<ReportLine>& texts, int parts) {
    PageLines lines{.lineHeight = LineHeight(Font(8.5)), .count = texts.size()};
    lines.paintHead = [this, title](const QRect& line) { Text(line, title, Font(9, true)); };
    lines.paintLine = [this, &texts, parts](const QRect& line, std::size_t i) {
      PaintNamed(line, texts[i], 8.5, parts);
    };
    flow.Add(lines);
  }

  void AddTable(PageFlow& flow, const QStringList& titles, const Columns& columns, std::size_t count,
                const std::function<void(const QRect&, std::size_t)>& paintLine, std::size_t side = 1) {
    PageLines lines{
        .lineHeight = LineHeight(Font(8.5)), .count = count, .columns = side, .columnGap = kGapBetweenTables};
    lines.paintHead = [this, titles, columns](const QRect& line) {
      PaintRow(line, columns, titles, true);
      painter_.drawLine(line.bottomLeft(), line.bottomRight());
    };
    lines.paintLine = paintLine;
    flow.Add(lines);
  }

  void PaintRow(const QRect& line, const Columns& columns, const QStringList& cells, bool bold) {
    int left = line.left();
    for (std::size_t i = 0; i < columns.size(); ++i) {
      const int width = static_cast<int>(line.width() * columns[i].width / 100.0);
      Text(QRect(left, line.top(), width - kColumnGap, line.height()), cells[static_cast<int>(i)], Font(8.5, bold),
           columns[i].isNumber ? Qt::AlignRight : Qt::AlignLeft);
      left += width;
    }
  }

  void PaintPicture(const QRect& where, const BlockPicture& picture) {
    const int height = LineHeight(Font(10));
    Text(QRect(where.left(), where.top(), where.width(), height), picture.title, Font(10, true));
    painter_.save();
    painter_.translate(where.left(), where.top() + height);
    picture.plot->toPainter(&painter_, where.width(), where.height() - height);
    painter_.restore();
  }

  /// Null where there is nothing to show.
  std::shared_ptr<const BlockPicture> Picture(ReportBlockKind kind) const {
    auto picture = std::make_shared<const BlockPicture>(MakePicture(kind, document_, kPlotFont));
    return picture->plot != nullptr ? picture : nullptr;
  }

  PagePiece PicturePiece(std::function<void(const QRect&)> paint) const {
    return {.height = static_cast<int>(body_.height() * kLeastPicture),
            .most = static_cast<int>(body_.height() * kMostPicture),
            .paint = std::move(paint)};
  }

  void AddPicture(PageFlow& flow, ReportBlockKind kind) {
    const auto picture = Picture(kind);
    if (picture == nullptr) return;
    flow.Add(PicturePiece([this, picture](const QRect& where) { PaintPicture(where, *picture); }));
  }

  /// Curves over ratios need no width: two of them stand side by side.
  bool AddPair(PageFlow& flow, ReportBlockKind leftKind, ReportBlockKind rightKind) {
    const auto isNarrow = [](ReportBlockKind kind) {
      return kind == ReportBlockKind::kCurves || kind == ReportBlockKind::kProbability;
    };
    if (!isNarrow(leftKind) || !isNarrow(rightKind)) return false;
    const auto left = Picture(leftKind);
    const auto right = Picture(rightKind);
    if (left == nullptr || right == nullptr) return false;
    flow.Add(PicturePiece([this, left, right](const QRect& where) {
      const int half = (where.width() - kColumnGap) / 2;
      PaintPicture(QRect(where.left(), where.top(), half, where.height()), *left);
      PaintPicture(QRect(where.right() - half, where.top(), half, where.height()), *right);
    }));
    return true;
  }

  QPagedPaintDevice& device_;
  const Document& document_;
  const ReportChoice& choice_;
  ReportTexts texts_;
  std::vector<ReportLine> differences_;  ///< in lines of the page
  QCPPainter painter_;
  QRect page_;
  QRect body_;
};

}  // namespace

int PrintReportPages(QPagedPaintDevice& device, const Document& document, std::string_view time,
                     const ReportChoice& choice) {
  return ReportPrinter(device, document, time, choice).Print();
}

}  // namespace texturon
