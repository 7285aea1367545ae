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
  QAction* const undo = AddCommand(*menu,
                                   {.name = "undo",
                                    .text = tr("&Undo"),
                                    .keys = QKeySequence::Undo,
                                    .tip = tr("Takes back the last change of the analysis.")},
                                   [this] { doc_->Undo(); });
  QAction* const redo = AddCommand(*menu,
                                   {.name = "redo",
                                    .text = tr("&Redo"),
                                    .keys = QKeySequence::Redo,
                                    .tip = tr("Makes the change that was taken back.")},
                                   [this] { doc_->Redo(); });
  const auto follow = [this, undo, redo] {
    undo->setEnabled(doc_->CanUndo());
    redo->setEnabled(doc_->CanRedo());
  };
  connect(doc_, &CTexturonDoc::Changed, undo, follow);
  follow();
  menu->addSeparator();
  AddCommand(*menu,
             {.name = "copyDisplay",
              .text = tr("Copy &Display"),
              .keys = QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_C),
              .tip = tr("Puts a picture of the profiles and curves on the clipboard."),
              .needsProfile = true},
             [this] {
               QApplication::clipboard()->setPixmap(view_->parentWidget()->grab());
               statusBar()->showMessage(tr("The picture is on the clipboard."), 5'000);
             });
  AddCommand(*menu,
             {.name = "copyParameters",
              .text = tr("Copy &Parameters"),
              .keys = QKeySequence(Qt::CTRL | Qt::ALT | Qt::Key_C),
              .tip = tr("Puts the table of the parameters on the clipboard, as text."),
              .needsProfile = true},
             [this] {
               QApplication::clipboard()->setText(paramView_->Grid().AsText());
               statusBar()->showMessage(tr("The table is on the clipboard."), 5'000);
             });
}

}  // namespace texturon
