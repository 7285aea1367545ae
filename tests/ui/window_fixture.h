// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QtTest>
#include <QtWidgets>
#include <gtest/gtest.h>
#include <qcustomplot.h>

#include "support/scratch_folder.h"
#include "support/scripted_prompts.h"
#include "ui/dialog_driver.h"
#include "ui/language.h"
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

template <typename Widget = QLineEdit>
Widget& Child(const QObject& parent, const QString& name = {}) {
  auto* const child = parent.findChild<Widget*>(name);
  if (child == nullptr) throw std::logic_error("no child " + name.toStdString());
  return *child;
}

/// Replaces what stands in a line, key by key.
inline void Type(QLineEdit& line, const QString& text) {
  line.selectAll();
  QTest::keyClick(&line, Qt::Key_Delete);
  QTest::keyClicks(&line, text);
}

/// Presses the button of this text.
inline void Press(const QWidget& window, const QString& text) {
  for (QPushButton* const button : window.findChildren<QPushButton*>()) {
    if (button->text().remove('&') == QString(text).remove('&')) return button->click();
  }
  ADD_FAILURE() << "no button " << text.toStdString();
}

inline QPushButton& Ok(const QWidget& dialog) {
  return *Child<QDialogButtonBox>(dialog).button(QDialogButtonBox::Ok);
}

/// Drags between two places of a plot, in its coordinates.
inline void Drag(QCustomPlot& plot, const QPointF& from, const QPointF& to, Qt::KeyboardModifiers modifiers = {}) {
  const auto pixel = [&plot](const QPointF& place) {
    return QPointF(plot.xAxis->coordToPixel(place.x()), plot.yAxis->coordToPixel(place.y())).toPoint();
  };
  QTest::mousePress(&plot, Qt::LeftButton, modifiers, pixel(from));
  // QTest's moves carry no button.
  QMouseEvent move(QEvent::MouseMove, pixel(to), plot.mapToGlobal(pixel(to)), Qt::NoButton, Qt::LeftButton, modifiers);
  QApplication::sendEvent(&plot, &move);
  QTest::mouseRelease(&plot, Qt::LeftButton, modifiers, pixel(to));
}

/// Drops files on a window.
inline void DropOn(QWidget& window, const std::vector<std::filesystem::path>& files) {
  QMimeData data;
  QList<QUrl> urls;
  for (const auto& file : files) urls << QUrl::fromLocalFile(FromPath(file));
  data.setUrls(urls);
  QDragEnterEvent enter(QPoint(10, 10), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
  QApplication::sendEvent(&window, &enter);
  EXPECT_TRUE(enter.isAccepted());
  QDropEvent drop(QPointF(10, 10), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
  QApplication::sendEvent(&window, &drop);
}

/// A window of its own for each test, without anything remembered.
class WindowTest : public ::testing::Test {
protected:
  WindowTest() {
    Application();
    QSettings().clear();
    UseLanguage("en");
    MakeFrame(prompts_);
  }
  /// Shown, with a sample open.
  explicit WindowTest(const char* sample) : WindowTest() {
    EXPECT_TRUE(frame_->OpenFile(Sample(sample)));
    frame_->show();
    QTest::qWait(20);
  }

  void MakeFrame(Prompts& prompts) {
    Environment environment = SystemEnvironment();
    environment.traceFile.clear();
    frame_ = std::make_unique<CMainFrame>(environment, &prompts);
    frame_->AskAboutUnsavedBy([this](const QString& text) {
      asked_ << text;
      return answer_;
    });
  }

  CTexturonDoc& Doc() { return frame_->Doc(); }
  const Document& InForce() { return Doc().document(); }
  void Change(const std::function<void(AnalysisSettings&)>& change) {
    Settings settings = InForce().settings;
    change(settings.analysis);
    Doc().ReplaceSettings(settings);
  }
  void ChangeDisplay(const std::function<void(DisplaySettings&)>& change) {
    DisplaySettings display = InForce().settings.display;
    change(display);
    Doc().ReplaceDisplay(display);
  }

  /// Chooses the command of this name from whatever menu has it, and acts on the dialogs that it opens.
  void Choose(const QString& name, const std::vector<DialogDriver::Action>& dialogs = {}) {
    const DialogDriver driver(dialogs);
    QAction& action = Child<QAction>(*frame_, name);
    EXPECT_TRUE(action.isEnabled()) << name.toStdString();
    action.trigger();
  }

  ScratchFolder folder_;
  ScriptedPrompts prompts_;
  QStringList asked_;  ///< what was told to be unsaved
  CMainFrame::Unsaved answer_ = CMainFrame::Unsaved::kDiscard;
  std::unique_ptr<CMainFrame> frame_;
};

}  // namespace texturon
