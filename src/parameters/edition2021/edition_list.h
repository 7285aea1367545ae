// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "parameters/catalogue.h"
#include "parameters/edition2021/edition_table.h"

namespace texturon {

/// Which edition's rows a document shows; 1997 for a text that names none.
enum class EditionChoice : std::uint8_t { k1997, k2021, kBoth };
EditionChoice ChosenEdition(const AnalysisSettings& settings);

/// The working list of the edition in force, with the features of the settings behind it. Values of rows that stood in
/// `former` under the same name and edition are kept.
///
/// Under 1997 it is MakeWorkingList. Under 2021 the names of the selection are those of that edition; one that begins
/// with the selection that a document starts with stands for every row of P, W and R that needs no argument, with its
/// limits and the rows behind. Under both, each name stands for the row of either edition that has it, the one of 1997
/// first, and a selection that begins so for all rows of both. Limits are those of either row, but where its unit is
/// not that of its namesake those of the row of 1997 alone.
ParameterCatalogue MakeEditionList(const AnalysisSettings& settings, const ParameterCatalogue& former = {});

/// Whether a list begins with the selection that a document starts with and leaves none of it out. Limits choose no
/// rows, and what stands behind was added by hand.
bool StandsForAll(const std::vector<ParameterSelection>& list);

/// What may be chosen of the edition in force: the rows of the settings' list and, where the edition of 2021 is shown,
/// behind each of its rows the next ones that are not in the list. Selected is what is computed.
std::vector<ParameterSelection> OfferedRows(const AnalysisSettings& settings);

/// Makes a choice among the offered rows the settings' list. All of them with limits need no more room than their
/// limits. A list holds kMostParameters rows: where there are more, those go first that are not selected, then the last
/// ones of P, of W and of R without limits. How many selected ones went.
std::size_t TakeOfferedRows(std::vector<ParameterSelection> offered, AnalysisSettings& settings);

/// Whether a name is one of the edition of 2021, with arguments or a feature too; whether one of the edition before.
bool IsOfEdition(std::string_view name);
bool IsOfEditionBefore(std::string_view name);

/// Whether both editions have a row of this name, of another unit each: a limit is of one of them.
bool HasTwoUnits(std::string_view name);

/// A row of the edition of 2021 by its name; without unit where the name is not understood.
ParameterDef MakeEditionRow(std::string_view name);

/// True for a selected row that the filter for the core is needed for.
bool NeedsCoreProfile(const ParameterCatalogue& catalogue);

/// Computes a row of the edition of 2021 on the profile of its letter, or on that of the core where it is of that.
/// `name` is read already and has a row or a feature.
RowResult ComputeEditionRow(const EditionName& name, const EditionInput& input);

}  // namespace texturon
