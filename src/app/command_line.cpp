// SPDX-License-Identifier: Apache-2.0

#include "app/command_line.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "app/command_table.h"
#include "app/commands.h"
#include "base/charset.h"
#include "base/program_version.h"
#include "platform/interrupt.h"
#include "platform/platform.h"
#include "unattended/command_line_run.h"

namespace texturon {
namespace {

/// The headless batch contract: a plan as first argument, or three arguments whose first is no command.
bool IsBatchContract(std::span<const std::string> arguments) {
  if (arguments.empty()) return false;
  const std::string& first = arguments.front();
  if (NamesTestPlan(first)) return true;
  return arguments.size() == 3 && !first.starts_with('-') && !IsCommand(first);
}

int RunTestPlan(const std::vector<std::string>& arguments) {
  const RunOutcome outcome = RunCommandLine(CommandLineText(arguments), SystemEnvironment());
  for (const std::string& remark : outcome.remarks) Complain(Utf8FromWindows1252(remark));
  if (outcome.done) return kExitDone;
  Complain(Utf8FromWindows1252(outcome.reason));
  return kExitRefused;
}

/// "-/Rz 3" is what a drawing says, and no option as the parser would have it.
std::vector<std::string> WithTextsLast(std::span<const std::string> arguments) {
  std::vector<std::string> words(arguments.begin(), arguments.end());
  if (words.empty() || words.front() != "indication") return words;
  if (std::find(words.begin(), words.end(), "--") != words.end()) return words;
  const auto text = std::stable_partition(words.begin(), words.end(),
                                          [](const std::string& word) { return !word.starts_with("-/"); });
  if (text != words.end()) words.insert(text, "--");
  return words;
}

/// "--settings=" with nothing behind it; the parser would take the next word.
void RefuseEmptyAssignments(std::span<const std::string> words) {
  for (const std::string& word : words) {
    if (word == "--") return;
    if (!word.starts_with("--") || word.find('=') != word.size() - 1) continue;
    throw UsageError{word + ": is empty."};
  }
}

/// An option with nothing in it, as a script with an unset variable writes it, is no option left out.
void RefuseEmptyValues(CLI::App& parser) {
  const auto takesValue = [](const CLI::Option* option) {
    return !option->get_lnames().empty() && option->get_expected_max() > 0;
  };
  for (CLI::Option* const option : parser.get_options(takesValue)) {
    option->check([](const std::string& text) { return std::string(text.empty() ? "is empty" : ""); });
  }
}

/// Parses and runs; throws what CLI11 and the commands throw for a wrong command line.
int ParseAndRun(CLI::App& app, std::span<const std::string> arguments) {
  CommonOptions common;
  int status = kExitDone;
  // Making the options of all commands takes longer than most of them: those of a command that no argument names are
  // never asked for.
  for (const ConsoleCommand& command : CommandTable()) {
    CLI::App* const parser = app.add_subcommand(std::string(command.name), std::string(command.about));
    const bool isNamed = std::find(arguments.begin(), arguments.end(), command.name) != arguments.end();
    if (!isNamed) continue;
    command.add(*parser, common, status);
    RefuseEmptyValues(*parser);
  }
  app.require_subcommand(1);
  RefuseEmptyAssignments(arguments);
  std::vector<std::string> words = WithTextsLast(arguments);
  std::reverse(words.begin(), words.end());  // the last one first
  app.parse(std::move(words));
  return status;
}

}  // namespace

int RunProgram(std::span<const std::string> words) {
  LetLargeWritesFail();
  const std::span<const std::string> arguments = words.subspan(words.empty() ? 0 : 1);
  if (IsBatchContract(arguments)) return RunTestPlan({arguments.begin(), arguments.end()});
  CLI::App app{"Surface texture analysis of profiles."};
  app.allow_windows_style_options(false);  // "/data/part.lmt" is a file on every system
  app.name("texturon");
  app.set_version_flag("--version", "texturon " + ProgramVersionText());
  try {
    return ParseAndRun(app, arguments);
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
