// SPDX-License-Identifier: Apache-2.0

// Pictures of the windows in several states, for a person to look at. What a program can see of them is tested too:
// that they are drawn, and that none looks like another.

#include <QDir>
#include <QLineEdit>
#include <QPalette>
#include <QPushButton>
#include <QScreen>
#include <QSet>
#include <QTest>

#include "ui/folders/folder_batch_window.h"
#include "ui/plots/curve_pane.h"
#include "ui/plots/curve_view.h"
#include "ui/plots/texturon_view.h"
#include "ui/qt_text.h"
#include "ui/sheets/region_dialogs.h"
#include "ui/sheets/settings_sheet.h"
#include "ui/sheets/shape_page.h"
#include "ui/window/keys_dialog.h"
#include "ui/window_fixture.h"

namespace texturon {
namespace {

class Pictures : public WindowTest {
protected:
  void Take(QWidget& window, const QString& name) {
    QTest::qWait(HasDisplay() ? 300 : 50);
    const QDir folder(qEnvironmentVariable("TEXTURON_PICTURES", TEXTURON_PICTURE_FOLDER));
    folder.mkpath(".");
    // What is on the display, or what would be.
    const QPixmap seen = HasDisplay() ? window.screen()->grabWindow(window.winId()) : window.grab();
    const QImage picture = seen.toImage();
    EXPECT_TRUE(picture.save(folder.filePath(name + ".png")));
    QSet<QRgb> colours;
    for (int y = 0; y < picture.height(); y += 3) {
      for (int x = 0; x < picture.width(); x += 3) colours.insert(picture.pixel(x, y));
    }
    EXPECT_GT(colours.size(), 8) << name.toStdString();
    EXPECT_FALSE(taken_.contains(picture)) << name.toStdString();
    taken_ << picture;
  }

