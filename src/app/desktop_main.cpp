// SPDX-License-Identifier: Apache-2.0

#include <QApplication>
#include <algorithm>
#include <filesystem>
#include <iostream>
#include <string>
#include <string_view>
#include <vector>

#include "base/charset.h"
#include "base/program_version.h"
#include "platform/interrupt.h"
#include "platform/platform.h"
#include "ui/window/command_icons.h"
#include "ui/window/headless.h"
#include "ui/window/start_up.h"
#include "unattended/command_line_run.h"

namespace {

/// A plan, or three arguments, are a run by test plan: settings, data and a folder. Three profiles, or an option, ask
/// for a window.
bool IsTestPlan(int argc, char** argv) {
  constexpr int kArguments = 4;
  if (std::any_of(argv + 1, argv + std::max(argc, 1), [](std::string_view text) { return text.starts_with("--"); }))
    return false;
  if (argc > 1 && texturon::NamesTestPlan(argv[1])) return true;
  if (argc != kArguments || argv[1][0] == '-') return false;
  std::error_code error;
  return !std::filesystem::is_regular_file(texturon::PathFromSystemText(argv[3]), error);
}

/// The headless run: needs no screen.
int RunTestPlan(int argc, char** argv) {
  const texturon::RunOutcome outcome = texturon::RunCommandLine(
      texturon::CommandLineText(std::vector<std::string>(argv + 1, argv + argc)), texturon::SystemEnvironment());
  for (const std::string& remark : outcome.remarks) {
    std::cerr << "texturon-desktop: " << texturon::EscapedControls(texturon::Utf8FromWindows1252(remark)) << '\n';
  }
  if (!outcome.done) {
    std::cerr << "texturon-desktop: " << texturon::EscapedControls(texturon::Utf8FromWindows1252(outcome.reason))
              << '\n';
  }
  return outcome.done ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
  texturon::LetLargeWritesFail();
  const bool isHeadless = texturon::IsHeadless(argc, argv);
  if (!isHeadless && IsTestPlan(argc, argv)) return RunTestPlan(argc, argv);
  if (isHeadless) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    // Standard error has one sentence or nothing.
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
  }
  QApplication application(argc, argv);
  QApplication::setApplicationName("Texturon");
  QApplication::setOrganizationName("Texturon");
  QApplication::setApplicationVersion(QString::fromStdString(texturon::ProgramVersionText()));
  QApplication::setWindowIcon(texturon::IconOf(texturon::CommandIcon::kProgram));
  if (isHeadless) return texturon::RunHeadless(QApplication::arguments());
  return texturon::RunWindow(QApplication::arguments());
}
