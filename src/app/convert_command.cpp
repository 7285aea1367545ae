#include <filesystem>

#include "app/commands.h"
#include "core/platform.h"
#include "core/text.h"
#include "formats/extension_table.h"
#include "formats/native_format.h"

namespace texturon {

int RunConvert(const std::string& input, const std::string& output, const CommonOptions& common) {
  ConsolePrompts prompts({.answersYes = common.answer == "yes", .isQuiet = common.quiet});
  const auto setup = PrepareRun(common, prompts);
  if (!setup) return kExitRefused;
  std::filesystem::path path = PathFromSystemText(output);
  if (!EqualIgnoringCase(TextFromPath(path.extension()), WriterTable().front().extension)) {
    Complain(output + ": this extension is not written; use .lmt.");
    return kExitRefused;
  }
  Document document = setup->document;
  prompts.BeginFile(input);
  if (!LoadInto(document, input, *setup, prompts)) return kExitRefused;
  prompts.HoldMessages(true);
  const Environment environment = SystemEnvironment();
  const NativeProfileToWrite profile{.heightsUM = document.profiles.raw,
                                     .spacingUM = document.profiles.spacingUM,
                                     .identification = document.profiles.identification,
                                     .savedAt = environment.localTime()};
  if (WriteNativeProfile(path, profile, prompts)) return kExitDone;
  Complain(output + ": Could not write file.");
  return kExitRefused;
}

}  // namespace texturon