  QList<QImage> taken_;
};

TEST_F(Pictures, OfTheMainWindow) {
  ASSERT_TRUE(frame_->OpenFile(Sample("honed.lmt")));
  frame_->resize(1300, 850);
  frame_->show();
  Take(*frame_, "profiles");
  Choose("splitUpperPane");
  Choose("splitLowerPane");
  Choose("yCursors");
  Take(*frame_, "curves");
  Choose("probabilityCurve");
  frame_->LowerCurves().Choose(CCurvePane::kMotifs);
  Take(*frame_, "curves-probability-motifs");
  frame_->LowerCurves().Choose(CCurvePane::kBearingRatio);
  Choose("splitUpperPane");
  Choose("computeOnZoom");
  frame_->View().Graph().SetUprightCursors(2.0, 3.0);
  Choose("excludeBetweenCursors");
  frame_->View().Graph().SetUprightCursors(1.0, 4.0);
  Choose("computeBetweenXCursors");
  Choose("extremeSlopes");
  Take(*frame_, "stretch");
}

TEST_F(Pictures, OfAVerdictInADarkWindow) {
  Settings settings = frame_->Doc().document().settings;
  for (std::size_t i = 0; i < settings.analysis.parameters.size(); i += 3) {
    settings.analysis.parameters[i].tolerance = {.toleranced = true, .upperLimit = i % 2 == 0 ? 1e9 : 1e-9};
  }
  frame_->Doc().ReplaceSettings(settings);
  const QPalette light = QApplication::palette();
  QPalette dark(QColor(0x35, 0x35, 0x35), QColor(0x25, 0x25, 0x25));
  dark.setColor(QPalette::Base, QColor(0x1E, 0x1E, 0x1E));
  dark.setColor(QPalette::AlternateBase, QColor(0x28, 0x28, 0x28));
  QApplication::setPalette(dark);
  Choose("splitUpperPane");
  ASSERT_TRUE(frame_->OpenFile(Sample("turned.lmt")));
  frame_->resize(1300, 850);
  frame_->show();
  Take(*frame_, "dark");
  QApplication::setPalette(light);
}

TEST_F(Pictures, OfTheSheets) {
  ASSERT_TRUE(frame_->Doc().LoadSettingsFile(Sample("asphere.ini")));
  ASSERT_TRUE(frame_->OpenFile(Sample("asphere.lmt")));
  frame_->show();
  Choose("settings");
  auto& sheet = *frame_->findChild<CSettingsSheet*>();
  for (int page = 0; page < sheet.Pages().count(); ++page) {
    sheet.Pages().setCurrentIndex(page);
    Take(sheet, "settings-" + sheet.Pages().tabText(page).remove('&').remove(' ').toLower());
  }
  sheet.Pages().setCurrentIndex(1);
  auto& line = *sheet.findChild<CSettingField*>("ANALYSIS.SplineTension")->findChild<QLineEdit*>();
  line.selectAll();
  QTest::keyClicks(&line, "7");
  Take(sheet, "settings-wrong-entry");
  sheet.reject();
  Choose("bearingRatiosAndHtp");
  Take(*frame_->findChild<CBearingRatioSheet*>(), "bearing-ratios");
  CRegionDialog region(frame_->Doc().document(), frame_.get());
  region.show();
  Take(region, "region");
  CKeysDialog keys(*frame_);
  keys.show();
  Take(keys, "keys");
}

TEST_F(Pictures, OfABatch) {
  const ScratchFolder folder;
  Choose("batchOfAFolder");
  auto& window = *frame_->findChild<CFolderBatchWindow*>();
  window.ChooseFolder(Sample(""));
  window.findChild<QLineEdit*>("mask")->setText("*.lmt");
  window.findChild<QLineEdit*>("parameterFile")->setText(FromPath(folder / "rows.csv"));
  window.findChild<QPushButton*>("start")->click();
  ASSERT_TRUE(QTest::qWaitFor([&] { return !window.IsRunning(); }, 30'000));
  Take(window, "batch");
}

TEST_F(Pictures, OfTheNominalShapes) {
  const std::tuple<const char*, const char*, int> cases[] = {{"asphere.lmt", "asphere.ini", 7},
                                                             {"freeform.lmt", "freeform.ini", 9}};
  for (const auto& [profile, settings, page] : cases) {
    ASSERT_TRUE(frame_->Doc().LoadSettingsFile(Sample(settings)));
    ASSERT_TRUE(frame_->OpenFile(Sample(profile)));
    frame_->show();
    Choose("settings");
    auto& sheet = *frame_->findChild<CSettingsSheet*>();
    sheet.Pages().setCurrentIndex(page);
    auto* const shape = sheet.Pages().currentWidget()->findChild<CShapePage*>();
    ASSERT_NE(shape, nullptr);
    shape->findChild<QPushButton*>("fit")->click();
    Take(sheet, QString("settings-") + profile);
    sheet.reject();
  }
}

TEST_F(Pictures, OnDarkGround) {
  const QPalette before = QApplication::palette();
  QPalette dark(QColor(0x35, 0x35, 0x35), QColor(0x2B, 0x2B, 0x2B));
  dark.setColor(QPalette::Base, QColor(0x1E, 0x1E, 0x1E));
  dark.setColor(QPalette::Text, Qt::white);
  QApplication::setPalette(dark);
  ASSERT_TRUE(frame_->OpenFile(Sample("honed.lmt")));
  Choose("splitUpperPane");
  Choose("splitLowerPane");
  frame_->UpperCurves().Choose(CCurvePane::kBearingRatio);
  frame_->LowerCurves().Choose(CCurvePane::kSpectrum);
  frame_->show();
  Take(*frame_, "curves-dark");
  const QRgb ground = frame_->UpperCurves().View().Plot().grab().toImage().pixel(2, 2);
  EXPECT_EQ(QColor(ground), QColor(0x1E, 0x1E, 0x1E));
  EXPECT_EQ(QColor(frame_->View().Graph().grab().toImage().pixel(2, 2)), QColor(0x1E, 0x1E, 0x1E));
  frame_->UpperCurves().Choose(CCurvePane::kProbability);
  frame_->LowerCurves().Choose(CCurvePane::kMotifs);
  Take(*frame_, "curves-dark-probability-motifs");
  QApplication::setPalette(before);
}

}  // namespace
}  // namespace texturon
