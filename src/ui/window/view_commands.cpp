// SPDX-License-Identifier: Apache-2.0

// The View menu of the main window.

#include <QActionGroup>
#include <QApplication>
#include <QClipboard>
#include <QMenuBar>
#include <QStatusBar>
#include <algorithm>
#include <tuple>
#include <utility>

#include "parameters/edition2021/edition_list.h"
#include "presentation/shown_rows.h"
#include "ui/language.h"
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
    if (curve < kShownForm) title = EngineText(ProfileTitle(static_cast<ProfileKind>(curve), 1000.0));
    title = title.left(title.indexOf(" (") < 0 ? title.size() : title.indexOf(" ("));
    AddSwitch(
        *menu,
        {.name = QString("show%1").arg(curve + 1),
         .text = title,
         .keys = QKeySequence(Qt::CTRL | static_cast<Qt::Key>(Qt::Key_1 + curve))},
        [curve](const Document& document) { return ShownProfilesOf(document.settings.display)[curve]; },
        [this, curve](bool on) { view_->SetShown(curve, on); });
  }
  menu->addSeparator();
  AddCurveCommands(*menu);
  menu->addSeparator();
  MakeZoomMenu(*menu->addMenu(tr("&Zoom and Scale")));
  MakeCursorMenu(*menu->addMenu(tr("&Cursors")));
  MakeMarksMenu(*menu->addMenu(tr("Mar&ks")));
  MakeTableMenu(*menu->addMenu(tr("&Table")));
  menu->addSeparator();
  AddDisplaySwitch(*menu,
                   {.name = "showFullIniPath",
                    .text = tr("Show Full &Ini Path"),
                    .tip = tr("The whole path of the settings file in the heading.")},
                   &DisplaySettings::ShowINIPathInHeading);
  AddDisplaySwitch(*menu, {.name = "metric", .text = tr("&Metric"), .tip = tr("Off: inches and microinches.")},
                   &DisplaySettings::Metric);
}

