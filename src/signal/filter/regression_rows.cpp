// SPDX-License-Identifier: Apache-2.0

#include "signal/filter/regression_rows.h"

#include "base/four_doubles.h"
#include "base/multiversion.h"

namespace texturon {
namespace {

/// Rows first .. first + factors.size() of so many lanes that the compiler knows, or 0 of them: of `lanes`.
template <std::size_t kLanes>
TEXTURON_INLINE void MultiplyRowsBy(ConstRows in, Rows out, std::size_t lanes, std::size_t first,
                                    std::span<const double> factors, double sign) {
  const std::size_t width = kLanes > 0 ? kLanes : lanes;
  std::size_t q = first * width;
  for (const double factor : factors) {
    for (const std::size_t end = q + width; q < end; q += kLaneQuantum) {
      FourDoubles a, b;
      LoadFour(in.re + q, a);
      LoadFour(in.im + q, b);
      MultiplyBy(a, sign * factor);
      MultiplyBy(b, factor);
      StoreFour(out.re + q, a);
      StoreFour(out.im + q, b);
    }
  }
}

/// As MultiplyRowsBy; of `rows` in all.
template <std::size_t kLanes>
TEXTURON_INLINE void MultiplyOfRealParts(ConstRows spectrum, Rows out, std::size_t rows, std::size_t firstRow,
                                         std::span<const double> factors) {
  const std::size_t width = kLanes > 0 ? kLanes : spectrum.stride;
  std::size_t here = firstRow * width;
  std::size_t mirrored = (firstRow == 0 ? 0 : rows - firstRow) * width;
  for (const double factor : factors) {
    for (std::size_t first = 0; first < width; first += kLaneQuantum) {
      FourDoubles re, im, mirroredRe, mirroredIm;
      LoadFour(spectrum.re + here + first, re);
      LoadFour(spectrum.im + here + first, im);
      LoadFour(spectrum.re + mirrored + first, mirroredRe);
      LoadFour(spectrum.im + mirrored + first, mirroredIm);
      AddProduct(mirroredIm, -1.0, im);
      AddProduct(mirroredRe, 1.0, re);
      MultiplyBy(mirroredIm, factor);
      MultiplyBy(mirroredRe, factor);
      StoreFour(out.re + here + first, mirroredIm);
      StoreFour(out.im + here + first, mirroredRe);
    }
    mirrored = (mirrored == 0 ? rows * width : mirrored) - width;
    here += width;
  }
}

TEXTURON_INLINE void StoreColumns(FourDoubles& a, FourDoubles& b, FourDoubles& c, FourDoubles& d, double* to,
                                  std::size_t stride) {
  TurnFours(a, b, c, d);
  StoreFour(to, a);
  StoreFour(to + stride, b);
  StoreFour(to + 2 * stride, c);
  StoreFour(to + 3 * stride, d);
}

TEXTURON_INLINE void TurnSquare(double* square) {
  FourDoubles a, b, c, d;
  LoadFour(square, a);
  LoadFour(square + kLaneQuantum, b);
  LoadFour(square + 2 * kLaneQuantum, c);
  LoadFour(square + 3 * kLaneQuantum, d);
  StoreColumns(a, b, c, d, square, kLaneQuantum);
}

/// The k-th and further values, in steps of `rows`, of the transform of a sequence from those of its quarters, turned.
TEXTURON_INLINE void JoinQuarter(const double* re, const double* im, std::size_t step, std::size_t rows, double* outRe,
                                 double* outIm) {
  const double evenRe = re[0] + re[2 * step], evenIm = im[0] + im[2 * step];
  const double apartRe = re[0] - re[2 * step], apartIm = im[0] - im[2 * step];
  const double oddRe = re[step] + re[3 * step], oddIm = im[step] + im[3 * step];
  const double otherRe = re[step] - re[3 * step], otherIm = im[step] - im[3 * step];
  outRe[0] = evenRe + oddRe;
  outIm[0] = evenIm + oddIm;
  outRe[rows] = apartRe + otherIm;
  outIm[rows] = apartIm - otherRe;
  outRe[2 * rows] = evenRe - oddRe;
  outIm[2 * rows] = evenIm - oddIm;
  outRe[3 * rows] = apartRe - otherIm;
  outIm[3 * rows] = apartIm + otherRe;
}

TEXTURON_INLINE void TurnPairs(const double* x, std::size_t xStride, std::size_t rows, std::size_t columns, double* y,
                               std::size_t yStride) {
  if (rows == 2) {
    for (std::size_t c = 0; c < columns; c += 2) {
      const PairOfDoubles a = LoadPair(x + c);
      const PairOfDoubles b = LoadPair(x + xStride + c);
      StorePair(y + c * yStride, LowPair(a, b));
      StorePair(y + (c + 1) * yStride, HighPair(a, b));
    }
    return;
  }
  for (std::size_t c = 0; c < columns; c += 2) {
    const double* from = x + c;
    double* low = y + c * yStride;
    double* high = low + yStride;
    std::size_t r = 0;
    for (; r + 1 < rows; r += 2, from += 2 * xStride) {
      const PairOfDoubles a = LoadPair(from);
      const PairOfDoubles b = LoadPair(from + xStride);
      StorePair(low + r, LowPair(a, b));
      StorePair(high + r, HighPair(a, b));
    }
    if (r == rows) continue;
    low[r] = from[0];
    high[r] = from[1];
  }
}

}  // namespace

TEXTURON_MULTIVERSION
void MultiplyRowsBy(ConstRows in, Rows out, std::size_t first, std::span<const double> factors, Turn turn) {
  const ConstRows from = turn == Turn::kNone ? in : ConstRows{in.im, in.re, in.stride};
  const double sign = turn == Turn::kNone ? 1.0 : -1.0;
  switch (in.stride) {
    case kLaneQuantum:
      return MultiplyRowsBy<kLaneQuantum>(from, out, in.stride, first, factors, sign);
    case 2 * kLaneQuantum:
      return MultiplyRowsBy<2 * kLaneQuantum>(from, out, in.stride, first, factors, sign);
    default:
      return MultiplyRowsBy<0>(from, out, in.stride, first, factors, sign);
  }
}

TEXTURON_MULTIVERSION
void MultiplyOfRealParts(ConstRows spectrum, Rows out, std::size_t rows, std::size_t first,
                         std::span<const double> factors) {
  switch (spectrum.stride) {
    case kLaneQuantum:
      return MultiplyOfRealParts<kLaneQuantum>(spectrum, out, rows, first, factors);
    case 2 * kLaneQuantum:
      return MultiplyOfRealParts<2 * kLaneQuantum>(spectrum, out, rows, first, factors);
    default:
      return MultiplyOfRealParts<0>(spectrum, out, rows, first, factors);
  }
}

TEXTURON_MULTIVERSION
void JoinQuarters(ConstRows quarters, std::size_t rows, const double* turnsRe, const double* turnsIm, Rows out) {
  constexpr std::size_t kMany = kLaneQuantum * kLaneQuantum;
  double re[kMany], im[kMany];
  std::size_t k = 0;
  for (; k + kLaneQuantum <= rows; k += kLaneQuantum) {
    const std::size_t at = k * kLaneQuantum;
    TEXTURON_IVDEP
    for (std::size_t i = 0; i < kMany; ++i) {
      re[i] = quarters.re[at + i] * turnsRe[at + i] - quarters.im[at + i] * turnsIm[at + i];
      im[i] = quarters.re[at + i] * turnsIm[at + i] + quarters.im[at + i] * turnsRe[at + i];
    }
    TurnSquare(re);
    TurnSquare(im);
    TEXTURON_IVDEP
    for (std::size_t r = 0; r < kLaneQuantum; ++r) {
      JoinQuarter(re + r, im + r, kLaneQuantum, rows, out.re + k + r, out.im + k + r);
    }
  }
  for (; k < rows; ++k) {
    const std::size_t at = k * kLaneQuantum;
    for (std::size_t i = 0; i < kLaneQuantum; ++i) {
      re[i] = quarters.re[at + i] * turnsRe[at + i] - quarters.im[at + i] * turnsIm[at + i];
      im[i] = quarters.re[at + i] * turnsIm[at + i] + quarters.im[at + i] * turnsRe[at + i];
    }
    JoinQuarter(re, im, 1, rows, out.re + k, out.im + k);
  }
  out.re[kLaneQuantum * rows] = out.re[0];
  out.im[kLaneQuantum * rows] = out.im[0];
}

TEXTURON_MULTIVERSION
void MultiplyIntoLanes(ConstRows spectrum, std::size_t rows, std::size_t first, std::size_t end,
                       const LaneFactors& factors, Rows out) {
  constexpr std::size_t kRows = kLaneQuantum;
  double lanesRe[kLaneQuantum][kRows], lanesIm[kLaneQuantum][kRows];
  for (; first < end; first += kRows) {
    const double* const mirroredRe = spectrum.re + (rows - first);
    const double* const mirroredIm = spectrum.im + (rows - first);
    TEXTURON_IVDEP
    for (std::size_t r = 0; r < kRows; ++r) {
      const std::size_t row = first + r;
      const double re = spectrum.re[row];
      const double im = spectrum.im[row];
      lanesRe[0][r] = factors.even[row] * re;
      lanesIm[0][r] = factors.even[row] * im;
      lanesRe[1][r] = -(factors.odd[row] * im);
      lanesIm[1][r] = factors.odd[row] * re;
      lanesRe[2][r] = factors.square[row] * re;
      lanesIm[2][r] = factors.square[row] * im;
      lanesRe[3][r] = factors.last[row] * (*(mirroredIm - r) - im);
      lanesIm[3][r] = factors.last[row] * (re + *(mirroredRe - r));
    }
    FourDoubles a, b, c, d;
    LoadFour(lanesRe[0], a);
    LoadFour(lanesRe[1], b);
    LoadFour(lanesRe[2], c);
    LoadFour(lanesRe[3], d);
    StoreColumns(a, b, c, d, out.re + first * kLaneQuantum, kLaneQuantum);
    LoadFour(lanesIm[0], a);
    LoadFour(lanesIm[1], b);
    LoadFour(lanesIm[2], c);
    LoadFour(lanesIm[3], d);
    StoreColumns(a, b, c, d, out.im + first * kLaneQuantum, kLaneQuantum);
  }
}

TEXTURON_MULTIVERSION
void TurnMatrix(const double* x, std::size_t xStride, std::size_t rows, std::size_t columns, double* y,
                std::size_t yStride) {
  const std::size_t wholeRows = rows / kLaneQuantum * kLaneQuantum;
  const std::size_t wholeColumns = columns / kLaneQuantum * kLaneQuantum;
  for (std::size_t c = 0; c < wholeColumns; c += kLaneQuantum) {
    for (std::size_t r = 0; r < wholeRows; r += kLaneQuantum) {
      const double* const from = x + r * xStride + c;
      FourDoubles p, q, s, t;
      LoadFour(from, p);
      LoadFour(from + xStride, q);
      LoadFour(from + 2 * xStride, s);
      LoadFour(from + 3 * xStride, t);
      StoreColumns(p, q, s, t, y + c * yStride + r, yStride);
    }
  }
  TurnPairs(x + wholeRows * xStride, xStride, rows - wholeRows, wholeColumns, y + wholeRows, yStride);
  TurnPairs(x + wholeColumns, xStride, rows, columns - wholeColumns, y + wholeColumns * yStride, yStride);
}

}  // namespace texturon
