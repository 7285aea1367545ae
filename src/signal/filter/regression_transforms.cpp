// SPDX-License-Identifier: Apache-2.0

#include "signal/filter/regression_transforms.h"

#include <algorithm>
#include <cmath>

#include "signal/fft/fft_roots.h"
#include "signal/filter/regression_rows.h"

namespace texturon {
namespace {

/// Complex transforms back, each of one of the first four sums and one of the others.
constexpr std::size_t kBackTransforms = kRegressionSums / 2;
static_assert(kBackTransforms == kFirstHeight);
/// Complex transforms of a run.
constexpr double kTransforms = 1.0 + kBackTransforms;
// What a run costs in the units of BatchFft::Cost, counted for 496 plans, nearly all right to 10 %: a unit of each of
// its transforms and a row of it, a row of the spectrum that is worked with, a place; in blocks the same, but rows of
// transforms for all lanes together, and a row of each block.
constexpr double kWholeUnit = 0.96, kWholeTransform = 0.65, kWholeSpectrum = 8.6, kWholePlace = 3.3;
constexpr double kBlockUnit = 1.05, kBlockTransform = 4.3, kBlockSpectrum = 8.7, kBlockRow = -2.3;
/// Where the spectra end, in parts of the rows, times the places that are reached.
constexpr double kSpectrumEnd = 11.8;
/// Rows of a block from which on it leaves the second-level cache: those cost as much again.
constexpr double kLongRows = 16384.0;
/// Values of a part of the blocks that are transformed together.
constexpr std::size_t kTogether = 16384;

/// The row behind the last one, up to the middle, where a spectrum is more than `nothing`.
std::size_t EndOf(std::span<const double> spectrum, double nothing) {
  std::size_t end = spectrum.size() / 2 + 1;
  while (end > 1 && std::abs(spectrum[end - 1]) <= nothing) --end;
  return end;
}

}  // namespace

std::size_t RegressionTransforms::Plan::Lanes() const {
  const std::size_t together = kTogether / rows / kLaneQuantum * kLaneQuantum;
  return IsWhole() ? kLaneQuantum : std::min(std::clamp(together, kLaneQuantum, kMaxLanes), count);
}

double RegressionTransforms::Plan::Cost() const {
  const auto length = static_cast<double>(rows);
  const auto blocks = static_cast<double>(count);
  const double spectrum = std::min(length, 2.0 * static_cast<double>(outer));
  const double transform = BatchFft::Cost(rows);
  const double whole = kTransforms * (kWholeUnit * transform + kWholeTransform * length) + kWholeSpectrum * spectrum +
                       kWholePlace * static_cast<double>(hop);
  const double cut = blocks * (kTransforms * kBlockUnit * transform + kBlockSpectrum * spectrum + kBlockRow * length) +
                     static_cast<double>(Groups()) * kTransforms * kBlockTransform * length;
  return (IsWhole() ? whole : cut) * (1.0 + length / kLongRows);
}

RegressionTransforms::Plan RegressionTransforms::Choose(std::size_t count, std::size_t extent) {
  // Even lengths with factors 2, 3 and 5 up to the first one of each kind that holds a quarter of the places in a
  // block, and with a factor 4 to the first one that holds all.
  Plan best;
  // What is cut off at the length of the record has no end of its spectrum.
  const double end = extent + 1 != count ? kSpectrumEnd / static_cast<double>(extent) : 1.0;
  const auto take = [&best, end](Plan plan) {
    plan.outer = BatchFft::OuterRows(plan.rows, static_cast<std::size_t>(end * static_cast<double>(plan.rows)) + 1);
    if (best.rows == 0 || plan.Cost() < best.Cost()) best = plan;
  };
  const std::size_t overlap = 2 * extent;
  const std::size_t whole = count + extent;
  const std::size_t most = 2 * std::max(overlap + count / kLaneQuantum + 1, whole);
  for (std::size_t fives = 1; 2 * fives <= most; fives *= 5) {
    for (std::size_t threes = fives; 2 * threes <= most; threes *= 3) {
      for (std::size_t rows = 2 * threes; rows <= most; rows *= 2) {
        if (rows >= whole && rows % kLaneQuantum == 0) take({rows, count, 0, 1, 0});
        if (rows <= overlap) continue;
        const std::size_t hop = rows - overlap;
        take({rows, hop, extent, PaddedLanes((count + hop - 1) / hop), 0});
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
      columns_(plan_.rows),
      quarters_(plan_.IsWhole() ? plan_.rows / kLaneQuantum : 1),
      memory_((2 + plan_.Results()) * SplitDoubles(plan_.rows * lanes_) + columns_.ScratchDoubles(lanes_) +
              quarters_.ScratchDoubles(lanes_)),
      scratch_(memory_.span()),
      spectrum_(TakeSplit(scratch_, plan_.rows * lanes_, lanes_)),
      product_(TakeSplit(scratch_, plan_.rows * lanes_, lanes_)),
      weights_(plan_.IsWhole() ? plan_.rows : plan_.count * plan_.hop + 2 * extent_),
      heights_(weights_.size()),
      numerators_(plan_.count * plan_.hop + kLaneQuantum),
      determinants_(numerators_.size()),
      rows_(plan_.IsWhole() ? 0 : 2 * plan_.hop * lanes_) {
  for (std::size_t i = 0; i < plan_.Results(); ++i) sums_.push_back(TakeSplit(scratch_, plan_.rows * lanes_, lanes_));
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
      // Of what reaches farther than half a block both meet where neither is wanted.
      if (i > 0) column[(rows - i) * kLaneQuantum] += value;
      column[i * kLaneQuantum] += i > 0 && power % 2 == 1 ? -value : value;
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
  constexpr double kNothing = 2e-15;  // of what all weights add up to
  std::size_t least = 1;
  for (const std::vector<double>* spectrum : {&spectra_[0], &spectra_[1], &spectra_[2], &spectrumOf3And4_}) {
    least = std::max(least, EndOf(*spectrum, kNothing * spectra_[0][0]));
  }
  outer_ = BatchFft::OuterRows(rows, least);
}

std::array<RegressionTransforms::Stretch, 2> RegressionTransforms::Ends() const {
  const std::size_t fours = (outer_ + kLaneQuantum - 1) / kLaneQuantum * kLaneQuantum;
  if (2 * fours >= plan_.rows) return {Stretch{0, plan_.rows}, Stretch{plan_.rows, 0}};
  return {Stretch{0, fours}, Stretch{plan_.rows - fours, fours}};
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
  for (std::size_t first = 0; first < plan_.count; first += lanes_) {
    const std::size_t lanes = LanesFrom(first);
    spectrum_.stride = product_.stride = lanes;
    TurnMatrix(weights_.data() + first * hop, hop, lanes, plan_.rows, product_.re, lanes);
    TurnMatrix(heights_.data() + first * hop, hop, lanes, plan_.rows, product_.im, lanes);
    columns_.Run(product_, spectrum_, lanes, scratch_);
    for (std::size_t j = 0; j < kBackTransforms; ++j) {
      for (const auto& [row, rows] : Ends()) {
        if (j < kRegressionHeights) {
          const Turn turn = j % 2 == 0 ? Turn::kNone : Turn::kQuarter;
          MultiplyRowsBy(spectrum_, product_, row, std::span(spectra_[j]).subspan(row, rows), turn);
        } else {
          MultiplyOfRealParts(spectrum_, product_, plan_.rows, row, std::span(spectrumOf3And4_).subspan(row, rows));
        }
      }
      // With the parts exchanged a transform goes back.
      const Rows& sums = sums_[first / lanes_ * kBackTransforms + j];
      columns_.Run({product_.im, product_.re, lanes}, {sums.im, sums.re, lanes}, lanes, scratch_, outer_);
    }
    SolveBlocks(first);
  }
}

void RegressionTransforms::SolveBlocks(std::size_t first) {
  const std::size_t lanes = LanesFrom(first);
  const std::size_t hop = plan_.hop;
  const std::size_t own = extent_ * lanes;
  const Rows* const sums = &sums_[first / lanes_ * kBackTransforms];
  double* const numerators = rows_.data();
  double* const determinants = numerators + hop * lanes;
  SolveRegressions({sums[0].re + own, sums[1].re + own, sums[2].re + own, sums[3].re + own, sums[0].im + own,
                    sums[1].im + own, sums[2].im + own, sums[3].im + own},
                   hop * lanes, numerators, determinants);
  TurnMatrix(numerators, lanes, hop, lanes, numerators_.data() + first * hop, hop);
  TurnMatrix(determinants, lanes, hop, lanes, determinants_.data() + first * hop, hop);
}

void RegressionTransforms::RunWhole() {
  constexpr std::size_t kLanes = kLaneQuantum;
  const Rows& sums = sums_[0];
  // As it lies, every fourth place is a column.
  quarters_.Run({weights_.data(), heights_.data(), kLanes}, {sums.re, sums.im, kLanes}, kLanes, scratch_);
  JoinQuarters(sums, quarters_.length(), turnsRe_.data(), turnsIm_.data(), spectrum_);
  for (const auto& [row, rows] : Ends()) {
    MultiplyIntoLanes(spectrum_, plan_.rows, row, row + rows,
                      {spectra_[0].data(), spectra_[1].data(), spectra_[2].data(), spectrumOf3And4_.data()}, product_);
  }
  columns_.Run({product_.im, product_.re, kLanes}, {sums.im, sums.re, kLanes}, kLanes, scratch_, outer_);
  SolveRegressionFours(sums.re, sums.im, count_, numerators_.data(), determinants_.data());
}

RegressionPoint RegressionTransforms::SumsAt(std::size_t k) const {
  RegressionPoint point;
  for (std::size_t j = 0; j < kBackTransforms; ++j) {
    const std::size_t block = k / plan_.hop;
    const std::size_t first = block / lanes_ * lanes_;
    const std::size_t row = k % plan_.hop + extent_;
    const Rows& sums = sums_[plan_.IsWhole() ? 0 : first / lanes_ * kBackTransforms + j];
    const std::size_t at = plan_.IsWhole() ? k * kLaneQuantum + j : row * LanesFrom(first) + block - first;
    point[j] = sums.re[at];
    point[kFirstHeight + j] = sums.im[at];
  }
  return point;
}

}  // namespace texturon
