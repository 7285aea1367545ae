// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "parameters/catalogue_table.h"
#include "parameters/no_value.h"
#include "settings/analysis_settings.h"

namespace texturon {

/// One row of the working list: a name from the settings, what is known of it, and its last result.
struct ParameterDef {
  bool selected = true;  ///< computed and shown
  bool valid = false;    ///< the last pass computed it
  Tolerance tolerance;   ///< limits in the metric unit
  std::string name;
  Quantity quantity;
  double value = 0.0;  ///< metric; 0 after a failed computation, untouched when the row was skipped
  NoValue reason;      ///< why it is not valid
  ValueFormat format;
  Edition edition = Edition::k1997;
  std::string_view difference = {};  ///< beside the row of the same name of the edition before: why they differ

  /// The name with its edition where that is not the one of before: "Rp/2021". No commas, so that files of columns can
  /// hold it.
  std::string NameWithEdition() const;
};

/// The working list that the driver walks and that tables, reports and exports show.
struct ParameterCatalogue {
  std::vector<ParameterDef> rows;
};

/// The selection that a document starts with: every master row, selected, without tolerances.
std::vector<ParameterSelection> DefaultSelection();

/// Working list for a selection, in its order and with its names (cut at kMostParameters). A name that the master list
/// does not have takes unit, factor and format of the master row with the same suffix, in any case; without one it is
/// dimensionless. Values of rows that stood in `former` under the same name are kept.
ParameterCatalogue MakeWorkingList(std::span<const ParameterSelection> selection,
                                   const ParameterCatalogue& former = {});

/// Master row of this name, in any case.
const MasterRow* FindOwnMasterRow(std::string_view name);
/// Master row for a name: its own, else that of the same suffix. Case is ignored.
const MasterRow* FindMasterRow(std::string_view name);

/// A unit as it is printed: the doubled per-cent sign once.
std::string PrintedUnit(std::string_view unit);

/// The value of a row as tables show it, with three significant digits at least; "inf" where a ratio has no finite
/// value. Empty where it was not computed.
std::string ShownValue(const ParameterDef& row, bool metric);

/// Why a row shows no number, as ReasonText puts it: not computed, or a ratio that is not finite. Empty where it does.
std::string ReasonOf(const ParameterDef& row, bool metric);

/// The limits that a value is held against, in metric units: none where the row is not toleranced. Without bilateral
/// limits only the upper one counts, and 0.0 is no limit; with both, two zeros are none.
struct LimitsInForce {
  std::optional<double> lower{};
  std::optional<double> upper{};
};
LimitsInForce LimitsOf(const Tolerance& tolerance);

/// Whether a value lies within these limits; an undefined one (NaN) is beyond every limit. What that means for a row is
/// said by the analysis, which knows the rule.
bool IsWithin(double value, const LimitsInForce& limits);

// Names as test plans and result files write them. Case counts; a name that is not mapped stands for itself.
std::string ExternalToCatalogueName(std::string_view external);
std::string CatalogueToExternalName(std::string_view name);
/// Family of a row. Motif rows are known in any case, core-roughness rows by their exact name alone.
ParameterFamily FamilyOfRow(std::string_view name);
/// True for the derived core-roughness rows: Rpk+k, Rpk/k, Rk+vk, Rvk/k, Rmr1, Rmr2, Rpk*, Rvk*.
bool IsRkFamily(std::string_view name);

}  // namespace texturon
