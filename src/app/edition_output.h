// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <string>
#include <string_view>

#include "app/run_options.h"
#include "settings/class_table.h"

namespace texturon {

/// Puts what the command line says of edition, class, sections and features in force, after settings file and
/// assignments. Throws UsageError; a class table that cannot be read is one.
void ApplyEditionOptions(const CommonOptions& options, Settings& settings);

/// The table of classes in a file, named in the system's own bytes, or the built-in one. Throws UsageError.
ClassTable ClassesFrom(const std::string& file);

/// Lists the rows of the edition of 2021: name, unit, what the older edition has, trust, definition. Names are those of
/// R. Returns the exit status.
int PrintEditionParameters(bool asJson);

}  // namespace texturon
