// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "formats/profile_reader.h"

namespace texturon {

// Tables of numbers: a column of positions and one or more of heights, between tabs, blanks, commas or semicolons. The
// decimal sign may be a comma where the separator is none. -25400 marks an invalid height.
//
// Units come from the heading (a unit pair, or names with units). Without them positions count as mm where their step
// is below 0.02, as m where it is below 1e-6, else as um, and heights as um (with positions in m: m); a warning says
// so. Positions that only count the points are none: the spacing is asked for.

/// A table with at least two columns behind at most two lines of heading.
ReadResult ReadTwoColumnText(const ReaderInput& input, ImportedProfile& profile);

/// The same with a heading that names the units.
ReadResult ReadUnitPairText(const ReaderInput& input, ImportedProfile& profile);

/// The same, and a single column of heights, for which the spacing is asked, behind at most 100 lines of heading.
ReadResult ReadGenericText(const ReaderInput& input, ImportedProfile& profile);

/// As ReadGenericText, for a heading that names "Distance(um)".
ReadResult ReadDistanceTable(const ReaderInput& input, ImportedProfile& profile);

/// The table "X;Y;valid" with a line of units; valid 0 marks an invalid point.
ReadResult ReadValidityTable(const ReaderInput& input, ImportedProfile& profile);

}  // namespace texturon
