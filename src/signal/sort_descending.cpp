// SPDX-License-Identifier: Apache-2.0

#include "signal/sort_descending.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <utility>

#include "base/multiversion.h"
#include "signal/all_finite.h"

namespace texturon {
namespace {

constexpr int kDigitBits = 11;
constexpr int kDigitsOfKey = 6;
constexpr std::size_t kBuckets = std::size_t{1} << kDigitBits;
constexpr std::size_t kLeastForDigits = 4096;
constexpr std::size_t kLongRun = 24;  // from here on a comparison sort is better than insertion

/// An integer that grows as the number falls: the bits of negative numbers as they are, those of others inverted below
/// the sign.
std::uint64_t DescendingKey(double value) {
  const auto bits = std::bit_cast<std::uint64_t>(value);
  const std::uint64_t mask = (bits >> 63) != 0 ? 0 : 0x7FFF'FFFF'FFFF'FFFF;
  return bits ^ mask;
}

bool GoesBefore(double a, double b) {
  return DescendingKey(a) < DescendingKey(b);
}

/// Where each bucket starts, from how many it holds.
void MakeStarts(std::array<std::uint32_t, kBuckets>& counts) {
  std::uint32_t next = 0;
  for (std::uint32_t& start : counts) next += std::exchange(start, next);
}

/// Linear whatever the values: the digits of their keys, lowest first.
void SortByKeys(std::span<double> values, std::span<double> scratch) {
  const auto digitOf = [](double value, int pass) {
    return static_cast<std::size_t>(DescendingKey(value) >> (pass * kDigitBits)) & (kBuckets - 1);
  };
  for (int pass = 0; pass < kDigitsOfKey; ++pass) {
    std::array<std::uint32_t, kBuckets> starts{};
    for (const double value : values) ++starts[digitOf(value, pass)];
    if (starts[digitOf(values[0], pass)] == values.size()) continue;  // one digit throughout
    MakeStarts(starts);
    for (const double value : values) scratch[starts[digitOf(value, pass)]++] = value;
    std::copy_n(scratch.begin(), values.size(), values.begin());
  }
}

struct Range {
  double lowest;
  double highest;
};

Range RangeOf(std::span<const double> values) {
  constexpr std::size_t kStep = 4;  // values.size() is not below
  PairOfDoubles low0 = LoadPair(&values[0]), low1 = LoadPair(&values[2]), high0 = low0, high1 = low1;
  std::size_t i = 0;
  for (; i + kStep <= values.size(); i += kStep) {
    const PairOfDoubles z0 = LoadPair(&values[i]), z1 = LoadPair(&values[i + 2]);
    low0 = SmallerOfPairs(low0, z0);
    low1 = SmallerOfPairs(low1, z1);
    high0 = LargerOfPairs(high0, z0);
    high1 = LargerOfPairs(high1, z1);
  }
  std::array<double, 2> lowest, highest;
  StorePair(lowest.data(), SmallerOfPairs(low0, low1));
  StorePair(highest.data(), LargerOfPairs(high0, high1));
  for (; i < values.size(); ++i) {
    lowest[0] = std::min(lowest[0], values[i]);
    highest[0] = std::max(highest[0], values[i]);
  }
  return {std::min(lowest[0], lowest[1]), std::max(highest[0], highest[1])};
}

/// The range of heights in equal cells, more of them than heights, numbered from the top. Rounding is monotonous, so of
/// two heights in different cells the one in the lower cell is the larger.
class Cells {
public:
  static constexpr std::size_t kCount = kBuckets * kBuckets;

  Cells(double highest, double lowest)
      : highest_(highest), perHeight_(static_cast<double>(kCount - 1) / (highest - lowest)) {}
  bool AreUsable() const { return perHeight_ > 0.0 && std::isfinite(perHeight_); }
  std::uint32_t operator()(double height) const { return static_cast<std::uint32_t>((highest_ - height) * perHeight_); }

private:
  double highest_;
  double perHeight_;
};

/// Orders heights whose cells are in order already. Few share a cell, unless single heights stretch the range.
void SortWithinCells(std::span<double> values, Cells cell, std::span<double> scratch) {
  std::uint32_t next = cell(values[0]);
  for (std::size_t first = 0; first < values.size();) {
    const std::uint32_t present = next;
    std::size_t end = first + 1;
    for (; end < values.size(); ++end) {
      const double height = values[end];
      next = cell(height);
      if (next != present) break;
      std::size_t place = end;
      if (end - first >= kLongRun) continue;
      for (; place > first && GoesBefore(height, values[place - 1]); --place) values[place] = values[place - 1];
      values[place] = height;
    }
    const std::span<double> run = values.subspan(first, end - first);
    if (run.size() >= kLeastForDigits) {
      SortByKeys(run, scratch);
    } else if (run.size() > kLongRun) {
      std::sort(run.begin(), run.end(), GoesBefore);
    }
    first = end;
  }
}

}  // namespace

void SortDescending(std::vector<double>& values) {
  if (values.size() < kLeastForDigits) {
    std::sort(values.begin(), values.end(), GoesBefore);
    return;
  }
  const auto memory = std::make_unique_for_overwrite<double[]>(values.size());
  const std::span<double> scratch(memory.get(), values.size());
  const auto [lowest, highest] = RangeOf(values);
  const Cells cell(highest, lowest);
  if (!cell.AreUsable() || !AllFinite(values)) {
    SortByKeys(values, scratch);
    return;
  }
  const auto lower = [cell](double height) { return cell(height) & (kBuckets - 1); };
  const auto upper = [cell](double height) { return cell(height) >> kDigitBits; };
  std::array<std::uint32_t, kBuckets> lowerStarts{};
  std::array<std::uint32_t, kBuckets> upperStarts{};
  for (const double height : values) {
    ++lowerStarts[lower(height)];
    ++upperStarts[upper(height)];
  }
  MakeStarts(lowerStarts);
  MakeStarts(upperStarts);
  for (const double height : values) scratch[lowerStarts[lower(height)]++] = height;
  for (const double height : scratch) values[upperStarts[upper(height)]++] = height;
  SortWithinCells(values, cell, scratch);
}

}  // namespace texturon
