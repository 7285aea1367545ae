// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <string>
#include <string_view>

#include "analysis/document.h"

namespace texturon {

/// The result of one file for people, UTF-8: what was measured, what was taken out, and the parameters one a line;
/// below them on request the instrument's own results beside them.
std::string AnalysisTable(const Document& document, std::string_view file, bool besideInstrument);

/// The results of several files for spreadsheets, UTF-8: titles, units, then one line a file. Values are the shortest
/// text that reads back to the same double; a row that could not be computed leaves its cell empty.
std::string CsvHeader(const Document& document);
std::string CsvRow(const Document& document, std::string_view file);

}  // namespace texturon
