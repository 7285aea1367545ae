// SPDX-License-Identifier: Apache-2.0

#include "signal/nth_smallest.h"

#include <algorithm>
#include <array>
#include <memory>
#include <optional>

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

/// Nothing where the value or the one before it does not lie between the two.
std::optional<Neighbours> SelectBetween(std::span<const double> values, std::size_t rank, double low, double high) {
  const auto between = std::make_unique_for_overwrite<double[]>(values.size());
  std::size_t count = 0;
  std::size_t below = 0;
  for (const double value : values) {
    between[count] = value;
    count += static_cast<std::size_t>(value >= low) & static_cast<std::size_t>(value <= high);
    below += static_cast<std::size_t>(value < low);
  }
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
