// SPDX-License-Identifier: Apache-2.0

#include "ui/sheets/indication_dialog.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>

#include "ui/colours.h"
#include "ui/plots/texturon_view.h"
#include "ui/window_fixture.h"

namespace texturon {
namespace {

using IndicationDialog = WindowTest;

TEST_F(IndicationDialog, ShowsWhatTheTextMeansAndSetsIt) {
  ASSERT_TRUE(Doc().Open(Sample("honed.lmt")));
  CIndicationDialog dialog(InForce().settings);
  auto& text = *dialog.findChild<QPlainTextEdit*>("indication");
  auto& meaning = *dialog.findChild<QLabel*>("meaning");
  auto& ok = *dialog.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok);
  struct Case {
    const char* text;
    const char* says;
    bool isUsable;
  };
  for (const Case& c :
       {Case{"", "", false}, Case{"Rz", "Character 3: a limit is wanted here.", false},
        Case{"Rk 1.5", "Incomplete: a class", false}, Case{"Rz 4\nRa 1 Sc2", "Class: Sc2", false},
        Case{"U Rz 9 0.8x4 S=0.0025 L=0.8 T16%\nL Rz 0.5 0.8x4 S=0.0025 L=0.8 Tmed", "longer than", true},
        Case{"U Rz 9 0.8x4\nL Rz 1", "Long-wave index: 0.8 mm", true}}) {
    text.setPlainText(c.text);
    EXPECT_TRUE(meaning.text().contains(c.says)) << meaning.text().toStdString();
    EXPECT_EQ(ok.isEnabled(), c.isUsable) << c.text;
  }
  Doc().ReplaceSettings(dialog.Chosen());
  const Document& document = InForce();
  ASSERT_EQ(document.catalogue.rows.size(), 1u);
  EXPECT_EQ(document.catalogue.rows[0].edition, Edition::k2021);
  EXPECT_TRUE(document.catalogue.rows[0].valid);
  EXPECT_EQ(document.catalogue.rows[0].tolerance.lowerLimit, 1.0);
  EXPECT_EQ(document.catalogue.rows[0].tolerance.upperLimit, 9.0);
  EXPECT_EQ(document.settings.analysis.standard.Sections, 4);
  frame_->show();  // the verdict is as long as the window has room for
  const QString heading = frame_->View().Heading().Text();
  EXPECT_TRUE(heading.contains("Drawing: U Rz 9 0.8x4: ")) << heading.toStdString();
  EXPECT_TRUE(heading.contains("conforming (maximum)"));
  QPushButton& badge = frame_->View().Heading().Verdict();
  EXPECT_EQ(badge.text(), QString::fromUtf8("\u2713 1 toleranced parameter within tolerance"));
  Settings settings = document.settings;
  settings.analysis.standard.Indication = "U Rz 9 0.8x4 | Rk 9";
  Doc().ReplaceSettings(settings);
  EXPECT_EQ(badge.text(), "? 1 toleranced parameter within tolerance, drawing undecided");
  EXPECT_TRUE(badge.toolTip().contains("Drawing: Rk 9: undecided (no value)")) << badge.toolTip().toStdString();
  EXPECT_TRUE(badge.styleSheet().contains(UndecidedGround().name())) << "not green";
  settings.analysis.standard.ClassTable = "nowhere.ini";
  CIndicationDialog lost(settings);
  EXPECT_EQ(lost.findChild<QLabel*>("meaning")->text(), "Class table: nowhere.ini does not exist.");
  EXPECT_FALSE(lost.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok)->isEnabled());
}

}  // namespace
}  // namespace texturon
