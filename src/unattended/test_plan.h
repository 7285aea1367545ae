// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "analysis/document.h"
#include "unattended/plan_keys.h"

namespace texturon {

// The test plan of a headless run: an INI file with a vocabulary of its own, in sections of any name. docs/test-plan.md
// describes it.

/// The passes of a run. A pass sees its own family's parameters only.
enum class Family { kStandard = 0, kWaviness = 1, kMotif = 2, kRk = 3 };

/// The list of the results file that a parameter belongs to, in the order of the file.
enum class ResultList { kPrimary, kRoughness, kWaviness, kRk, kMotif };
inline constexpr std::size_t kResultLists = 5;

/// What a planned parameter reads of the analysis.
enum class PlannedSource { kCatalogue, kPrimaryRatio, kRoughnessRatio, kPrimaryHtp, kRoughnessHtp, kNone };

/// One parameter of a pass.
struct PlannedParameter {
  std::string name;  ///< as the results file writes it
  ResultList list = ResultList::kPrimary;
  PlannedSource source = PlannedSource::kCatalogue;
  std::size_t index = 0;  ///< row of the working list or of the ten
  Tolerance tolerance;
};

/// What a plan says of one pass.
struct PassPlan {
  std::vector<PlannedParameter> parameters;
  int detected = 0;  ///< parameters that the pass can compute
  /// What its keys were read as where they do not say what they ought to, for people: "Ra_Max=0,8 is read as 0".
  std::vector<std::string> remarks;
};

/// Family of a parameter by its name in the catalogue.
Family FamilyOf(std::string_view catalogueName);

/// Reads the settings of one family from a plan into the document: filter, cut-offs, form, region and working list.
/// Warnings and the number of parameters found go to `log`. Nothing for a plan without a section.
std::optional<PassPlan> ReadTestPlan(PlanKeys& plan, Family family, Document& document,
                                     const std::function<void(std::string_view)>& log);

}  // namespace texturon
