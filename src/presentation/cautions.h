// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <string>

#include "analysis/document.h"

namespace texturon {

/// What a verdict on these results must be read with, as a sentence: that less than one sampling length was evaluated.
/// Empty where there is nothing to say. Windows-1252.
std::string CautionOf(const Document& document);

}  // namespace texturon
