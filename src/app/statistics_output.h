// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

#include "app/uncertainty_output.h"
#include "presentation/several_results.h"

namespace texturon {

/// A table for people, UTF-8: the files by number, then a line a row with a column a file, mean, standard deviation,
/// range and verdict.
std::string StatisticsTable(const std::vector<SeveralRow>& rows, const std::vector<std::string>& files, bool metric);

/// Lines below those of the files for spreadsheets: mean, standard deviation, range, verdict.
std::string StatisticsCsv(const std::vector<SeveralRow>& rows, bool metric);

/// {"statistics": [...]} on one line; a value that is not there, or not finite, is null.
/// With uncertainties of the means, where there are some: "uncertainty": {"standard", "expanded", "type_a", "type_b"}.
void WriteStatisticsJson(std::ostream& out, const std::vector<SeveralRow>& rows,
                         const std::vector<std::optional<MeanUncertainty>>& means = {});

/// A table of those for people; empty without them.
std::string MeanUncertaintyTable(const std::vector<SeveralRow>& rows,
                                 const std::vector<std::optional<MeanUncertainty>>& means, bool metric);

}  // namespace texturon
