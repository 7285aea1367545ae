// SPDX-License-Identifier: Apache-2.0

// The panes of curves, looked at and moved in as a user does.

#include "parameters/height_curve.h"
#include "presentation/curve_readouts.h"
#include "ui/plots/curve_pane.h"
#include "ui/plots/plot_cursors.h"
#include "ui/plots/probability_graph.h"
#include "ui/plots/texturon_brc_view.h"
#include "ui/plots/texturon_spect_view.h"
#include "ui/window_fixture.h"

namespace texturon {
namespace {

class Curves : public WindowTest {
protected:
  Curves() : WindowTest("honed.lmt") {}

  template <typename View>
  View& Show(CCurvePane::Curve curve) {
    Choose("splitUpperPane");
    frame_->UpperCurves().Choose(curve);
    QTest::qWait(20);
    return dynamic_cast<View&>(frame_->UpperCurves().View());
  }
  static QStringList Labels(const QCustomPlot& plot) {
    QStringList labels;
    for (int i = 0; i < plot.itemCount(); ++i) {
      if (const auto* const item = qobject_cast<QCPItemText*>(plot.item(i))) labels << item->text().trimmed();
    }
    return labels;
  }
};

TEST_F(Curves, WhatIsHiddenIsNotMade) {
  const auto made = [this] {
    return std::pair(!InForce().results.primaryCurve.heightsUM.empty(),
                     !InForce().profiles.spectrum.amplitudeUM.empty());
  };
  EXPECT_EQ(made(), std::pair(false, false));
  Choose("splitLowerPane");
  EXPECT_EQ(made(), std::pair(false, true));
  Choose("probabilityCurve");
  EXPECT_TRUE(frame_->UpperCurves().isVisible()) << "the command opens the pane";
  EXPECT_EQ(frame_->UpperCurves().Chosen(), CCurvePane::kProbability);
  EXPECT_EQ(made(), std::pair(true, true));
  for (const char* const command : {"splitUpperPane", "splitLowerPane", "computeAll"}) Choose(command);
  EXPECT_EQ(made(), std::pair(false, false));
}

TEST_F(Curves, ChoicesAndSizesAreKept) {
  Choose("motifCurve");
  QTest::qWait(20);
  const auto size = [this] { return Child<QSplitter>(*frame_, "upper").sizes()[0]; };
  const int before = size();
  QSplitterHandle* const grip = Child<QSplitter>(*frame_, "upper").handle(1);
  const QPoint middle = grip->rect().center();
  QTest::mousePress(grip, Qt::LeftButton, {}, middle);
  const QPoint place = middle + QPoint(90, 0);
  QMouseEvent move(QEvent::MouseMove, place, grip->mapToGlobal(place), Qt::NoButton, Qt::LeftButton, {});
  QApplication::sendEvent(grip, &move);
  QTest::mouseRelease(grip, Qt::LeftButton, {}, place);
  const int after = size();
  EXPECT_GT(after, before + 60);
  MakeFrame(prompts_);
  EXPECT_EQ(frame_->UpperCurves().Chosen(), CCurvePane::kMotifs);
  EXPECT_EQ(frame_->LowerCurves().Chosen(), CCurvePane::kSpectrum) << "the preset";
  Choose("splitUpperPane");
  frame_->show();
  QTest::qWait(20);
  EXPECT_NEAR(size(), after, 5);
}

TEST_F(Curves, BearingRatioIsReadWithGrabbedLines) {
  auto& view = Show<CTexturonBRCView>(CCurvePane::kBearingRatio);
  QCustomPlot& plot = view.Plot();
  CPlotCursors& cursors = view.Cursors();
  const double top = InForce().results.roughnessCurve.heightsUM.front();
  Drag(plot, {cursors.X(), top}, {80.0, top});
  Drag(plot, {20.0, cursors.Y()}, {20.0, -1.0});
  EXPECT_NEAR(cursors.X(), 80.0, 0.5) << "the other line stays";
  EXPECT_NEAR(cursors.Y(), -1.0, 0.05);
  EXPECT_EQ(plot.xAxis->range(), QCPRange(0.0, 100.0)) << "grabbing does not drag the view";
  EXPECT_EQ(view.Readout(), FromText(BearingReadout(InForce(), cursors.X(), cursors.Y())));
  EXPECT_EQ(Labels(plot), (QStringList{"Rk", "Mr1", "Mr2", "A1", "A2"}));
  Choose("rkLines");
  EXPECT_TRUE(Labels(plot).isEmpty());
}

TEST_F(Curves, TheBearingViewDrawsWhatTheSettingsName) {
  auto& view = Show<CTexturonBRCView>(CCurvePane::kBearingRatio);
  Choose("rkLines");
  // Graphs, and with them bars.
  const std::tuple<std::int32_t, int, int> cases[] = {{0, 1, 1}, {1, 0, 1}, {5, 1, 2}, {3, 1, 1}};
  for (const auto& [type, graphs, plottables] : cases) {
    ChangeDisplay([type = type](DisplaySettings& display) { display.BrcAdfType = type; });
    EXPECT_EQ(view.Plot().graphCount(), graphs) << type;
    EXPECT_EQ(view.Plot().plottableCount(), plottables) << type;
  }
  EXPECT_EQ(view.Title(), "Bearing Ratio, Primary");
  const std::vector<double>& sorted = InForce().results.primaryCurve.heightsUM;
  for (const QCPGraphData& point : *view.Plot().graph(0)->data()) {
    ASSERT_EQ(point.value, HeightAtRatio(sorted, point.key));
  }
}

TEST_F(Curves, TheSpectrumIsReadHarmonicByHarmonic) {
  auto& view = Show<CTexturonSpectView>(CCurvePane::kSpectrum);
  QCustomPlot& plot = view.Plot();
  const Spectrum& spectrum = InForce().profiles.spectrum;
  EXPECT_EQ(Labels(plot), (QStringList{"Lc", "Ls"}));
  const double level = plot.yAxis->range().center();
  Drag(plot, {view.Cursors().X(), level}, {spectrum.wavelengthMM[40], level});
  const auto harmonic = *NearestHarmonic(spectrum, view.Cursors().X());
  EXPECT_EQ(view.Cursors().X(), spectrum.wavelengthMM[harmonic]) << "stands on a harmonic";
  EXPECT_NEAR(static_cast<double>(harmonic), 40.0, 1.0);
  QTest::keyClick(&plot, Qt::Key_Right);
  EXPECT_EQ(view.Readout(), FromText(SpectrumReadout(InForce(), harmonic + 1)));
  for (int i = 0; i < 5; ++i) QTest::keyClick(&plot, Qt::Key_Left, Qt::ControlModifier);
  EXPECT_EQ(view.Cursors().X(), spectrum.wavelengthMM[1]) << "there is none before the first";
  ChangeDisplay([](DisplaySettings& display) { display.SpectrumAutoScale = false; });
  EXPECT_EQ(plot.yAxis->range().upper, InForce().settings.display.SpectrumYMaxUM);
}

TEST_F(Curves, TheProbabilityGraphHasTheLinesOfTheParameters) {
  QCustomPlot& plot = Show<CProbabilityGraph>(CCurvePane::kProbability).Plot();
  std::map<std::string, double> values;
  for (const ParameterDef& row : InForce().catalogue.rows) values[row.name] = row.value;
  std::vector<QCPItemLine*> lines;
  for (int i = 0; i < plot.itemCount(); ++i) {
    if (auto* const line = qobject_cast<QCPItemLine*>(plot.item(i))) lines.push_back(line);
  }
  ASSERT_EQ(lines.size(), 2u);
  for (const int i : {0, 1}) {
    const QPointF rise = lines[i]->end->coords() - lines[i]->start->coords();
    EXPECT_NEAR(std::abs(rise.y() / rise.x()), values[i == 0 ? "Rpq" : "Rvq"], 1e-9);
  }
  EXPECT_NEAR(lines[0]->end->coords().x(), lines[1]->start->coords().x(), 1e-9) << "they meet";
  EXPECT_NEAR(50.0 * std::erfc(-lines[1]->start->coords().x() / std::sqrt(2.0)), values["Rmq"], 1e-6);
  EXPECT_TRUE(Labels(plot).last().contains("Rmq"));
}

TEST_F(Curves, MotifsStandOnTheProfile) {
  auto& view = Show<CCurveView>(CCurvePane::kMotifs);
  const ProfileSet& profiles = InForce().profiles;
  ASSERT_EQ(view.Plot().graphCount(), 4);
  auto& line = *view.Plot().graph(1)->data();
  ASSERT_EQ(line.size(), 2 * static_cast<int>(profiles.roughnessMotifs.size()) + 1);
  for (const QCPGraphData& point : line) {
    const auto place = std::lround(point.key / (profiles.residualSpacingUM * 0.001));
    EXPECT_NEAR(point.value, profiles.primary[static_cast<std::size_t>(place)], 1e-9);
  }
  Change([](AnalysisSettings& analysis) { analysis.MotifRProfile = true; });
  EXPECT_EQ(view.Plot().graphCount(), 3) << "no waviness motifs";
}

TEST_F(Curves, ZoomStaysUntilAllIsAskedFor) {
  QCustomPlot& plot = Show<CTexturonBRCView>(CCurvePane::kBearingRatio).Plot();
  const QCPRange all(0.0, 100.0);
  QTest::keyClick(&plot, Qt::Key_Plus);
  Choose("computeAll");
  EXPECT_NEAR(plot.xAxis->range().size(), 80.0, 1e-9);
  EXPECT_GE(plot.graph(0)->dataCount(), 100) << "dense in what is seen";
  QTest::mouseDClick(&plot, Qt::LeftButton, {}, plot.axisRect()->center());
  EXPECT_EQ(plot.xAxis->range(), all);
  QTest::keyClick(&plot, Qt::Key_Plus);
  Choose("metric");
  EXPECT_EQ(plot.xAxis->range(), all) << "other units are another picture";
  EXPECT_TRUE(plot.yAxis->label().endsWith(FromText("\xB5in")));
}

}  // namespace
}  // namespace texturon
