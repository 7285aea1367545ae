#pragma once

#include <QApplication>
#include <QFileDialog>
#include <QLineEdit>
#include <QTimer>
#include <functional>
#include <gtest/gtest.h>
#include <memory>

#include "ui/qt_text.h"

namespace texturon {

/// Acts on the dialogs that a command opens, one action a dialog, in their order.
class DialogDriver {
public:
  using Action = std::function<void(QWidget& dialog)>;

  explicit DialogDriver(std::vector<Action> actions) : actions_(std::move(actions)) {
    timer_.setInterval(5);
    QObject::connect(&timer_, &QTimer::timeout, [this] { Look(); });
    timer_.start();
  }
  ~DialogDriver() { EXPECT_EQ(next_, actions_.size()) << "a dialog did not come"; }
  DialogDriver(const DialogDriver&) = delete;
  DialogDriver& operator=(const DialogDriver&) = delete;

private:
  void Look() {
    QWidget* const dialog = QApplication::activeModalWidget();
    if (dialog == nullptr || !dialog->isVisible() || dialog == last_) return;
    last_ = dialog;
    if (next_ < actions_.size()) {
      actions_[next_++](*dialog);
    } else {
      ADD_FAILURE() << "one dialog too many: " << dialog->windowTitle().toStdString();
      dialog->close();
    }
    last_ = nullptr;
  }

  std::vector<Action> actions_;
  std::size_t next_ = 0;
  QWidget* last_ = nullptr;
  QTimer timer_;
};

/// Types a name into a file dialog and presses its button.
inline DialogDriver::Action TypeName(const QString& name, const std::function<void(QFileDialog&)>& look = {}) {
  return [name, look](QWidget& widget) {
    auto* const dialog = qobject_cast<QFileDialog*>(&widget);
    ASSERT_NE(dialog, nullptr) << widget.metaObject()->className();
    if (look) look(*dialog);
    dialog->findChild<QLineEdit*>("fileNameEdit")->setText(name);
    QMetaObject::invokeMethod(dialog, "accept");
  };
}

}  // namespace texturon
