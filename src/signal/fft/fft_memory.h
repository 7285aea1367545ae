// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <memory>
#include <new>
#include <span>

#include "signal/fft/fft_passes.h"

namespace texturon {

inline constexpr std::size_t kCacheLine = 64;
inline constexpr std::size_t kLineDoubles = kCacheLine / sizeof(double);
/// Distance that keeps equal rows of the real and the imaginary part out of the same cache set at powers of two.
inline constexpr std::size_t kSplitGap = 9 * kLineDoubles;

/// Doubles that a pair of real and imaginary parts of `size` values takes.
constexpr std::size_t SplitDoubles(std::size_t size) {
  return 2 * ((size + kLineDoubles - 1) / kLineDoubles * kLineDoubles + kSplitGap);
}

/// The first SplitDoubles(size) doubles of `memory` as two parts, which then starts behind them.
inline Rows TakeSplit(std::span<double>& memory, std::size_t size, std::size_t stride) {
  const std::size_t both = SplitDoubles(size);
  const Rows rows{memory.data(), memory.data() + both / 2, stride};
  memory = memory.subspan(both);
  return rows;
}

/// Uninitialised doubles at the start of a cache line, without which every other vector would lie across two lines.
class LineMemory {
public:
  explicit LineMemory(std::size_t size)
      : data_(new (std::align_val_t{kCacheLine}) double[size]), span_(data_.get(), size) {}
  std::span<double> span() const { return span_; }

private:
  struct Free {
    void operator()(double* data) const { operator delete[](data, std::align_val_t{kCacheLine}); }
  };
  std::unique_ptr<double[], Free> data_;
  std::span<double> span_;
};

}  // namespace texturon
