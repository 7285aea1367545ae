// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <ctime>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "analysis/document.h"
#include "platform/prompts.h"

namespace texturon {

/// The text of an export, or why there is none.
struct ExportResult {
  std::string text;
  std::string reason;  ///< a sentence without its full stop; empty: it went well

  bool ok() const { return reason.empty(); }
};

using ExportFunction = ExportResult (*)(const Document& document, Prompts& prompts);

/// One of the things that can be exported of an analysis.
struct ExportKind {
  std::string_view name;  ///< on the command line
  std::string_view menu;  ///< what a menu or a list calls it
  ExportFunction make = nullptr;
  ExportFunction makeMod = nullptr;  ///< as form data for instruments; none for most
  bool isProfile = false;            ///< heights over the record; else a curve or a table
};

std::span<const ExportKind> ExportKinds();
/// Nothing for an unknown name.
const ExportKind* FindExportKind(std::string_view name);

/// What the parameter file gets for an analysis: `time` as on the handed-in clock.
struct ParameterFileText {
  std::string header;
  std::string row;
};
ParameterFileText ParameterFileTextOf(const Document& document, std::string_view time);

/// What a file for statistics programs gets for an analysis: its rows with limits, in the document's units.
struct QdasText {
  std::string description;
  std::string values;
};
/// Nothing where no row has limits.
std::optional<QdasText> QdasTextOf(const Document& document, const std::tm& time);

}  // namespace texturon
