// The View menu of the main window.

#include "ui/main_frame.h"

#include <QMenuBar>
#include <utility>

#include "ui/qt_text.h"
#include "ui/texturon_view.h"

namespace texturon {

void CMainFrame::MakeViewMenu() {
  QMenu* const menu = menuBar()->addMenu(tr("&View"));
  constexpr std::pair<ProfileKind, Qt::Key> kKinds[] = {
      {ProfileKind::kRaw, Qt::Key_1},       {ProfileKind::kFormSuppressed, Qt::Key_2},
      {ProfileKind::kPrimary, Qt::Key_3},   {ProfileKind::kWaviness, Qt::Key_4},
      {ProfileKind::kRoughness, Qt::Key_5}, {ProfileKind::kClosing, Qt::Key_6},
      {ProfileKind::kOpening, Qt::Key_7},
  };
  for (const auto& [kind, key] : kKinds) {
    QString title = FromText(ProfileTitle(kind, 1000.0));
    title = title.left(title.indexOf(" (") < 0 ? title.size() : title.indexOf(" ("));
    QAction* const action = menu->addAction(title);
    action->setCheckable(true);
    action->setChecked(view_->IsShown(kind));
    action->setShortcut(QKeySequence(Qt::CTRL | key));
    connect(action, &QAction::toggled, this, [this, shown = kind](bool on) { view_->SetShown(shown, on); });
    connect(doc_, &CTexturonDoc::Changed, action,
            [this, action, shown = kind] { action->setChecked(view_->IsShown(shown)); });
  }
  menu->addSeparator();
  AddCurveCommands(*menu);
  menu->addSeparator();
  needProfile_ << AddCommand(*menu, tr("Zoom &Back"), QKeySequence(Qt::ALT | Qt::Key_Left), tr("The former view."),
                             [this] { view_->Graph().GoBack(); });
  needProfile_ << AddCommand(*menu, tr("Show &All"), QKeySequence(Qt::CTRL | Qt::Key_0), tr("The whole profile."),
                             [this] { view_->Graph().ShowAll(); });
  AddDisplaySwitch(*menu, tr("1:1 Aspe&ct Ratio"), &DisplaySettings::Profile11AspectRatio,
                   tr("The same scale for both axes, where the profile is high enough to be seen then."));
  AddDisplaySwitch(*menu, tr("A&uto Scale"), &DisplaySettings::ProfileAutoScale,
                   tr("Off: between the fixed heights of the settings."));
  const std::pair<QString, std::int32_t> cursors[] = {{tr("&X Cursors"), kUprightCursors},
                                                      {tr("&Y Cursors"), kLevelCursors}};
  for (const auto& [title, bit] : cursors) {
    AddSwitch(
        *menu, title, {},
        [bit = bit](const Document& document) { return (document.settings.display.CursorDisplayType & bit) != 0; },
        [this, bit = bit](bool on) {
          DisplaySettings display = doc_->document().settings.display;
          display.CursorDisplayType = on ? display.CursorDisplayType | bit : display.CursorDisplayType & ~bit;
          doc_->ReplaceDisplay(std::move(display));
        });
  }
  needProfile_ << AddCommand(*menu, tr("&Fetch Cursors"), {}, tr("Puts the cursors where they can be seen."),
                             [this] { view_->Graph().FetchCursors(); });
  menu->addSeparator();
  AddDisplaySwitch(*menu, tr("&Rk Lines"), &DisplaySettings::ShowRkLines, tr("The construction lines of Rk."));
  AddDisplaySwitch(*menu, tr("&Metric"), &DisplaySettings::Metric, tr("Off: inches and microinches."));
}

}  // namespace texturon
