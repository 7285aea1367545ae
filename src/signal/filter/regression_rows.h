// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <span>

#include "signal/fft/fft_passes.h"

namespace texturon {

// What stands between the transforms of a regression: rows of spectra, whose stride is the number of their lanes, times
// rows of factors.

enum class Turn : bool { kNone, kQuarter };

/// out[row][lane] = in[row][lane] times factors[row - first], or times i factors[row - first].
void MultiplyRowsBy(ConstRows in, Rows out, std::size_t first, std::span<const double> factors, Turn turn);

/// What the real parts of the columns alone have as spectrum, times 2 i factors[row - first]; of `rows` in all.
void MultiplyOfRealParts(ConstRows spectrum, Rows out, std::size_t rows, std::size_t first,
                         std::span<const double> factors);

/// The transform of a sequence from those of its quarters, which are the columns. Its first value also stands behind
/// the last.
void JoinQuarters(ConstRows quarters, std::size_t rows, const double* turnsRe, const double* turnsIm, Rows out);

/// What one spectrum becomes in four lanes: times even[row], i odd[row] and square[row], and what its real part alone
/// has as spectrum times 2 i last[row]. For the rows first .. end of `rows`, all three multiples of four.
struct LaneFactors {
  const double* even;
  const double* odd;
  const double* square;
  const double* last;
};
void MultiplyIntoLanes(ConstRows spectrum, std::size_t rows, std::size_t first, std::size_t end,
                       const LaneFactors& factors, Rows out);

/// y[column][row] = x[row][column] for an even number of columns; strides are what lies between rows, and columns.
void TurnMatrix(const double* x, std::size_t xStride, std::size_t rows, std::size_t columns, double* y,
                std::size_t yStride);

}  // namespace texturon