void CMainFrame::MakeZoomMenu(QMenu& menu) {
  AddCommand(menu,
             {.name = "zoomBack",
              .text = tr("Zoom &Back"),
              .keys = QKeySequence(Qt::ALT | Qt::Key_Left),
              .tip = tr("The former view."),
              .needsProfile = true},
             [this] { view_->Graph().GoBack(); });
  AddCommand(menu,
             {.name = "zoomForward",
              .text = tr("Zoom &Forward"),
              .keys = QKeySequence(Qt::ALT | Qt::Key_Right),
              .tip = tr("The view that Zoom Back left."),
              .needsProfile = true},
             [this] { view_->Graph().GoForward(); });
  AddCommand(menu,
             {.name = "zoomToSamplingLength",
              .text = tr("Zoom to Sampling &Length"),
              .keys = QKeySequence(Qt::CTRL | Qt::Key_L),
              .tip = tr("One long-wave cut-off in the middle of the view."),
              .needsProfile = true},
             [this] { view_->ShowSamplingLength(); });
  AddCommand(menu,
             {.name = "zoomBetweenXCursors",
              .text = tr("Zoom Bet&ween X Cursors"),
              .tip = tr("The stretch between the upright cursors."),
              .needsProfile = true},
             [this] {
               const auto [first, second] = view_->Graph().UprightCursors();
               view_->Graph().ShowX({std::min(first, second), std::max(first, second)});
             });
  AddCommand(menu,
             {.name = "showAll",
              .text = tr("Show &All"),
              .keys = QKeySequence(Qt::CTRL | Qt::Key_0),
              .tip = tr("The whole record, also where less is computed over."),
              .needsProfile = true},
             [this] { view_->Graph().ShowAll(); });
  QAction* const stretch =
      AddCommand(menu,
                 {.name = "stretchHeights",
                  .text = tr("Heights of the &Stretch"),
                  .keys = QKeySequence(Qt::CTRL | Qt::Key_9),
                  .tip = tr("The heights of what is computed over have the room, those beside it do not count.")},
                 [this] { view_->Graph().ShowStretchHeights(); });
  stretch->setEnabled(false);
  connect(&view_->Graph(), &QCustomPlot::afterReplot, stretch,
          [this, stretch] { stretch->setEnabled(doc_->HasProfile() && view_->Graph().HasStretchHeights()); });
  connect(view_, &CTexturonView::StretchIsFlat, this, [this, stretch] {
    statusBar()->showMessage(
        tr("The record beside the stretch is much higher than it is: %1 (%2) shows the stretch.")
            .arg(stretch->text().remove('&'), stretch->shortcut().toString(QKeySequence::NativeText)),
        10'000);
  });
  menu.addSeparator();
  QAction* const equal = AddAction(menu, {.name = "aspectRatio",
                                          .text = tr("1:1 Aspe&ct Ratio"),
                                          .tip = tr("The same scale for both axes. A new profile has it where it is "
                                                    "high enough to be seen then.")});
  equal->setCheckable(true);
  // Ticked while it is in force, whatever is wanted of the next profile.
  connect(&view_->Graph(), &QCustomPlot::afterReplot, equal,
          [this, equal] { equal->setChecked(doc_->HasProfile() && view_->Graph().IsOneToOne()); });
  connect(equal, &QAction::triggered, this, [this, equal](bool on) {
    DisplaySettings display = doc_->document().settings.display;
    display.Profile11AspectRatio = on;
    doc_->ReplaceDisplay(std::move(display));
    if (on) view_->Graph().ShowOneToOne();
    equal->setChecked(view_->Graph().IsOneToOne());
  });
  AddDisplaySwitch(
      menu,
      {.name = "autoScale", .text = tr("A&uto Scale"), .tip = tr("Off: between the fixed heights of the settings.")},
      &DisplaySettings::ProfileAutoScale);
  AddDisplaySwitch(menu,
                   {.name = "xAxisValues",
                    .text = tr("X Axis &Values"),
                    .tip = tr("Numbers along the X axis; off: the distance of its lines.")},
                   &DisplaySettings::ShowXAxisValues);
}

void CMainFrame::MakeMarksMenu(QMenu& menu) {
  AddDisplaySwitch(menu,
                   {.name = "filterTransmission",
                    .text = tr("Filter &Transmission"),
                    .tip = tr("What the filters let through, over the wavelength.")},
                   &DisplaySettings::ShowFilterTrans);
  AddDisplaySwitch(menu,
                   {.name = "extremeSlopes",
                    .text = tr("&Extreme Slopes"),
                    .tip = tr("Marks where the profile is steeper than the angle of the settings.")},
                   &DisplaySettings::ShowExtremeSlopes);
  AddCommand(menu,
             {.name = "extremeSlopeThreshold",
              .text = tr("Extreme Slope Thresh&old..."),
              .tip = tr("The angle from which a slope is marked.")},
             [this] {
               CSettingDialog dialog(tr("Extreme Slopes"), "DISPLAY", "ExtremeSlopePlotDegrees",
                                     doc_->document().settings, this);
               if (dialog.exec() == QDialog::Accepted) doc_->ReplaceDisplay(dialog.Chosen().display);
             });
  AddDisplaySwitch(
      menu,
      {.name = "hillsAndDales",
       .text = tr("&Hills and Dales"),
       .tip = tr("Draws hills and dales with peaks, pits and levels on the profile, while rows of the edition of 2021 "
                 "are shown; those that pruning takes out are faint.")},
      &DisplaySettings::ShowFeatures);
  auto* const hills = findChild<QAction*>("hillsAndDales");
  const auto follow = [this, hills] {
    hills->setEnabled(ChosenEdition(doc_->document().settings.analysis) != EditionChoice::k1997);
  };
  connect(doc_, &CTexturonDoc::Changed, hills, follow);
  follow();
  AddDisplaySwitch(menu, {.name = "rkLines", .text = tr("&Rk Lines"), .tip = tr("The construction lines of Rk.")},
                   &DisplaySettings::ShowRkLines);
}

void CMainFrame::MakeCursorMenu(QMenu& menu) {
  const std::tuple<const char*, QString, std::int32_t> cursors[] = {{"xCursors", tr("&X Cursors"), kUprightCursors},
                                                                    {"yCursors", tr("&Y Cursors"), kLevelCursors}};
  for (const auto& [name, title, bit] : cursors) {
    AddSwitch(
        menu, {.name = name, .text = title},
        [bit = bit](const Document& document) { return (document.settings.display.CursorDisplayType & bit) != 0; },
        [this, bit = bit](bool on) {
          DisplaySettings display = doc_->document().settings.display;
          display.CursorDisplayType = on ? display.CursorDisplayType | bit : display.CursorDisplayType & ~bit;
          doc_->ReplaceDisplay(std::move(display));
        });
  }
  QAction* const measures = AddAction(menu, {.name = "measureBetweenCursors",
                                             .text = tr("&Measure Between X Cursors"),
                                             .keys = QKeySequence(Qt::CTRL | Qt::Key_M),
                                             .tip = tr("Step height, angle and radius, in a line below the profile.")});
  measures->setCheckable(true);
  measures->setChecked(view_->ShowsMeasures());
  connect(measures, &QAction::toggled, this, [this](bool on) { view_->ShowMeasures(on); });
  AddCommand(menu,
             {.name = "copyMeasures",
              .text = tr("C&opy Measures"),
              .tip = tr("Puts what the X cursors measure on the clipboard."),
              .needsProfile = true},
             [this] {
               QApplication::clipboard()->setText(view_->Measures());
               statusBar()->showMessage(view_->Measures(), 5'000);
             });
  AddCommand(menu,
             {.name = "fetchCursors",
              .text = tr("&Fetch Cursors"),
              .tip = tr("Puts the cursors where they can be seen."),
              .needsProfile = true},
             [this] { view_->Graph().FetchCursors(); });
}

void CMainFrame::FillProfileMenu(QMenu& menu) {
  constexpr const char* kCommands[] = {"showAll",
                                       "stretchHeights",
                                       "zoomBetweenXCursors",
                                       "zoomToSamplingLength",
                                       "zoomBack",
                                       nullptr,
                                       "computeBetweenXCursors",
                                       "computeOnZoom",
                                       "computeAll",
                                       nullptr,
                                       "copyDisplay",
                                       "savePicture"};
  for (const char* const name : kCommands) {
    if (name == nullptr) {
      menu.addSeparator();
    } else {
      menu.addAction(findChild<QAction*>(name));
    }
  }
}

void CMainFrame::MakeTableMenu(QMenu& menu) {
  QMenu* const columns = menu.addMenu(tr("&Columns"));
  auto* const choices = new QActionGroup(columns);
  for (std::int32_t count = 1; count <= kMostParameterColumns; ++count) {
    choices->addAction(AddSwitch(
        *columns,
        {.name = QString("columns%1").arg(count),
         .text = QString("&%1").arg(count),
         .tip = tr("So many parameters side by side.")},
        [count](const Document& document) { return ColumnsOfTable(document.settings.display) == count; },
        [this, count](bool on) {
          if (!on) return;
          DisplaySettings display = doc_->document().settings.display;
          display.ParameterColumns = count;
          doc_->ReplaceDisplay(std::move(display));
        }));
  }
  const std::tuple<const char*, QString, QString, bool TableChoice::*> kinds[] = {
      {"allParameters", tr("&All Parameters"), tr("Off: the common ones, while nobody has chosen others."),
       &TableChoice::showsAll},
      {"tolerancedFirst", tr("&Toleranced First"), tr("Rows with limits stand above the others."),
       &TableChoice::tolerancedFirst}};
  for (const auto& [name, title, tip, field] : kinds) {
    QAction* const action = AddAction(menu, {.name = name, .text = title, .tip = tip});
    action->setCheckable(true);
    action->setChecked(paramView_->Choice().*field);
    connect(action, &QAction::toggled, this, [this, field = field](bool on) {
      TableChoice choice = paramView_->Choice();
      if (std::exchange(choice.*field, on) != on) paramView_->Choose(choice);
    });
    connect(paramView_, &CTexturonParamView::ChoiceChanged, action,
            [this, action, field = field] { action->setChecked(paramView_->Choice().*field); });
  }
  AddDisplaySwitch(menu,
                   {.name = "primaryAsTpa",
                    .text = tr("&Primary as Tpa"),
                    .tip = tr("Titles the primary bearing ratios Tpa instead of Pmr.")},
                   &DisplaySettings::PrimaryAsTpa);
  AddDisplaySwitch(menu,
                   {.name = "roughnessAsTpi",
                    .text = tr("&Roughness as Tpi"),
                    .tip = tr("Titles the roughness bearing ratios Tpi instead of Rmr.")},
                   &DisplaySettings::RoughnessAsTpi);
}

}  // namespace texturon
