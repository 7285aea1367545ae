// SPDX-License-Identifier: Apache-2.0

// Pictures of the windows in several states, for a person to look at. What a program can see of them is tested too:
// that they are drawn, that none looks like another, and that their ground follows the palette.

#include "ui/folders/auto_loading.h"
#include "ui/folders/folder_batch_window.h"
#include "ui/plots/curve_pane.h"
#include "ui/plots/curve_view.h"
#include "ui/plots/texturon_view.h"
#include "ui/sheets/region_dialogs.h"
#include "ui/sheets/settings_sheet.h"
#include "ui/window_fixture.h"

namespace texturon {
namespace {

class Pictures : public WindowTest {
protected:
  Pictures() : WindowTest("honed.lmt") {}

  void Take(QWidget& window, const QString& name) {
    window.show();
    QTest::qWait(HasDisplay() ? 300 : 50);
    const QDir folder(qEnvironmentVariable("TEXTURON_PICTURES", TEXTURON_PICTURE_FOLDER));
    folder.mkpath(".");
    // What is on the display, or what would be.
    const QPixmap seen = HasDisplay() ? window.screen()->grabWindow(window.winId()) : window.grab();
    EXPECT_TRUE(seen.save(folder.filePath(name + ".png")));
    EXPECT_FALSE(taken_.contains(seen.toImage())) << name.toStdString();
    taken_ << seen.toImage();
    // An empty window is a smaller file.
    EXPECT_GT(QFileInfo(folder.filePath(name + ".png")).size(), 5'000) << name.toStdString();
  }

  QList<QImage> taken_;
};

TEST_F(Pictures, OfTheMainWindow) {
  const QPalette light = QApplication::palette();
  const QColor ground(0x1E, 0x1E, 0x1E);
  QPalette dark(QColor(0x35, 0x35, 0x35), QColor(0x25, 0x25, 0x25));
  dark.setColor(QPalette::Base, ground);
  Take(*frame_, "profiles");
  for (const char* const command : {"splitLowerPane", "yCursors", "extremeSlopes", "bearingRatioCurve",
                                    "probabilityCurve", "spectrumCurve", "motifCurve"}) {
    Choose(command);
    Take(*frame_, command);
    QApplication::setPalette(dark);
    Take(*frame_, QString(command) + "-dark");
    EXPECT_EQ(frame_->LowerCurves().View().Plot().grab().toImage().pixelColor(2, 2), ground);
    EXPECT_EQ(frame_->View().Graph().grab().toImage().pixelColor(2, 2), ground);
    const QString ink = frame_->palette().color(QPalette::WindowText).name();
    EXPECT_TRUE(frame_->View().Heading().Verdict().styleSheet().contains(ink)) << "words follow the ground";
    QApplication::setPalette(light);
  }
}

TEST_F(Pictures, OfTheSheetsAndDialogs) {
  ASSERT_TRUE(Doc().LoadSettingsFile(Sample("freeform.ini")));
  Choose("settings");
  auto& sheet = Child<CSettingsSheet>(*frame_);
  for (int page = 0; page < sheet.Pages().count(); ++page) {
    sheet.Pages().setCurrentIndex(page);
    Take(sheet, "settings-" + sheet.Pages().Title(page).remove(' ').toLower());
  }
  sheet.Pages().setCurrentIndex(1);
  Take(*frame_, "settings-docked");
  Choose("bearingRatiosAndHtp");
  Take(Child<CBearingRatioSheet>(*frame_), "bearing-ratios");
  Choose("autoLoadingSettings");
  Take(Child<CAutoLoadingSheet>(*frame_), "auto-loading");
  CRegionDialog region(InForce(), frame_.get());
  Take(region, "region");
  Choose("batchOfAFolder");
  Take(Child<CFolderBatchWindow>(*frame_), "batch");
}

}  // namespace
}  // namespace texturon
