// SPDX-License-Identifier: Apache-2.0

#include "ui/report/report_pictures.h"

#include <algorithm>

#include "analysis/curve_step.h"
#include "platform/platform.h"
#include "presentation/curve_readouts.h"
#include "ui/plots/clickable_profile_graph.h"
#include "ui/plots/motif_view.h"
#include "ui/plots/plot_axes.h"
#include "ui/plots/plot_items.h"
#include "ui/plots/probability_graph.h"
#include "ui/plots/profile_plot.h"
#include "ui/plots/texturon_brc_view.h"
#include "ui/plots/texturon_spect_view.h"
#include "ui/qt_text.h"
#include "ui/report/svg_device.h"

namespace texturon {
namespace {

/// A report is read on white, whatever the screen's colours. Sizes in pixels, because the screen that the plot takes
/// its measures from has dots of another size.
void PutOnWhite(QCustomPlot& plot, int fontPixels) {
  QFont font("sans-serif");
  font.setPixelSize(fontPixels);
  font.setHintingPreference(QFont::PreferNoHinting);
  KeepLettersApart(font);
  for (QCPAxis* const axis : {plot.xAxis, plot.yAxis, plot.xAxis2}) {
    axis->setLabelFont(font);
    axis->setTickLabelFont(font);
  }
  for (QCPAxis* const axis : {plot.xAxis, plot.yAxis}) axis->setTicker(MakeTicker());
  plot.legend->setFont(font);
  plot.setPalette(QPalette(Qt::black, Qt::white, Qt::white, Qt::darkGray, Qt::gray, Qt::black, Qt::white));
  ApplyPalette(plot);
}

QColor OnWhite(const QColor& colour) {
  const auto mixed = [share = colour.alphaF()](float part) { return share * part + (1.0F - share); };
  return QColor::fromRgbF(mixed(colour.redF()), mixed(colour.greenF()), mixed(colour.blueF()));
}

}  // namespace

void MakeOpaque(QCustomPlot& plot) {
  const auto opaqueBrush = [](QBrush brush) {
    if (brush.style() != Qt::NoBrush) brush.setColor(OnWhite(brush.color()));
    return brush;
  };
  const auto opaquePen = [](QPen pen) {
    if (pen.style() != Qt::NoPen) pen.setColor(OnWhite(pen.color()));
    return pen;
  };
  for (QCPAxis* const axis : {plot.xAxis, plot.yAxis}) {
    axis->grid()->setPen(opaquePen(axis->grid()->pen()));
    axis->grid()->setZeroLinePen(opaquePen(axis->grid()->zeroLinePen()));
  }
  for (int i = 0; i < plot.itemCount(); ++i) {
    if (auto* const rect = qobject_cast<QCPItemRect*>(plot.item(i))) {
      rect->setBrush(opaqueBrush(rect->brush()));
      rect->setPen(opaquePen(rect->pen()));
    } else if (auto* const line = qobject_cast<QCPItemStraightLine*>(plot.item(i))) {
      line->setPen(opaquePen(line->pen()));
    }
  }
  for (int i = 0; i < plot.plottableCount(); ++i) {
    plot.plottable(i)->setBrush(opaqueBrush(plot.plottable(i)->brush()));
    plot.plottable(i)->setPen(opaquePen(plot.plottable(i)->pen()));
  }
}

namespace {

/// What a block draws and what that reads.
struct PictureRow {
  ReportBlockKind kind;
  std::initializer_list<ProfileKind> profiles;
  void (*draw)(QCustomPlot&, const Document&);
  QString (*title)(const Document&);
  WantedResults wanted;
};

const PictureRow kPictures[] = {
    {ReportBlockKind::kProfile,
     {ProfileKind::kPrimary, ProfileKind::kWaviness},
     nullptr,
     [](const Document&) { return QObject::tr("Primary and waviness"); },
     kNoCurves},
    {ReportBlockKind::kRoughness,
     {ProfileKind::kRoughness},
     nullptr,
     [](const Document&) { return QObject::tr("Roughness"); },
     kNoCurves},
    {ReportBlockKind::kRecord,
     {ProfileKind::kRaw},
     nullptr,
     [](const Document&) { return QObject::tr("As measured"); },
     kNoCurves},
    {ReportBlockKind::kCurves,
     {},
     DrawBearingRatio,
     BearingTitle,
     {.spectrum = false, .heightCurves = true, .coreRoughness = true}},
    {ReportBlockKind::kProbability,
     {},
     DrawProbability,
     [](const Document&) { return QObject::tr("Material probability, roughness"); },
     {.spectrum = false, .heightCurves = true, .coreRoughness = false, .probability = true}},
    {ReportBlockKind::kSpectrum,
     {},
     DrawSpectrum,
     [](const Document&) { return QObject::tr("Wavelength content"); },
     {.spectrum = true, .heightCurves = false, .coreRoughness = false}},
    {ReportBlockKind::kMotifs,
     {},
     DrawMotifs,
     [](const Document&) { return QObject::tr("Motifs, primary"); },
     {.spectrum = false, .heightCurves = false, .coreRoughness = false, .motifs = true}},
};

const PictureRow* FindPicture(ReportBlockKind kind) {
  const auto* const row = std::find_if(std::begin(kPictures), std::end(kPictures),
                                       [kind](const PictureRow& candidate) { return candidate.kind == kind; });
  return row != std::end(kPictures) ? row : nullptr;
}

/// Profiles over the stretch that the primary profile has, so that those of a report lie over each other; the record
/// over all of it.
std::unique_ptr<QCustomPlot> ProfilesOf(const PictureRow& row, const Document& document, int fontPixels) {
  auto graph = std::make_unique<CClickableProfileGraph>();
  PutOnWhite(*graph, fontPixels);
  constexpr int kNumberWidths = 6;  // the same room at the left for numbers of any length
  graph->axisRect()->setMinimumMargins(QMargins(kNumberWidths * fontPixels, fontPixels, fontPixels, 0));
  ShownProfiles shown{};
  bool hasAny = false;
  for (const ProfileKind kind : row.profiles) {
    shown[static_cast<std::size_t>(kind)] = true;
    hasAny |= document.profiles.Has(kind);
  }
  if (!hasAny) return nullptr;
  DrawProfiles(*graph, document, shown, ViewAfter::kWhole);
  if (row.kind != ReportBlockKind::kRecord && document.profiles.primaryRange) {
    // The rest of the record is not in the picture, so its heights are not either.
    graph->ShowStretchHeights();
    const Profile primary = document.profiles.View(ProfileKind::kPrimary);
    const double perPoint = primary.spacingUM * kMillimetresPerMicrometre * UnitsOf(document).length;
    graph->ShowX({primary.range.first * perPoint, primary.range.last * perPoint});
  }
  return graph;
}

}  // namespace

void KeepLettersApart(QFont& font) {
  constexpr double kHair = 0.02;
  font.setLetterSpacing(QFont::AbsoluteSpacing, kHair);
}

WantedResults ResultsFor(const ReportTemplate& layout) {
  WantedResults all = kNoCurves;
  for (const ReportBlock& block : layout.blocks) {
    const PictureRow* const row = FindPicture(block.kind);
    if (row == nullptr) continue;
    all.spectrum |= row->wanted.spectrum;
    all.heightCurves |= row->wanted.heightCurves;
    all.coreRoughness |= row->wanted.coreRoughness;
    all.probability |= row->wanted.probability;
    all.motifs |= row->wanted.motifs;
  }
  return all;
}

ReadyDocument::ReadyDocument(const Document& document, const WantedResults& wanted) : document_(document) {
  if (HasCurves(document, wanted)) return;
  made_ = document;
  made_->wanted = wanted;
  ComputeMissingCurves(*made_);
}

BlockPicture MakePicture(ReportBlockKind kind, const Document& document, int fontPixels) {
  const PictureRow* const row = FindPicture(kind);
  if (row == nullptr) return {};
  if (kind == ReportBlockKind::kProbability && ProbabilityTexts(document).empty()) return {};
  BlockPicture picture;
  if (row->draw == nullptr) {
    picture.plot = ProfilesOf(*row, document, fontPixels);
  } else {
    picture.plot = std::make_unique<QCustomPlot>();
    picture.plot->axisRect()->setupFullAxesBox(true);
    PutOnWhite(*picture.plot, fontPixels);
    row->draw(*picture.plot, document);
    // Half of a number at the end of an axis stands beyond it.
    picture.plot->axisRect()->setMinimumMargins(QMargins(0, fontPixels, fontPixels, 0));
    QCustomPlot* const plot = picture.plot.get();
    QObject::connect(plot, &QCustomPlot::afterLayout, plot, [plot] { SpreadLabels(*plot); });
  }
  if (picture.plot == nullptr) return {};
  MakeOpaque(*picture.plot);
  picture.title = row->title(document);
  return picture;
}

std::unique_ptr<QCustomPlot> MakePicture(const PictureOfView& view, const Document& document, int fontPixels) {
  auto graph = std::make_unique<CClickableProfileGraph>();
  PutOnWhite(*graph, fontPixels);
  DrawProfiles(*graph, document, view.shown, ViewAfter::kWhole);
  graph->ShowX({view.firstX, view.lastX});
  graph->yAxis->setRange(view.lowest, view.highest);
  MakeOpaque(*graph);
  return graph;
}

QByteArray SvgOf(QCustomPlot& plot, const QSize& size, const QByteArray& idPrefix) {
  CSvgDevice device(size, idPrefix);
  QCPPainter painter;
  painter.begin(&device);
  painter.setMode(QCPPainter::pmVectorized);
  painter.setMode(QCPPainter::pmNoCaching);
  plot.toPainter(&painter, size.width(), size.height());
  painter.end();
  return device.Element();
}

QImage ImageOf(QCustomPlot& plot, const QSize& size) {
  QImage image(size, QImage::Format_RGB32);
  image.fill(Qt::white);
  QCPPainter painter(&image);
  painter.setMode(QCPPainter::pmNoCaching);
  plot.toPainter(&painter, size.width(), size.height());
  return image;
}

QImage LogoOf(const Document& document) {
  const std::string& file = document.settings.display.LogoFile;
  return file.empty() ? QImage() : QImage(FromPath(PathFromText(file)));
}

}  // namespace texturon
