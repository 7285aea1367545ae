// SPDX-License-Identifier: Apache-2.0

// Everything can be reached without a mouse.

#include <QLabel>
#include <QMap>
#include <QMenu>
#include <QMenuBar>

#include "ui/tables/grid_ctrl.h"
#include "ui/window/keys_dialog.h"
#include "ui/window_fixture.h"

namespace texturon {
namespace {

class Keyboard : public WindowTest {
protected:
  QList<const QMenu*> Menus() {
    QList<const QMenu*> menus;
    for (const QMenu* const menu : frame_->menuBar()->findChildren<QMenu*>()) menus << menu;
    return menus;
  }
};

TEST_F(Keyboard, NoKeysStandForTwoCommands) {
  QMap<QString, QString> commands;
  for (const QAction* const action : frame_->findChildren<QAction*>()) {
    for (const QKeySequence& keys : action->shortcuts()) {
      EXPECT_FALSE(commands.contains(keys.toString()))
          << keys.toString().toStdString() << ": " << commands[keys.toString()].toStdString() << " and "
          << action->text().toStdString();
      commands[keys.toString()] = action->text();
    }
  }
  EXPECT_GT(commands.size(), 10);
}

TEST_F(Keyboard, EveryEntryOfAMenuHasALetterOfItsOwn) {
  ASSERT_FALSE(Menus().isEmpty());
  for (const QMenu* const menu : Menus()) {
    QMap<QString, QString> letters;
    for (const QAction* const action : menu->actions()) {
      if (action->isSeparator()) continue;
      const QString letter = QKeySequence::mnemonic(action->text()).toString();
      const std::string where = (menu->title() + " > " + action->text()).toStdString();
      // Profiles and exports have names that are not ours to mark; they are found by their first letter. "&Save" and
      // "&Save Settings" have shared a letter for ever: it goes from one to the other.
      if (letter.isEmpty() || action->text() == "&Save Settings") continue;
      EXPECT_FALSE(letters.contains(letter)) << where << " and " << letters[letter].toStdString();
      letters[letter] = action->text();
    }
  }
}

TEST_F(Keyboard, NoLetterOfTheWindowIsThereTwice) {
  QMap<QString, QString> letters;
  const auto add = [&](const QString& text) {
    const QString letter = QKeySequence::mnemonic(text).toString();
    if (letter.isEmpty()) return;
    EXPECT_FALSE(letters.contains(letter)) << text.toStdString() << " and " << letters[letter].toStdString();
    letters[letter] = text;
  };
  for (const QAction* const action : frame_->menuBar()->actions()) add(action->text());
  for (const QLabel* const label : frame_->centralWidget()->findChildren<QLabel*>()) {
    if (label->buddy() != nullptr) add(label->text());
  }
  EXPECT_GE(letters.size(), 8);
}

TEST_F(Keyboard, TheHelpNamesEveryKey) {
  const CKeysDialog dialog(*frame_);
  const QString text = dialog.findChild<CGridCtrl*>()->AsText();
  for (const QMenu* const menu : Menus()) {
    for (const QAction* const action : menu->actions()) {
      if (action->shortcut().isEmpty()) continue;
      const QString line = action->text().remove('&') + '\t' + action->shortcut().toString(QKeySequence::NativeText);
      EXPECT_TRUE(text.contains(line)) << line.toStdString();
    }
  }
}

}  // namespace
}  // namespace texturon
