// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "formats/profile_reader.h"

namespace texturon {

// Tables of numbers, as number_rows finds them, table_heading names and table_columns chooses their columns: positions
// and one or more columns of heights. -25400 um marks an invalid height.
//
// Without a unit in the heading positions count as mm where their step is below 0.02, as m where it is below 1e-6, else
// as um, and heights as um (with positions in m: m); a warning says so. Units that are no lengths, and tables of an
// area, are not taken. Positions that only count the points are none: the spacing is asked for.

/// A table with at least two columns.
ReadResult ReadTwoColumnText(const ReaderInput& input, ImportedProfile& profile);

/// A table of two columns with a line that names their units.
ReadResult ReadUnitPairText(const ReaderInput& input, ImportedProfile& profile);

/// Any table, and a single column of heights, for which the spacing is asked.
ReadResult ReadGenericText(const ReaderInput& input, ImportedProfile& profile);

/// As ReadGenericText, for a heading that names "Distance(um)".
ReadResult ReadDistanceTable(const ReaderInput& input, ImportedProfile& profile);

/// The table "X;Y;valid" with a line of units; valid 0 marks an invalid point.
ReadResult ReadValidityTable(const ReaderInput& input, ImportedProfile& profile);

}  // namespace texturon
