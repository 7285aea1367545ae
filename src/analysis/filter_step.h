// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "analysis/document.h"
#include "platform/prompts.h"

namespace texturon {

/// Derives primary, waviness and roughness from the form-suppressed profile over the compute range, with their ranges
/// and flags. A short-wave filter that fails is left out silently; a long-wave filter that fails makes the waviness a
/// copy of the primary profile and says so. Returns false without a record or when no primary profile is left.
bool FilterStep(Document& document, Prompts& prompts);

/// How many sections the evaluation length of the settings has and the record has room for. Nothing where the settings
/// ask for no such length, or where it fits, or where it need not be whole.
struct MissingSections {
  std::int32_t asked = 0;
  std::int32_t found = 0;
  double lengthMM = 0.0;  ///< of one

  /// A sentence.
  std::string Text(bool metric) const;
};
std::optional<MissingSections> FindMissingSections(const Document& document);

/// Primary profile less the mean line of the filter for the core, as long as the record. Nothing where that is the
/// roughness itself, or where the filter fails.
std::optional<Samples> CoreRoughness(const Document& document, Prompts& prompts);

}  // namespace texturon
