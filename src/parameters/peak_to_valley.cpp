// SPDX-License-Identifier: Apache-2.0

#include "parameters/peak_to_valley.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <limits>

namespace texturon {
namespace {

/// The Size largest values seen, largest first.
template <std::size_t Size>
class LargestValues {
public:
  void Add(double value) {
    if (count_ == Size && !(value > values_[Size - 1])) return;
    std::size_t i = count_ < Size ? count_++ : Size - 1;
    for (; i > 0 && value > values_[i - 1]; --i) values_[i] = values_[i - 1];
    values_[i] = value;
  }
  std::size_t Count() const { return count_; }
  double operator[](std::size_t rank) const { return values_[rank]; }

private:
  std::array<double, Size> values_{};
  std::size_t count_ = 0;
};

const std::vector<HeightExtremes>& CutoffSegments(const RowInput& row) {
  return row.profile.SegmentExtremes(row.profile.RoughnessCutoffMM());
}

NoValue NotDivided(const RowInput& row) {
  return row.profile.WhyNotDivided(row.profile.RoughnessCutoffMM());
}

std::optional<SamplingLengths> WholeSamplingLengths(const RowInput& row) {
  return DivideIntoSamplingLengths(row.profile.Heights().size(), row.profile.SpacingMM(),
                                   row.profile.RoughnessCutoffMM(), ShortProfile::kFails);
}

/// Value of one sampling length for the ten-point height; empty without a peak or without a valley.
std::optional<double> TenPointHeightOf(std::span<const double> segment) {
  LargestValues<5> peaks;
  LargestValues<5> valleys;
  for (std::size_t i = 0; i < segment.size();) {
    const double sign = segment[i] > 0.0 ? 1.0 : -1.0;
    double extent = 0.0;  // stays 0 over a run of points on the mean line, which is neither peak nor valley
    for (; i < segment.size() && segment[i] * sign > 0.0; ++i) extent = std::max(extent, segment[i] * sign);
    if (extent > 0.0) {
      (sign > 0.0 ? peaks : valleys).Add(extent);
    } else {
      ++i;
    }
  }
  const std::size_t pairs = std::min(peaks.Count(), valleys.Count());
  if (pairs == 0) return std::nullopt;
  double sum = 0.0;
  for (std::size_t rank = 0; rank < pairs; ++rank) sum += peaks[rank] + valleys[rank];
  return sum / static_cast<double>(pairs);
}

/// Value of the sampling length [first, end) for the third-point height; empty without three peaks and three valleys.
std::optional<double> ThirdPointHeightOf(std::span<const double> z, std::size_t first, std::size_t end) {
  LargestValues<3> peaks;
  LargestValues<3> valleys;
  double counts = -std::numeric_limits<double>::infinity();  // a peak must be above it to count
  double countsBelow = std::numeric_limits<double>::infinity();
  const std::size_t last = std::min(end, z.size() - 1);
  for (std::size_t i = std::max<std::size_t>(first, 1); i < last; ++i) {
    // The test that nearly every point fails comes first.
    if (z[i] > counts && z[i] > z[i - 1] && z[i] > z[i + 1]) {
      peaks.Add(z[i]);
      if (peaks.Count() == 3) counts = peaks[2];
    }
    if (z[i] < countsBelow && z[i] < z[i - 1] && z[i] < z[i + 1]) {
      valleys.Add(-z[i]);
      if (valleys.Count() == 3) countsBelow = -valleys[2];
    }
  }
  if (peaks.Count() < 3 || valleys.Count() < 3) return std::nullopt;
  return peaks[2] + valleys[2];
}

}  // namespace

std::optional<double> MeanPeakToValley(std::span<const HeightExtremes> segments) {
  if (segments.empty()) return std::nullopt;
  double sum = 0.0;
  for (const HeightExtremes& segment : segments) sum += segment.highest - segment.lowest;
  return sum / static_cast<double>(segments.size());
}

RowResult MeanPeakToValleyHeight(const RowInput& row) {
  const auto mean = MeanPeakToValley(CutoffSegments(row));
  if (!mean) return NotDivided(row);
  return *mean;
}

RowResult GreatestPeakToValleyHeight(const RowInput& row) {
  const auto& segments = CutoffSegments(row);
  if (segments.empty()) return NotDivided(row);
  double greatest = std::numeric_limits<double>::lowest();
  for (const HeightExtremes& segment : segments) greatest = std::max(greatest, segment.highest - segment.lowest);
  return greatest;
}

RowResult MeanPeakHeight(const RowInput& row) {
  const auto& segments = CutoffSegments(row);
  if (segments.empty()) return NotDivided(row);
  double sum = 0.0;
  for (const HeightExtremes& segment : segments) sum += segment.highest;
  return sum / static_cast<double>(segments.size());
}

RowResult MeanValleyDepth(const RowInput& row) {
  const auto& segments = CutoffSegments(row);
  if (segments.empty()) return NotDivided(row);
  double sum = 0.0;
  for (const HeightExtremes& segment : segments) sum += segment.lowest;
  return -(sum / static_cast<double>(segments.size()));
}

RowResult TenPointHeight(const RowInput& row) {
  const auto lengths = WholeSamplingLengths(row);
  if (!lengths) return NotDivided(row);
  double sum = 0.0;
  std::size_t counted = 0;
  for (std::size_t k = 0; k < lengths->count; ++k) {
    const auto value = TenPointHeightOf(row.profile.Heights().subspan(k * lengths->pointsEach, lengths->pointsEach));
    if (!value) continue;
    sum += *value;
    ++counted;
  }
  return counted == 0 ? 0.0 : sum / static_cast<double>(counted);
}

namespace {

struct ThirdPoint {
  RowResult height;
};

RowResult MeanThirdPointHeight(const RowInput& row) {
  const auto lengths = WholeSamplingLengths(row);
  if (!lengths) return NotDivided(row);
  double sum = 0.0;
  std::size_t counted = 0;
  for (std::size_t k = 0; k < lengths->count; ++k) {
    const std::size_t first = k * lengths->pointsEach;
    const auto value = ThirdPointHeightOf(row.profile.Heights(), first, first + lengths->pointsEach);
    if (!value) continue;
    sum += *value;
    ++counted;
  }
  if (counted == 0) return NoValue{Why::kNoThirdPoint};
  return sum / static_cast<double>(counted);
}

}  // namespace

RowResult ThirdPointHeight(const RowInput& row) {
  return row.profile.Cached<ThirdPoint>([&row] { return ThirdPoint{MeanThirdPointHeight(row)}; }).height;
}

RowResult MeanPeakToThirdPointRatio(const RowInput& row) {
  constexpr double kLeastDenominatorUM = 1e-10;
  const auto thirdPoint = ThirdPointHeight(row);
  if (!thirdPoint) return thirdPoint;
  if (*thirdPoint < kLeastDenominatorUM) return NoValue{Why::kZeroDivisor};
  const auto meanPeak = MeanPeakHeight(row);
  if (!meanPeak) return meanPeak;
  return *meanPeak / *thirdPoint;
}

}  // namespace texturon
