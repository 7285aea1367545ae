// SPDX-License-Identifier: Apache-2.0

#include "app/command_line.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "app/command_table.h"
#include "app/commands.h"
#include "base/charset.h"
#include "platform/interrupt.h"
#include "platform/platform.h"
#include "unattended/command_line_run.h"

namespace texturon {
namespace {

/// The headless batch contract: a plan as first argument, or three arguments whose first is no command.
bool IsBatchContract(int argc, char** argv) {
  if (argc < 2) return false;
  const std::string_view first = argv[1];
  if (NamesTestPlan(first)) return true;
  return argc == 4 && !first.starts_with('-') && !IsCommand(first);
}

int RunTestPlan(const std::vector<std::string>& arguments) {
  const RunOutcome outcome = RunCommandLine(CommandLineText(arguments), SystemEnvironment());
  for (const std::string& remark : outcome.remarks) Complain(Utf8FromWindows1252(remark));
  if (outcome.done) return kExitDone;
  Complain(Utf8FromWindows1252(outcome.reason));
  return kExitRefused;
}

/// Parses and runs; throws what CLI11 and the commands throw for a wrong command line.
int ParseAndRun(CLI::App& app, int argc, char** argv) {
  CommonOptions common;
  int status = kExitDone;
  // Making the options of all commands takes longer than most of them: those of a command that no argument names are
  // never asked for.
  const auto isNamed = [argc, argv](std::string_view name) {
    return std::any_of(argv + 1, argv + argc, [name](const char* argument) { return name == argument; });
  };
  for (const ConsoleCommand& command : CommandTable()) {
    CLI::App* const parser = app.add_subcommand(std::string(command.name), std::string(command.about));
    if (isNamed(command.name)) command.add(*parser, common, status);
  }
  app.require_subcommand(1);
  app.parse(argc, argv);
  return status;
}

}  // namespace

int RunProgram(int argc, char** argv) {
  LetLargeWritesFail();
  if (IsBatchContract(argc, argv)) return RunTestPlan({argv + 1, argv + argc});
  CLI::App app{"Surface texture analysis of profiles."};
  app.name("texturon");
  app.set_version_flag("--version", "texturon " TEXTURON_VERSION);
  try {
    return ParseAndRun(app, argc, argv);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? FinishOutput(kExitDone) : static_cast<int>(kExitUsage);
  } catch (const UsageError& error) {
    Complain(error.text);
    return kExitUsage;
  } catch (const std::exception& error) {
    Complain(std::string("cannot go on: ") + error.what());
    return kExitRefused;
  }
}

}  // namespace texturon
