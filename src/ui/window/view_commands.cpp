// SPDX-License-Identifier: Apache-2.0

// The View menu of the main window.

#include <QActionGroup>
#include <QMenuBar>
#include <utility>

#include "presentation/shown_rows.h"
#include "ui/plots/texturon_view.h"
#include "ui/qt_text.h"
#include "ui/sheets/setting_dialog.h"
#include "ui/tables/texturon_param_view.h"
#include "ui/window/main_frame.h"

namespace texturon {

void CMainFrame::MakeViewMenu() {
  QMenu* const menu = menuBar()->addMenu(tr("&View"));
  for (std::size_t curve = 0; curve <= kShownForm; ++curve) {
    QString title = tr("Removed F&orm");
    if (curve < kShownForm) title = FromText(ProfileTitle(static_cast<ProfileKind>(curve), 1000.0));
    title = title.left(title.indexOf(" (") < 0 ? title.size() : title.indexOf(" ("));
    AddSwitch(
        *menu, title, {},
        [curve](const Document& document) { return ShownProfilesOf(document.settings.display)[curve]; },
        [this, curve](bool on) { view_->SetShown(curve, on); });
    menu->actions().back()->setShortcut(QKeySequence(Qt::CTRL | static_cast<Qt::Key>(Qt::Key_1 + curve)));
  }
  menu->addSeparator();
  AddCurveCommands(*menu);
  menu->addSeparator();
  MakeZoomMenu(*menu->addMenu(tr("&Zoom and Scale")));
  MakeCursorMenu(*menu->addMenu(tr("&Cursors")));
  MakeMarksMenu(*menu->addMenu(tr("Mar&ks")));
  MakeTableMenu(*menu->addMenu(tr("&Table")));
  menu->addSeparator();
  AddDisplaySwitch(*menu, tr("Show Full &Ini Path"), &DisplaySettings::ShowINIPathInHeading,
                   tr("The whole path of the settings file in the heading."));
  AddDisplaySwitch(*menu, tr("&Metric"), &DisplaySettings::Metric, tr("Off: inches and microinches."));
}

void CMainFrame::MakeZoomMenu(QMenu& menu) {
  needProfile_ << AddCommand(menu, tr("Zoom &Back"), QKeySequence(Qt::ALT | Qt::Key_Left), tr("The former view."),
                             [this] { view_->Graph().GoBack(); });
  needProfile_ << AddCommand(menu, tr("Zoom &Forward"), QKeySequence(Qt::ALT | Qt::Key_Right),
                             tr("The view that Zoom Back left."), [this] { view_->Graph().GoForward(); });
  needProfile_ << AddCommand(menu, tr("Zoom to Sampling &Length"), QKeySequence(Qt::CTRL | Qt::Key_L),
                             tr("One long-wave cut-off in the middle of the view."),
                             [this] { view_->ShowSamplingLength(); });
  needProfile_ << AddCommand(menu, tr("Show &All"), QKeySequence(Qt::CTRL | Qt::Key_0), tr("The whole profile."),
                             [this] { view_->Graph().ShowAll(); });
  menu.addSeparator();
  AddDisplaySwitch(menu, tr("1:1 Aspe&ct Ratio"), &DisplaySettings::Profile11AspectRatio,
                   tr("The same scale for both axes, where the profile is high enough to be seen then."));
  AddDisplaySwitch(menu, tr("A&uto Scale"), &DisplaySettings::ProfileAutoScale,
                   tr("Off: between the fixed heights of the settings."));
  AddDisplaySwitch(menu, tr("X Axis &Values"), &DisplaySettings::ShowXAxisValues,
                   tr("Numbers along the X axis; off: the distance of its lines."));
}

void CMainFrame::MakeMarksMenu(QMenu& menu) {
  AddDisplaySwitch(menu, tr("Filter &Transmission"), &DisplaySettings::ShowFilterTrans,
                   tr("What the filters let through, over the wavelength."));
  AddDisplaySwitch(menu, tr("&Extreme Slopes"), &DisplaySettings::ShowExtremeSlopes,
                   tr("Marks where the profile is steeper than the angle of the settings."));
  AddCommand(menu, tr("Extreme Slope T&hreshold..."), {}, tr("The angle from which a slope is marked."), [this] {
    CSettingDialog dialog(tr("Extreme Slopes"), "DISPLAY", "ExtremeSlopePlotDegrees", doc_->document().settings, this);
    if (dialog.exec() == QDialog::Accepted) doc_->ReplaceDisplay(dialog.Chosen().display);
  });
  AddDisplaySwitch(menu, tr("&Rk Lines"), &DisplaySettings::ShowRkLines, tr("The construction lines of Rk."));
}

void CMainFrame::MakeCursorMenu(QMenu& menu) {
  const std::pair<QString, std::int32_t> cursors[] = {{tr("&X Cursors"), kUprightCursors},
                                                      {tr("&Y Cursors"), kLevelCursors}};
  for (const auto& [title, bit] : cursors) {
    AddSwitch(
        menu, title, {},
        [bit = bit](const Document& document) { return (document.settings.display.CursorDisplayType & bit) != 0; },
        [this, bit = bit](bool on) {
          DisplaySettings display = doc_->document().settings.display;
          display.CursorDisplayType = on ? display.CursorDisplayType | bit : display.CursorDisplayType & ~bit;
          doc_->ReplaceDisplay(std::move(display));
        });
  }
  needProfile_ << AddCommand(menu, tr("&Fetch Cursors"), {}, tr("Puts the cursors where they can be seen."),
                             [this] { view_->Graph().FetchCursors(); });
}

void CMainFrame::MakeTableMenu(QMenu& menu) {
  QMenu* const columns = menu.addMenu(tr("&Columns"));
  auto* const choices = new QActionGroup(columns);
  for (std::int32_t count = 1; count <= kMostParameterColumns; ++count) {
    AddSwitch(
        *columns, QString("&%1").arg(count), tr("So many parameters side by side."),
        [count](const Document& document) { return ColumnsOfTable(document.settings.display) == count; },
        [this, count](bool on) {
          if (!on) return;
          DisplaySettings display = doc_->document().settings.display;
          display.ParameterColumns = count;
          doc_->ReplaceDisplay(std::move(display));
        });
    choices->addAction(columns->actions().back());
  }
  AddDisplaySwitch(menu, tr("&Primary as Tpa"), &DisplaySettings::PrimaryAsTpa,
                   tr("Titles the primary bearing ratios Tpa instead of Pmr."));
  AddDisplaySwitch(menu, tr("&Roughness as Tpi"), &DisplaySettings::RoughnessAsTpi,
                   tr("Titles the roughness bearing ratios Tpi instead of Rmr."));
}

}  // namespace texturon
