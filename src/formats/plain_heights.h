// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "formats/profile_reader.h"

namespace texturon {

// Texts that hold heights and next to nothing else. What they do not state is asked for, or assumed with a warning.

/// Heights in um, every one but perhaps the last with a comma behind it. The spacing is asked for.
ReadResult ReadCommaList(const ReaderInput& input, ImportedProfile& profile);

/// Line 1 the spacing, then heights one a line, all in um. Such a file differs from a list of heights only in line 1:
/// it must be printed with another number of decimals than all heights, or stand far off them. A caller who gives a
/// spacing says that the file has none.
ReadResult ReadPlainSoftgauge(const ReaderInput& input, ImportedProfile& profile);

/// Four lines of anything, then number of points, spacing and heights between any white space. Units are not stated: a
/// spacing below 0.02 counts as mm, else as um, heights as um, with a warning.
ReadResult ReadFourLineHeader(const ReaderInput& input, ImportedProfile& profile);

/// Text with an entry RES: the longest run of lines of integers are heights in steps of its value (um). The spacing is
/// asked for.
ReadResult ReadResolutionText(const ReaderInput& input, ImportedProfile& profile);

}  // namespace texturon
