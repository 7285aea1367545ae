#include <filesystem>
#include <iostream>
#include <optional>

#include "app/commands.h"
#include "core/charset.h"
#include "core/folder_watch.h"
#include "core/ini_file.h"
#include "core/interrupt.h"
#include "core/platform.h"

namespace texturon {
namespace {

/// Where files come from: the command line's folder, or what the settings say.
void ChooseFolder(const WatchOptions& options, const AutoLoadingSettings& settings, FolderWatchOptions& watch) {
  if (!options.folder.empty()) {
    watch.folder = PathFromSystemText(options.folder);
  } else if (settings.AutoLoadFromGroup) {
    watch.folder = PathFromText(settings.AutoLoadFolder);
  } else if (!settings.AutoLoadFile.empty()) {
    const std::filesystem::path file = PathFromText(settings.AutoLoadFile);
    watch.folder = file.has_parent_path() ? file.parent_path() : ".";
    watch.singleFile = SystemTextFromPath(file.filename());
  }
  if (watch.folder.empty()) throw UsageError{"watch: give a folder, on the command line or in the settings."};
  watch.mask = options.mask.empty() ? settings.AutoLoadMask : Windows1252FromUtf8(options.mask);
  if (watch.mask.empty()) watch.mask = "*.*";
}

/// Where files go. A folder name as long as a settings value can be may have lost its end.
void ChooseHold(const WatchOptions& options, const AutoLoadingSettings& settings, FolderWatchOptions& watch) {
  if (!options.holdFolder.empty()) {
    watch.holdFolder = PathFromSystemText(options.holdFolder);
    watch.deletes = true;
    return;
  }
  watch.deletes = settings.DeleteAfterAutoLoadFromGroup && watch.singleFile.empty();
  if (!watch.deletes) return;
  if (settings.StorageFolderAfterAutoLoad.empty()) {
    throw UsageError{"watch: files are to be deleted, but there is no hold folder; give --hold."};
  }
  if (settings.StorageFolderAfterAutoLoad.size() >= kIniValueLength) {
    throw UsageError{"watch: StorageFolderAfterAutoLoad may have been cut at 63 characters; give --hold."};
  }
  watch.holdFolder = PathFromText(settings.StorageFolderAfterAutoLoad);
}

FolderWatchOptions OptionsOf(const WatchOptions& options, const Settings& settings) {
  FolderWatchOptions watch;
  ChooseFolder(options, settings.autoLoading, watch);
  ChooseHold(options, settings.autoLoading, watch);
  if (!options.parameterFile.empty()) {
    watch.parameterFile = PathFromSystemText(options.parameterFile);
  } else if (settings.autoLoading.AutoExport) {
    watch.parameterFile = PathFromText(settings.display.ParameterFile);
  }
  watch.logsEvents = settings.autoLoading.LogEventsWhenAutoLoading;
  return watch;
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
