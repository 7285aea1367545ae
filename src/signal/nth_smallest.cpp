// SPDX-License-Identifier: Apache-2.0

#include "signal/nth_smallest.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <memory>
#include <optional>

#include "base/four_doubles.h"
#include "base/multiversion.h"

namespace texturon {
namespace {

constexpr std::size_t kMostSampled = 4096;
constexpr std::size_t kLong = 4096;

/// The value at a rank and the one before it; that of the first is itself.
struct Neighbours {
  double before = 0.0;
  double value = 0.0;
};

Neighbours Select(std::span<double> values, std::size_t rank) {
  const auto place = values.begin() + static_cast<std::ptrdiff_t>(rank);
  std::nth_element(values.begin(), place, values.end());
  return {rank == 0 ? *place : *std::max_element(values.begin(), place), *place};
}

/// What lies between two values, and below them.
struct Counts {
  std::size_t between = 0;
  std::size_t below = 0;
};

/// Puts those between into `taken`. Few are: stretches without any are only counted.
TEXTURON_MULTIVERSION
Counts TakeBetween(std::span<const double> values, double low, double high, double* taken) {
  constexpr std::size_t kStretch = 16;
  const double above = std::nextafter(high, std::numeric_limits<double>::infinity());
  double allBelow = 0.0;
  Counts counts;
  std::size_t i = 0;
  for (; i + kStretch <= values.size(); i += kStretch) {
    const double* const stretch = values.data() + i;
    FourDoubles lanesBelow = {}, lanesUpTo = {};
    for (std::size_t k = 0; k < kStretch; k += 4) {
      FourDoubles four;
      LoadFour(stretch + k, four);
      CountBelow(lanesBelow, four, low);
      CountBelow(lanesUpTo, four, above);
    }
    double lanes[4];
    StoreFour(lanes, lanesBelow);
    const double below = (lanes[0] + lanes[1]) + (lanes[2] + lanes[3]);
    StoreFour(lanes, lanesUpTo);
    const double upTo = (lanes[0] + lanes[1]) + (lanes[2] + lanes[3]);
    allBelow += below;
    if (below == upTo) continue;
    for (std::size_t k = 0; k < kStretch; ++k) {
      taken[counts.between] = stretch[k];
      counts.between += static_cast<std::size_t>(stretch[k] >= low) & static_cast<std::size_t>(stretch[k] <= high);
    }
  }
  counts.below = static_cast<std::size_t>(allBelow);
  for (; i < values.size(); ++i) {
    taken[counts.between] = values[i];
    counts.between += static_cast<std::size_t>(values[i] >= low) & static_cast<std::size_t>(values[i] <= high);
    counts.below += static_cast<std::size_t>(values[i] < low);
  }
  return counts;
}

/// Nothing where the value or the one before it does not lie between the two.
std::optional<Neighbours> SelectBetween(std::span<const double> values, std::size_t rank, double low, double high) {
  const auto between = std::make_unique_for_overwrite<double[]>(values.size());
  const auto [count, below] = TakeBetween(values, low, high, between.get());
  if (rank < below + std::min<std::size_t>(rank, 1) || rank >= below + count) return std::nullopt;
  return Select({between.get(), count}, rank - below);
}

Neighbours SelectOfMany(std::span<double> values, std::size_t rank) {
  const std::size_t n = values.size();
  std::size_t sampled = 256;
  std::size_t aside = 32;  // places in the sample: four standard deviations of where the rank falls
  while (sampled < kMostSampled && 32 * sampled <= n) {
    sampled *= 4;
    aside *= 2;
  }
  std::array<double, kMostSampled> sample;
  const std::size_t step = n / sampled;
  for (std::size_t k = 0; k < sampled; ++k) sample[k] = values[k * step];
  std::sort(sample.begin(), sample.begin() + static_cast<std::ptrdiff_t>(sampled));
  const auto place =
      static_cast<std::size_t>(static_cast<double>(rank) / static_cast<double>(n) * static_cast<double>(sampled));
  const double low = sample[place - std::min(place, aside)];
  const double high = sample[std::min(place + aside, sampled - 1)];
  const std::optional<Neighbours> found = SelectBetween(values, rank, low, high);
  return found ? *found : Select(values, rank);
}

Neighbours At(std::span<double> values, std::size_t rank) {
  return values.size() < kLong ? Select(values, rank) : SelectOfMany(values, rank);
}

double MiddleOf(const Neighbours& middle, std::size_t n) {
  return n % 2 == 1 ? middle.value : 0.5 * (middle.before + middle.value);
}

}  // namespace

double NthSmallest(std::span<double> values, std::size_t rank) {
  return At(values, rank).value;
}

double Median(std::span<double> values) {
  return MiddleOf(At(values, values.size() / 2), values.size());
}

double Median(std::span<double> values, double low, double high) {
  const std::optional<Neighbours> middle = SelectBetween(values, values.size() / 2, low, high);
  return middle ? MiddleOf(*middle, values.size()) : Median(values);
}

}  // namespace texturon
