// SPDX-License-Identifier: Apache-2.0

#include <iostream>
#include <utility>

#include "app/commands.h"
#include "base/charset.h"
#include "platform/interrupt.h"
#include "platform/platform.h"
#include "unattended/folder_watch.h"

namespace texturon {
namespace {

FolderWatchOptions OptionsOf(const WatchOptions& options, const Settings& settings) {
  WatchPlan plan = PlanWatch(settings, {.folder = PathFromSystemText(options.folder),
                                        .mask = Windows1252FromUtf8(options.mask),
                                        .holdFolder = PathFromSystemText(options.holdFolder),
                                        .parameterFile = PathFromSystemText(options.parameterFile)});
  if (!plan.reason.empty()) throw UsageError{"watch: " + plan.reason + "; see --help."};
  return std::move(plan.options);
}

}  // namespace

int RunWatch(const WatchOptions& options, const CommonOptions& common) {
  ConsolePrompts prompts({.answersYes = false, .isQuiet = common.quiet});
  const auto setup = PrepareRun(common, prompts);
  if (!setup) return kExitRefused;
  const FolderWatchOptions watch = OptionsOf(options, setup->document.settings);
  CatchInterrupts();
  const std::string reason = WatchFolder(
      watch, {.start = setup->document, .import = setup->import, .invert = setup->invert}, SystemEnvironment(),
      {.analysed =
           [&common](const std::string& file, const FileAnalysis& /*analysis*/) {
             if (!common.quiet) std::cout << file << " analysed" << std::endl;
           },
       .failed = [](const std::string& sentence) { Complain(Utf8FromWindows1252(sentence)); },
       .stops = Interrupted});
  if (!reason.empty()) {
    Complain(Utf8FromWindows1252(reason));
    return kExitRefused;
  }
  return FinishOutput(setup->settingsHadProblems ? kExitRefused : kExitDone);
}

}  // namespace texturon
