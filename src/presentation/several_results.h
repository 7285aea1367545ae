// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "analysis/acceptance.h"
#include "analysis/document.h"
#include "analysis/value_statistics.h"
#include "parameters/catalogue.h"
#include "presentation/requirement_texts.h"

namespace texturon {

/// A row over several profiles. Texts are Windows-1252.
struct SeveralRow {
  ParameterDef row;           ///< its value is of no meaning here
  std::string title;          ///< as tables show it
  std::string label;          ///< the setting behind the value; begins with three blanks, empty for most rows
  ValueSeries values;         ///< metric, one a profile; a ratio may be infinite or undefined
  ValueSeries expanded = {};  ///< their expanded uncertainties, where they were tried
  ValueStatistics statistics;
  std::optional<AcceptanceResult> acceptance;

  /// A figure of this row as tables show it, in its unit; empty for none.
  std::string Shown(const std::optional<double>& value, bool metric) const;
};

/// The results of several profiles side by side, in the order in which they are added.
class SeveralResults {
public:
  /// The selected rows of an analysed document. Rows are told by their titles; one that only some documents have is
  /// without value in the others.
  void Add(const Document& document);
  /// A profile that gave no result: every row is without value there.
  void AddFailed();

  std::size_t Count() const { return count_; }
  /// Verdicts by an acceptance rule and one of DecisionNumber.
  std::vector<SeveralRow> Rows(AcceptanceRule rule, std::int32_t decisionRule = kDecideSimple) const;
  /// What the drawing in the settings asks for, with the values of all profiles; each goes by its own rule.
  const std::vector<JudgedRequirement>& Requirements() const { return requirements_; }

private:
  void AddRequirements(const Document& document);

  std::size_t count_ = 0;
  std::vector<JudgedRequirement> requirements_;
  std::vector<SeveralRow> rows_;
};

/// The rows of the statistics over several profiles as texts: parameter, number, mean, standard deviation, least,
/// greatest, unit, verdict. Windows-1252.
std::vector<std::vector<std::string>> StatisticsCells(std::span<const SeveralRow> rows, bool metric);
/// Their titles.
std::vector<std::string> StatisticsTitles();

}  // namespace texturon
