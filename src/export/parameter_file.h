// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <string_view>

#include "platform/append_file.h"
#include "platform/platform.h"
#include "platform/prompts.h"

namespace texturon {

/// What a writer does when another program holds the parameter file.
enum class InUse {
  kRetryOnce,  ///< tries once more after 1500 ms; then the row is lost, as the message says
  kWait,       ///< waits for it
};

/// How rows got into a parameter file.
struct AppendOutcome {
  bool written = false;
  std::string reason;  ///< why not; goes on where the file's name stops
};

/// Why rows must not be added to a file that is held, or to one of this name; goes on where the file's name stops.
/// Empty: it is new, empty or a parameter file, that is its first line begins with the titles Time, Source,
/// Identification and Settings, however a spreadsheet has quoted and separated them.
std::string NoParameterFile(const AppendFile& file);
std::string NoParameterFile(const std::filesystem::path& path);

/// Why rows under `header` must not be added to a parameter file because its columns are of another edition of the
/// standards: those of the edition of 2021 end with "/2021". Goes on where the file's name stops; empty: they may.
std::string OtherEdition(const AppendFile& file, std::string_view header);
std::string OtherEdition(const std::filesystem::path& path, std::string_view header);

/// Adds lines to the end of a file of lines, which is created with `header` where it is not there (or empty): all of
/// them or none, without another writer's between them, and on lines of their own. `objection` tells why the file must
/// not be added to. `givesUp`, asked now and then while it waits, ends the waiting.
AppendOutcome AppendLines(const std::filesystem::path& path, std::string_view header, std::string_view lines,
                          const std::function<std::string(AppendFile&)>& objection, InUse inUse,
                          const std::function<bool()>& givesUp = {});

/// Adds rows to the end of a parameter file, which is created with `header` where it is not there (or empty). They
/// follow each other without another writer's between them, all of them or none. A file whose last line has no end gets
/// one first; one that is no parameter file is refused. Without a header the file is any text of lines. `givesUp`,
/// asked now and then while it waits, ends the waiting. `before` is called with the file held, before it is written
/// to, and where it fails nothing is.
AppendOutcome AppendToParameterFile(const std::filesystem::path& path, std::string_view header, std::string_view rows,
                                    InUse inUse, const std::function<bool()>& givesUp = {},
                                    const std::function<FileOutcome(const AppendFile& file)>& before = {});

/// The same once, with its message: "rows.csv:  File is in use - parameters not written."
AppendOutcome AppendParameters(const std::filesystem::path& path, std::string_view header, std::string_view row,
                               Prompts& prompts);

}  // namespace texturon
