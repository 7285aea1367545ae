// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/environment.h"

namespace texturon {

/// The pieces of a command line between its quote characters, blank pieces between the arguments included; empty ones
/// at both ends are dropped. The usual call has five, of which plan, data file and output folder are 0, 2 and 4.
std::vector<std::string> CommandLineArguments(std::string_view text);

/// Each argument in quotes, with blanks between them: the text of a call.
std::string CommandLineText(const std::vector<std::string>& arguments);

/// Whether a first argument asks for the headless run, right or wrong: it ends in .ini, in any case.
bool NamesTestPlan(std::string_view argument);

/// How a headless run ended.
struct RunOutcome {
  bool done = false;
  std::string reason;  ///< why not, as a sentence, Windows-1252
  /// What of the plan was not understood though the run went on, as sentences, Windows-1252.
  std::vector<std::string> remarks = {};
};

/// The headless run by test plan: `"plan.ini" "data file" "output folder"`, in the system's own bytes. Analyses the
/// data once a family that the plan asks for, writes profile files, results, status file and, where the settings file
/// beside the program says so, the event log; asks and shows nothing.
RunOutcome RunCommandLine(std::string_view commandLine, const Environment& environment);

}  // namespace texturon
