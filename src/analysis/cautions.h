// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <string>
#include <vector>

#include "analysis/document.h"

namespace texturon {

/// What a verdict on results must be read with.
struct Caution {
  std::string sentence;  ///< Windows-1252
  const char* brief;     ///< put behind a verdict: ", short profile"
};

/// That the form asked for is still in the profile, that less than one sampling length was evaluated. Empty where there
/// is nothing to say.
std::vector<Caution> CautionsOf(const Document& document);

}  // namespace texturon
