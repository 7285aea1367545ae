// SPDX-License-Identifier: Apache-2.0

// The panes of curves, looked at and moved in as a user does.

#include <QComboBox>
#include <QLabel>
#include <QSettings>
#include <QSplitter>
#include <QTest>
#include <cmath>

#include "parameters/height_curve.h"
#include "presentation/curve_readouts.h"
#include "presentation/probability_plot.h"
#include "ui/plots/curve_pane.h"
#include "ui/plots/plot_cursors.h"
#include "ui/plots/probability_graph.h"
#include "ui/plots/texturon_brc_view.h"
#include "ui/plots/texturon_spect_view.h"
#include "ui/qt_text.h"
#include "ui/window_fixture.h"

namespace texturon {
namespace {

class Curves : public WindowTest {
protected:
  Curves() {
    QSettings().clear();
    frame_->show();
    EXPECT_TRUE(frame_->OpenFile(Sample("honed.lmt")));
  }

  const Document& InForce() { return frame_->Doc().document(); }
  template <typename View>
  View& Show(CCurvePane::Curve curve) {
    if (!InForce().settings.display.UpperIsSplit) Choose("splitUpperPane");
    frame_->UpperCurves().Choose(curve);
    QTest::qWait(20);
    return dynamic_cast<View&>(frame_->UpperCurves().View());
  }
  void ChangeDisplay(const std::function<void(DisplaySettings&)>& change) {
    DisplaySettings display = InForce().settings.display;
    change(display);
    frame_->Doc().ReplaceDisplay(display);
  }
  static void Drag(QCustomPlot& plot, const QPoint& from, const QPoint& to) {
    QTest::mousePress(&plot, Qt::LeftButton, {}, from);
    QTest::mouseMove(&plot, (from + to) / 2);
    QTest::mouseMove(&plot, to);
    QTest::mouseRelease(&plot, Qt::LeftButton, {}, to);
  }
  static QPoint PixelOf(QCustomPlot& plot, double x, double y) {
    return QPointF(plot.xAxis->coordToPixel(x), plot.yAxis->coordToPixel(y)).toPoint();
  }
  template <typename Item>
  static QList<Item*> Items(QCustomPlot& plot) {
    QList<Item*> items;
    for (int i = 0; i < plot.itemCount(); ++i) {
      if (auto* const item = qobject_cast<Item*>(plot.item(i))) items << item;
    }
    return items;
  }
  static QStringList Labels(QCustomPlot& plot) {
    QStringList labels;
    for (const QCPItemText* const item : Items<QCPItemText>(plot)) labels << item->text().trimmed();
    return labels;
  }
};

TEST_F(Curves, WhatIsHiddenIsNotMade) {
  frame_->UpperCurves().Choose(CCurvePane::kBearingRatio);
  frame_->LowerCurves().Choose(CCurvePane::kSpectrum);
  EXPECT_FALSE(frame_->UpperCurves().isVisible() || frame_->LowerCurves().isVisible());
  EXPECT_TRUE(InForce().profiles.spectrum.amplitudeUM.empty());
  EXPECT_TRUE(InForce().results.primaryCurve.heightsUM.empty());
  Choose("splitLowerPane");
  EXPECT_TRUE(InForce().settings.display.LowerIsSplit);
  EXPECT_TRUE(frame_->LowerCurves().isVisible());
  EXPECT_FALSE(InForce().profiles.spectrum.amplitudeUM.empty());
  EXPECT_TRUE(InForce().results.primaryCurve.heightsUM.empty());
  Choose("probabilityCurve");
  EXPECT_TRUE(frame_->UpperCurves().isVisible()) << "the command opens the pane";
  EXPECT_EQ(frame_->UpperCurves().Chosen(), CCurvePane::kProbability);
  EXPECT_FALSE(InForce().results.primaryCurve.heightsUM.empty());
  Choose("splitUpperPane");
  Choose("splitLowerPane");
  frame_->Doc().ComputeAll();
  EXPECT_TRUE(InForce().profiles.spectrum.amplitudeUM.empty());
  EXPECT_TRUE(InForce().results.roughnessCurve.heightsUM.empty());
  ChangeDisplay([](DisplaySettings& display) { display.UpperIsSplit = display.LowerIsSplit = true; });
  EXPECT_TRUE(frame_->UpperCurves().isVisible() && frame_->LowerCurves().isVisible()) << "as the settings say";
}

TEST_F(Curves, ChoicesAndSizesAreKept) {
  Choose("splitUpperPane");
  frame_->UpperCurves().Choose(CCurvePane::kMotifs);
  auto& splitter = *frame_->findChild<QSplitter*>("upper");
  QTest::qWait(20);
  const int before = splitter.sizes()[0];
  QSplitterHandle* const grip = splitter.handle(1);
  const QPointF middle = QPointF(grip->rect().center());
  const auto send = [&](QEvent::Type type, const QPointF& place, Qt::MouseButton button) {
    QMouseEvent event(type, place, grip->mapToGlobal(place), button, Qt::LeftButton, {});
    QApplication::sendEvent(grip, &event);
  };
  send(QEvent::MouseButtonPress, middle, Qt::LeftButton);
  send(QEvent::MouseMove, middle + QPointF(90.0, 0.0), Qt::NoButton);
  send(QEvent::MouseButtonRelease, middle, Qt::LeftButton);
  const int after = splitter.sizes()[0];
  EXPECT_GT(after, before + 60);
  frame_ = std::make_unique<CMainFrame>(Environment(), &prompts_);
  EXPECT_EQ(frame_->UpperCurves().Chosen(), CCurvePane::kMotifs);
  EXPECT_EQ(frame_->LowerCurves().Chosen(), CCurvePane::kSpectrum) << "the preset";
  Choose("splitUpperPane");
  frame_->show();
  QTest::qWait(20);
  EXPECT_NEAR(frame_->findChild<QSplitter*>("upper")->sizes()[0], after, 5);
}

TEST_F(Curves, BearingRatioIsReadWithGrabbedLines) {
  auto& view = Show<CTexturonBRCView>(CCurvePane::kBearingRatio);
  QCustomPlot& plot = view.Plot();
  const std::vector<double>& sorted = InForce().results.roughnessCurve.heightsUM;
  ASSERT_FALSE(sorted.empty());
  CPlotCursors& cursors = view.Cursors();
  Drag(plot, PixelOf(plot, cursors.X(), sorted.front()), PixelOf(plot, 80.0, sorted.front()));
  EXPECT_NEAR(cursors.X(), 80.0, 0.5);
  Drag(plot, PixelOf(plot, 20.0, cursors.Y()), PixelOf(plot, 20.0, -1.0));
  EXPECT_NEAR(cursors.Y(), -1.0, 0.05);
  EXPECT_NEAR(cursors.X(), 80.0, 0.5) << "the other line stays";
  EXPECT_EQ(plot.xAxis->range(), QCPRange(0.0, 100.0)) << "grabbing does not drag the view";
  EXPECT_EQ(view.Readout(), FromText(BearingReadout(InForce(), cursors.X(), cursors.Y())));
  const double before = cursors.X();
  QTest::keyClick(&plot, Qt::Key_Right);
  QTest::keyClick(&plot, Qt::Key_Left, Qt::ControlModifier);
  EXPECT_NEAR(cursors.X() - before, -19.0 * 100.0 / plot.axisRect()->width(), 0.02);

  const QStringList names = {"Rk", "Mr1", "Mr2", "A1", "A2"};
  EXPECT_EQ(Labels(plot), names);
  const RkResult& core = InForce().results.coreRoughness;
  bool hasLine = false;
  for (const QCPItemLine* const line : Items<QCPItemLine>(plot)) {
    hasLine |=
        line->start->coords() == QPointF(0.0, core.upperLine) && line->end->coords() == QPointF(100.0, core.lowerLine);
  }
  EXPECT_TRUE(hasLine) << "the equivalent line";
  Choose("rkLines");
  EXPECT_TRUE(Labels(plot).isEmpty());
}

TEST_F(Curves, TheBearingViewDrawsWhatTheSettingsName) {
  auto& view = Show<CTexturonBRCView>(CCurvePane::kBearingRatio);
  Choose("rkLines");
  struct Case {
    std::int32_t type;
    const char* title;
    int graphs, plottables;
  };
  for (const Case& c : {Case{0, "Bearing Ratio, Roughness", 1, 1},
                        {1, "Amplitude Distribution, Roughness", 0, 1},
                        {5, "Bearing Ratio and Amplitudes, Primary", 1, 2},
                        {3, "Bearing Ratio, Primary", 1, 1}}) {
    ChangeDisplay([&](DisplaySettings& display) { display.BrcAdfType = c.type; });
    EXPECT_EQ(view.Title(), c.title);
    EXPECT_EQ(view.Plot().graphCount(), c.graphs) << c.type;
    EXPECT_EQ(view.Plot().plottableCount(), c.plottables) << c.type;
  }
  const std::vector<double>& sorted = InForce().results.primaryCurve.heightsUM;
  auto& points = *view.Plot().graph(0)->data();
  EXPECT_EQ(points.constBegin()->value, sorted.front());
  EXPECT_EQ((points.constEnd() - 1)->value, sorted.back());
  for (const QCPGraphData& point : points) ASSERT_EQ(point.value, HeightAtRatio(sorted, point.key));
}

TEST_F(Curves, TheSpectrumIsReadHarmonicByHarmonic) {
  auto& view = Show<CTexturonSpectView>(CCurvePane::kSpectrum);
  QCustomPlot& plot = view.Plot();
  EXPECT_EQ(view.Title(), "Wavelength Content");
  EXPECT_EQ(plot.xAxis->scaleType(), QCPAxis::stLogarithmic);
  const Spectrum& spectrum = InForce().profiles.spectrum;
  EXPECT_NEAR(plot.yAxis->range().upper, 1.05 * spectrum.peakAmplitudeUM, 1e-12);
  EXPECT_EQ(Labels(plot), (QStringList{"Lc", "Ls"}));
  const double wanted = spectrum.wavelengthMM[40];
  const double level = plot.yAxis->range().center();
  Drag(plot, PixelOf(plot, view.Cursors().X(), level), PixelOf(plot, wanted, level));
  const auto harmonic = *NearestHarmonic(spectrum, view.Cursors().X());
  EXPECT_EQ(view.Cursors().X(), spectrum.wavelengthMM[harmonic]) << "stands on a harmonic";
  EXPECT_NEAR(static_cast<double>(harmonic), 40.0, 1.0);
  QTest::keyClick(&plot, Qt::Key_Right);
  EXPECT_EQ(view.Cursors().X(), spectrum.wavelengthMM[harmonic + 1]);
  EXPECT_EQ(view.Readout(), FromText(SpectrumReadout(InForce(), harmonic + 1)));
  for (int i = 0; i < 5; ++i) QTest::keyClick(&plot, Qt::Key_Left, Qt::ControlModifier);
  EXPECT_EQ(view.Cursors().X(), spectrum.wavelengthMM[1]) << "there is none before the first";
  ChangeDisplay([](DisplaySettings& display) {
    display.SpectrumAutoScale = false;
    display.SpectrumYMinUM = 0.25;
    display.SpectrumYMaxUM = 2.0;
  });
  EXPECT_EQ(plot.yAxis->range(), QCPRange(0.25, 2.0));
}

TEST_F(Curves, TheProbabilityGraphHasTheLinesOfTheParameters) {
  auto& view = Show<CProbabilityGraph>(CCurvePane::kProbability);
  QCustomPlot& plot = view.Plot();
  const auto valueOf = [&](const char* name) {
    for (const ParameterDef& row : InForce().catalogue.rows) {
      if (row.name == name && row.valid) return row.value;
    }
    ADD_FAILURE() << name;
    return 0.0;
  };
  const auto lines = Items<QCPItemLine>(plot);
  ASSERT_EQ(lines.size(), 2);
  const auto slope = [](const QCPItemLine& line) {
    const QPointF rise = line.end->coords() - line.start->coords();
    return std::abs(rise.y() / rise.x());
  };
  EXPECT_NEAR(slope(*lines[0]), valueOf("Rpq"), 1e-9);
  EXPECT_NEAR(slope(*lines[1]), valueOf("Rvq"), 1e-9);
  EXPECT_NEAR(lines[0]->end->coords().x(), lines[1]->start->coords().x(), 1e-9) << "they meet";
  const double meeting = 50.0 * std::erfc(-lines[1]->start->coords().x() / std::sqrt(2.0));
  EXPECT_NEAR(meeting, valueOf("Rmq"), 1e-6);
  const QStringList labels = Labels(plot);
  for (const char* name : {"UPL", "LPL", "UVL", "LVL"}) EXPECT_TRUE(labels.contains(name)) << name;
  EXPECT_TRUE(labels.last().contains("Rmq")) << labels.last().toStdString();
  EXPECT_EQ(plot.xAxis2->range(), plot.xAxis->range());
}

TEST_F(Curves, MotifsStandOnTheProfile) {
  auto& view = Show<CCurveView>(CCurvePane::kMotifs);
  const ProfileSet& profiles = InForce().profiles;
  ASSERT_FALSE(profiles.roughnessMotifs.empty());
  ASSERT_EQ(view.Plot().graphCount(), 4);
  const auto& line = *view.Plot().graph(1)->data();
  ASSERT_EQ(line.size(), 2 * static_cast<int>(profiles.roughnessMotifs.size()) + 1);
  const double stepMM = profiles.residualSpacingUM * 0.001;
  int i = 0;
  for (const Motif& motif : profiles.roughnessMotifs) {
    for (const std::int32_t place : {motif.firstPeak, motif.dale}) {
      const QCPGraphData& point = *line.at(i++);
      EXPECT_NEAR(point.key, place * stepMM, 1e-9);
      EXPECT_NEAR(point.value, profiles.primary[static_cast<std::size_t>(place)], 1e-9);
    }
  }
  Settings settings = InForce().settings;
  settings.analysis.MotifRProfile = true;
  frame_->Doc().ReplaceSettings(settings);
  EXPECT_EQ(view.Plot().graphCount(), 3) << "no waviness motifs";
}

TEST_F(Curves, ZoomStaysUntilAllIsAskedFor) {
  auto& view = Show<CTexturonBRCView>(CCurvePane::kBearingRatio);
  QCustomPlot& plot = view.Plot();
  QTest::keyClick(&plot, Qt::Key_Plus);
  const QCPRange zoomed = plot.xAxis->range();
  EXPECT_NEAR(zoomed.size(), 80.0, 1e-9);
  frame_->Doc().ComputeAll();
  EXPECT_EQ(plot.xAxis->range(), zoomed);
  EXPECT_GE(plot.graph(0)->dataCount(), 100) << "dense in what is seen";
  QTest::mouseDClick(&plot, Qt::LeftButton, {}, plot.axisRect()->center());
  EXPECT_EQ(plot.xAxis->range(), QCPRange(0.0, 100.0));
  QTest::keyClick(&plot, Qt::Key_Plus);
  Choose("metric");
  EXPECT_EQ(plot.xAxis->range(), QCPRange(0.0, 100.0)) << "other units are another picture";
  EXPECT_TRUE(plot.yAxis->label().endsWith(FromText("\xB5in")));
}

}  // namespace
}  // namespace texturon
