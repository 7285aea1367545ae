// Pictures of the windows in several states, for a person to look at. What a program can see of them is tested too:
// that they are drawn, and that none looks like another.

#include <QDir>
#include <QLineEdit>
#include <QPushButton>
#include <QSet>
#include <QTest>

#include "ui/curve_pane.h"
#include "ui/curve_view.h"
#include "ui/settings_sheet.h"
#include "ui/shape_page.h"
#include "ui/texturon_view.h"
#include "ui/window_fixture.h"

namespace texturon {
namespace {

class Pictures : public WindowTest {
protected:
  void Take(QWidget& window, const QString& name) {
    QTest::qWait(50);
    const QDir folder(TEXTURON_PICTURE_FOLDER);
    folder.mkpath(".");
    const QImage picture = window.grab().toImage();
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

TEST_F(Pictures, OfTheWindows) {
  ASSERT_TRUE(frame_->OpenFile(Sample("honed.lmt")));
  frame_->show();
  Take(*frame_, "profiles");
  Choose("Split U&pper Pane");
  Choose("Split Lo&wer Pane");
  frame_->UpperCurves().Choose(CCurvePane::kBearingRatio);
  frame_->LowerCurves().Choose(CCurvePane::kSpectrum);
  Take(*frame_, "curves");
  frame_->UpperCurves().Choose(CCurvePane::kProbability);
  frame_->LowerCurves().Choose(CCurvePane::kMotifs);
  Take(*frame_, "curves-probability-motifs");
  Choose("&Settings...");
  auto& sheet = *frame_->findChild<CSettingsSheet*>();
  Take(sheet, "settings-form");
  sheet.Pages().setCurrentIndex(1);
  auto& line = *sheet.findChild<CSettingField*>("ANALYSIS.SplineTension")->findChild<QLineEdit*>();
  line.selectAll();
  QTest::keyClicks(&line, "7");
  Take(sheet, "settings-wrong-entry");
  sheet.Pages().setCurrentIndex(2);
  Take(sheet, "settings-parameters");
  sheet.reject();
  Choose("Bearing &Ratios and Htp...");
  Take(*frame_->findChild<CBearingRatioSheet*>(), "bearing-ratios");
}

TEST_F(Pictures, OfTheNominalShapes) {
  const std::tuple<const char*, const char*, int> cases[] = {{"asphere.lmt", "asphere.ini", 7},
                                                             {"freeform.lmt", "freeform.ini", 9}};
  for (const auto& [profile, settings, page] : cases) {
    ASSERT_TRUE(frame_->Doc().LoadSettingsFile(Sample(settings)));
    ASSERT_TRUE(frame_->OpenFile(Sample(profile)));
    frame_->show();
    Choose("&Settings...");
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
  Choose("Split U&pper Pane");
  Choose("Split Lo&wer Pane");
  frame_->UpperCurves().Choose(CCurvePane::kBearingRatio);
  frame_->LowerCurves().Choose(CCurvePane::kSpectrum);
  frame_->show();
  Take(*frame_, "curves-dark");
  const QRgb ground = frame_->UpperCurves().View().Plot().grab().toImage().pixel(2, 2);
  EXPECT_EQ(QColor(ground), QColor(0x1E, 0x1E, 0x1E));
  frame_->UpperCurves().Choose(CCurvePane::kProbability);
  frame_->LowerCurves().Choose(CCurvePane::kMotifs);
  Take(*frame_, "curves-dark-probability-motifs");
  QApplication::setPalette(before);
}

}  // namespace
}  // namespace texturon
