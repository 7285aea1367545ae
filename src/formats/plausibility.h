// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <string>
#include <vector>

#include "formats/profile_reader.h"

namespace texturon {

/// What a profile of a surface hardly ever shows and a wrong unit, scale or spacing often does: a height range above 10
/// mm or of 0, a mean slope above 45 degrees, a height that repeats the point's number. Sentences for people.
std::vector<std::string> ImplausibleSigns(const ImportedProfile& profile);

}  // namespace texturon
