// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "analysis/document.h"
#include "platform/prompts.h"

namespace texturon {

/// Derives primary, waviness and roughness from the form-suppressed profile over the compute range, with their ranges
/// and flags. A short-wave filter that fails is left out silently; a long-wave filter that fails makes the waviness a
/// copy of the primary profile and says so. Returns false without a record or when no primary profile is left.
bool FilterStep(Document& document, Prompts& prompts);

}  // namespace texturon
