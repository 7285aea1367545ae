// SPDX-License-Identifier: Apache-2.0

#include "ui/window/start_up.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QFile>
#include <QFileInfo>
#include <QSessionManager>
#include <QSettings>
#include <QStandardPaths>
#include <QStatusBar>
#include <iostream>
#include <vector>

#include "platform/platform.h"
#include "settings/working_settings.h"
#include "ui/language.h"
#include "ui/qt_text.h"
#include "ui/window/main_frame.h"
#include "ui/window/single_instance.h"

namespace texturon {
namespace {

constexpr const char* kGeometryKey = "windowGeometry";

std::filesystem::path UserFolder() {
  return ToPath(QStandardPaths::writableLocation(QStandardPaths::AppConfigLocation));
}

void OpenAll(CMainFrame& frame, const QStringList& files) {
  std::vector<std::filesystem::path> paths;
  for (const QString& file : files) paths.push_back(ToPath(file));
  frame.OpenAll(paths);
}

void OpenSample(CMainFrame& frame) {
  QFile file(":/samples/ground.lmt");
  file.open(QIODevice::ReadOnly);
  const QByteArray bytes = file.readAll();
  frame.Doc().OpenBytes("Sample.lmt", std::string_view(bytes.constData(), static_cast<std::size_t>(bytes.size())));
}

void BringForward(CMainFrame& frame) {
  frame.setWindowState(frame.windowState() & ~Qt::WindowMinimized);
  frame.raise();
  frame.activateWindow();
}

/// `settings`: a file to start with; empty: the working settings.
int RunFrame(const QStringList& files, const QString& settings, CSingleInstance* others) {
  const Environment environment = SystemEnvironment();
  WorkingSettings store(environment.programFolder, UserFolder());
  CMainFrame frame(environment);
  frame.UseWorkingSettings(store);
  frame.restoreGeometry(QSettings().value(kGeometryKey).toByteArray());
  if (others != nullptr) {
    QObject::connect(others, &CSingleInstance::Arrived, &frame, [&frame](const QStringList& arrived) {
      BringForward(frame);
      OpenAll(frame, arrived);
    });
  }
  QObject::connect(
      qApp, &QGuiApplication::commitDataRequest, &frame,
      [&frame](QSessionManager& session) {
        if (!frame.EndSession(session.allowsInteraction())) session.cancel();
        session.release();
      },
      Qt::DirectConnection);
  if (files.isEmpty()) OpenSample(frame);
  frame.show();
  frame.KeepStateIn(environment.stateFolder);
  if (!settings.isEmpty()) frame.Doc().LoadSettingsFile(ToPath(settings));
  frame.OfferLeftOver();
  OpenAll(frame, files);
  const int status = QApplication::exec();
  QSettings().setValue(kGeometryKey, frame.saveGeometry());
  if (const std::string failure = store.KeepDisplay(frame.Doc().document().settings.display); !failure.empty()) {
    std::cerr << "texturon-desktop: " << FromText(failure).toStdString() << '\n';
  }
  return status;
}

}  // namespace

int RunWindow(const QStringList& arguments) {
  QCommandLineParser parser;
  const QCommandLineOption another("new");
  const QCommandLineOption settings("settings", {}, "INI");
  parser.addOptions({another, settings});
  if (!parser.parse(arguments)) {
    std::cerr << "texturon-desktop: " << parser.errorText().toStdString() << ".\n";
    return 2;
  }
  UseLanguage(ChosenLanguage());
  QStringList files;
  for (const QString& file : parser.positionalArguments()) files << QFileInfo(file).absoluteFilePath();
  // The window that is open has settings of its own, which this start must not change.
  if (parser.isSet(another) || parser.isSet(settings)) return RunFrame(files, parser.value(settings), nullptr);
  CSingleInstance others(CSingleInstance::UsualName());
  if (others.HandOverOrListen(files)) return 0;
  return RunFrame(files, {}, &others);
}

}  // namespace texturon
