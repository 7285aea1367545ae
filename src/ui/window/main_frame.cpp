// SPDX-License-Identifier: Apache-2.0

#include "ui/window/main_frame.h"

#include <QActionGroup>
#include <QApplication>
#include <QDragEnterEvent>
#include <QLabel>
#include <QMenuBar>
#include <QMessageBox>
#include <QMimeData>
#include <QScreen>
#include <QStatusBar>
#include <QToolBar>
#include <utility>

#include "settings/working_settings.h"
#include "ui/folders/auto_loading.h"
#include "ui/language.h"
#include "ui/plots/texturon_view.h"
#include "ui/qt_text.h"
#include "ui/tables/texturon_param_view.h"
#include "ui/window/command_icons.h"
#include "ui/window/keys_dialog.h"
#include "ui/window/readout_label.h"

namespace texturon {
namespace {

/// A button of the tool bar, for the command of this name; none: a line between two groups.
struct ToolButton {
  const char* command;
  CommandIcon icon = CommandIcon::kProgram;
};

constexpr ToolButton kToolButtons[] = {
    {"open", CommandIcon::kOpen},
    {"save", CommandIcon::kSave},
    {"reportAsPDF", CommandIcon::kReport},
    {"exportParameters", CommandIcon::kParameters},
    {nullptr},
    {"undo", CommandIcon::kUndo},
    {"redo", CommandIcon::kRedo},
    {nullptr},
    {"computeAll", CommandIcon::kComputeAll},
    {"computeOnZoom", CommandIcon::kComputeZoom},
    {"computeBetweenXCursors", CommandIcon::kComputeCursors},
    {"settings", CommandIcon::kSettings},
    {nullptr},
    {"showAll", CommandIcon::kShowAll},
    {"stretchHeights", CommandIcon::kStretchHeights},
    {"zoomBack", CommandIcon::kZoomBack},
    {"xCursors", CommandIcon::kUprightCursors},
    {"yCursors", CommandIcon::kLevelCursors},
    {nullptr},
    {"splitUpperPane", CommandIcon::kCurves},
    {"splitLowerPane", CommandIcon::kSpectrum},
};

}  // namespace

CMainFrame::CMainFrame(Environment environment, Prompts* prompts) {
  if (prompts == nullptr) {
    ownPrompts_ = std::make_unique<DialogPrompts>(this);
    prompts = ownPrompts_.get();
  }
  doc_ = new CTexturonDoc(*prompts, std::move(environment), this);
  view_ = new CTexturonView(*doc_, this);
  paramView_ = new CTexturonParamView(*doc_, this);
  MakePanes();
  setAcceptDrops(true);
  constexpr double kShareOfScreen = 0.9;
  resize(QSize(1200, 800).boundedTo(screen()->availableSize() * kShareOfScreen));
  MakeFileMenu();
  MakeEditMenu();
  MakeExportMenu();
  MakeViewMenu();
  MakeAnalysisMenu();
  MakeHelpMenu();
  FillToolBar();
  readout_ = new CReadoutLabel(this);
  readout_->setObjectName("readout");
  statusBar()->addPermanentWidget(readout_);
  // A message has the whole line, and is read again by pointing at it.
  connect(statusBar(), &QStatusBar::messageChanged, this, [this](const QString& text) {
    readout_->setVisible(text.isEmpty());
    if (!text.isEmpty()) statusBar()->setToolTip(text);
  });
  autoLoading_ = new CAutoLoading(*doc_, *this);
  auto* const loading = new QLabel(this);
  loading->setObjectName("autoLoading");
  // A long path is cut, not the window widened.
  loading->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
  statusBar()->addWidget(loading, 1);
  connect(autoLoading_, &CAutoLoading::StateChanged, loading, [this, loading] {
    loading->setText(autoLoading_->State());
    loading->setToolTip(autoLoading_->State());
  });
  view_->Graph().setContextMenuPolicy(Qt::CustomContextMenu);
  connect(&view_->Graph(), &QWidget::customContextMenuRequested, this, [this](const QPoint& place) {
    QMenu menu(this);
    FillProfileMenu(menu);
    menu.exec(view_->Graph().mapToGlobal(place));
  });
  connect(view_, &CTexturonView::ReadoutChanged, this, [this] { readout_->SetReadout(view_->Readout()); });
  connect(doc_, &CTexturonDoc::Changed, this, &CMainFrame::UpdateState);
  connect(paramView_, &CTexturonParamView::ParameterActivated, this, &CMainFrame::OnParameter);
  UpdateState();
}

CMainFrame::~CMainFrame() = default;

QAction* CMainFrame::AddAction(QMenu& menu, const Command& command) {
  QAction* const action = menu.addAction(command.text);
  action->setObjectName(command.name);
  action->setShortcut(command.keys);
  action->setStatusTip(command.tip);
  if (command.needsProfile) needProfile_ << action;
  return action;
}

QAction* CMainFrame::AddCommand(QMenu& menu, const Command& command, const std::function<void()>& run) {
  QAction* const action = AddAction(menu, command);
  connect(action, &QAction::triggered, this, [run] { run(); });
  return action;
}

QAction* CMainFrame::AddSwitch(QMenu& menu, const Command& command, const std::function<bool(const Document&)>& isOn,
                               const std::function<void(bool)>& turn) {
  QAction* const action = AddAction(menu, command);
  action->setCheckable(true);
  action->setChecked(isOn(doc_->document()));
  connect(action, &QAction::toggled, this, [this, isOn, turn](bool on) {
    if (isOn(doc_->document()) != on) turn(on);
  });
  connect(doc_, &CTexturonDoc::Changed, action, [this, action, isOn] { action->setChecked(isOn(doc_->document())); });
  return action;
}

void CMainFrame::AddDisplaySwitch(QMenu& menu, const Command& command, bool DisplaySettings::*field) {
  AddSwitch(
      menu, command, [field](const Document& document) { return document.settings.display.*field; },
      [this, field](bool on) {
        DisplaySettings display = doc_->document().settings.display;
        display.*field = on;
        doc_->ReplaceDisplay(std::move(display));
      });
}

void CMainFrame::FillToolBar() {
  QToolBar* const bar = addToolBar(tr("Commands"));
  bar->setObjectName("commands");
  for (const ToolButton& button : kToolButtons) {
    if (button.command == nullptr) {
      bar->addSeparator();
      continue;
    }
    auto* const action = findChild<QAction*>(button.command);
    Q_ASSERT(action != nullptr);
    if (action == nullptr) continue;
    action->setIcon(IconOf(button.icon));
    const QString keys = action->shortcut().toString(QKeySequence::NativeText);
    const QString name = action->text().remove('&').remove("...");
    action->setToolTip(keys.isEmpty() ? name : QString("%1 (%2)").arg(name, keys));
    bar->addAction(action);
  }
}

void CMainFrame::MakeHelpMenu() {
  QMenu* const menu = menuBar()->addMenu(tr("&Help"));
  AddCommand(*menu,
             {.name = "keysAndMouse",
              .text = tr("&Keys and Mouse..."),
              .keys = QKeySequence(Qt::Key_F1),
              .tip = tr("What is done without a menu.")},
             [this] { CKeysDialog(*this).exec(); });
  MakeLanguageMenu(*menu->addMenu(tr("&Language")));
  AddCommand(*menu, {.name = "about", .text = tr("&About"), .tip = tr("What this program is.")}, [this] {
    QMessageBox::about(
        this, tr("About Texturon"),
        tr("<b>Texturon</b> %1<p>Surface texture analysis of profiles.</p><p>The source is licensed under "
           "Apache-2.0. This desktop program links a plotting library under the GNU GPL and is therefore "
           "distributed under the GNU GPL version 3; engine and console program are not affected.</p>")
            .arg(QApplication::applicationVersion()));
  });
}

void CMainFrame::MakeLanguageMenu(QMenu& menu) {
  auto* const group = new QActionGroup(this);
  for (const Language& language : Languages()) {
    const QString code = language.code;
    QAction* const action = AddCommand(menu, {.name = "language-" + code, .text = language.name}, [this, code] {
      ChooseLanguage(code);
      statusBar()->showMessage(tr("The window speaks it from the next start on."), 5'000);
    });
    action->setCheckable(true);
    action->setChecked(code == ChosenLanguage());
    group->addAction(action);
  }
}

void CMainFrame::UseWorkingSettings(WorkingSettings& store) {
  workingSettings_ = &store;
  saveDefaults_->setEnabled(true);
  Settings settings = doc_->document().settings;
  const std::string remark = store.Load(settings);
  doc_->StartFrom(std::move(settings), store.Loaded());
  if (!remark.empty()) statusBar()->showMessage(EngineText(remark));
}

bool CMainFrame::OnSaveDefaults() {
  std::string reason;
  const std::filesystem::path file = workingSettings_->Save(doc_->document().settings, reason);
  if (file.empty()) {
    doc_->prompts().ShowMessage(reason);
    return false;
  }
  doc_->NoteSettingsSaved();
  constexpr int kShownMS = 8'000;
  statusBar()->showMessage(tr("The program starts with the settings of %1").arg(FromPath(file)), kShownMS);
  return true;
}

void CMainFrame::UpdateState() {
  for (QAction* const action : needProfile_) action->setEnabled(doc_->HasProfile());
  const std::filesystem::path& file = doc_->document().profiles.sourceFile;
  QString title = QApplication::applicationDisplayName();
  if (!file.empty()) {
    // The name first: a bar of tasks shows no more of it.
    const QString folder = FromPath(file.parent_path());
    title = FromPath(file.filename()) + "[*]" + (folder.isEmpty() ? QString() : " (" + folder + ")") + " - " + title;
  }
  setWindowTitle(title);
  setWindowModified(doc_->IsModified());
}

void CMainFrame::dragEnterEvent(QDragEnterEvent* event) {
  if (event->mimeData()->hasUrls()) event->acceptProposedAction();
}

void CMainFrame::dropEvent(QDropEvent* event) {
  OnDropped(event->mimeData()->urls());
}

}  // namespace texturon
