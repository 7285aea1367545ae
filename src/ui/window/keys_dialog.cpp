// SPDX-License-Identifier: Apache-2.0

#include "ui/window/keys_dialog.h"

#include <QAction>
#include <QDialogButtonBox>
#include <QHeaderView>
#include <QMenu>
#include <QMenuBar>
#include <QVBoxLayout>
#include <utility>
#include <vector>

#include "ui/qt_text.h"
#include "ui/tables/grid_ctrl.h"

namespace texturon {
namespace {

using Rows = std::vector<std::pair<QString, QString>>;

constexpr std::pair<const char*, const char*> kInGraphs[] = {
    {"Zoom about the pointer along X; the heights; both", "Wheel; Ctrl+Wheel; Shift+Wheel"},
    {"Zoom to what is marked", "Shift+Drag"},
    {"Move what is in view", "Drag"},
    {"Menu of what is used most", "Right button"},
    {"Show all", "Double click; Home"},
    {"The former view", "Backspace"},
    {"Zoom in; out", "+; -"},
    {"Move a cursor", "Drag it"},
    {"Take the next cursor", "C"},
    {"Move the cursor by a pixel; by 20", "Arrows; Ctrl+Arrows"},
};

void AddCommandsOf(const QMenu& menu, const QString& path, Rows& rows) {
  for (const QAction* const action : menu.actions()) {
    const QString name = path + " > " + action->text().remove('&').section('\t', 0, 0);
    if (action->menu() != nullptr) {
      AddCommandsOf(*action->menu(), name, rows);
    } else if (!action->shortcut().isEmpty()) {
      rows.emplace_back(name, action->shortcut().toString(QKeySequence::NativeText));
    }
  }
}

}  // namespace

CKeysDialog::CKeysDialog(QMainWindow& window) : QDialog(&window) {
  setWindowTitle(tr("Keys and Mouse"));
  Rows rows;
  for (const QAction* const action : window.menuBar()->actions()) {
    if (action->menu() != nullptr) AddCommandsOf(*action->menu(), action->text().remove('&'), rows);
  }
  for (const auto& [what, how] : kInGraphs) rows.emplace_back(tr("In a graph: %1").arg(tr(what)), tr(how));
  QList<CGridCtrl::Record> records;
  for (const auto& [command, keys] : rows) records << CGridCtrl::Record{{command, keys}};
  auto* const grid = new CGridCtrl({tr("Command"), tr("Keys")}, {}, this);
  grid->setAccessibleName(tr("Keys and Mouse"));
  grid->Show(records);
  grid->horizontalHeader()->setStretchLastSection(true);
  auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  auto* const layout = new QVBoxLayout(this);
  layout->addWidget(grid);
  layout->addWidget(buttons);
  ResizeInCharacters(*this, 104, 32);
}

}  // namespace texturon
