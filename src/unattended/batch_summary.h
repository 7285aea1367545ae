// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <vector>

#include "analysis/file_analysis.h"

namespace texturon {

/// Statistics of one column over the files of a run.
struct ColumnSummary {
  std::string name;
  std::string unit;
  std::size_t count = 0;  ///< files for which it was computed
  std::size_t outOfTolerance = 0;
  std::size_t undecided = 0;
  double mean = 0.0;
  double squares = 0.0;  ///< sum of squared deviations from the mean
  double minimum = 0.0;
  double maximum = 0.0;

  /// With n - 1; 0 for fewer than two files.
  double StandardDeviation() const;
};

/// What a run over many files came to. Files are added in the order of their rows, so that the figures do not depend on
/// the number of threads.
struct BatchSummary {
  std::size_t analysed = 0;
  std::size_t failed = 0;
  std::size_t remarked = 0;      ///< analysed, with remarks of the reader or cautions
  bool leavesUndecided = false;  ///< the decision rule may; else nobody asks how many are
  std::vector<ColumnSummary> columns;

  void Add(std::span<const ColumnValue> values);
};

/// A figure of the statistics for people: some rows are thousands, others millionths.
std::string SummaryFigure(double value);

/// A table for spreadsheets, Windows-1252 with CR LF line ends: "Files" and "Failed", then a line a column with count,
/// mean, standard deviation, minimum, maximum, number out of tolerance and, where the rule leaves some, undecided.
std::string SummaryCsv(const BatchSummary& summary);

}  // namespace texturon
