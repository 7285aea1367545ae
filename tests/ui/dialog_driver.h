// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QtTest>
#include <QtWidgets>
#include <gtest/gtest.h>

#include "platform/platform.h"
#include "ui/qt_text.h"

namespace texturon {

/// Acts on the dialogs that a command opens, one action a dialog, in their order.
class DialogDriver {
public:
  using Action = std::function<void(QWidget& dialog)>;

  explicit DialogDriver(std::vector<Action> actions) : actions_(std::move(actions)) { Look(); }
  ~DialogDriver() { EXPECT_EQ(next_, actions_.size()) << "a dialog did not come"; }
  Q_DISABLE_COPY(DialogDriver)

private:
  void Look() {
    // Not one timer that repeats: it would stand still while an action opens a dialog of its own.
    QTimer::singleShot(5, &context_, [this] { Look(); });
    QWidget* const dialog = QApplication::activeModalWidget();
    if (dialog == nullptr || !dialog->isVisible() || dialog == atHand_) return;
    QWidget* const former = std::exchange(atHand_, dialog);
    if (next_ < actions_.size()) {
      actions_[next_++](*dialog);
    } else {
      ADD_FAILURE() << "one dialog too many: " << dialog->windowTitle().toStdString();
      dialog->close();
    }
    atHand_ = former;
  }

  QObject context_;
  std::vector<Action> actions_;
  std::size_t next_ = 0;
  QWidget* atHand_ = nullptr;
};

inline void CloseIt(QWidget& dialog) {
  dialog.close();
}

/// Types a name into a file dialog and presses its button.
inline DialogDriver::Action TypeName(const std::filesystem::path& name,
                                     const std::function<void(QFileDialog&)>& look = {}) {
  return [name, look](QWidget& widget) {
    auto& dialog = dynamic_cast<QFileDialog&>(widget);
    if (look) look(dialog);
    auto* const line = dialog.findChild<QLineEdit*>("fileNameEdit");
    // Key by key, and once the folder is listed: a text that is merely set does not unselect what is proposed.
    QTest::qWait(50);
    line->selectAll();
    QTest::keyClicks(line, FromPath(name));
    QMetaObject::invokeMethod(&dialog, "accept");
  };
}

}  // namespace texturon
