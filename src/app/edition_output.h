// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <string>
#include <string_view>

#include "analysis/document.h"
#include "app/json_writer.h"
#include "app/run_options.h"
#include "settings/class_table.h"

namespace texturon {

/// Puts what the command line says of edition, class, sections and features in force, after settings file and
/// assignments. Throws UsageError; a class table that cannot be read is one.
void ApplyEditionOptions(const CommonOptions& options, Settings& settings);

/// The table of classes in a file, named in the system's own bytes, or the built-in one. Throws UsageError.
ClassTable ClassesFrom(const std::string& file);

/// The edition at the top of a result: "ISO 21920-2:2021" or "both"; empty for the edition of before.
std::string_view EditionTitle(const Document& document);

/// Members of a row's object: its edition where the result has rows of several, and the difference beside the row of
/// the same name.
void WriteEditionOfRow(JsonWriter& json, const Document& document, const ParameterDef& row);

/// Lists the rows of the edition of 2021: name, unit, what the older edition has, trust, definition. Names are those of
/// R. Returns the exit status.
int PrintEditionParameters(bool asJson);

}  // namespace texturon
