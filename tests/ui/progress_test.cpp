// SPDX-License-Identifier: Apache-2.0

// Long computations: what is shown, and that nothing gets between.

#include <QDialogButtonBox>
#include <QElapsedTimer>
#include <QLabel>
#include <QPushButton>
#include <QTest>
#include <cmath>
#include <random>

#include "base/number_text.h"
#include "ui/dialog_driver.h"
#include "ui/window_fixture.h"

namespace texturon {
namespace {

/// A native file of `points` heights.
std::filesystem::path WriteRecord(const ScratchFolder& folder, const char* name, int points, double spacingUM,
                                  const std::function<double(int)>& heightUM) {
  std::string text = "Lumetrace_Data 1.0\nIDENTIFICATION: long\nDATE: d\nSPACING_UM: " + FixedText(spacingUM, 4) +
                     "\nNUMBER_OF_POINTS: " + IntegerText(points) + "\nPROFILE_UM:\n";
  for (int i = 0; i < points; ++i) text += FixedText(heightUM(i), 5) + "\n";
  return folder.Write(name, text);
}

/// A window with real dialogs, where progress is shown from its first step on, and a record whose robust filter takes
/// many passes.
class LongWork : public ::testing::Test {
protected:
  LongWork() {
    Application();
    Environment environment = SystemEnvironment();
    environment.traceFile.clear();
    frame_ = std::make_unique<CMainFrame>(environment, &prompts_);
    frame_->show();
    std::mt19937 random(1);
    std::normal_distribution<double> normal;
    // A long tail keeps the robust filter at work: 16 passes.
    long_ = WriteRecord(folder_, "long.lmt", 400'000, 0.5, [&](int) { return std::exp(2.0 * normal(random)); });
    EXPECT_TRUE(frame_->OpenFile(long_));
  }

  Settings Robust() const {
    Settings settings = frame_->Doc().document().settings;
    settings.analysis.FilterType = kFilterRobustGaussian;
    settings.analysis.LcCutoffMM = 0.8;
    return settings;
  }

  ScratchFolder folder_;
  DialogPrompts prompts_{nullptr, std::chrono::milliseconds(0)};
  std::unique_ptr<CMainFrame> frame_;
  std::filesystem::path long_;
};

void ClickCancel(QWidget& dialog) {
  dialog.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Cancel)->click();
}

TEST_F(LongWork, NothingTouchesTheDocumentBetweenAndAllOfItComesAfterwards) {
  CTexturonDoc& doc = frame_->Doc();
  const AnalysisSettings former = doc.document().settings.analysis;
  ASSERT_NE(former.FilterType, kFilterRobustGaussian);
  bool wasBusy = false;
  {
    const DialogDriver driver({[&](QWidget& dialog) {
      wasBusy = doc.IsBusy();
      EXPECT_EQ(dialog.windowTitle(), "0.800 mm Robust Filter ...");
      EXPECT_EQ(doc.document().settings.analysis.FilterType, former.FilterType) << "the former results are shown on";
      EXPECT_FALSE(frame_->grab().isNull());
      Settings other = doc.document().settings;
      other.analysis.LsCutoffMM = 0.008;
      doc.ReplaceSettings(other);
      doc.Invert();
      doc.SetIdentification("waited");
      DropOn(*frame_, {QUrl::fromLocalFile(FromPath(Sample("turned.lmt")))});
      EXPECT_FALSE(frame_->close()) << "the window waits as well";
      EXPECT_FALSE(doc.document().profiles.inverted);
      EXPECT_EQ(doc.document().profiles.identification, "long");
      EXPECT_EQ(doc.document().profiles.sourcePath, TextFromPath(long_));
      ClickCancel(dialog);
    }});
    doc.ReplaceSettings(Robust());
  }
  EXPECT_TRUE(wasBusy);
  EXPECT_TRUE(doc.document().profiles.Has(ProfileKind::kWaviness)) << "stopped early, the filter gives the line so far";
  EXPECT_EQ(doc.document().settings.analysis.FilterType, kFilterRobustGaussian);
  EXPECT_FALSE(doc.document().profiles.inverted);
  EXPECT_TRUE(QTest::qWaitFor([&] { return !frame_->isVisible(); }, 60'000)) << "closes once it can";
  EXPECT_TRUE(QTest::qWaitFor([&] { return doc.document().profiles.identification == "Turned; generated"; }, 60'000));
  EXPECT_EQ(doc.document().settings.analysis.LsCutoffMM, 0.008);
  EXPECT_EQ(doc.document().settings.analysis.FilterType, former.FilterType) << "the settings that came later";
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
  constexpr double kCurvature = -0.02;
  constexpr double kConic = -0.6;
  constexpr int kPoints = 200'000;
  const auto sag = [](int i) {
    const double u = (i - kPoints / 2) * 40e-6 + 0.3;
    const double square = kCurvature * kCurvature * u * u;
    return 1000.0 * kCurvature * u * u / (1.0 + std::sqrt(1.0 - (1.0 + kConic) * square)) + 0.01 * std::sin(i * 0.7);
  };
  CTexturonDoc& doc = frame_->Doc();
  ASSERT_TRUE(doc.Open(WriteRecord(folder_, "lens.lmt", kPoints, 0.04, sag)));
  Settings settings = doc.document().settings;
  settings.analysis.FormRemovalType = kFormAsphere;
  settings.analysis.RadiusMethod = kTermFitted;
  settings.analysis.ConicMethod = kTermFitted;
  const DialogDriver driver({[](QWidget& dialog) {
    EXPECT_EQ(dialog.windowTitle(), "Optimization");
    EXPECT_EQ(dialog.findChild<QLabel*>()->text(), "Optimizing asphere & radius...");
    ClickCancel(dialog);
  }});
  doc.ReplaceSettings(settings);
  EXPECT_NE(doc.document().results.formApplied, kFormAsphere);
}

}  // namespace
}  // namespace texturon
