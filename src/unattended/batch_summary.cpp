// SPDX-License-Identifier: Apache-2.0

#include "unattended/batch_summary.h"

#include <algorithm>
#include <cmath>

#include "base/number_text.h"

namespace texturon {
namespace {

std::string Count(std::size_t count) {
  return IntegerText(static_cast<std::int64_t>(count));
}

/// Welford's update: stays accurate when the spread is small beside the mean.
void AddValue(ColumnSummary& column, double x) {
  ++column.count;
  column.minimum = column.count == 1 ? x : std::min(column.minimum, x);
  column.maximum = column.count == 1 ? x : std::max(column.maximum, x);
  const double fromFormerMean = x - column.mean;
  column.mean += fromFormerMean / static_cast<double>(column.count);
  column.squares += fromFormerMean * (x - column.mean);
}

}  // namespace

double ColumnSummary::StandardDeviation() const {
  return count < 2 ? 0.0 : std::sqrt(squares / static_cast<double>(count - 1));
}

void BatchSummary::Add(std::span<const ColumnValue> values) {
  ++analysed;
  if (columns.empty()) {
    columns.resize(values.size());
    for (std::size_t i = 0; i < values.size(); ++i) {
      columns[i].name = values[i].name;
      columns[i].unit = values[i].unit;
    }
  }
  for (std::size_t i = 0; i < values.size(); ++i) {
    columns[i].outOfTolerance += values[i].outOfTolerance ? 1 : 0;
    columns[i].undecided += values[i].undecided ? 1 : 0;
    if (values[i].value) AddValue(columns[i], *values[i].value);
  }
}

std::string SummaryFigure(double value) {
  constexpr int kFigures = 6;
  return SignificantText(value, kFigures);
}

std::string SummaryCsv(const BatchSummary& summary) {
  std::string text = "\"Files\", " + Count(summary.analysed) + "\r\n\"Failed\", " + Count(summary.failed) + "\r\n";
  if (summary.remarked > 0) text += "\"With remarks\", " + Count(summary.remarked) + "\r\n";
  text += "\r\n";
  text += "\"Parameter\", \"Count\", \"Mean\", \"Standard deviation\", \"Minimum\", \"Maximum\", \"Out of tolerance\"";
  text += summary.leavesUndecided ? ", \"Undecided\"\r\n" : "\r\n";
  for (const ColumnSummary& column : summary.columns) {
    text += "\"" + column.name + "\", " + Count(column.count);
    for (const double value : {column.mean, column.StandardDeviation(), column.minimum, column.maximum}) {
      text += column.count == 0 ? std::string(", \" \"") : ", " + ShortestText(value);
    }
    text += ", " + Count(column.outOfTolerance);
    text += summary.leavesUndecided ? ", " + Count(column.undecided) + "\r\n" : "\r\n";
  }
  return text;
}

}  // namespace texturon
