// SPDX-License-Identifier: Apache-2.0

// Everything can be reached without a mouse.

#include "ui/tables/grid_ctrl.h"
#include "ui/window/keys_dialog.h"
#include "ui/window_fixture.h"

namespace texturon {
namespace {

using Keyboard = WindowTest;

/// Fails where two texts have the same letter. Profiles and exports have names that are not ours to mark; they are
/// found by their first letter.
void ExpectLettersOfTheirOwn(const QStringList& texts) {
  QMap<QString, QString> letters;
  for (const QString& text : texts) {
    const QString letter = QKeySequence::mnemonic(text).toString();
    if (letter.isEmpty()) continue;
    EXPECT_FALSE(letters.contains(letter)) << text.toStdString() << " and " << letters[letter].toStdString();
    letters[letter] = text;
  }
}

TEST_F(Keyboard, KeysAndLettersAreUniqueAndInTheHelp) {
  const QString help = Child<CGridCtrl>(CKeysDialog(*frame_)).AsText();
  QMap<QString, QString> commands;
  for (const QAction* const action : frame_->findChildren<QAction*>()) {
    for (const QKeySequence& keys : action->shortcuts()) {
      EXPECT_FALSE(commands.contains(keys.toString()))
          << commands[keys.toString()].toStdString() << " and " << action->text().toStdString();
      commands[keys.toString()] = action->text();
    }
    const QString line = action->text().remove('&') + '\t' + action->shortcut().toString(QKeySequence::NativeText);
    EXPECT_TRUE(action->shortcut().isEmpty() || help.contains(line)) << line.toStdString();
  }
  EXPECT_GT(commands.size(), 10);
  for (const QMenu* const menu : frame_->menuBar()->findChildren<QMenu*>()) {
    QStringList texts;
    // "&Save" and "&Save Settings" have shared a letter for ever: it goes from one to the other.
    for (const QAction* const action : menu->actions()) texts << action->text().replace("&Save Settings", "");
    ExpectLettersOfTheirOwn(texts);
  }
  QStringList texts;
  for (const QAction* const action : frame_->menuBar()->actions()) texts << action->text();
  for (const QLabel* const label : frame_->centralWidget()->findChildren<QLabel*>()) {
    if (label->buddy() != nullptr) texts << label->text();
  }
  EXPECT_GE(texts.size(), 8);
  ExpectLettersOfTheirOwn(texts);
}

}  // namespace
}  // namespace texturon
