// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <span>

#include "signal/fft/fft_roots.h"

namespace texturon {

// The inner loops of the Fourier transforms, on many transforms side by side: neighbouring doubles belong to
// neighbouring transforms ("lanes"), so every loop runs along memory and a butterfly never mixes lanes. Lane counts are
// multiples of kLaneQuantum.
inline constexpr std::size_t kLaneQuantum = 4;

/// Largest odd radix that is transformed by its definition; longer primes go through a convolution.
inline constexpr std::size_t kMaxDirectRadix = 61;

/// Read-only and writable matrices with separate real and imaginary parts; `stride` doubles from row to row.
struct ConstRows {
  const double* re = nullptr;
  const double* im = nullptr;
  std::size_t stride = 0;
};
struct Rows {
  double* re = nullptr;
  double* im = nullptr;
  std::size_t stride = 0;
  operator ConstRows() const { return {re, im, stride}; }
};

/// One pass of radix r: for every step p < steps and every q < run the r values x[p inStep + j inLeg + q] become their
/// transform, times twiddles[p (r - 1) + k - 1] for k > 0, at y[p outStep + k outLeg + q]. No twiddles: all 1. Input
/// and output do not overlap.
struct FftPass {
  const double* inRe = nullptr;
  const double* inIm = nullptr;
  std::size_t inLeg = 0;
  std::size_t inStep = 0;
  double* outRe = nullptr;
  double* outIm = nullptr;
  std::size_t outLeg = 0;
  std::size_t outStep = 0;
  std::size_t steps = 0;
  std::size_t run = 0;
  const Cplx* twiddles = nullptr;
  /// Of radix 8, 1 to 3, of radix 4, 1: so many of the first and of the last values are read, those between count as 0.
  std::size_t outer = 0;
};

/// True for the radices that RunFixedPass knows: 2, 3, 4, 5, 8.
bool IsFixedRadix(std::size_t radix);
void RunFixedPass(std::size_t radix, const FftPass& pass);

/// A pass of any odd radix up to kMaxDirectRadix by the definition, folded to a quarter of the products. `roots` holds
/// exp(-2 pi i j k / radix) for j, k = 1 .. (radix - 1) / 2, k outside.
void RunDirectPass(std::size_t radix, const Cplx* roots, const FftPass& pass);

/// Which form of in[row][lane] * factors[row] is stored.
enum class Product { kPlain, kConjugated };

/// out[row][lane] = in[row][lane] * factors[row] for as many rows as there are factors, or the conjugate of that. Input
/// and output are the same rows or do not overlap.
void MultiplyRows(ConstRows in, Rows out, std::size_t lanes, std::span<const Cplx> factors, Product product);

/// `rows` rows z = transform of a + i b with a, b real columns: rows 0 .. rows / 2 of z become the transform of a,
/// those of `second` the transform of b.
void SeparateRealPair(Rows z, std::size_t rows, Rows second, std::size_t lanes);

/// x[2 j] + i x[2 j + 1] for j < count, in two parts.
void TakePairs(const double* x, std::size_t count, Rows out);

/// The last step of a real transform of even length 2 `half` through a complex one of `half` points, for the pairs
/// (k, half - k) with first <= k < first + count <= half / 2: turns[i] = exp(-pi i (first + i) / half), in two parts.
void JoinEvenAndOdd(Rows z, std::size_t half, std::size_t first, ConstRows turns, std::size_t count);

/// out[i] = coarse * fine[i], in two parts.
void ScaleTurns(std::span<const Cplx> fine, Cplx coarse, Rows out);

/// The turns of a tile, out[k][lane] = coarse[k / fineRows][lane] * fine[k % fineRows][lane], `lanes` in each row.
void JoinTurns(ConstRows coarse, ConstRows fine, std::size_t fineRows, std::size_t rows, std::size_t lanes, Rows out);

/// The step between the two halves of a two-factor transform: a tile of rows [k][lane] is multiplied by
/// turns[k][lane], or by what JoinTurns would make of coarse and fine, and stored as rows of blocks,
/// out[k / block][lane][k % block]. Lane counts and rows are multiples of kLaneQuantum; the last block may be narrower
/// than the others.
struct TurnTile {
  ConstRows tile;
  std::size_t rows = 0;
  std::size_t lanes = 0;    ///< at most kMaxLanes
  std::size_t width = 0;    ///< lanes that are stored
  std::size_t block = 0;    ///< k values in a block, at most kMaxLanes
  std::size_t outRows = 0;  ///< rows of an output block
  std::size_t outRow = 0;   ///< output row of lane 0
  ConstRows turns;          ///< null: coarse and fine
  ConstRows coarse;
  ConstRows fine;
  std::size_t fineRows = 0;
  double* outRe = nullptr;
  double* outIm = nullptr;
};
inline constexpr std::size_t kMaxLanes = 16;
void RunTurnTile(const TurnTile& turn);

/// Next multiple of kLaneQuantum.
constexpr std::size_t PaddedLanes(std::size_t count) {
  return (count + kLaneQuantum - 1) / kLaneQuantum * kLaneQuantum;
}

}  // namespace texturon
