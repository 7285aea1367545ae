// SPDX-License-Identifier: Apache-2.0

// The Edit menu of the main window.

#include <QApplication>
#include <QClipboard>
#include <QMenuBar>
#include <QSplitter>
#include <QStatusBar>

#include "ui/plots/texturon_view.h"
#include "ui/tables/texturon_param_view.h"
#include "ui/window/main_frame.h"

namespace texturon {

void CMainFrame::MakeEditMenu() {
  QMenu* const menu = menuBar()->addMenu(tr("&Edit"));
  QAction* const undo = AddCommand(*menu, tr("&Undo"), QKeySequence::Undo,
                                   tr("Takes back the last change of the analysis."), [this] { doc_->Undo(); });
  QAction* const redo = AddCommand(*menu, tr("&Redo"), QKeySequence::Redo, tr("Makes the change that was taken back."),
                                   [this] { doc_->Redo(); });
  const auto follow = [this, undo, redo] {
    undo->setEnabled(doc_->CanUndo());
    redo->setEnabled(doc_->CanRedo());
  };
  connect(doc_, &CTexturonDoc::Changed, undo, follow);
  follow();
  menu->addSeparator();
  needProfile_ << AddCommand(*menu, tr("Copy &Display"), QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_C),
                             tr("Puts a picture of the profiles and curves on the clipboard."), [this] {
                               QApplication::clipboard()->setPixmap(view_->parentWidget()->grab());
                               statusBar()->showMessage(tr("The picture is on the clipboard."), 5'000);
                             });
  needProfile_ << AddCommand(*menu, tr("Copy &Parameters"), QKeySequence(Qt::CTRL | Qt::ALT | Qt::Key_C),
                             tr("Puts the table of the parameters on the clipboard, as text."), [this] {
                               QApplication::clipboard()->setText(paramView_->Grid().AsText());
                               statusBar()->showMessage(tr("The table is on the clipboard."), 5'000);
                             });
}

}  // namespace texturon
