// SPDX-License-Identifier: Apache-2.0

// The profile view, grabbed, zoomed and driven by keys.

#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QTest>
#include <QTimer>
#include <algorithm>
#include <cmath>

#include "ui/plots/texturon_view.h"
#include "ui/qt_text.h"
#include "ui/window_fixture.h"

namespace texturon {
namespace {

class ProfileView : public WindowTest {
protected:
  ProfileView() {
    EXPECT_TRUE(frame_->OpenFile(Sample("ground.lmt")));
    frame_->show();
    QTest::qWait(20);
  }
  CClickableProfileGraph& Graph() { return frame_->View().Graph(); }
  const Document& Doc() { return frame_->Doc().document(); }
  QPoint PointAt(double x, double y) {
    return {qRound(Graph().xAxis->coordToPixel(x)), qRound(Graph().yAxis->coordToPixel(y))};
  }
  void Drag(const QPoint& from, const QPoint& to, Qt::KeyboardModifiers modifiers = {}) {
    QTest::mousePress(&Graph(), Qt::LeftButton, modifiers, from);
    // QTest's moves carry no button.
    QMouseEvent move(QEvent::MouseMove, to, Graph().mapToGlobal(to), Qt::NoButton, Qt::LeftButton, modifiers);
    QApplication::sendEvent(&Graph(), &move);
    QTest::mouseRelease(&Graph(), Qt::LeftButton, modifiers, to);
  }
  void SetDisplay(const std::function<void(DisplaySettings&)>& change) {
    DisplaySettings display = Doc().settings.display;
    change(display);
    frame_->Doc().ReplaceDisplay(display);
  }
};

TEST_F(ProfileView, CursorsAreGrabbedAndReadOut) {
  const auto [first, second] = Graph().UprightCursors();
  EXPECT_LT(first, second);
  const QCPRange before = Graph().VisibleX();
  Drag(PointAt(first, 0.0), PointAt(1.5, 0.0));
  EXPECT_NEAR(Graph().UprightCursors().first, 1.5, 0.01);
  EXPECT_EQ(Graph().UprightCursors().second, second);
  EXPECT_EQ(Graph().VisibleX(), before) << "the curves stay when a cursor is grabbed";
  const auto* const readout = frame_->findChild<QLabel*>("readout");
  EXPECT_TRUE(readout->text().startsWith("X1 1.5") || readout->text().startsWith("X1 1.4"))
      << readout->text().toStdString();
  EXPECT_TRUE(readout->text().contains("slope"));
  EXPECT_FALSE(readout->text().contains("dY"));
  Choose("yCursors");
  EXPECT_EQ(Doc().settings.display.CursorDisplayType, 3);
  EXPECT_TRUE(readout->text().contains("dY"));
  QTest::keyClick(&Graph(), Qt::Key_C);
  QTest::keyClick(&Graph(), Qt::Key_Right, Qt::ControlModifier);
  EXPECT_GT(Graph().UprightCursors().second, second) << "by keys";
  Choose("xCursors");
  Choose("yCursors");
  EXPECT_EQ(readout->text(), "");
}

TEST_F(ProfileView, ComputesAndExcludesBetweenCursors) {
  Graph().SetUprightCursors(3.0, 1.0);
  Choose("excludeBetweenCursors");
  EXPECT_EQ(Doc().scope.exclusion, IndexRange::FromEnds(2000, 6000));
  Choose("computeBetweenXCursors");
  EXPECT_EQ(Doc().profiles.computeRange->first, 2000);
  EXPECT_EQ(Doc().profiles.computeRange->last, 6000);
  Choose("computeAll");
  EXPECT_FALSE(Doc().scope.exclusion);
  // Cursors beyond the record.
  Graph().SetUprightCursors(-5.0, 50.0);
  Choose("computeBetweenXCursors");
  EXPECT_EQ(Doc().profiles.computeRange->count, 8000);
  // A stretch that is too short is refused, and what was computed stays.
  Graph().SetUprightCursors(1.0, 1.001);
  Choose("computeBetweenXCursors");
  EXPECT_EQ(prompts_.messages, std::vector<std::string>{"Insufficient data for region calculation."});
  EXPECT_EQ(Doc().profiles.computeRange->count, 8000);
}

TEST_F(ProfileView, RefusesAnExclusionThatTheFormCannotHeed) {
  Settings settings = Doc().settings;
  settings.analysis.FormRemovalType = kFormFilter;
  frame_->Doc().ReplaceSettings(settings);
  Choose("excludeBetweenCursors");
  EXPECT_EQ(prompts_.messages, std::vector<std::string>{"Cannot exclude with filter-based form removal."});
  EXPECT_FALSE(Doc().scope.exclusion);
}

TEST_F(ProfileView, ZoomsGoBackOneByOne) {
  const QCPRange all = Graph().VisibleX();
  Drag(PointAt(1.0, 0.5), PointAt(2.0, -0.5), Qt::ShiftModifier);
  const QCPRange marked = Graph().VisibleX();
  EXPECT_NEAR(marked.lower, 1.0, 0.02);
  EXPECT_NEAR(marked.upper, 2.0, 0.02);
  QTest::keyClick(&Graph(), Qt::Key_Plus);
  EXPECT_LT(Graph().VisibleX().size(), marked.size());
  Choose("zoomBack");
  EXPECT_EQ(Graph().VisibleX(), marked);
  QTest::keyClick(&Graph(), Qt::Key_Backspace);
  EXPECT_EQ(Graph().VisibleX(), all);
  QTest::keyClick(&Graph(), Qt::Key_Backspace);
  EXPECT_EQ(Graph().VisibleX(), all) << "there is nothing before";
  Choose("zoomForward");
  EXPECT_EQ(Graph().VisibleX(), marked);
  QTest::keyClick(&Graph(), Qt::Key_Backspace);
  EXPECT_EQ(Graph().VisibleX(), all);
  Choose("zoomToSamplingLength");
  EXPECT_NEAR(Graph().VisibleX().size(), 0.8, 1e-9);
  Choose("zoomForward");
  EXPECT_NEAR(Graph().VisibleX().size(), 0.8, 1e-9) << "another zoom leaves nothing to come";
  QTest::keyClick(&Graph(), Qt::Key_Backspace);
  Drag(PointAt(1.0, 0.5), PointAt(2.0, -0.5), Qt::ShiftModifier);
  frame_->Doc().Invert();
  EXPECT_EQ(Graph().VisibleX(), marked) << "another analysis of the same record keeps what is looked at";
}

TEST_F(ProfileView, ScalesFollowTheSettings) {
  SetDisplay([](DisplaySettings& display) {
    display.ProfileAutoScale = false;
    display.ProfileYMaxUM = 4.0;
    display.ProfileYMinUM = -6.0;
    display.ProfileAutoYSpacing = false;
    display.ProfileYGridSpacingUM = 2.0;
    display.ProfileYGridStartUM = -5.0;
  });
  EXPECT_EQ(Graph().yAxis->range(), QCPRange(-6.0, 4.0));
  Graph().replot();
  const auto ticker = Graph().yAxis->ticker().dynamicCast<QCPAxisTickerFixed>();
  ASSERT_TRUE(ticker);
  EXPECT_EQ(ticker->tickStep(), 2.0);
  EXPECT_EQ(ticker->tickOrigin(), -5.0);
  SetDisplay([](DisplaySettings& display) { display.Metric = false; });
  EXPECT_NEAR(Graph().yAxis->range().upper, 157.48, 0.01);
  Choose("autoScale");
  EXPECT_TRUE(Doc().settings.display.ProfileAutoScale);
  EXPECT_LT(Graph().yAxis->range().upper, 157.0);
}

TEST_F(ProfileView, EqualScalesAreForProfilesWithForm) {
  const auto ratio = [&] {
    const double lengthUM = Graph().xAxis->range().size() * 1000.0 / Graph().axisRect()->width();
    return Graph().yAxis->range().size() / Graph().axisRect()->height() / lengthUM;
  };
  EXPECT_LT(ratio(), 0.01) << "a roughness profile would be a line";
  SetDisplay([](DisplaySettings& display) { display.ProfileType = 0; });
  ASSERT_TRUE(frame_->OpenFile(Sample("arc.lmt")));
  EXPECT_NEAR(ratio(), 1.0, 1e-6) << "an arc of 300 um over 5 mm shows its shape";
  frame_->resize(900, 900);
  QTest::qWait(20);
  EXPECT_NEAR(ratio(), 1.0, 1e-6) << "in every size of the window";
  const auto [first, second] = Graph().UprightCursors();
  EXPECT_TRUE(first > 0.0 && second < 5.0) << "the cursors stand on the record";
  Drag(PointAt(1.0, 50.0), PointAt(2.0, -50.0), Qt::ShiftModifier);
  const QCPRange zoomed = Graph().VisibleX();
  frame_->resize(1200, 700);
  QTest::qWait(20);
  EXPECT_EQ(Graph().VisibleX(), zoomed) << "what is zoomed to stays";
  Choose("showAll");
  EXPECT_NEAR(ratio(), 1.0, 1e-6);
  Choose("aspectRatio");
  EXPECT_FALSE(Doc().settings.display.Profile11AspectRatio);
  EXPECT_LT(ratio(), 0.5) << "without, it fills the height";
}

TEST_F(ProfileView, IsEqualFromTheStart) {
  // Opened before there is a window: the size comes later.
  frame_ = std::make_unique<CMainFrame>(frame_->Doc().environment(), &prompts_);
  ASSERT_TRUE(frame_->OpenFile(Sample("arc.lmt")));
  frame_->show();
  QTest::qWait(20);
  const double lengthUM = Graph().xAxis->range().size() * 1000.0 / Graph().axisRect()->width();
  EXPECT_NEAR(Graph().yAxis->range().size() / Graph().axisRect()->height() / lengthUM, 1.0, 1e-6);
  EXPECT_NEAR(Graph().VisibleX().lower, 0.0, 1e-9) << "a flat arc fills the width";
  EXPECT_NEAR(Graph().VisibleX().upper, Graph().WholeX().upper, 1e-9);
}

TEST_F(ProfileView, GivesThePlotThePeaksOfEveryColumn) {
  SetDisplay([](DisplaySettings& display) { display.ProfileType = 0; });
  EXPECT_LT(Graph().graph(0)->dataCount(), 4 * Graph().axisRect()->width() + 3);
  const auto highest = std::max_element(Doc().profiles.raw.begin(), Doc().profiles.raw.end());
  bool found = false;
  for (const QCPGraphData& point : *Graph().graph(0)->data()) found |= point.value == *highest;
  EXPECT_TRUE(found);
  Graph().ShowX({1.0, 1.02});
  EXPECT_EQ(Graph().graph(0)->dataCount(), 42) << "0.5 um apart, and one more on either side";
}

TEST_F(ProfileView, ScrollsWhatIsZoomed) {
  auto* const bar = frame_->findChild<QScrollBar*>("alongX");
  EXPECT_EQ(bar->maximum(), 0) << "all is in view";
  Graph().ShowX({1.0, 2.0});
  const double share = 1.0 / Graph().WholeX().size();
  EXPECT_NEAR(bar->value() / 1e6, share, 1e-5);
  EXPECT_NEAR(bar->pageStep() / 1e6, share, 1e-5);
  bar->setValue(bar->value() * 2);
  EXPECT_NEAR(Graph().VisibleX().lower, 2.0, 1e-4);
  EXPECT_NEAR(Graph().VisibleX().size(), 1.0, 1e-9);
  QTest::keyClick(&Graph(), Qt::Key_Backspace);
  EXPECT_NEAR(Graph().VisibleX().lower, 1.0, 1e-9);
}

TEST_F(ProfileView, ShowsTheFormAndSteepSlopes) {
  ASSERT_TRUE(frame_->OpenFile(Sample("arc.lmt")));
  Settings settings = Doc().settings;
  settings.analysis.FormRemovalType = kFormArc;
  settings.display.ProfileType = 0;
  frame_->Doc().ReplaceSettings(settings);
  Choose("show8");
  ASSERT_EQ(Graph().graphCount(), 2);
  EXPECT_TRUE(Graph().graph(1)->name().startsWith("Form: LS Arc   (Radius: 1"))
      << Graph().graph(1)->name().toStdString();
  for (const QCPGraphData& point : *Graph().graph(1)->data()) {
    const auto i = static_cast<std::size_t>(std::lround(point.key * 1000.0 / Doc().profiles.spacingUM));
    ASSERT_NEAR(point.value, Doc().profiles.raw[i], 5.0) << "the form lies along the record, at " << point.key;
  }
  Choose("extremeSlopes");
  ASSERT_EQ(Graph().graphCount(), 3);
  EXPECT_EQ(Graph().graph(2)->name(), QString::fromUtf8("Raw Data above 40.0\u00B0: 0.0 %"));
  SetDisplay([](DisplaySettings& display) { display.ExtremeSlopePlotDegrees = 5.0; });
  // An arc is steeper than an angle outside R sin(angle) from its apex.
  const double share = Graph().graph(2)->name().section(": ", 1).section(' ', 0, 0).toDouble();
  EXPECT_NEAR(share, 100.0 * (1.0 - 2.0 * 12.0 * std::sin(5.0 * 3.14159265 / 180.0) / 5.0), 3.0);
  Choose("show8");
  EXPECT_EQ(Graph().graphCount(), 2);
}

TEST_F(ProfileView, SaysWhatItShows) {
  const auto* const heading = &frame_->View();
  EXPECT_EQ(heading->Heading().section('\n', 0, 0), "Ground; generated");
  const ScratchFolder folder;
  const auto file = folder.Write("own.ini", "[ANALYSIS]\r\nLcCutoffMM=0.25\r\n");
  ASSERT_TRUE(frame_->Doc().LoadSettingsFile(file));
  EXPECT_TRUE(heading->Heading().contains("own.ini") && !heading->Heading().contains(FromPath(file)));
  EXPECT_TRUE(heading->Heading().contains("Spline Gaussian, Lc 0.2500 mm"));
  Choose("showFullIniPath");
  EXPECT_TRUE(heading->Heading().contains(FromPath(file)));
  EXPECT_LT(frame_->minimumSizeHint().width(), 900) << "a long path does not widen the window";
  EXPECT_FALSE(Graph().xAxis->tickLabels());
  EXPECT_TRUE(Graph().xAxis->label().contains("per division"));
  Choose("xAxisValues");
  EXPECT_TRUE(Graph().xAxis->tickLabels());
  EXPECT_EQ(Graph().xAxis->label(), "X in mm");
  CTransmissionInset& transmission = frame_->View().Transmission();
  EXPECT_TRUE(transmission.isVisible());
  // All that is not passed to the waviness is in the roughness, but for the short waves.
  EXPECT_NEAR(transmission.graph(1)->dataMainValue(150) + transmission.graph(2)->dataMainValue(150),
              transmission.graph(0)->dataMainValue(150), 1e-9);
  EXPECT_FALSE(transmission.geometry().intersects(Graph().axisRect()->rect())) << "it hides nothing";
  Choose("filterTransmission");
  EXPECT_FALSE(transmission.isVisible());
}

TEST_F(ProfileView, AsksForTheSteepAngle) {
  Choose("extremeSlopes");
  QTimer::singleShot(0, [] {
    auto* const dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
    auto* const line = dialog->findChild<QLineEdit*>();
    auto* const ok = dialog->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok);
    line->selectAll();
    QTest::keyClicks(line, "95");
    EXPECT_FALSE(ok->isEnabled());
    line->selectAll();
    QTest::keyClicks(line, "12");
    ok->click();
  });
  Choose("extremeSlopeThreshold");
  EXPECT_EQ(Doc().settings.display.ExtremeSlopePlotDegrees, 12.0);
  EXPECT_TRUE(Graph().graph(2)->name().startsWith(QString::fromUtf8("Primary Profile above 12.0\u00B0: ")));
}

}  // namespace
}  // namespace texturon
