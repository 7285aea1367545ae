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
constexpr std::size_t kStretch = 16;
constexpr std::size_t kFew = 2048;

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

/// Puts those between into `taken`, in any order. Few are: stretches without any are only counted.
TEXTURON_MULTIVERSION
Counts TakeBetween(std::span<const double> values, double low, double high, double* taken) {
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
    double below[4], upTo[4];
    StoreFour(below, lanesBelow);
    StoreFour(upTo, lanesUpTo);
    const double isBelow = (below[0] + below[1]) + (below[2] + below[3]);
    allBelow += isBelow;
    if (isBelow == (upTo[0] + upTo[1]) + (upTo[2] + upTo[3])) continue;
    for (std::size_t lane = 0; lane < 4; ++lane) {
      if (below[lane] == upTo[lane]) continue;
      for (std::size_t k = lane; k < kStretch; k += 4) {
        taken[counts.between] = stretch[k];
        counts.between += static_cast<std::size_t>(stretch[k] >= low) & static_cast<std::size_t>(stretch[k] <= high);
      }
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

/// The same of every fourth stretch of values, or of every one of few; how many they are.
struct SomeCounts : Counts {
  std::size_t counted = 0;
};
TEXTURON_MULTIVERSION
SomeCounts CountSome(std::span<const double> values, double low, double high) {
  const std::size_t every = values.size() < kFew ? kStretch : 4 * kStretch;
  FourDoubles below = {}, upTo = {};
  std::size_t counted = 0;
  for (std::size_t i = 0; i + kStretch <= values.size(); i += every, counted += kStretch) {
    for (std::size_t k = i; k < i + kStretch; k += 4) {
      FourDoubles four;
      LoadFour(values.data() + k, four);
      CountBelow(below, four, low);
      CountBelow(upTo, four, high);
    }
  }
  double lanes[8];
  StoreFour(lanes, below);
  StoreFour(lanes + 4, upTo);
  const double isBelow = (lanes[0] + lanes[1]) + (lanes[2] + lanes[3]);
  const double isUpTo = (lanes[4] + lanes[5]) + (lanes[6] + lanes[7]);
  return {{static_cast<std::size_t>(isUpTo - isBelow), static_cast<std::size_t>(isBelow)}, counted};
}

/// Among `taken`; nothing where the value or the one before it is not there.
std::optional<Neighbours> SelectTaken(double* taken, const Counts& counts, std::size_t rank) {
  const bool isThere = rank >= counts.below + std::min<std::size_t>(rank, 1) && rank < counts.below + counts.between;
  if (!isThere) return std::nullopt;
  return Select({taken, counts.between}, rank - counts.below);
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
  const auto taken = std::make_unique_for_overwrite<double[]>(n);
  const std::optional<Neighbours> found = SelectTaken(taken.get(), TakeBetween(values, low, high, taken.get()), rank);
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

double MedianNear(std::span<double> values, double guess, double aside) {
  constexpr int kTries = 3;
  constexpr double kDoubt = 0.5;  // of how far away the others say it is
  constexpr double kWide = 1.0 / 16.0;
  const std::size_t n = values.size();
  const std::size_t rank = n / 2;
  // How far away the middle of `of` values is, from what lies within aside.
  const auto shiftOf = [&aside](const Counts& counts, std::size_t of) {
    const auto between = static_cast<double>(counts.between);
    const double places = 0.5 * static_cast<double>(of) - (static_cast<double>(counts.below) + 0.5 * between);
    return places * 2.0 * aside / between;
  };
  for (int i = 0; i < kTries && aside > kWide * guess; ++i) {
    const SomeCounts some = CountSome(values, guess - aside, guess + aside);
    if (some.between == 0) break;
    const double shift = shiftOf(some, some.counted);
    guess += shift;
    const bool isWithin = std::abs(shift) < aside;
    aside = isWithin ? kDoubt * aside : std::max(aside, kDoubt * std::abs(shift));
    if (isWithin) break;
  }
  const auto taken = std::make_unique_for_overwrite<double[]>(n);
  for (int i = 0; i < kTries; ++i) {
    const Counts counts = TakeBetween(values, guess - aside, guess + aside, taken.get());
    if (const auto middle = SelectTaken(taken.get(), counts, rank)) return MiddleOf(*middle, n);
    if (counts.between == 0) break;
    const double shift = shiftOf(counts, n);
    guess += shift;
    aside = std::max(2.0 * aside, kDoubt * std::abs(shift));
  }
  return Median(values);
}

}  // namespace texturon
