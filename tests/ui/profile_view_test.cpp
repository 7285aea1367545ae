// The profile view, grabbed, zoomed and driven by keys.

#include <QLabel>
#include <QTest>

#include "ui/texturon_view.h"
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
  EXPECT_TRUE(readout->text().startsWith("X 1.5") || readout->text().startsWith("X 1.4"))
      << readout->text().toStdString();
  EXPECT_TRUE(readout->text().contains("slope"));
  EXPECT_FALSE(readout->text().contains("dY"));
  Choose("&Y Cursors");
  EXPECT_EQ(Doc().settings.display.CursorDisplayType, 3);
  EXPECT_TRUE(readout->text().contains("dY"));
  QTest::keyClick(&Graph(), Qt::Key_C);
  QTest::keyClick(&Graph(), Qt::Key_Right, Qt::ControlModifier);
  EXPECT_GT(Graph().UprightCursors().second, second) << "by keys";
  Choose("&X Cursors");
  Choose("&Y Cursors");
  EXPECT_EQ(readout->text(), "");
}

TEST_F(ProfileView, ComputesAndExcludesBetweenCursors) {
  Graph().SetUprightCursors(3.0, 1.0);
  Choose("&Exclude Between Cursors");
  EXPECT_TRUE(Doc().excludeSet);
  EXPECT_EQ(Doc().excludeFirst, 2000);
  EXPECT_EQ(Doc().excludeLast, 6000);
  Choose("Compute Between X &Cursors");
  EXPECT_EQ(Doc().profiles.computeRange.first, 2000);
  EXPECT_EQ(Doc().profiles.computeRange.last, 6000);
  Choose("Compute &All");
  EXPECT_FALSE(Doc().excludeSet);
  // Cursors beyond the record.
  Graph().SetUprightCursors(-5.0, 50.0);
  Choose("Compute Between X &Cursors");
  EXPECT_EQ(Doc().profiles.computeRange.count, 8000);
  // A stretch that is too short is refused, and what was computed stays.
  Graph().SetUprightCursors(1.0, 1.001);
  Choose("Compute Between X &Cursors");
  EXPECT_EQ(prompts_.messages, std::vector<std::string>{"Insufficient data for region calculation."});
  EXPECT_EQ(Doc().profiles.computeRange.count, 8000);
}

TEST_F(ProfileView, RefusesAnExclusionThatTheFormCannotHeed) {
  Settings settings = Doc().settings;
  settings.analysis.FormRemovalType = kFormFilter;
  frame_->Doc().ReplaceSettings(settings);
  Choose("&Exclude Between Cursors");
  EXPECT_EQ(prompts_.messages, std::vector<std::string>{"Cannot exclude with filter-based form removal."});
  EXPECT_FALSE(Doc().excludeSet);
}

TEST_F(ProfileView, ZoomsGoBackOneByOne) {
  const QCPRange all = Graph().VisibleX();
  Drag(PointAt(1.0, 0.5), PointAt(2.0, -0.5), Qt::ShiftModifier);
  const QCPRange marked = Graph().VisibleX();
  EXPECT_NEAR(marked.lower, 1.0, 0.02);
  EXPECT_NEAR(marked.upper, 2.0, 0.02);
  QTest::keyClick(&Graph(), Qt::Key_Plus);
  EXPECT_LT(Graph().VisibleX().size(), marked.size());
  Choose("Zoom &Back");
  EXPECT_EQ(Graph().VisibleX(), marked);
  QTest::keyClick(&Graph(), Qt::Key_Backspace);
  EXPECT_EQ(Graph().VisibleX(), all);
  QTest::keyClick(&Graph(), Qt::Key_Backspace);
  EXPECT_EQ(Graph().VisibleX(), all) << "there is nothing before";
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
  Choose("A&uto Scale");
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
  Choose("1:1 Aspe&ct Ratio");
  EXPECT_FALSE(Doc().settings.display.Profile11AspectRatio);
  EXPECT_LT(ratio(), 0.5) << "without, it fills the height";
}

}  // namespace
}  // namespace texturon
