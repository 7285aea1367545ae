// SPDX-License-Identifier: Apache-2.0

#include "signal/nth_smallest.h"

#include <algorithm>
#include <array>
#include <memory>

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

  const auto between = std::make_unique_for_overwrite<double[]>(n);
  std::size_t count = 0;
  std::size_t below = 0;
  for (const double value : values) {
    between[count] = value;
    count += static_cast<std::size_t>(value >= low) & static_cast<std::size_t>(value <= high);
    below += static_cast<std::size_t>(value < low);
  }
  // The one before, too, must be among them.
  if (rank < below + std::min<std::size_t>(rank, 1) || rank >= below + count) return Select(values, rank);
  return Select({between.get(), count}, rank - below);
}

Neighbours At(std::span<double> values, std::size_t rank) {
  return values.size() < kLong ? Select(values, rank) : SelectOfMany(values, rank);
}

}  // namespace

double NthSmallest(std::span<double> values, std::size_t rank) {
  return At(values, rank).value;
}

double Median(std::span<double> values) {
  const Neighbours middle = At(values, values.size() / 2);
  return values.size() % 2 == 1 ? middle.value : 0.5 * (middle.before + middle.value);
}

}  // namespace texturon
