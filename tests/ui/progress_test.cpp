// SPDX-License-Identifier: Apache-2.0

// Long computations: what is shown, and that nothing gets between.

#include <random>

#include "base/number_text.h"
#include "ui/window_fixture.h"

namespace texturon {
namespace {

/// A window with real dialogs, where progress is shown from its first step on, and a record whose robust filter takes
/// many passes.
class LongWork : public WindowTest {
protected:
  LongWork() {
    MakeFrame(dialogs_);
    frame_->show();
    std::mt19937 random(1);
    std::normal_distribution<double> normal;
    std::string text = "Lumetrace_Data 1.0\nIDENTIFICATION: long\nDATE: d\nSPACING_UM: 0.5\nNUMBER_OF_POINTS: 400000\n";
    text += "PROFILE_UM:\n";
    // A long tail keeps the robust filter at work: 16 passes.
    for (int i = 0; i < 400'000; ++i) text += FixedText(std::exp(2.0 * normal(random)), 5) + "\n";
    EXPECT_TRUE(frame_->OpenFile(folder_.Write("long.lmt", text)));
  }
  // The window goes before the dialogs that it uses.
  ~LongWork() override { frame_.reset(); }

  static void Cancel(const QWidget& dialog) {
    Child<QDialogButtonBox>(dialog).button(QDialogButtonBox::Cancel)->click();
  }

  DialogPrompts dialogs_{nullptr, std::chrono::milliseconds(0)};
};

TEST_F(LongWork, NothingTouchesTheDocumentBetweenAndAllOfItComesAfterwards) {
  const std::int32_t former = InForce().settings.analysis.FilterType;
  {
    const DialogDriver driver({[&](const QWidget& dialog) {
      EXPECT_TRUE(Doc().IsBusy());
      EXPECT_EQ(dialog.windowTitle(), "0.800 mm Robust Filter ...");
      EXPECT_FALSE(frame_->grab().isNull());
      Change([](AnalysisSettings& analysis) { analysis.LsCutoffMM = 0.008; });
      Doc().Invert();
      Doc().SetIdentification("waited");
      DropOn(*frame_, {Sample("turned.lmt")});
      EXPECT_FALSE(frame_->close()) << "the window waits as well";
      EXPECT_EQ(InForce().settings.analysis.FilterType, former) << "the former results are shown on";
      EXPECT_FALSE(InForce().profiles.inverted);
      EXPECT_EQ(InForce().profiles.identification, "long");
      Cancel(dialog);
    }});
    Change([](AnalysisSettings& analysis) { analysis.FilterType = kFilterRobustGaussian; });
  }
  EXPECT_TRUE(InForce().profiles.Has(ProfileKind::kWaviness)) << "stopped early, the filter gives the line so far";
  EXPECT_EQ(InForce().settings.analysis.FilterType, kFilterRobustGaussian);
  EXPECT_FALSE(InForce().profiles.inverted);
  EXPECT_TRUE(QTest::qWaitFor([&] { return !frame_->isVisible(); }, 60'000)) << "closes once it can";
  EXPECT_TRUE(QTest::qWaitFor([&] { return InForce().profiles.identification == "Turned; generated"; }, 60'000));
  EXPECT_EQ(InForce().settings.analysis.LsCutoffMM, 0.008);
  EXPECT_EQ(InForce().settings.analysis.FilterType, former) << "the settings that came later";
}

TEST(ProgressWindow, ComesAfterHalfASecond) {
  Application();
  DialogPrompts prompts(nullptr);
  const auto progress = prompts.OpenProgress("caption", "text");
  QElapsedTimer clock;
  clock.start();
  int percent = 0;
  while (clock.elapsed() < 400) {
    EXPECT_TRUE(progress->Advance(percent++ / 1000));
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
  }
  while (QApplication::activeModalWidget() == nullptr && clock.elapsed() < 5'000) progress->Advance(50);
  EXPECT_GE(clock.elapsed(), 500);
  ASSERT_NE(QApplication::activeModalWidget(), nullptr);
  QTest::keyClick(QApplication::activeModalWidget(), Qt::Key_Escape);
  EXPECT_FALSE(progress->Advance(60));
}

TEST_F(LongWork, TheOptimiserIsStoppedByItsWindow) {
  const DialogDriver driver({[](const QWidget& dialog) {
    EXPECT_EQ(dialog.windowTitle(), "Optimization");
    Cancel(dialog);
  }});
  Change([](AnalysisSettings& analysis) {
    analysis.FormRemovalType = kFormAsphere;
    analysis.RadiusMethod = analysis.ConicMethod = kTermFitted;
  });
  EXPECT_NE(InForce().results.formApplied, kFormAsphere);
}

}  // namespace
}  // namespace texturon
