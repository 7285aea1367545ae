// SPDX-License-Identifier: Apache-2.0

#include "analysis/value_statistics.h"

#include <algorithm>
#include <cmath>

namespace texturon {
namespace {

constexpr double kSigmas = 3.0;

std::vector<double> FiniteOf(std::span<const std::optional<double>> values) {
  std::vector<double> finite;
  for (const std::optional<double>& value : values) {
    if (value && std::isfinite(*value)) finite.push_back(*value);
  }
  return finite;
}

}  // namespace

ValueStatistics StatisticsOf(std::span<const std::optional<double>> values) {
  const std::vector<double> finite = FiniteOf(values);
  ValueStatistics statistics{.count = finite.size()};
  if (finite.empty()) return statistics;
  const auto [least, greatest] = std::minmax_element(finite.begin(), finite.end());
  statistics.least = *least;
  statistics.greatest = *greatest;
  // About the first value, so that a small spread beside a large mean is not lost.
  const auto n = static_cast<double>(finite.size());
  double sum = 0.0;
  for (const double value : finite) sum += value - finite.front();
  const double mean = finite.front() + sum / n;
  statistics.mean = mean;
  if (finite.size() < 2) return statistics;
  double squares = 0.0;
  for (const double value : finite) squares += (value - mean) * (value - mean);
  statistics.standardDeviation = std::sqrt(squares / (n - 1.0));
  return statistics;
}

std::vector<HistogramClass> HistogramOf(std::span<const std::optional<double>> values) {
  const std::vector<double> finite = FiniteOf(values);
  if (finite.empty()) return {};
  const auto [least, greatest] = std::minmax_element(finite.begin(), finite.end());
  const double from = *least;
  const double width = *greatest - from;
  if (!(width > 0.0)) return {{from, from, finite.size()}};
  const auto wanted = static_cast<std::size_t>(std::ceil(std::sqrt(static_cast<double>(finite.size()))));
  std::vector<HistogramClass> classes(std::min(wanted, kMostHistogramClasses));
  const auto count = static_cast<double>(classes.size());
  for (std::size_t k = 0; k < classes.size(); ++k) {
    classes[k].from = k == 0 ? from : classes[k - 1].to;
    classes[k].to = k + 1 == classes.size() ? *greatest : from + width * (static_cast<double>(k + 1) / count);
  }
  for (const double value : finite) {
    const auto holder =
        std::find_if(classes.begin(), classes.end() - 1, [value](const HistogramClass& row) { return value < row.to; });
    ++holder->count;
  }
  return classes;
}

ProcessCapability CapabilityOf(const ValueStatistics& statistics, std::optional<double> lowerLimit,
                               std::optional<double> upperLimit) {
  ProcessCapability process;
  if (!statistics.standardDeviation) return process;
  const double mean = *statistics.mean;
  const double reach = kSigmas * *statistics.standardDeviation;
  process.lowerLine = mean - reach;
  process.upperLine = mean + reach;
  if (!(reach > 0.0)) return process;
  if (lowerLimit && upperLimit) process.cp = (*upperLimit - *lowerLimit) / (2.0 * reach);
  if (upperLimit) process.cpk = (*upperLimit - mean) / reach;
  if (lowerLimit) {
    const double below = (mean - *lowerLimit) / reach;
    process.cpk = process.cpk ? std::min(*process.cpk, below) : below;
  }
  return process;
}

}  // namespace texturon
