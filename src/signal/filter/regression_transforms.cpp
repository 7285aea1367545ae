// SPDX-License-Identifier: Apache-2.0

#include "signal/filter/regression_transforms.h"

#include <algorithm>

#include "base/multiversion.h"

namespace texturon {
namespace {

/// Complex transforms of a run.
constexpr double kTransforms = 5.0;
/// What is done besides them for each place of a block, in the units of BatchFft::Cost.
constexpr double kBesides = 4.0;
/// Rows of a block from which on it leaves the second-level cache: those cost as much again.
constexpr double kLongRows = 16384.0;
/// Values of a part of the blocks that are transformed together.
constexpr std::size_t kTogether = 16384;

/// What the real parts of the columns alone have as spectrum, times 2 i factors[row].
TEXTURON_MULTIVERSION
void MultiplyOfRealParts(ConstRows spectrum, Rows out, std::size_t lanes, std::span<const double> factors) {
  lanes = lanes / kLaneQuantum * kLaneQuantum;
  for (std::size_t row = 0; row < factors.size(); ++row) {
    const std::size_t mirrored = row == 0 ? 0 : factors.size() - row;
    const double factor = factors[row];
    const double* const re = spectrum.re + row * spectrum.stride;
    const double* const im = spectrum.im + row * spectrum.stride;
    const double* const mirroredRe = spectrum.re + mirrored * spectrum.stride;
    const double* const mirroredIm = spectrum.im + mirrored * spectrum.stride;
    double* const outRe = out.re + row * out.stride;
    double* const outIm = out.im + row * out.stride;
    TEXTURON_IVDEP
    for (std::size_t q = 0; q < lanes; ++q) {
      outRe[q] = factor * (mirroredIm[q] - im[q]);
      outIm[q] = factor * (re[q] + mirroredRe[q]);
    }
  }
}

}  // namespace

TEXTURON_MULTIVERSION
void TurnMatrix(const double* x, std::size_t xStride, std::size_t rows, std::size_t columns, double* y,
                std::size_t yStride) {
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

double RegressionTransforms::Blocks::Cost() const {
  const auto length = static_cast<double>(rows);
  return static_cast<double>(count) * (kTransforms * BatchFft::Cost(rows) + kBesides * length) *
         (1.0 + length / kLongRows);
}

RegressionTransforms::Blocks RegressionTransforms::Choose(std::size_t count, std::size_t extent) {
  // Even lengths with factors 2, 3 and 5 up to the first one of each kind that holds a quarter of the places.
  Blocks best;
  const std::size_t overlap = 2 * extent;
  const std::size_t most = 2 * (overlap + count / kLaneQuantum + 1);
  for (std::size_t fives = 1; 2 * fives <= most; fives *= 5) {
    for (std::size_t threes = fives; 2 * threes <= most; threes *= 3) {
      for (std::size_t rows = 2 * threes; rows <= most; rows *= 2) {
        if (rows <= overlap) continue;
        const std::size_t hop = rows - overlap;
        const Blocks blocks{rows, hop, PaddedLanes((count + hop - 1) / hop)};
        if (best.count == 0 || blocks.Cost() < best.Cost()) best = blocks;
      }
    }
  }
  return best;
}

RegressionTransforms::RegressionTransforms(std::size_t count, const Factors& factors)
    : count_(count),
      extent_(factors[0].size() - 1),
      blocks_(Choose(count, extent_)),
      columns_(blocks_.rows),
      memory_(3 * SplitDoubles(blocks_.rows * Lanes()) + columns_.ScratchDoubles(Lanes())),
      scratch_(memory_.span()),
      spectrum_(TakeSplit(scratch_, blocks_.rows * Lanes(), Lanes())),
      product_(TakeSplit(scratch_, blocks_.rows * Lanes(), Lanes())),
      sum_(TakeSplit(scratch_, blocks_.rows * Lanes(), Lanes())),
      weights_(blocks_.count * blocks_.hop + 2 * extent_),
      heights_(weights_.size()) {
  MakeSpectra(factors);
}

std::size_t RegressionTransforms::Lanes() const {
  const std::size_t together = kTogether / blocks_.rows / kLaneQuantum * kLaneQuantum;
  return std::min(std::clamp(together, kLaneQuantum, kMaxLanes), blocks_.count);
}

double RegressionTransforms::Cost() const {
  return blocks_.Cost();
}

void RegressionTransforms::MakeSpectra(const Factors& factors) {
  // The sum at k takes place k + i with the distance +i: a convolution with the mirrored factors. Even ones have real
  // spectra, odd ones imaginary ones.
  const std::size_t rows = blocks_.rows;
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
    spectra_[0].push_back({re[0], 0.0});
    spectra_[1].push_back({0.0, im[1]});
    spectra_[2].push_back({re[2], 0.0});
    spectrumOf3And4_.push_back(0.5 * im[kLast]);
  }
}

void RegressionTransforms::Run(std::array<std::vector<double>, kRegressionSums>& sums) {
  const auto& [rows, hop, count] = blocks_;
  for (auto& sum : sums) sum.resize(count * hop);
  for (std::size_t first = 0; first < count; first += Lanes()) {
    const std::size_t lanes = std::min(Lanes(), count - first);
    spectrum_.stride = product_.stride = sum_.stride = lanes;
    TurnMatrix(weights_.data() + first * hop, hop, lanes, rows, product_.re, lanes);
    TurnMatrix(heights_.data() + first * hop, hop, lanes, rows, product_.im, lanes);
    columns_.Run(product_, spectrum_, lanes, scratch_);
    for (std::size_t j = 0; j < kRegressionHeights; ++j) {
      MultiplyRows(spectrum_, product_, lanes, spectra_[j], Product::kPlain);
      Deliver(first, sums[j], sums[kRegressionMoments + j]);
    }
    MultiplyOfRealParts(spectrum_, product_, lanes, spectrumOf3And4_);
    Deliver(first, sums[3], sums[4]);
  }
}

void RegressionTransforms::Deliver(std::size_t first, std::vector<double>& real, std::vector<double>& imaginary) {
  // With the parts exchanged a transform goes back.
  const std::size_t lanes = product_.stride;
  columns_.Run({product_.im, product_.re, lanes}, {sum_.im, sum_.re, lanes}, lanes, scratch_);
  const std::size_t own = extent_ * lanes;
  const std::size_t hop = blocks_.hop;
  TurnMatrix(sum_.re + own, lanes, hop, lanes, real.data() + first * hop, hop);
  TurnMatrix(sum_.im + own, lanes, hop, lanes, imaginary.data() + first * hop, hop);
}

}  // namespace texturon
