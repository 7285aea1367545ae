// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <span>
#include <vector>

namespace texturon {

/// A complex number of the transforms' tables and butterflies. (std::complex multiplies with a check for NaN, which
/// keeps loops from being vectorised.)
struct Cplx {
  double re = 0.0;
  double im = 0.0;
};

/// exp(-2 pi i e / n) for 0 <= e <= n, within one unit in the last place of 1. Taken from the first octant with the
/// exponent folded as an integer, so that symmetric roots are symmetric to the last bit and quarter turns are exact.
Cplx UnitRoot(std::size_t e, std::size_t n);

/// All n roots of unity from two tables of about sqrt(n) entries: root = coarse[e / step] * fine[e % step]. Two units
/// in the last place, and building it costs O(sqrt n) sines instead of n.
class UnitRoots {
public:
  explicit UnitRoots(std::size_t n);

  /// exp(-2 pi i e / n), e < n.
  Cplx At(std::size_t e) const {
    const Cplx c = coarse_[e >> shift_];
    const Cplx f = fine_[e & mask_];
    return {c.re * f.re - c.im * f.im, c.re * f.im + c.im * f.re};
  }

  /// The tables: At(e) = Coarse(e / step) * Fine()[e % step], step = Fine().size().
  Cplx Coarse(std::size_t i) const { return coarse_[i]; }
  std::span<const Cplx> Fine() const { return fine_; }

private:
  unsigned shift_ = 0;
  std::size_t mask_ = 0;
  std::vector<Cplx> coarse_;
  std::vector<Cplx> fine_;
};

}  // namespace texturon
