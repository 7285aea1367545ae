// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <string_view>

#include "formats/profile_reader.h"

namespace texturon {

// The results that instruments write beside their profiles. What is no finite number, has no name or comes after the
// thousandth is left out.

void AddInstrumentValue(ImportedProfile& profile, std::string_view name, double value, std::string_view unit);

/// "Ra 3.01 um", the unit with or without a blank before it. Nothing where the text is not of that form or does not
/// begin with the name of a parameter (P, R, W or M and up to seven letters, digits and signs).
void AddInstrumentValue(ImportedProfile& profile, std::string_view text);

}  // namespace texturon
