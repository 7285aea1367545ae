// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "analysis/decision.h"
#include "analysis/document.h"
#include "analysis/indication.h"
#include "analysis/value_statistics.h"

namespace texturon {

/// A requirement with the values that it is held against.
struct JudgedRequirement {
  Requirement requirement;
  std::optional<ValueSeries> values;          ///< none: nothing was measured
  ValueSeries expanded = {};                  ///< their expanded uncertainties, where they were tried
  std::int32_t decisionRule = kDecideSimple;  ///< of DecisionNumber

  /// Undecided where something is missing or nothing was measured.
  AcceptanceResult Verdict() const;
};

/// What a requirement asks for and comes to, a title and a text a line; Windows-1252.
std::vector<std::pair<std::string, std::string>> MeaningOf(const JudgedRequirement& judged);

/// Where a text is not understood, and why: a sentence.
std::string IndicationFault(const IndicationResult& read);

/// The requirements of the document's settings with the values of its rows, where they were computed.
std::vector<JudgedRequirement> RequirementsOf(const Document& document);

/// The expanded uncertainty that trials have found of a row of the document's catalogue; nothing where they have none.
std::optional<double> ExpandedOf(const Document& document, const ParameterDef* row);

/// One line of a report: the value with its unit, of several ones how many and the one that is nearest to the limit or
/// farthest beyond it; the verdict and what decided.
std::string RequirementVerdict(const Document& document, const JudgedRequirement& judged);

}  // namespace texturon
