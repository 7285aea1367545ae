// SPDX-License-Identifier: Apache-2.0

#include <filesystem>

#include "app/commands.h"
#include "base/text.h"
#include "formats/extension_table.h"
#include "platform/platform.h"

namespace texturon {

std::string WriterExtensions() {
  std::string extensions;
  for (const WriterEntry& writer : WriterTable()) {
    if (!extensions.empty()) extensions += &writer == &WriterTable().back() ? " or " : ", ";
    extensions += writer.extension;
  }
  return extensions;
}

int RunConvert(const ConvertOptions& convert, const CommonOptions& common) {
  ConsolePrompts prompts({.answersYes = common.answer == "yes", .isQuiet = common.quiet});
  const auto setup = PrepareRun(common, prompts);
  if (!setup) return kExitRefused;
  Document document = setup->document;
  prompts.BeginFile(convert.input);
  const Environment environment = SystemEnvironment();
  if (!LoadInto(document, convert.input, *setup, prompts, environment)) return kExitRefused;
  prompts.HoldMessages(true);
  const ProfileToWrite profile{.heightsUM = document.profiles.raw,
                               .spacingUM = document.profiles.spacingUM,
                               .identification = document.profiles.identification,
                               .savedAt = environment.localTime()};
  std::filesystem::path path = PathFromSystemText(convert.output);
  const std::filesystem::path asked = path;
  const FileOutcome outcome = WriterFor(path).write(path, profile, prompts);
  if (!outcome.ok()) {
    Complain(convert.output + ": Could not write file. It " + outcome.reason + ".");
    return kExitRefused;
  }
  if (!EqualIgnoringCase(TextFromPath(path), TextFromPath(asked))) prompts.Notice("written to " + TextFromPath(path));
  return kExitDone;
}

}  // namespace texturon
