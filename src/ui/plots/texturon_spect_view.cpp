// SPDX-License-Identifier: Apache-2.0

#include "ui/plots/texturon_spect_view.h"

#include <algorithm>

#include "presentation/curve_readouts.h"
#include "ui/colours.h"
#include "ui/language.h"
#include "ui/plots/clickable_profile_graph.h"
#include "ui/plots/plot_cursors.h"
#include "ui/plots/plot_items.h"
#include "ui/qt_text.h"

namespace texturon {
namespace {

void MarkCutoffs(QCustomPlot& plot, const Document& document, double factor) {
  const AnalysisSettings& settings = document.settings.analysis;
  const QPen pen(CurveColour(1, plot.palette()), 1.0, Qt::DashLine);
  if (settings.LcCutoffMM > 0.0) AddNamedLine(plot, settings.LcCutoffMM * factor, "Lc", pen);
  // At the short end, where the frame is near.
  if (settings.LsCutoffMM > 0.0) AddNamedLine(plot, settings.LsCutoffMM * factor, "Ls", pen, Qt::AlignRight);
}

void ScaleAmplitudes(QCustomPlot& plot, const Document& document, double factor) {
  const DisplaySettings& display = document.settings.display;
  const double peakUM = document.profiles.spectrum.peakAmplitudeUM;
  if (display.SpectrumAutoScale || !(display.SpectrumYMaxUM > display.SpectrumYMinUM)) {
    plot.yAxis->setRange(0.0, peakUM > 0.0 ? 1.05 * peakUM * factor : 1.0);
  } else {
    plot.yAxis->setRange(display.SpectrumYMinUM * factor, display.SpectrumYMaxUM * factor);
  }
}

}  // namespace

void DrawSpectrum(QCustomPlot& plot, const Document& document) {
  const ShownUnits units = UnitsOf(document);
  plot.xAxis->setLabel(QObject::tr("wavelength in %1").arg(units.lengthName));
  for (QCPAxis* const axis : {plot.xAxis, plot.xAxis2}) {
    axis->setScaleType(QCPAxis::stLogarithmic);
    axis->setTicker(QSharedPointer<QCPAxisTickerLog>::create());
    axis->setRangeReversed(true);
    axis->setNumberFormat("gb");
    axis->setNumberPrecision(3);
  }
  plot.yAxis->setLabel(QObject::tr("amplitude in %1").arg(units.heightName));
  ClearDrawing(plot);
  const Spectrum& spectrum = document.profiles.spectrum;
  const auto count = static_cast<qsizetype>(spectrum.amplitudeUM.size());
  if (count < 2) return;
  QCPGraph* const graph = plot.addGraph();
  graph->setPen(QPen(CurveColour(0, plot.palette()), 1.0));
  QVector<QCPGraphData> points(count - 1);
  for (std::size_t i = 1; i < spectrum.amplitudeUM.size(); ++i) {
    // From the shortest wavelength on, as the axis counts.
    points[count - 1 - static_cast<qsizetype>(i)] = {spectrum.wavelengthMM[i] * units.length,
                                                     spectrum.amplitudeUM[i] * units.height};
  }
  plot.xAxis->setRange(points.front().key, points.back().key);
  plot.xAxis2->setRange(plot.xAxis->range());
  graph->data()->set(points, true);
  MarkCutoffs(plot, document, units.length);
  ScaleAmplitudes(plot, document, units.height);
}

CTexturonSpectView::CTexturonSpectView(CTexturonDoc& doc, QWidget* parent)
    : CCurveView(doc, {.spectrum = true, .heightCurves = false, .coreRoughness = false}, parent),
      cursors_(new CPlotCursors(Plot(), false)) {
  SetTitle(tr("Wavelength Content"));
  // To the right the wavelengths get shorter.
  cursors_->Confine([this](double place) { return Settle(place, 0); },
                    [this](double place, int steps) { return Settle(place, steps); });
  connect(cursors_, &CPlotCursors::Moved, this, &CTexturonSpectView::Tell);
}

void CTexturonSpectView::Draw() {
  DrawSpectrum(Plot(), Doc().document());
}

void CTexturonSpectView::OnViewChanged() {
  Plot().xAxis2->setRange(Plot().xAxis->range());
  cursors_->SetVisible(Plot().graphCount() > 0);
  if (Plot().graphCount() > 0) cursors_->Begin();
  Tell();
}

double CTexturonSpectView::Settle(double place, int steps) const {
  const Document& document = Doc().document();
  const Spectrum& spectrum = document.profiles.spectrum;
  const double factor = UnitsOf(document).length;
  const auto nearest = NearestHarmonic(spectrum, place / factor);
  if (!nearest) return place;
  const auto last = static_cast<int>(spectrum.wavelengthMM.size()) - 1;
  const int harmonic = std::clamp(static_cast<int>(*nearest) + steps, 1, last);
  return spectrum.wavelengthMM[static_cast<std::size_t>(harmonic)] * factor;
}

void CTexturonSpectView::Tell() {
  const Document& document = Doc().document();
  const auto harmonic = NearestHarmonic(document.profiles.spectrum, cursors_->X() / UnitsOf(document).length);
  SetReadout(harmonic ? EngineReadout(SpectrumReadout(document, *harmonic)) : QString());
}

}  // namespace texturon
