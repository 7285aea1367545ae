// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <string_view>

#include "formats/profile_reader.h"

namespace texturon {

// The results that instruments write beside their profiles. What is no finite number, has no name, stands there
// already or comes after the thousandth is left out.

void AddInstrumentValue(ImportedProfile& profile, std::string_view name, double value, std::string_view unit);

/// "Ra 3.01 um", the unit with or without a blank before it. Nothing where the text is not of that form or does not
/// begin with the name of a parameter (P, R, W or M and up to seven letters, digits and signs).
void AddInstrumentValue(ImportedProfile& profile, std::string_view text);

/// A result in a sheet of conditions, which are pairs of the same form ("Ra", "0.52um"; "Speed", "0.3mm/s"): nothing
/// where the label is no name of a texture parameter or what stands behind the number is neither empty, % nor a unit
/// of length.
void AddInstrumentPair(ImportedProfile& profile, std::string_view label, std::string_view value);

}  // namespace texturon
