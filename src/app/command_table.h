// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <span>
#include <string_view>

#include "app/run_options.h"

namespace CLI {
class App;
}

namespace texturon {

/// One command of the console program: its word, what --help says of it, and how its options and its run are added to
/// the parser. `status` gets the exit status of the run.
struct ConsoleCommand {
  std::string_view name;
  std::string_view about;
  void (*add)(CLI::App& command, CommonOptions& common, int& status);
};

/// Every command in the order of --help.
std::span<const ConsoleCommand> CommandTable();

/// Whether a first argument is a command's word: a call of three arguments that begins with none is a test plan.
bool IsCommand(std::string_view word);

}  // namespace texturon
