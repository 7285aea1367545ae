// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "formats/profile_reader.h"

namespace texturon {

/// A workbook, ".XLSX". That of a hand tester is known by its sheets "Certificate" and "DATA": positions in mm in
/// column E, heights in um in column F. Any other sheet is read like a text table, tabs between its cells; of several
/// with numbers one is chosen.
ReadResult ReadWorkbookProfile(const ReaderInput& input, ImportedProfile& profile);

/// What goes by the extension ".XLS": a text table is read, and a workbook of the newer kind; a binary one of the old
/// kind and a web page are refused with what to do.
ReadResult ReadSpreadsheetText(const ReaderInput& input, ImportedProfile& profile);

}  // namespace texturon
