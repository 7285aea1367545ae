// SPDX-License-Identifier: Apache-2.0

#include "signal/nth_smallest.h"

#include <algorithm>
#include <array>
#include <memory>

namespace texturon {
namespace {

constexpr std::size_t kSampled = 4096;
constexpr std::size_t kAside = 128;  // places in the sample: four standard deviations of where the rank falls
constexpr std::size_t kLong = 8 * kSampled;

double Select(std::span<double> values, std::size_t rank) {
  const auto place = values.begin() + static_cast<std::ptrdiff_t>(rank);
  std::nth_element(values.begin(), place, values.end());
  return *place;
}

}  // namespace

double NthSmallest(std::span<double> values, std::size_t rank) {
  const std::size_t n = values.size();
  if (n < kLong) return Select(values, rank);
  std::array<double, kSampled> sample;
  const std::size_t step = n / kSampled;
  for (std::size_t k = 0; k < kSampled; ++k) sample[k] = values[k * step];
  std::sort(sample.begin(), sample.end());
  const auto place = static_cast<std::size_t>(static_cast<double>(rank) / static_cast<double>(n) * kSampled);
  const double low = sample[place - std::min(place, kAside)];
  const double high = sample[std::min(place + kAside, kSampled - 1)];

  const auto between = std::make_unique_for_overwrite<double[]>(n);
  std::size_t count = 0;
  std::size_t below = 0;
  for (const double value : values) {
    between[count] = value;
    count += static_cast<std::size_t>(value >= low) & static_cast<std::size_t>(value <= high);
    below += static_cast<std::size_t>(value < low);
  }
  if (rank < below || rank >= below + count) return Select(values, rank);
  return Select({between.get(), count}, rank - below);
}

}  // namespace texturon
