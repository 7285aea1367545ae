// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <filesystem>
#include <functional>
#include <string_view>

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

/// Adds rows to the end of a parameter file, which is created with `header` where it is not there (or empty). They
/// follow each other without another writer's between them, all of them or none. A file whose last line has no end gets
/// one first. `givesUp`, asked now and then while it waits, ends the waiting.
AppendOutcome AppendToParameterFile(const std::filesystem::path& path, std::string_view header, std::string_view rows,
                                    InUse inUse, const std::function<bool()>& givesUp = {});

/// The same once, with its message: "rows.csv:  File is in use - parameters not written."
AppendOutcome AppendParameters(const std::filesystem::path& path, std::string_view header, std::string_view row,
                               Prompts& prompts);

}  // namespace texturon
