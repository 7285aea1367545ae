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
#include "ui/window/screen.h"
#include "ui/window/start_up.h"
#include "unattended/command_line_run.h"

namespace {

/// A plan, or three arguments, are a run by test plan: settings, data and a folder. Three profiles, or an option, ask
/// for a window.
bool IsTestPlan(const std::vector<std::string>& arguments) {
  constexpr std::size_t kArguments = 3;
  if (std::any_of(arguments.begin(), arguments.end(), [](std::string_view text) { return text.starts_with("--"); }))
    return false;
  if (!arguments.empty() && texturon::NamesTestPlan(arguments[0])) return true;
  if (arguments.size() != kArguments || arguments[0].starts_with('-')) return false;
  std::error_code error;
  return !std::filesystem::is_regular_file(texturon::PathFromSystemText(arguments[2]), error);
}

/// The headless run: needs no screen.
int RunTestPlan(const std::vector<std::string>& arguments) {
  const texturon::RunOutcome outcome =
      texturon::RunCommandLine(texturon::CommandLineText(arguments), texturon::SystemEnvironment());
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
  texturon::UseTerminalOfParent();
  const texturon::CommandWords words(argc, argv);
  const std::vector<std::string> arguments(words.Texts().begin() + (argc > 0 ? 1 : 0), words.Texts().end());
  const bool isHeadless = texturon::IsHeadless(arguments);
  if (!isHeadless && IsTestPlan(arguments)) return RunTestPlan(arguments);
  // Standard error has one sentence or nothing.
  if (isHeadless) qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
  texturon::PrepareScreen(isHeadless);
  QApplication application(argc, argv);
  texturon::SuitStyleToScreen();
  QApplication::setApplicationName("Texturon");
  QApplication::setOrganizationName("Texturon");
  QApplication::setApplicationVersion(QString::fromStdString(texturon::ProgramVersionText()));
  QApplication::setWindowIcon(texturon::IconOf(texturon::CommandIcon::kProgram));
  if (isHeadless) return texturon::RunHeadless(QApplication::arguments());
  return texturon::RunWindow(QApplication::arguments());
}
