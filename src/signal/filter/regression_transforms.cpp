// SPDX-License-Identifier: Apache-2.0

#include "signal/filter/regression_transforms.h"

#include <algorithm>

#include "base/four_doubles.h"
#include "base/multiversion.h"
#include "signal/fft/fft_roots.h"

namespace texturon {
namespace {

/// Complex transforms of a run.
constexpr double kTransforms = 5.0;
/// What is done besides them for each place, in the units of BatchFft::Cost, in blocks and in whole sequences.
constexpr double kBesideBlocks = 11.0;
constexpr double kBesideWhole = 8.0;
/// What the loops of a transform cost besides, for each row.
constexpr double kRowCost = 7.5;
/// Rows of a block from which on it leaves the second-level cache: those cost as much again.
constexpr double kLongRows = 16384.0;
/// Values of a part of the blocks that are transformed together.
constexpr std::size_t kTogether = 16384;

enum class Turn : bool { kNone, kQuarter };

/// out[row][lane] = in[row][lane] times factors[row], or times i factors[row].
TEXTURON_MULTIVERSION
void MultiplyRowsBy(ConstRows in, Rows out, std::size_t lanes, std::span<const double> factors, Turn turn) {
  const double* const re = turn == Turn::kNone ? in.re : in.im;
  const double* const im = turn == Turn::kNone ? in.im : in.re;
  const double sign = turn == Turn::kNone ? 1.0 : -1.0;
  for (std::size_t row = 0; row < factors.size(); ++row) {
    for (std::size_t q = row * lanes; q < (row + 1) * lanes; q += kLaneQuantum) {
      FourDoubles a, b;
      LoadFour(re + q, a);
      LoadFour(im + q, b);
      MultiplyBy(a, sign * factors[row]);
      MultiplyBy(b, factors[row]);
      StoreFour(out.re + q, a);
      StoreFour(out.im + q, b);
    }
  }
}

/// What the real parts of the columns alone have as spectrum, times 2 i factors[row].
TEXTURON_MULTIVERSION
void MultiplyOfRealParts(ConstRows spectrum, Rows out, std::size_t lanes, std::span<const double> factors) {
  for (std::size_t row = 0; row < factors.size(); ++row) {
    const std::size_t here = row * lanes;
    const std::size_t mirrored = row == 0 ? 0 : (factors.size() - row) * lanes;
    const double factor = factors[row];
    for (std::size_t first = 0; first < lanes; first += kLaneQuantum) {
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

/// The transform of a sequence from those of its quarters, which are the columns. Its first value also stands behind
/// the last.
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

/// What one spectrum becomes in four lanes: times even[row], i odd[row] and square[row], and what its real part alone
/// has as spectrum times 2 i last[row]. The number of rows is a multiple of four.
struct LaneFactors {
  const double* even;
  const double* odd;
  const double* square;
  const double* last;
};
TEXTURON_MULTIVERSION
void MultiplyIntoLanes(ConstRows spectrum, std::size_t rows, const LaneFactors& factors, Rows out) {
  constexpr std::size_t kRows = kLaneQuantum;
  double lanesRe[kLaneQuantum][kRows], lanesIm[kLaneQuantum][kRows];
  for (std::size_t first = 0; first < rows; first += kRows) {
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

std::size_t RegressionTransforms::Plan::Lanes() const {
  const std::size_t together = kTogether / rows / kLaneQuantum * kLaneQuantum;
  return IsWhole() ? kLaneQuantum : std::min(std::clamp(together, kLaneQuantum, kMaxLanes), count);
}

double RegressionTransforms::Plan::Cost() const {
  const auto length = static_cast<double>(rows);
  const double row = kRowCost / static_cast<double>(Lanes());
  const double beside = IsWhole() ? kBesideWhole : kBesideBlocks;
  return static_cast<double>(count) * (kTransforms * (BatchFft::Cost(rows) + row * length) + beside * length) *
         (1.0 + length / kLongRows);
}

RegressionTransforms::Plan RegressionTransforms::Choose(std::size_t count, std::size_t extent) {
  // Even lengths with factors 2, 3 and 5 up to the first one of each kind that holds a quarter of the places in a
  // block, and with a factor 4 to the first one that holds all.
  Plan best;
  const auto take = [&best](const Plan& plan) {
    if (best.rows == 0 || plan.Cost() < best.Cost()) best = plan;
  };
  const std::size_t overlap = 2 * extent;
  const std::size_t whole = count + extent;
  const std::size_t most = 2 * std::max(overlap + count / kLaneQuantum + 1, whole);
  for (std::size_t fives = 1; 2 * fives <= most; fives *= 5) {
    for (std::size_t threes = fives; 2 * threes <= most; threes *= 3) {
      for (std::size_t rows = 2 * threes; rows <= most; rows *= 2) {
        if (rows >= whole && rows % kLaneQuantum == 0) take({rows, count, 0, 1});
        if (rows <= overlap) continue;
        const std::size_t hop = rows - overlap;
        take({rows, hop, extent, PaddedLanes((count + hop - 1) / hop)});
      }
    }
  }
  return best;
}

double RegressionTransforms::Cost(std::size_t count, std::size_t extent) {
  return Choose(count, extent).Cost();
}

RegressionTransforms::RegressionTransforms(std::size_t count, const Factors& factors)
    : count_(count),
      extent_(factors[0].size() - 1),
      plan_(Choose(count, extent_)),
      lanes_(plan_.Lanes()),
      stride_(plan_.count * plan_.hop),
      columns_(plan_.rows),
      quarters_(plan_.IsWhole() ? plan_.rows / kLaneQuantum : 1),
      memory_(3 * SplitDoubles(plan_.rows * lanes_) + columns_.ScratchDoubles(lanes_) +
              quarters_.ScratchDoubles(lanes_)),
      scratch_(memory_.span()),
      spectrum_(TakeSplit(scratch_, plan_.rows * lanes_, lanes_)),
      product_(TakeSplit(scratch_, plan_.rows * lanes_, lanes_)),
      sum_(TakeSplit(scratch_, plan_.rows * lanes_, lanes_)),
      weights_(plan_.IsWhole() ? plan_.rows : stride_ + 2 * extent_),
      heights_(weights_.size()),
      sums_(kRegressionSums * stride_) {
  MakeSpectra(factors);
  if (!plan_.IsWhole()) return;
  const UnitRoots roots(plan_.rows);
  for (std::size_t k = 0; k < quarters_.length(); ++k) {
    for (std::size_t quarter = 0; quarter < kLaneQuantum; ++quarter) {
      turnsRe_.push_back(roots.At(quarter * k).re);
      turnsIm_.push_back(roots.At(quarter * k).im);
    }
  }
}

void RegressionTransforms::MakeSpectra(const Factors& factors) {
  // The sum at k takes place k + i with the distance +i: a convolution with the mirrored factors. Even ones have real
  // spectra, odd ones imaginary ones.
  const std::size_t rows = plan_.rows;
  constexpr std::size_t kLast = kRegressionHeights;  // the lane with the real part u^3 and the imaginary one u^4
  const Rows in{product_.re, product_.im, kLaneQuantum};
  const Rows out{spectrum_.re, spectrum_.im, kLaneQuantum};
  std::fill_n(in.re, rows * kLaneQuantum, 0.0);
  std::fill_n(in.im, rows * kLaneQuantum, 0.0);
  for (std::size_t power = 0; power < kRegressionMoments; ++power) {
    double* const column = power > kLast ? in.im + kLast : in.re + power;
    for (std::size_t i = 0; i <= extent_; ++i) {
      const double value = factors[power][i] / static_cast<double>(rows);  // what a transform there and back leaves
      if (i > 0) column[(rows - i) * kLaneQuantum] = value;
      column[i * kLaneQuantum] = i > 0 && power % 2 == 1 ? -value : value;
    }
  }
  columns_.Run(in, out, kLaneQuantum, scratch_);
  for (std::size_t k = 0; k < rows; ++k) {
    const double* const re = out.re + k * kLaneQuantum;
    const double* const im = out.im + k * kLaneQuantum;
    spectra_[0].push_back(re[0]);
    spectra_[1].push_back(im[1]);
    spectra_[2].push_back(re[2]);
    spectrumOf3And4_.push_back(0.5 * im[kLast]);
  }
}

void RegressionTransforms::Run() {
  if (plan_.IsWhole()) {
    RunWhole();
  } else {
    RunBlocks();
  }
}

void RegressionTransforms::RunBlocks() {
  const std::size_t hop = plan_.hop;
  const auto sum = [this](std::size_t i) { return sums_.data() + i * stride_; };
  for (std::size_t first = 0; first < plan_.count; first += lanes_) {
    const std::size_t lanes = std::min(lanes_, plan_.count - first);
    spectrum_.stride = product_.stride = sum_.stride = lanes;
    TurnMatrix(weights_.data() + first * hop, hop, lanes, plan_.rows, product_.re, lanes);
    TurnMatrix(heights_.data() + first * hop, hop, lanes, plan_.rows, product_.im, lanes);
    columns_.Run(product_, spectrum_, lanes, scratch_);
    for (std::size_t j = 0; j < kRegressionHeights; ++j) {
      MultiplyRowsBy(spectrum_, product_, lanes, spectra_[j], j % 2 == 0 ? Turn::kNone : Turn::kQuarter);
      Deliver(first, sum(j), sum(kFirstHeight + j));
    }
    MultiplyOfRealParts(spectrum_, product_, lanes, spectrumOf3And4_);
    Deliver(first, sum(kRegressionHeights), sum(kFourthMoment));
  }
}

void RegressionTransforms::Deliver(std::size_t first, double* real, double* imaginary) {
  // With the parts exchanged a transform goes back.
  const std::size_t lanes = product_.stride;
  columns_.Run({product_.im, product_.re, lanes}, {sum_.im, sum_.re, lanes}, lanes, scratch_);
  const std::size_t own = extent_ * lanes;
  const std::size_t hop = plan_.hop;
  TurnMatrix(sum_.re + own, lanes, hop, lanes, real + first * hop, hop);
  TurnMatrix(sum_.im + own, lanes, hop, lanes, imaginary + first * hop, hop);
}

void RegressionTransforms::RunWhole() {
  constexpr std::size_t kLanes = kLaneQuantum;
  // As it lies, every fourth place is a column.
  quarters_.Run({weights_.data(), heights_.data(), kLanes}, {sum_.re, sum_.im, kLanes}, kLanes, scratch_);
  JoinQuarters(sum_, quarters_.length(), turnsRe_.data(), turnsIm_.data(), spectrum_);
  MultiplyIntoLanes(spectrum_, plan_.rows,
                    {spectra_[0].data(), spectra_[1].data(), spectra_[2].data(), spectrumOf3And4_.data()}, product_);
  columns_.Run({product_.im, product_.re, kLanes}, {sum_.im, sum_.re, kLanes}, kLanes, scratch_);
  TurnMatrix(sum_.re, kLanes, count_, kLanes, sums_.data(), stride_);
  TurnMatrix(sum_.im, kLanes, count_, kLanes, sums_.data() + kFirstHeight * stride_, stride_);
}

}  // namespace texturon
