// SPDX-License-Identifier: Apache-2.0

// The dialogs that say what to compute over, and the switch for whole cut-offs.

#include "ui/sheets/region_dialogs.h"

#include "ui/window_fixture.h"

namespace texturon {
namespace {

class Regions : public WindowTest {
protected:
  Regions() : WindowTest("ground.lmt") {}

  static QPushButton& Ok(const QWidget& dialog) {
    return *Child<QDialogButtonBox>(dialog).button(QDialogButtonBox::Ok);
  }
  static QString Stretch(const QWidget& dialog) { return Child<QLabel>(dialog, "stretch").text(); }
};

TEST_F(Regions, AreEnteredByKindAndLength) {
  Choose("computeOverRegion", {[](QWidget& dialog) {
           EXPECT_EQ(Stretch(dialog), "8000 points = 4.0000 mm, from 0.0000 mm to 3.9995 mm") << "the whole at first";
           Child<QComboBox>(dialog, "mode").setCurrentIndex(kLengthUpToEndOffset);
           EXPECT_FALSE(Child(dialog, "length0").isEnabled());
           EXPECT_FALSE(Ok(dialog).isEnabled()) << "a length of 0";
           Type(Child(dialog, "length1"), "0.5");
           Type(Child(dialog, "length2"), "7");
           EXPECT_FALSE(Ok(dialog).isEnabled());
           EXPECT_EQ(Child(dialog, "length2").accessibleDescription(), "Must be from 0 to 4");
           Type(Child(dialog, "length2"), "2");
           EXPECT_EQ(Stretch(dialog), "4001 points = 2.0005 mm, from 1.5000 mm to 3.5000 mm");
           Ok(dialog).click();
         }});
  EXPECT_EQ(InForce().profiles.computeRange, IndexRange::FromEnds(3000, 7000));
  // What was chosen is what the dialog starts with; now in inches.
  Choose("metric");
  Choose("computeOverRegion", {[](QWidget& dialog) {
           EXPECT_EQ(Child<QComboBox>(dialog, "mode").currentIndex(), kLengthUpToEndOffset);
           Child<QComboBox>(dialog, "mode").setCurrentIndex(kFromStart);
           Type(Child(dialog, "length0"), "0.1");
           Ok(dialog).click();
         }});
  EXPECT_EQ(InForce().profiles.computeRange, IndexRange::FromEnds(5080, 7999));
}

TEST_F(Regions, TheClearApertureIsForAspheres) {
  Choose("computeOverClearAperture", {[](QWidget& dialog) {
           EXPECT_TRUE(Stretch(dialog).contains("has no effect"));
           dialog.close();
         }});
  ASSERT_TRUE(Doc().LoadSettingsFile(Sample("asphere.ini")));
  ASSERT_TRUE(frame_->OpenFile(Sample("asphere.lmt")));
  Choose("computeOverClearAperture", {[](QWidget& dialog) {
           const auto fields = dialog.findChildren<QLineEdit*>();
           Type(*fields[0], "-1");
           EXPECT_FALSE(Ok(dialog).isEnabled());
           Type(*fields[0], "4");
           Type(*fields[1], "0.5");
           EXPECT_TRUE(Stretch(dialog).contains(" points = 4.00"));
           Ok(dialog).click();
         }});
  EXPECT_TRUE(InForce().settings.analysis.AsphereUseClearAperture);
  const double spacingMM = InForce().profiles.spacingUM * 0.001;
  EXPECT_NEAR(InForce().profiles.computeRange->count * spacingMM, 4.0, 0.01);
  EXPECT_NEAR(InForce().scope.exclusion->count * spacingMM, 0.5, 0.01);
  Choose("computeAll");
  EXPECT_FALSE(InForce().settings.analysis.AsphereUseClearAperture);
  EXPECT_EQ(InForce().profiles.computeRange->count, InForce().profiles.pointCount);
}

TEST_F(Regions, WholeCutoffsAreASwitch) {
  const auto discards = [this](std::int32_t type) {
    Change([type](AnalysisSettings& analysis) { analysis.UserDiscardType = type; });
  };
  const auto last = [this] { return InForce().profiles.computeRange->last; };
  Choose("wholeNumberOfCutoffs");
  // 4 mm hold 4 cut-offs of 0.8 mm between two discarded halves.
  EXPECT_EQ(last(), 7999);
  EXPECT_NEAR(InForce().profiles.evaluationRange->count * 0.0005, 3.2, 0.002);
  Change([](AnalysisSettings& analysis) { analysis.LcCutoffMM = 0.9; });
  EXPECT_EQ(last(), 7200) << "3 cut-offs and two halves";
  EXPECT_EQ(InForce().settings.analysis.UserDiscardType, kDiscardHalfCutoff);
  Choose("wholeNumberOfCutoffs");
  EXPECT_EQ(last(), 7999);
  EXPECT_EQ(InForce().settings.analysis.UserDiscardType, kDiscardNone) << "as it was before";
  Choose("wholeNumberOfCutoffs");
  discards(kDiscardCutoff);
  EXPECT_EQ(InForce().settings.analysis.UserDiscardType, kDiscardHalfCutoff);
  Choose("wholeNumberOfCutoffs");
  EXPECT_EQ(InForce().settings.analysis.UserDiscardType, kDiscardCutoff) << "as it was set meanwhile";
  discards(kDiscardNone);
  Choose("wholeNumberOfCutoffs");
  Choose("computeAll");
  EXPECT_FALSE(InForce().scope.wholeCutoffs.has_value());
  EXPECT_EQ(last(), 7999);
  EXPECT_EQ(InForce().settings.analysis.UserDiscardType, kDiscardNone);
}

}  // namespace
}  // namespace texturon
