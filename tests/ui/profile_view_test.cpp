// SPDX-License-Identifier: Apache-2.0

// The profile view, grabbed, zoomed and driven by keys.

#include "ui/plots/texturon_view.h"
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
  EXPECT_LT(first, second);
  const QCPRange before = Graph().VisibleX();
  Drag(Graph(), {first, 0.0}, {1.5, 0.0});
  EXPECT_NEAR(Graph().UprightCursors().first, 1.5, 0.01);
  EXPECT_EQ(Graph().UprightCursors().second, second);
  EXPECT_EQ(Graph().VisibleX(), before) << "the curves stay when a cursor is grabbed";
  const auto& readout = Child<QLabel>(*frame_, "readout");
  EXPECT_TRUE(readout.text().startsWith("X1 1.") && !readout.text().contains("dY")) << readout.text().toStdString();
  Choose("yCursors");
  EXPECT_TRUE(readout.text().contains("dY"));
  QTest::keyClick(&Graph(), Qt::Key_C);
  QTest::keyClick(&Graph(), Qt::Key_Right, Qt::ControlModifier);
  EXPECT_GT(Graph().UprightCursors().second, second) << "by keys";
  for (const char* const command : {"xCursors", "yCursors"}) Choose(command);
  EXPECT_EQ(readout.text(), "");
}

TEST_F(ProfileView, ComputesAndExcludesBetweenCursors) {
  Graph().SetUprightCursors(3.0, 1.0);
  Choose("excludeBetweenCursors");
  EXPECT_EQ(InForce().scope.exclusion, IndexRange::FromEnds(2000, 6000));
  Choose("computeBetweenXCursors");
  EXPECT_EQ(InForce().profiles.computeRange, IndexRange::FromEnds(2000, 6000));
  Choose("computeAll");
  EXPECT_FALSE(InForce().scope.exclusion);
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

TEST_F(ProfileView, ZoomsGoBackOneByOne) {
  const QCPRange all = Graph().VisibleX();
  Drag(Graph(), {1.0, 0.5}, {2.0, -0.5}, Qt::ShiftModifier);
  const QCPRange marked = Graph().VisibleX();
  EXPECT_NEAR(marked.lower, 1.0, 0.02);
  EXPECT_NEAR(marked.upper, 2.0, 0.02);
  QTest::keyClick(&Graph(), Qt::Key_Plus);
  EXPECT_LT(Graph().VisibleX().size(), marked.size());
  Choose("zoomBack");
  EXPECT_EQ(Graph().VisibleX(), marked);
  for (int i = 0; i < 2; ++i) {
    QTest::keyClick(&Graph(), Qt::Key_Backspace);
    EXPECT_EQ(Graph().VisibleX(), all) << "there is nothing before";
  }
  Choose("zoomForward");
  EXPECT_EQ(Graph().VisibleX(), marked);
  QTest::keyClick(&Graph(), Qt::Key_Backspace);
  Choose("zoomToSamplingLength");
  EXPECT_NEAR(Graph().VisibleX().size(), 0.8, 1e-9);
  Choose("zoomForward");
  EXPECT_NEAR(Graph().VisibleX().size(), 0.8, 1e-9) << "another zoom leaves nothing to come";
  Choose("invert");
  EXPECT_NEAR(Graph().VisibleX().size(), 0.8, 1e-9) << "another analysis of the same record keeps what is looked at";
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

TEST_F(ProfileView, ScalesFollowTheSettings) {
  ChangeDisplay([](DisplaySettings& display) {
    display.ProfileAutoScale = display.ProfileAutoYSpacing = false;
    display.ProfileYMaxUM = 4.0;
    display.ProfileYMinUM = -6.0;
    display.ProfileYGridSpacingUM = 3.0;
    display.ProfileYGridStartUM = -5.0;
  });
  EXPECT_EQ(Graph().yAxis->range(), QCPRange(-6.0, 4.0));
  Graph().replot();
  const QVector<double> lines = Graph().yAxis->tickVector();
  EXPECT_TRUE(lines.contains(-5.0) && lines.contains(-2.0) && !lines.contains(0.0));
  Choose("metric");
  EXPECT_NEAR(Graph().yAxis->range().upper, 157.48, 0.01);
  Choose("autoScale");
  EXPECT_LT(Graph().yAxis->range().upper, 157.0);
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
  Drag(Graph(), {1.0, 50.0}, {2.0, -50.0}, Qt::ShiftModifier);
  const QCPRange zoomed = Graph().VisibleX();
  frame_->resize(1200, 700);
  QTest::qWait(20);
  EXPECT_EQ(Graph().VisibleX(), zoomed) << "what is zoomed to stays";
  Choose("aspectRatio");
  EXPECT_LT(Ratio(), 0.5) << "without, it fills the height";
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
  for (const QCPGraphData& point : *Graph().graph(1)->data()) {
    const auto i = static_cast<std::size_t>(std::lround(point.key * 1000.0 / InForce().profiles.spacingUM));
    ASSERT_NEAR(point.value, InForce().profiles.raw[i], 5.0) << "the form lies along the record, at " << point.key;
  }
  Choose("extremeSlopes");
  Choose("extremeSlopeThreshold", {[](QWidget& dialog) {
           QPushButton& ok = *Child<QDialogButtonBox>(dialog).button(QDialogButtonBox::Ok);
           Type(Child(dialog), "95");
           EXPECT_FALSE(ok.isEnabled());
           Type(Child(dialog), "5");
           ok.click();
         }});
  ASSERT_EQ(Graph().graphCount(), 3);
  // An arc is steeper than an angle outside R sin(angle) from its apex.
  EXPECT_TRUE(Graph().graph(2)->name().startsWith(QString::fromUtf8("Raw Data above 5.0\u00B0: ")));
  const double share = Graph().graph(2)->name().section(": ", 1).section(' ', 0, 0).toDouble();
  EXPECT_NEAR(share, 100.0 * (1.0 - 2.0 * 12.0 * std::sin(5.0 * 3.14159265 / 180.0) / 5.0), 3.0);
}

TEST_F(ProfileView, SaysWhatItShows) {
  const auto file = folder_.Write("own.ini", "[ANALYSIS]\r\nLcCutoffMM=0.25\r\n");
  ASSERT_TRUE(Doc().LoadSettingsFile(file));
  const auto heading = [this] { return frame_->View().Heading(); };
  EXPECT_TRUE(heading().startsWith("Ground; generated"));
  EXPECT_TRUE(heading().contains("own.ini") && !heading().contains(FromPath(file)));
  Choose("showFullIniPath");
  EXPECT_TRUE(heading().contains(FromPath(file)));
  EXPECT_LT(frame_->minimumSizeHint().width(), 900) << "a long path does not widen the window";
  EXPECT_FALSE(Graph().xAxis->tickLabels());
  Choose("xAxisValues");
  EXPECT_TRUE(Graph().xAxis->tickLabels());
  const CTransmissionInset& transmission = frame_->View().Transmission();
  EXPECT_TRUE(transmission.isVisible());
  EXPECT_FALSE(transmission.geometry().intersects(Graph().axisRect()->rect())) << "it hides nothing";
  Choose("filterTransmission");
  EXPECT_FALSE(transmission.isVisible());
}

}  // namespace
}  // namespace texturon
