#include "signal/sort_descending.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <utility>

namespace texturon {
namespace {

constexpr int kDigitBits = 11;
constexpr int kPasses = 6;
constexpr std::size_t kBuckets = std::size_t{1} << kDigitBits;
constexpr std::size_t kLeastForDigits = 4096;

/// An integer that grows as the number falls: the bits of negative numbers as they are, those of others inverted below
/// the sign.
std::uint64_t DescendingKey(double value) {
  const auto bits = std::bit_cast<std::uint64_t>(value);
  const std::uint64_t mask = (bits >> 63) != 0 ? 0 : 0x7FFF'FFFF'FFFF'FFFF;
  return bits ^ mask;
}

double ValueOf(std::uint64_t key) {
  const std::uint64_t mask = (key >> 63) != 0 ? 0 : 0x7FFF'FFFF'FFFF'FFFF;
  return std::bit_cast<double>(key ^ mask);
}

std::size_t DigitOf(std::uint64_t key, int pass) {
  return static_cast<std::size_t>(key >> (pass * kDigitBits)) & (kBuckets - 1);
}

}  // namespace

void SortDescending(std::vector<double>& values) {
  if (values.size() < kLeastForDigits) {
    std::sort(values.begin(), values.end(), std::greater<>());
    return;
  }
  std::vector<std::uint64_t> keys(values.size());
  std::vector<std::uint64_t> sorted(values.size());
  std::vector<std::array<std::uint32_t, kBuckets>> counts(kPasses);
  for (std::size_t i = 0; i < values.size(); ++i) {
    keys[i] = DescendingKey(values[i]);
    for (int pass = 0; pass < kPasses; ++pass) ++counts[static_cast<std::size_t>(pass)][DigitOf(keys[i], pass)];
  }
  for (int pass = 0; pass < kPasses; ++pass) {
    auto& starts = counts[static_cast<std::size_t>(pass)];
    if (starts[DigitOf(keys[0], pass)] == keys.size()) continue;  // one digit throughout
    std::uint32_t next = 0;
    for (std::uint32_t& start : starts) next += std::exchange(start, next);
    for (const std::uint64_t key : keys) sorted[starts[DigitOf(key, pass)]++] = key;
    keys.swap(sorted);
  }
  std::transform(keys.begin(), keys.end(), values.begin(), ValueOf);
}

}  // namespace texturon
