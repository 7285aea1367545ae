// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

namespace texturon {

/// Values of one parameter over several profiles, in their order; nothing where there is none.
using ValueSeries = std::vector<std::optional<double>>;

/// What the finite ones of several values come to.
struct ValueStatistics {
  std::size_t count = 0;
  std::optional<double> mean;               ///< needs one value
  std::optional<double> standardDeviation;  ///< with n - 1; needs two
  double least = 0.0;                       ///< of no meaning without a value
  double greatest = 0.0;

  std::optional<double> Range() const { return count > 0 ? std::optional(greatest - least) : std::nullopt; }
};
ValueStatistics StatisticsOf(std::span<const std::optional<double>> values);

/// A class of a histogram: values from `from` on and below `to`; the last one has its end as well.
struct HistogramClass {
  double from = 0.0;
  double to = 0.0;
  std::size_t count = 0;
};

/// Classes of equal width from the least to the greatest finite value, the root of their number of them, rounded up, at
/// most kMostHistogramClasses. Equal values are one class, no values none.
inline constexpr std::size_t kMostHistogramClasses = 30;
std::vector<HistogramClass> HistogramOf(std::span<const std::optional<double>> values);

/// How a process that makes such values keeps within its limits. The deviation s is that of all values (n - 1), drift
/// between them included.
struct ProcessCapability {
  std::optional<double> lowerLine;  ///< mean - 3 s
  std::optional<double> upperLine;  ///< mean + 3 s
  std::optional<double> cp;         ///< (upper - lower limit) / 6 s: needs both limits
  std::optional<double> cpk;        ///< distance of the mean from the nearer limit / 3 s; below 0 beyond one
};

/// Lines and indices are missing with fewer than two values, indices also where all values are equal. A limit that is
/// missing leaves the index to the other.
ProcessCapability CapabilityOf(const ValueStatistics& statistics, std::optional<double> lowerLimit,
                               std::optional<double> upperLimit);

}  // namespace texturon
