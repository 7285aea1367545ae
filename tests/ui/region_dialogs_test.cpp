// SPDX-License-Identifier: Apache-2.0

// The dialogs that say what to compute over, and the switch for whole cut-offs.

#include "ui/sheets/region_dialogs.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QTimer>

#include "ui/window_fixture.h"

namespace texturon {
namespace {

class Regions : public WindowTest {
protected:
  Regions() { EXPECT_TRUE(frame_->OpenFile(Sample("ground.lmt"))); }

  const Document& Doc() { return frame_->Doc().document(); }

  /// Chooses a command that opens a dialog of this title, and does something with the dialog while it is open.
  void ChooseAndAnswer(const QString& command, const QString& title, const std::function<void(QDialog&)>& answer) {
    bool answered = false;
    QTimer::singleShot(0, [&] {
      auto* const dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
      ASSERT_NE(dialog, nullptr);
      EXPECT_EQ(dialog->windowTitle(), title);
      answer(*dialog);
      answered = true;
      if (dialog->isVisible()) dialog->reject();
    });
    Choose(command);
    EXPECT_TRUE(answered) << title.toStdString();
  }
  static void Enter(QDialog& dialog, const QString& line, const QString& text) {
    auto* const field = dialog.findChild<QLineEdit*>(line);
    field->selectAll();
    QTest::keyClicks(field, text);
  }
  static QPushButton& Ok(const QDialog& dialog) {
    return *dialog.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok);
  }
};

TEST_F(Regions, AreEnteredByKindAndLength) {
  ChooseAndAnswer("computeOverRegion", "Profile Region", [](QDialog& dialog) {
    auto* const mode = dialog.findChild<QComboBox*>("mode");
    const auto* const stretch = dialog.findChild<QLabel*>("stretch");
    EXPECT_EQ(stretch->text(), "8000 points = 4.0000 mm, from 0.0000 mm to 3.9995 mm") << "the whole record at first";
    mode->setCurrentIndex(kLengthUpToEndOffset);
    EXPECT_FALSE(dialog.findChild<QLineEdit*>("length0")->isEnabled());
    EXPECT_FALSE(Ok(dialog).isEnabled()) << "a length of 0";
    Enter(dialog, "length1", "0.5");
    Enter(dialog, "length2", "7");
    EXPECT_FALSE(Ok(dialog).isEnabled());
    EXPECT_EQ(dialog.findChild<QLineEdit*>("length2")->accessibleDescription(), "Must be from 0 to 4");
    Enter(dialog, "length2", "2");
    EXPECT_EQ(dialog.findChild<QLineEdit*>("length2")->accessibleDescription(), "");
    EXPECT_EQ(stretch->text(), "4001 points = 2.0005 mm, from 1.5000 mm to 3.5000 mm");
    Ok(dialog).click();
  });
  EXPECT_EQ(Doc().profiles.computeRange, IndexRange::FromEnds(3000, 7000));
  // What was chosen is what the dialog starts with; leaving it changes nothing.
  ChooseAndAnswer("computeOverRegion", "Profile Region", [](QDialog& dialog) {
    EXPECT_EQ(dialog.findChild<QComboBox*>("mode")->currentIndex(), kLengthUpToEndOffset);
    EXPECT_EQ(dialog.findChild<QLineEdit*>("length1")->text(), "0.5");
    Enter(dialog, "length2", "1");
  });
  EXPECT_EQ(Doc().profiles.computeRange->count, 4001);
  // In inches.
  Choose("metric");
  ChooseAndAnswer("computeOverRegion", "Profile Region", [](QDialog& dialog) {
    dialog.findChild<QComboBox*>("mode")->setCurrentIndex(kFromStart);
    Enter(dialog, "length0", "0.1");
    Ok(dialog).click();
  });
  EXPECT_EQ(Doc().profiles.computeRange, IndexRange::FromEnds(5080, 7999));
  Choose("computeAll");
  EXPECT_EQ(Doc().profiles.computeRange->count, 8000);
}

TEST_F(Regions, TheClearApertureIsForAspheres) {
  const auto opened = [&](const std::function<void(QDialog&)>& answer) {
    ChooseAndAnswer("computeOverClearAperture", "Clear Aperture Setting", answer);
  };
  opened([](QDialog& dialog) { EXPECT_TRUE(dialog.findChild<QLabel*>("stretch")->text().contains("has no effect")); });
  ASSERT_TRUE(frame_->Doc().LoadSettingsFile(Sample("asphere.ini")));
  ASSERT_TRUE(frame_->OpenFile(Sample("asphere.lmt")));
  opened([](QDialog& dialog) {
    const auto fields = dialog.findChildren<QLineEdit*>();
    ASSERT_EQ(fields.size(), 2);
    fields[0]->selectAll();
    QTest::keyClicks(fields[0], "-1");
    EXPECT_FALSE(Ok(dialog).isEnabled());
    fields[0]->selectAll();
    QTest::keyClicks(fields[0], "4");
    fields[1]->selectAll();
    QTest::keyClicks(fields[1], "0.5");
    EXPECT_TRUE(dialog.findChild<QLabel*>("stretch")->text().contains(" points = 4.00"));
    Ok(dialog).click();
  });
  EXPECT_TRUE(Doc().settings.analysis.AsphereUseClearAperture);
  const double spacingMM = Doc().profiles.spacingUM * 0.001;
  EXPECT_NEAR(Doc().profiles.computeRange->count * spacingMM, 4.0, 0.01);
  EXPECT_NEAR(Doc().scope.exclusion->count * spacingMM, 0.5, 0.01);
  Choose("computeAll");
  EXPECT_FALSE(Doc().settings.analysis.AsphereUseClearAperture);
  EXPECT_EQ(Doc().profiles.computeRange->count, Doc().profiles.pointCount);
}

TEST_F(Regions, WholeCutoffsAreASwitch) {
  Choose("wholeNumberOfCutoffs");
  // 4 mm hold 4 cut-offs of 0.8 mm between two discarded halves.
  EXPECT_EQ(Doc().profiles.computeRange->last, 8000 - 1);
  EXPECT_NEAR(Doc().profiles.evaluationRange->count * 0.0005, 3.2, 0.002);
  Settings settings = Doc().settings;
  settings.analysis.LcCutoffMM = 0.9;
  frame_->Doc().ReplaceSettings(settings);
  EXPECT_EQ(Doc().profiles.computeRange->last, 7200) << "3 cut-offs and two halves";
  EXPECT_EQ(Doc().settings.analysis.UserDiscardType, kDiscardHalfCutoff);
  Choose("wholeNumberOfCutoffs");
  EXPECT_EQ(Doc().profiles.computeRange->count, 8000);
  EXPECT_EQ(Doc().settings.analysis.UserDiscardType, kDiscardNone) << "as it was before";
  Choose("wholeNumberOfCutoffs");
  settings = Doc().settings;
  settings.analysis.UserDiscardType = kDiscardCutoff;
  frame_->Doc().ReplaceSettings(settings);
  EXPECT_EQ(Doc().settings.analysis.UserDiscardType, kDiscardHalfCutoff);
  Choose("wholeNumberOfCutoffs");
  EXPECT_EQ(Doc().settings.analysis.UserDiscardType, kDiscardCutoff) << "as it was set meanwhile";
  settings.analysis.UserDiscardType = kDiscardNone;
  frame_->Doc().ReplaceSettings(settings);
  Choose("wholeNumberOfCutoffs");
  Choose("computeAll");
  EXPECT_FALSE(Doc().scope.wholeCutoffs.has_value());
  EXPECT_EQ(Doc().profiles.computeRange->count, 8000);
  EXPECT_EQ(Doc().settings.analysis.UserDiscardType, kDiscardNone);
}

}  // namespace
}  // namespace texturon
