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
  std::filesystem::path path = PathFromSystemText(convert.output);
  if (path.filename().empty()) throw UsageError{"convert: OUT is no name of a file."};
  const InputFile input = InputFiles({convert.input}, common).front();
  const WriterEntry& writer = WriterFor(path);
  RefuseClash({.reads = PathsOf({input}), .writes = {std::filesystem::path(path).replace_extension(writer.extension)}},
              common);
  ConsolePrompts prompts({.answersYes = common.answer == "yes", .isQuiet = common.quiet});
  const auto setup = PrepareRun(common, prompts);
  if (!setup) return kExitRefused;
  Document document = setup->document;
  prompts.BeginFile(convert.input);
  const Environment environment = SystemEnvironment();
  if (!LoadInto(document, input, *setup, prompts, environment)) return kExitRefused;
  prompts.HoldMessages(true);
  const ProfileToWrite profile{.heightsUM = document.profiles.raw,
                               .spacingUM = document.profiles.spacingUM,
                               .identification = document.profiles.identification,
                               .savedAt = environment.localTime()};
  const std::filesystem::path asked = path;
  const FileOutcome outcome = writer.write(path, profile, prompts);
  if (!outcome.ok()) {
    Complain(convert.output + ": Could not write file. It " + outcome.reason + ".");
    return kExitRefused;
  }
  if (!EqualIgnoringCase(TextFromPath(path), TextFromPath(asked))) prompts.Notice("written to " + TextFromPath(path));
  return kExitDone;
}

}  // namespace texturon
