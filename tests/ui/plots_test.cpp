// SPDX-License-Identifier: Apache-2.0

// The profile view and the panes of curves, looked at and moved in as a user does.

#include "parameters/height_curve.h"
#include "presentation/curve_readouts.h"
#include "ui/plots/curve_pane.h"
#include "ui/plots/plot_cursors.h"
#include "ui/plots/texturon_brc_view.h"
#include "ui/plots/texturon_spect_view.h"
#include "ui/plots/texturon_view.h"
#include "ui/sheets/settings_sheet.h"
#include "ui/tables/texturon_param_view.h"
#include "ui/window/readout_label.h"
#include "ui/window_fixture.h"

namespace texturon {
namespace {

class ProfileView : public WindowTest {
protected:
  ProfileView() : WindowTest("ground.lmt") {}

  CClickableProfileGraph& Graph() { return frame_->View().Graph(); }
  /// How much longer a length along y is drawn than the same along x.
  double Ratio() {
    const double lengthUM = Graph().xAxis->range().size() * 1000.0 / Graph().axisRect()->width();
    return Graph().yAxis->range().size() / Graph().axisRect()->height() / lengthUM;
  }
};

TEST_F(ProfileView, CursorsAreGrabbedAndReadOut) {
  const auto [first, second] = Graph().UprightCursors();
  Drag(Graph(), {first, 0.0}, {1.5, 0.0});
  EXPECT_NEAR(Graph().UprightCursors().first, 1.5, 0.01);
  EXPECT_EQ(Graph().UprightCursors().second, second);
  EXPECT_EQ(Graph().VisibleX(), Graph().WholeX()) << "the curves stay when a cursor is grabbed";
  const auto& label = Child<QLabel>(*frame_, "readout");
  const auto readout = [&label] { return label.toolTip(); };
  EXPECT_TRUE(readout().startsWith("X1 1.") && !readout().contains("dY")) << readout().toStdString();
  Choose("yCursors");
  EXPECT_TRUE(readout().contains("dY"));
  EXPECT_LE(label.fontMetrics().horizontalAdvance(label.text()), label.width()) << "nothing is cut";
  QTest::keyClick(&Graph(), Qt::Key_C);
  QTest::keyClick(&Graph(), Qt::Key_Right, Qt::ControlModifier);
  EXPECT_GT(Graph().UprightCursors().second, second) << "by keys";
  auto& measures = Child<QLabel>(*frame_, "measures");
  EXPECT_TRUE(measures.isHidden());
  Choose("measureBetweenCursors");
  EXPECT_TRUE(measures.text().startsWith("Between the cursors:  step ")) << measures.text().toStdString();
  Choose("copyMeasures");
  EXPECT_EQ(QApplication::clipboard()->text(), measures.text());
  Choose("xCursors");
  EXPECT_FALSE(readout().contains("X1"));
  EXPECT_TRUE(measures.isHidden());
}

TEST(Readout, LeavesOutWhatStandsBesideTheCursorsFirst) {
  const QFontMetrics metrics(Application().font());
  const QString whole =
      "X1 1 mm  X2 2 mm  dX 1 mm    Z1 3 um  Z2 4 um  dZ 1 um    slope 2 (Primary)    Y1 1 um  Y2 2 um  dY 1 um";
  const auto within = [&](const QString& text) {
    return ShortReadout(whole, metrics.horizontalAdvance(text), metrics);
  };
  EXPECT_EQ(within(whole), whole);
  for (const char* const text :
       {"X1 1 mm  X2 2 mm  dX 1 mm  Z1 3 um  Z2 4 um  dZ 1 um  slope 2 (Primary)  dY 1 um",
        "dX 1 mm  Z1 3 um  Z2 4 um  dZ 1 um  slope 2 (Primary)  dY 1 um", "dX 1 mm  dZ 1 um  dY 1 um", "dX 1 mm"}) {
    EXPECT_EQ(within(text), text);
  }
}

TEST_F(ProfileView, ComputesAndExcludesBetweenCursors) {
  Graph().SetUprightCursors(3.0, 1.0);
  Choose("excludeBetweenCursors");
  EXPECT_EQ(InForce().scope.exclusion, IndexRange::FromEnds(2000, 6000));
  Choose("computeBetweenXCursors");
  EXPECT_EQ(InForce().profiles.computeRange, IndexRange::FromEnds(2000, 6000));
  Choose("computeAll");
  EXPECT_FALSE(InForce().scope.exclusion);
  // The record stays in view whatever is computed over, and showing all means all of it.
  Choose("show1");
  Choose("show3");
  Graph().SetUprightCursors(3.0, 1.0);
  for (const char* const command : {"computeBetweenXCursors", "showAll"}) {
    Choose(command);
    EXPECT_EQ(Graph().WholeX().lower, 0.0) << command;
    EXPECT_NEAR(Graph().WholeX().upper, 3.9995, 1e-9) << command;
    EXPECT_EQ(Graph().VisibleX(), Graph().WholeX()) << command;
  }
  // What was measured beside the stretch is drawn, and joins what was computed.
  const std::vector<double> beside = HeightsBeside(InForce());
  ASSERT_EQ(beside.size(), InForce().profiles.raw.size());
  EXPECT_TRUE(std::isfinite(beside.front()) && std::isfinite(beside.back()) && std::isnan(beside[4000]));
  for (const std::size_t end : {2000U, 6000U}) EXPECT_NEAR(beside[end], InForce().profiles.formSuppressed[end], 1e-5);
  double last = 0.0;
  for (int i = 0; i < Graph().graphCount(); ++i) {
    if (!Graph().graph(i)->data()->isEmpty()) last = std::max(last, (Graph().graph(i)->data()->constEnd() - 1)->key);
  }
  EXPECT_GT(last, 3.9);
  Choose("computeAll");
  // What is refused changes nothing.
  Graph().SetUprightCursors(1.0, 1.001);
  Choose("computeBetweenXCursors");
  EXPECT_EQ(InForce().profiles.computeRange->count, 8000);
  Change([](AnalysisSettings& analysis) { analysis.FormRemovalType = kFormFilter; });
  Choose("excludeBetweenCursors");
  EXPECT_FALSE(InForce().scope.exclusion);
  EXPECT_EQ(prompts_.messages, (std::vector<std::string>{"Insufficient data for region calculation.",
                                                         "Cannot exclude with filter-based form removal."}));
}

TEST_F(ProfileView, TheHeightsBesideTheStretchStayInViewUnlessTheStretchIsAskedFor) {
  ASSERT_TRUE(frame_->OpenFile(Sample("arc.lmt")));
  const auto& command = Child<QAction>(*frame_, "stretchHeights");
  EXPECT_FALSE(command.isEnabled());
  const auto compute = [this](double first, double last) {
    Graph().SetUprightCursors(first, last);
    Choose("computeBetweenXCursors");
  };
  const auto heights = [this] { return Graph().yAxis->range(); };
  const auto holdsAll = [&] {
    for (const double height : HeightsBeside(InForce())) {
      if (!std::isnan(height) && !heights().contains(height)) return false;
    }
    const std::span<const double> primary = InForce().profiles.View(ProfileKind::kPrimary).Heights();
    return std::all_of(primary.begin(), primary.end(), [&](double height) { return heights().contains(height); });
  };
  compute(2.0, 2.3);
  EXPECT_TRUE(holdsAll());
  EXPECT_TRUE(frame_->statusBar()->currentMessage().contains("Heights of the Stretch (Ctrl+9)")) << "it is a line";
  const double ofAll = heights().size();
  Choose("stretchHeights");
  const std::span<const double> primary = InForce().profiles.View(ProfileKind::kPrimary).Heights();
  const auto [lowest, highest] = std::minmax_element(primary.begin(), primary.end());
  EXPECT_NEAR(heights().size(), 1.08 * (*highest - *lowest), 1e-6);
  EXPECT_EQ(Graph().VisibleX(), Graph().WholeX());
  Change([](AnalysisSettings& analysis) { analysis.LcCutoffMM = 0.25; });
  EXPECT_LT(heights().size(), 0.5 * ofAll) << "stays with the stretch";
  Choose("showAll");
  EXPECT_NEAR(heights().size(), ofAll, 1e-9);
  Choose("zoomBack");
  EXPECT_LT(heights().size(), 0.5 * ofAll);
  compute(3.0, 3.5);
  EXPECT_TRUE(holdsAll()) << "another stretch";
  Choose("stretchHeights");
  Choose("undo");
  EXPECT_TRUE(holdsAll());
  // A zoom along X stays, its heights hold the record too.
  Graph().ShowX({1.0, 1.4});
  Choose("computeOnZoom");
  EXPECT_EQ(Graph().VisibleX(), QCPRange(1.0, 1.4));
  EXPECT_TRUE(holdsAll());
  Choose("showAll");
  // Roughness ends with the stretch; fixed heights hold.
  ChangeDisplay([](DisplaySettings& display) { display.ProfileType = 4; });
  EXPECT_EQ(Graph().graphCount(), 1);
  EXPECT_FALSE(command.isEnabled());
  ChangeDisplay([](DisplaySettings& display) { display.ProfileType = 2; });
  EXPECT_TRUE(command.isEnabled());
  ChangeDisplay([](DisplaySettings& display) { display.ProfileAutoScale = false; });
  EXPECT_FALSE(command.isEnabled());
  EXPECT_EQ(heights().upper, InForce().settings.display.ProfileYMaxUM);
}

TEST_F(ProfileView, ZoomsGoBackOneByOne) {
  const QCPRange all = Graph().VisibleX();
  Drag(Graph(), {1.0, 0.5}, {2.0, -0.5}, Qt::ShiftModifier);
  const QCPRange marked = Graph().VisibleX();
  EXPECT_NEAR(marked.lower, 1.0, 0.02);
  EXPECT_NEAR(marked.size(), 1.0, 0.04);
  QTest::keyClick(&Graph(), Qt::Key_Plus);
  Choose("zoomBack");
  EXPECT_EQ(Graph().VisibleX(), marked);
  for (int i = 0; i < 2; ++i) {
    QTest::keyClick(&Graph(), Qt::Key_Backspace);
    EXPECT_EQ(Graph().VisibleX(), all) << "there is nothing before";
  }
  Choose("zoomForward");
  EXPECT_EQ(Graph().VisibleX(), marked);
  Choose("zoomBack");
  // Another zoom leaves nothing to come, and another analysis of the same record keeps what is looked at.
  for (const char* const command : {"zoomToSamplingLength", "zoomForward", "invert"}) {
    Choose(command);
    EXPECT_NEAR(Graph().VisibleX().size(), 0.8, 1e-9) << command;
  }
  // Half as far along scrolls half as far.
  auto& bar = Child<QScrollBar>(*frame_, "alongX");
  Graph().ShowX({1.0, 2.0});
  bar.setValue(bar.value() * 2);
  EXPECT_NEAR(Graph().VisibleX().lower, 2.0, 1e-4);
  EXPECT_NEAR(Graph().VisibleX().size(), 1.0, 1e-9);
  Choose("showAll");
  EXPECT_EQ(Graph().VisibleX(), all);
  EXPECT_EQ(bar.maximum(), 0) << "all is in view";
}

TEST_F(ProfileView, TheWheelZoomsAlongXAndOnlyWithKeysAlongTheHeights) {
  const QPointF place = Graph().axisRect()->center();
  const std::tuple<Qt::KeyboardModifiers, bool, bool> cases[] = {
      {Qt::NoModifier, true, false}, {Qt::ControlModifier, false, true}, {Qt::ShiftModifier, true, true}};
  for (const auto& [keys, alongX, alongZ] : cases) {
    const QCPRange x = Graph().xAxis->range();
    const QCPRange y = Graph().yAxis->range();
    QWheelEvent wheel(place, Graph().mapToGlobal(place), {}, {0, 120}, Qt::NoButton, keys, Qt::NoScrollPhase, false);
    QApplication::sendEvent(&Graph(), &wheel);
    EXPECT_EQ(Graph().xAxis->range().size() < x.size(), alongX) << keys;
    EXPECT_EQ(Graph().yAxis->range().size() < y.size(), alongZ) << keys;
  }
}

TEST_F(ProfileView, ReadoutsKeepOffTheFrame) {
  Choose("yCursors");
  const QRect inner = Graph().axisRect()->rect().adjusted(6, 6, -6, -6);
  for (const double x : {0.001, 2.0, 3.999}) {
    Graph().SetUprightCursors(x, 4.0 - x);
    for (int i = 0; i < Graph().itemCount(); ++i) {
      auto* const text = qobject_cast<QCPItemText*>(Graph().item(i));
      if (text == nullptr || text->layer()->name() != "cursors") continue;
      const QRectF box(text->topLeft->pixelPosition(), text->bottomRight->pixelPosition());
      EXPECT_TRUE(QRectF(inner).adjusted(-1, -1, 1, 1).contains(box)) << x << " " << text->text().toStdString();
    }
  }
}

TEST_F(ProfileView, ReadoutsOfTheCursorsDoNotHideEachOther) {
  for (const int width : {700, 430, 380}) {
    frame_->resize(width, 800);
    QTest::qWait(20);
    Graph().SetUprightCursors(1.0, 3.0);
    std::vector<QRectF> boxes;
    for (int i = 0; i < Graph().itemCount(); ++i) {
      auto* const text = qobject_cast<QCPItemText*>(Graph().item(i));
      if (text == nullptr || text->layer()->name() != "cursors" || !text->visible()) continue;
      boxes.emplace_back(text->topLeft->pixelPosition(), text->bottomRight->pixelPosition());
    }
    ASSERT_EQ(boxes.size(), 2U) << width;
    EXPECT_FALSE(boxes[0].intersects(boxes[1])) << width;
  }
}

TEST_F(ProfileView, ScalesFollowTheSettings) {
  ChangeDisplay([](DisplaySettings& display) { display.ProfileAutoScale = false; });
  EXPECT_EQ(Graph().yAxis->range().upper, InForce().settings.display.ProfileYMaxUM);
  Choose("autoScale");
  const double upper = Graph().yAxis->range().upper;
  EXPECT_LT(upper, InForce().settings.display.ProfileYMaxUM);
  Choose("metric");
  EXPECT_NEAR(Graph().yAxis->range().upper, upper / 0.0254, 1e-6);
}

TEST_F(ProfileView, EqualScalesAreForProfilesWithForm) {
  EXPECT_LT(Ratio(), 0.01) << "a roughness profile would be a line";
  // Opened before there is a window: the size comes later.
  MakeFrame(prompts_);
  ChangeDisplay([](DisplaySettings& display) { display.ProfileType = 0; });
  ASSERT_TRUE(frame_->OpenFile(Sample("arc.lmt")));
  frame_->show();
  for (const QSize size : {frame_->size(), QSize(900, 900)}) {
    frame_->resize(size);
    QTest::qWait(20);
    EXPECT_NEAR(Ratio(), 1.0, 1e-6) << "an arc of 300 um over 5 mm shows its shape in every size of the window";
  }
  const auto& command = Child<QAction>(*frame_, "aspectRatio");
  EXPECT_TRUE(command.isChecked());
  Choose("aspectRatio");
  EXPECT_LT(Ratio(), 0.5) << "without, it fills the height";
  // Where it was only wanted the command makes it so.
  ASSERT_TRUE(frame_->OpenFile(Sample("ground.lmt")));
  ChangeDisplay([](DisplaySettings& display) { display.Profile11AspectRatio = true; });
  EXPECT_FALSE(command.isChecked()) << "wanted, but not in force";
  Choose("aspectRatio");
  EXPECT_NEAR(Ratio(), 1.0, 1e-3);
  EXPECT_TRUE(command.isChecked());
  Choose("zoomBack");
  EXPECT_FALSE(command.isChecked());
}

TEST_F(ProfileView, GivesThePlotThePeaksOfEveryColumn) {
  ChangeDisplay([](DisplaySettings& display) { display.ProfileType = 0; });
  QCPGraphDataContainer& data = *Graph().graph(0)->data();
  EXPECT_LT(data.size(), 4 * Graph().axisRect()->width() + 3);
  const double highest = *std::max_element(InForce().profiles.raw.begin(), InForce().profiles.raw.end());
  EXPECT_TRUE(std::any_of(data.begin(), data.end(), [&](const auto& point) { return point.value == highest; }));
  Graph().ShowX({1.0, 1.02});
  EXPECT_EQ(data.size(), 42) << "0.5 um apart, and one more on either side";
}

TEST_F(ProfileView, ShowsTheFormAndSteepSlopes) {
  ASSERT_TRUE(frame_->OpenFile(Sample("arc.lmt")));
  Change([](AnalysisSettings& analysis) { analysis.FormRemovalType = kFormArc; });
  ChangeDisplay([](DisplaySettings& display) { display.ProfileType = 0; });
  Choose("show8");
  ASSERT_EQ(Graph().graphCount(), 2);
  EXPECT_TRUE(Graph().graph(1)->name().startsWith("Form: LS Arc"));
  Choose("extremeSlopes");
  Choose("extremeSlopeThreshold", {[](QWidget& dialog) {
           Type(Child(dialog), "95");
           EXPECT_FALSE(Ok(dialog).isEnabled());
           Type(Child(dialog), "5");
           Ok(dialog).click();
         }});
  ASSERT_EQ(Graph().graphCount(), 3);
  EXPECT_TRUE(Graph().graph(2)->name().startsWith(QString::fromUtf8("Raw Data above 5.0\u00B0: ")));
}

TEST_F(ProfileView, ShowsARecordThatIsTooShortAndSaysWhy) {
  const std::string short7 =
      "Lumetrace_Data 1.0\nIDENTIFICATION: seven\nDATE: d\nSPACING_UM: 1\nNUMBER_OF_POINTS: 7\nPROFILE_UM:\n"
      "1\n2\n1\n2\n3\n2\n1\n";
  MakeFrame(prompts_);
  frame_->resize(1200, 800);
  frame_->show();
  ASSERT_TRUE(frame_->OpenFile(folder_.Write("seven.lmt", short7)));
  QTest::qWait(20);
  const CClickableProfileGraph& graph = frame_->View().Graph();
  EXPECT_TRUE(frame_->View().Heading().Text().contains("Not evaluated: there are too few points to compute over."))
      << frame_->View().Heading().Text().toStdString();
  ASSERT_EQ(graph.graphCount(), 1);
  EXPECT_EQ(graph.graph(0)->data()->size(), 7);
  graph.legend->clearItems();
  frame_->View().Graph().replot();
  EXPECT_GT(graph.axisRect()->width(), graph.width() / 2) << "also without a legend";
}

TEST_F(ProfileView, TheRightButtonOffersCommandsAndThePictureIsOfTheView) {
  QMenu menu;
  Graph().SetUprightCursors(1.0, 2.0);
  for (QAction* const action : frame_->findChildren<QAction*>()) {
    if (action->objectName() == "zoomBetweenXCursors") action->trigger();
  }
  EXPECT_EQ(Graph().VisibleX(), QCPRange(1.0, 2.0));
  Choose("savePicture", {TypeName(folder_ / "view.svg")});
  const QString svg = QString::fromStdString(folder_.Read("view.svg"));
  EXPECT_TRUE(svg.contains("1.25") || svg.contains("1.2")) << "numbers of the stretch in view";
  EXPECT_FALSE(svg.contains(">3.5<")) << "not of the whole";
}

TEST_F(ProfileView, HillsAndDalesBelongToTheRowsOf2021) {
  EXPECT_FALSE(Child<QAction>(*frame_, "hillsAndDales").isEnabled());
  const int before = Graph().graphCount();
  Change([](AnalysisSettings& analysis) { analysis.standard.Edition = "2021"; });
  Choose("hillsAndDales");
  EXPECT_GT(Graph().graphCount(), before);
  Choose("undo");
  EXPECT_EQ(Graph().graphCount(), before) << "nothing is left over rows of 1997";
}

TEST_F(ProfileView, TheHeadingKeepsTheIdentificationAndLeavesOutTheSettingsFileFirst) {
  ASSERT_TRUE(Doc().LoadSettingsFile(folder_.Write("settings of the line 4.ini", "[ANALYSIS]\r\n")));
  Choose("showFullIniPath");
  Change([](AnalysisSettings& analysis) { analysis.parameters[20].tolerance = {.toleranced = true}; });
  const auto first = [this] { return Child<QLabel>(*frame_, "heading").text().section('\n', 0, 0); };
  const CHeading& heading = frame_->View().Heading();
  for (const QSize size : {QSize(1300, 800), QSize(640, 800), QSize(640, 330), QSize(420, 800), QSize(420, 330)}) {
    frame_->resize(size);
    QTest::qWait(20);
    const QString rest = Child<QLabel>(*frame_, "heading").text().section('\n', 1);
    EXPECT_TRUE(rest.contains("Form: LS Line") && rest.contains("Evaluated: length") && !rest.contains(QChar(0x2026)))
        << rest.toStdString();
    EXPECT_TRUE(first().startsWith("Ground; generated")) << size.width() << ' ' << first().toStdString();
    EXPECT_TRUE(Child<QLabel>(*frame_, "heading").toolTip().contains("settings of the line 4.ini"));
    QPushButton& verdict = frame_->View().Heading().Verdict();
    EXPECT_LE(verdict.geometry().right(), heading.width());
    EXPECT_GE(verdict.width(), verdict.sizeHint().width()) << "its words are whole";
  }
}

TEST_F(ProfileView, SaysWhatItShows) {
  const auto file = folder_.Write("own.ini", "[ANALYSIS]\r\nLcCutoffMM=0.25\r\n");
  ASSERT_TRUE(Doc().LoadSettingsFile(file));
  const auto heading = [this] { return frame_->View().Heading().Text(); };
  EXPECT_TRUE(heading().startsWith("Ground; generated"));
  EXPECT_TRUE(heading().contains("own.ini") && !heading().contains(FromPath(file)));
  Choose("showFullIniPath");
  EXPECT_TRUE(heading().contains(FromPath(file)));
  EXPECT_LT(frame_->minimumSizeHint().width(), 900) << "a long path does not widen the window";
  EXPECT_TRUE(heading().endsWith("Evaluated: length 4.0000 mm, 8000 points from 0.0000 mm to 3.9995 mm"));
  const auto verdict = [this] { return frame_->View().Heading().Verdict().text(); };
  EXPECT_EQ(verdict(), "No limits set");
  frame_->View().Heading().Verdict().click();
  auto& limits = Child<QTableWidget>(*frame_, "parameters");
  EXPECT_EQ(limits.item(limits.currentRow(), 0)->text(), "Ra") << "where limits are entered";
  Child<CSettingsSheet>(*frame_).reject();
  Change([](AnalysisSettings& analysis) {
    for (const std::size_t row : {0U, 30U})
      analysis.parameters[row].tolerance = {.toleranced = true, .upperLimit = 1e9};
    analysis.parameters[20].tolerance = {.toleranced = true, .upperLimit = -1.0};
  });
  EXPECT_TRUE(verdict().endsWith("1 of 3 toleranced parameters out of tolerance")) << verdict().toStdString();
  frame_->View().Heading().Verdict().click();
  const CGridCtrl& grid = frame_->ParamView().Grid();
  EXPECT_EQ(grid.item(grid.currentRow(), grid.currentColumn())->text(), FromText(InForce().catalogue.rows[20].name));
  Change([](AnalysisSettings& analysis) { analysis.parameters[20].tolerance.upperLimit = 1e9; });
  EXPECT_TRUE(verdict().endsWith("3 toleranced parameters within tolerance")) << verdict().toStdString();
  // Without numbers the ends and the division are told.
  QStringList ends;
  for (int i = 0; i < Graph().itemCount(); ++i) {
    const auto* const text = qobject_cast<QCPItemText*>(Graph().item(i));
    if (text != nullptr && text->layer()->name() == "axes") ends << text->text();
  }
  EXPECT_EQ(ends, QStringList({"0.00", "4.00"}));
  EXPECT_EQ(Graph().xAxis->label(), "X in mm, 1 per division");
  Choose("xAxisValues");
  EXPECT_TRUE(Graph().xAxis->tickLabels());
  const CTransmissionInset& transmission = frame_->View().Transmission();
  EXPECT_TRUE(transmission.isVisible());
  QTest::mouseClick(&frame_->View().Transmission(), Qt::LeftButton);
  EXPECT_EQ(frame_->UpperCurves().Chosen(), CCurvePane::kFilters);
  EXPECT_EQ(frame_->UpperCurves().View().Plot().legend->itemCount(), 3);
  Choose("filterTransmission");
  EXPECT_FALSE(transmission.isVisible());
}

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
  const auto splitter = [this]() -> QSplitter& { return Child<QSplitter>(*frame_, "upper"); };
  splitter().setSizes({500, 300});
  const int size = splitter().sizes()[0];
  emit splitter().splitterMoved(size, 1);
  MakeFrame(prompts_);
  EXPECT_EQ(frame_->UpperCurves().Chosen(), CCurvePane::kMotifs);
  Choose("splitUpperPane");
  frame_->show();
  QTest::qWait(20);
  EXPECT_NEAR(splitter().sizes()[0], size, 5);
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
  EXPECT_EQ(view.Readout(), Readable(FromText(BearingReadout(InForce(), cursors.X(), cursors.Y()))));
  EXPECT_EQ(Labels(plot), (QStringList{"Rk", "Mr1", "Mr2", "A1", "A2"}));
  EXPECT_EQ(plot.legend->itemCount(), 2) << "curves, not areas";
  std::vector<QRectF> boxes;
  for (int i = 0; i < plot.itemCount(); ++i) {
    auto* const label = qobject_cast<QCPItemText*>(plot.item(i));
    if (label == nullptr) continue;
    const QRectF box(label->topLeft->pixelPosition(), label->bottomRight->pixelPosition());
    for (const QRectF& other : boxes) {
      EXPECT_LT(other.intersected(box).height(), 3.0) << label->text().toStdString();
    }
    boxes.push_back(box);
  }
  Choose("rkLines");
  EXPECT_TRUE(Labels(plot).isEmpty());
  ChangeDisplay([](DisplaySettings& display) { display.BrcAdfType = 5; });
  EXPECT_EQ(plot.plottableCount(), 2);
  for (const QCPGraphData& point : *plot.graph(0)->data()) {
    ASSERT_EQ(point.value, HeightAtRatio(InForce().results.primaryCurve.heightsUM, point.key));
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
  EXPECT_EQ(view.Readout(), Readable(FromText(SpectrumReadout(InForce(), harmonic + 1))));
  for (int i = 0; i < 5; ++i) QTest::keyClick(&plot, Qt::Key_Left, Qt::ControlModifier);
  EXPECT_EQ(view.Cursors().X(), spectrum.wavelengthMM[1]) << "there is none before the first";
}

TEST_F(Curves, ZoomStaysUntilAllIsAskedFor) {
  QCustomPlot& plot = Show<CTexturonBRCView>(CCurvePane::kBearingRatio).Plot();
  QTest::keyClick(&plot, Qt::Key_Plus);
  Choose("computeAll");
  EXPECT_NEAR(plot.xAxis->range().size(), 80.0, 1e-9);
  QTest::mouseDClick(&plot, Qt::LeftButton, {}, plot.axisRect()->center());
  EXPECT_EQ(plot.xAxis->range(), QCPRange(0.0, 100.0));
  Choose("metric");
  EXPECT_TRUE(plot.yAxis->label().endsWith(FromText("\xB5in")));
}

}  // namespace
}  // namespace texturon
