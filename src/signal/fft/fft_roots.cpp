// SPDX-License-Identifier: Apache-2.0

#include "signal/fft/fft_roots.h"

#include <numbers>
#include <utility>

#include "base/elementary.h"

namespace texturon {

Cplx UnitRoot(std::size_t e, std::size_t n) {
  // The angle is (pi / 2) t / n; t is folded into [0, n / 2], one eighth of a turn.
  std::size_t t = 4 * e;
  const bool lower = t > 2 * n;
  if (lower) t = 4 * n - t;
  const bool left = t > n;
  if (left) t = 2 * n - t;
  const bool steep = 2 * t > n;
  if (steep) t = n - t;
  const double angle = std::numbers::pi * static_cast<double>(t) / static_cast<double>(2 * n);
  double re = Cos(angle);
  double im = Sin(angle);
  if (steep) std::swap(re, im);
  return {left ? -re : re, lower ? im : -im};
}

UnitRoots::UnitRoots(std::size_t n) {
  while ((std::size_t{1} << (2 * shift_)) < n) ++shift_;
  const std::size_t step = std::size_t{1} << shift_;
  mask_ = step - 1;
  for (std::size_t e = 0; e < n; e += step) coarse_.push_back(UnitRoot(e, n));
  for (std::size_t e = 0; n > 0 && e < step; ++e) fine_.push_back(UnitRoot(e % n, n));
}

}  // namespace texturon
