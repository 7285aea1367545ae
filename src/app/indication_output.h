// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <string>
#include <vector>

#include "analysis/indication.h"
#include "base/json_writer.h"
#include "presentation/requirement_texts.h"

namespace texturon {

/// Reads an indication in UTF-8. Throws UsageError with a sentence that points at the place where it is not understood.
std::vector<Requirement> RequirementsOf(const std::string& text, const ClassTable& classes);

/// The member "requirements": what each asks for, and with values their verdict and what decided.
void WriteRequirements(JsonWriter& json, const std::vector<JudgedRequirement>& requirements);

/// The same for people, UTF-8.
std::string RequirementsText(const std::vector<JudgedRequirement>& requirements);

}  // namespace texturon
