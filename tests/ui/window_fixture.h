// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QAction>
#include <QApplication>
#include <QDropEvent>
#include <QMimeData>
#include <QUrl>
#include <filesystem>
#include <gtest/gtest.h>
#include <memory>
#include <string>

#include "platform/platform.h"
#include "support/scratch_folder.h"
#include "support/scripted_prompts.h"
#include "ui/window/main_frame.h"

namespace texturon {

/// Whether the tests run on a real display instead of a screen in memory.
inline bool HasDisplay() {
  return qEnvironmentVariableIsSet("TEXTURON_TEST_DISPLAY");
}

/// The one application of the test program, on a screen in memory and with its stored choices in a folder of its own.
inline QApplication& Application() {
  static const ScratchFolder folder;
  static int argc = 1;
  static std::string name = "ui_test";
  static char* argv[] = {name.data(), nullptr};
  if (!HasDisplay()) qputenv("QT_QPA_PLATFORM", "offscreen");
  qputenv("XDG_CONFIG_HOME", folder.path().c_str());
  // Never destroyed: at the end of the process its platform is gone before it.
  static QApplication* const application = new QApplication(argc, argv);
  QApplication::setOrganizationName("ui_test");
  return *application;
}

inline std::filesystem::path Sample(const char* name) {
  return std::filesystem::path(TEXTURON_SOURCE_DIR) / "samples" / name;
}

/// Drops files on a window.
inline void DropOn(QWidget& window, const QList<QUrl>& urls) {
  QMimeData data;
  data.setUrls(urls);
  QDragEnterEvent enter(QPoint(10, 10), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
  QApplication::sendEvent(&window, &enter);
  EXPECT_TRUE(enter.isAccepted());
  QDropEvent drop(QPointF(10, 10), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
  QApplication::sendEvent(&window, &drop);
}

/// A window of its own for each test.
class WindowTest : public ::testing::Test {
protected:
  WindowTest() {
    Application();
    MakeFrame();
  }

  void MakeFrame() {
    Environment environment = SystemEnvironment();
    environment.traceFile.clear();
    frame_ = std::make_unique<CMainFrame>(environment, &prompts_);
  }

  /// Chooses the command of this name from whatever menu has it.
  void Choose(const QString& name) {
    auto* const action = frame_->findChild<QAction*>(name);
    ASSERT_NE(action, nullptr) << "no command " << name.toStdString();
    EXPECT_TRUE(action->isEnabled()) << name.toStdString();
    action->trigger();
  }

  ScriptedPrompts prompts_;
  std::unique_ptr<CMainFrame> frame_;
};

}  // namespace texturon
