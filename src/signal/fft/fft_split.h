// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "signal/fft/fft_batch.h"
#include "signal/fft/fft_passes.h"
#include "signal/fft/fft_roots.h"

namespace texturon {

/// How a length is split, and the estimated time of that in the units of BatchFft::Cost.
struct SplitChoice {
  std::size_t n1 = 1;
  std::size_t n2 = 1;
  double cost = 0.0;

  /// One factor is so short that lanes of its bundles stay empty.
  bool IsNarrow() const;
};
SplitChoice ChooseSplit(std::size_t n);

/// A forward Fourier transform of one length n = n1 n2 with both factors near sqrt(n): the n2 columns of x[j1 n2 + j2]
/// are transformed in bundles, multiplied by exp(-2 pi i k1 j2 / n) and turned, so that bundles of the second half lie
/// side by side; those write rows of the result, X[k2 n1 + k1]. Two trips through memory; all other work stays in the
/// second-level cache and runs along neighbouring columns.
class SplitFft {
public:
  /// Any n >= 1; slow where n has a long prime factor and little else.
  explicit SplitFft(const SplitChoice& split);

  std::size_t length() const { return columns_.length() * rows_.length(); }

  /// n values each; outputs may be the inputs.
  void Forward(ConstRows in, Rows out) const;

  /// The first n / 2 + 1 values of the transform of n real values, at half the work unless n is prime: two bundles of
  /// real columns are one complex bundle, and the second half takes k1 <= n1 / 2 only.
  void ForwardReal(const double* x, Rows out) const;

private:
  struct Work;
  struct LaneTable {
    std::vector<double> re;
    std::vector<double> im;
  };

  std::size_t TileSize() const;
  void TableTurns();
  LaneTable FirstLanes(std::size_t rows, std::size_t step) const;
  /// The table's turns times those of the bundle that starts at column c.
  void MoveLanes(const LaneTable& first, std::size_t step, std::size_t c, Rows out) const;
  /// Multiplies and turns the first `rows` rows of a bundle that starts at column c and is `width` columns wide.
  void Turn(Rows bundle, std::size_t rows, std::size_t width, std::size_t c, const Work& work) const;

  BatchFft columns_;  ///< over j1
  BatchFft rows_;     ///< over j2
  UnitRoots roots_;
  std::size_t fineRows_ = 1;  ///< the turn of k is row k / fineRows_ of the coarse times row k % fineRows_ of the fine
  LaneTable coarse_;          ///< of the first bundle, k = 0, fineRows_, ..
  LaneTable fine_;            ///< of the first bundle, k = 0, 1, ..
  LaneTable turns_;           ///< of all bundles, where the length is short enough for a table; else empty
};

}  // namespace texturon
