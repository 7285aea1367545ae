// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "formats/profile_reader.h"

namespace texturon {

// Small text layouts of single instruments.

/// TX1 (primary) and TX2 (roughness): nominal length in mm, number of points, heights in um. The length need not be the
/// record's: the spacing is asked for, preset with length / (points - 1). Date and time are those of the condition
/// sheet with the ending .tx3 beside it.
ReadResult ReadTxText(const ReaderInput& input, ImportedProfile& profile);

/// Surface tester text: sections "// ...", semicolons, decimal comma; Pitch in um, heights behind "// CalcData". A file
/// without that section holds results only and is refused.
ReadResult ReadSectionText(const ReaderInput& input, ImportedProfile& profile);

/// MarSurf text: [PROFILE_HEADER] with INTERVAL_LIN in mm, [PROFILE_VALUES] with index=x y z c lock in mm. Without
/// INTERVAL_LIN the positions x give the spacing.
ReadResult ReadProfileHeaderText(const ReaderInput& input, ImportedProfile& profile);

/// The same by the keys OBJECT=, NUMBER= and DateTime=, of which the first two name the measurement. A file that has no
/// values of its own names a record that is not read.
ReadResult ReadRecordText(const ReaderInput& input, ImportedProfile& profile);

}  // namespace texturon
