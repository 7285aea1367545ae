// Pictures of the windows in several states, for a person to look at. What a program can see of them is tested too:
// that they are drawn, and that none looks like another.

#include <QDir>
#include <QLineEdit>
#include <QScreen>
#include <QSet>
#include <QTest>

#include "ui/settings_sheet.h"
#include "ui/texturon_view.h"
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

TEST_F(Pictures, OfTheWindows) {
  ASSERT_TRUE(frame_->OpenFile(Sample("honed.lmt")));
  frame_->show();
  Take(*frame_, "profiles");
  Choose("&Bearing Ratio and Amplitudes");
  Choose("&Spectrum");
  Take(*frame_, "curves");
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
  Choose("&Bearing Ratios and Htp...");
  Take(*frame_->findChild<CBearingRatioSheet*>(), "bearing-ratios");
}

}  // namespace
}  // namespace texturon
