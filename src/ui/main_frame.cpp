#include "ui/main_frame.h"

#include <QApplication>
#include <QDragEnterEvent>
#include <QLabel>
#include <QMenuBar>
#include <QMessageBox>
#include <QMimeData>
#include <QStatusBar>
#include <QToolBar>
#include <utility>

#include "ui/qt_text.h"
#include "ui/texturon_param_view.h"
#include "ui/texturon_view.h"

namespace texturon {

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
  resize(1200, 800);
  addToolBar(tr("Commands"))->setObjectName("commands");
  MakeFileMenu();
  MakeExportMenu();
  MakeViewMenu();
  MakeAnalysisMenu();
  MakeHelpMenu();
  readout_ = new QLabel(this);
  readout_->setObjectName("readout");
  statusBar()->addPermanentWidget(readout_);
  connect(view_, &CTexturonView::ReadoutChanged, this, [this] { readout_->setText(view_->Readout()); });
  connect(doc_, &CTexturonDoc::Changed, this, &CMainFrame::UpdateState);
  UpdateState();
}

CMainFrame::~CMainFrame() = default;

QAction* CMainFrame::AddCommand(QMenu& menu, const QString& text, const QKeySequence& keys, const QString& tip,
                                const std::function<void()>& run) {
  QAction* const action = menu.addAction(text);
  action->setShortcut(keys);
  action->setStatusTip(tip);
  connect(action, &QAction::triggered, this, [run] { run(); });
  return action;
}

void CMainFrame::AddSwitch(QMenu& menu, const QString& text, const QString& tip,
                           const std::function<bool(const Document&)>& isOn, const std::function<void(bool)>& turn) {
  QAction* const action = menu.addAction(text);
  action->setCheckable(true);
  action->setStatusTip(tip);
  action->setChecked(isOn(doc_->document()));
  connect(action, &QAction::toggled, this, [this, isOn, turn](bool on) {
    if (isOn(doc_->document()) != on) turn(on);
  });
  connect(doc_, &CTexturonDoc::Changed, action, [this, action, isOn] { action->setChecked(isOn(doc_->document())); });
}

void CMainFrame::AddDisplaySwitch(QMenu& menu, const QString& text, bool DisplaySettings::*field, const QString& tip) {
  AddSwitch(
      menu, text, tip, [field](const Document& document) { return document.settings.display.*field; },
      [this, field](bool on) {
        DisplaySettings display = doc_->document().settings.display;
        display.*field = on;
        doc_->ReplaceDisplay(std::move(display));
      });
}

void CMainFrame::MakeHelpMenu() {
  QMenu* const menu = menuBar()->addMenu(tr("&Help"));
  AddCommand(*menu, tr("&About"), {}, tr("What this program is."), [this] {
    QMessageBox::about(
        this, tr("About Texturon"),
        tr("<b>Texturon</b> %1<p>Surface texture analysis of profiles.</p><p>The source is licensed under "
           "Apache-2.0. This desktop program links a plotting library under the GNU GPL and is therefore "
           "distributed under the GNU GPL version 3; engine and console program are not affected.</p>")
            .arg(QApplication::applicationVersion()));
  });
}

void CMainFrame::UpdateState() {
  for (QAction* const action : needProfile_) action->setEnabled(doc_->HasProfile());
  const QString file = FromText(doc_->document().profiles.sourcePath);
  setWindowTitle(file.isEmpty() ? QApplication::applicationDisplayName()
                                : QString("%1 - %2").arg(file, QApplication::applicationDisplayName()));
}

void CMainFrame::dragEnterEvent(QDragEnterEvent* event) {
  if (event->mimeData()->hasUrls()) event->acceptProposedAction();
}

void CMainFrame::dropEvent(QDropEvent* event) {
  for (const QUrl& url : event->mimeData()->urls()) {
    if (url.isLocalFile()) OpenFile(ToPath(url.toLocalFile()));
  }
}

}  // namespace texturon
