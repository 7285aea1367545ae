// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "formats/profile_reader.h"

namespace texturon {

/// ".CSV", by its first lines: the native format behind its magic word; a roughness tester's export (first column
/// comment, date, time, conditions and results, second column number of points and heights in um; the spacing is asked
/// for); a stylus profiler's export ("Scan Parameters" with radius and length, "Scan Data" with positions and heights);
/// any other table of numbers.
ReadResult ReadCommaSeparated(const ReaderInput& input, ImportedProfile& profile);

}  // namespace texturon
