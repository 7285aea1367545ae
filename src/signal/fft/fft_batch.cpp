// SPDX-License-Identifier: Apache-2.0

#include "signal/fft/fft_batch.h"

#include <algorithm>
#include <bit>
#include <utility>

#include "base/elementary.h"
#include "signal/fft/fft_memory.h"

namespace texturon {
namespace {

/// Lanes of one tile of a prime convolution.
constexpr std::size_t kConvolutionLanes = 8;

/// Calls visit(radix) for the stages of a length, in the order in which they run: eights and fours, the small odd ones,
/// then the long ones, which are happiest last, where they need no twiddles.
template <typename Visit>
void VisitRadices(std::size_t length, Visit visit) {
  std::size_t twos = static_cast<std::size_t>(std::countr_zero(length));
  std::size_t rest = length >> twos;
  for (; twos > 4 || twos == 3; twos -= 3) visit(std::size_t{8});
  for (; twos >= 2; twos -= 2) visit(std::size_t{4});
  if (twos == 1) visit(std::size_t{2});
  for (std::size_t factor = 3; rest > 1; factor += 2) {
    if (factor * factor > rest) factor = rest;
    for (; rest % factor == 0; rest /= factor) visit(factor);
  }
}

/// Time of one pass per value, in units of a radix-4 pass.
double PassCost(std::size_t radix) {
  switch (radix) {
    case 2:
      return 0.7;
    case 3:
    case 4:
      return 1.0;
    case 5:
      return 1.3;
    case 8:
      return 1.5;
    default:
      break;
  }
  const auto r = static_cast<double>(radix);
  if (radix <= kMaxDirectRadix) return 1.0 + 0.25 * r;
  return 6.0 + 2.4 * Log2(2.0 * r);  // two transforms of a good length a little above 2 r
}

}  // namespace

BatchFft::BatchFft(std::size_t length) : length_(length) {
  const UnitRoots all(length);
  std::size_t left = length;
  VisitRadices(length, [&](std::size_t radix) {
    Stage stage;
    stage.radix = radix;
    const std::size_t steps = left / radix;
    const std::size_t unit = length / left;
    if (steps > 1) {
      stage.twiddles.reserve(steps * (radix - 1));
      for (std::size_t p = 0; p < steps; ++p) {
        for (std::size_t k = 1; k < radix; ++k) stage.twiddles.push_back(all.At(p * k * unit));
      }
    }
    if (radix > kMaxDirectRadix) {
      stage.convolution = std::make_shared<const PrimeConvolution>(radix);
    } else if (!IsFixedRadix(radix)) {
      std::vector<Cplx> turn(radix);
      for (std::size_t e = 0; e < radix; ++e) turn[e] = UnitRoot(e, radix);
      for (std::size_t k = 1; k <= radix / 2; ++k) {
        for (std::size_t j = 1; j <= radix / 2; ++j) stage.roots.push_back(turn[j * k % radix]);
      }
    }
    stages_.push_back(std::move(stage));
    left = steps;
  });
}

std::size_t BatchFft::ScratchDoubles(std::size_t lanes) const {
  std::size_t convolution = 0;
  for (const Stage& stage : stages_) {
    if (stage.convolution) convolution = std::max(convolution, stage.convolution->ScratchDoubles());
  }
  return 2 * SplitDoubles(length_ * lanes) + convolution;
}

std::size_t BatchFft::OuterRows(std::size_t length, std::size_t least) {
  std::size_t radix = 0;  // of the first stage
  VisitRadices(length, [&radix](std::size_t next) { radix = radix == 0 ? next : radix; });
  if (radix != 4 && radix != 8) return length;
  const std::size_t leg = length / radix;
  const std::size_t legs = (least + leg - 1) / leg;
  return 2 * legs < radix ? legs * leg : length;
}

void BatchFft::Run(ConstRows in, Rows out, std::size_t lanes, std::span<double> scratch, std::size_t outer) const {
  Rows here = TakeSplit(scratch, length_ * lanes, lanes);
  Rows there = TakeSplit(scratch, length_ * lanes, lanes);
  if (stages_.empty()) {
    const Cplx one{1.0, 0.0};
    MultiplyRows(in, out, lanes, {&one, 1}, Product::kPlain);
    return;
  }
  std::size_t done = 1;  // product of the radices so far
  for (std::size_t i = 0; i < stages_.size(); ++i) {
    const Stage& stage = stages_[i];
    const std::size_t steps = length_ / done / stage.radix;
    FftPass pass{.inRe = in.re, .inIm = in.im, .inLeg = steps * done * in.stride, .inStep = done * in.stride};
    if (i == 0 && outer < length_) pass.outer = outer / steps;
    if (i + 1 < stages_.size()) {
      pass.outRe = here.re;
      pass.outIm = here.im;
      pass.outLeg = done * lanes;
      pass.outStep = stage.radix * done * lanes;
      pass.steps = steps;
      pass.run = done * lanes;
      pass.twiddles = stage.twiddles.data();
    } else if (out.stride == lanes && in.stride == lanes) {
      pass.outRe = out.re;
      pass.outIm = out.im;
      pass.outLeg = done * lanes;
      pass.steps = 1;
      pass.run = done * lanes;
    } else {  // row by row, because the rows of `out` need not be adjacent
      pass.inStep = in.stride;
      pass.outRe = out.re;
      pass.outIm = out.im;
      pass.outLeg = done * out.stride;
      pass.outStep = out.stride;
      pass.steps = done;
      pass.run = lanes;
    }
    if (stage.convolution) {
      stage.convolution->Run(pass, scratch);
    } else if (!stage.roots.empty()) {
      RunDirectPass(stage.radix, stage.roots.data(), pass);
    } else {
      RunFixedPass(stage.radix, pass);
    }
    in = here;
    std::swap(here, there);
    done *= stage.radix;
  }
}

double BatchFft::Cost(std::size_t length) {
  double cost = 0.0;
  VisitRadices(length, [&cost](std::size_t radix) { cost += PassCost(radix); });
  return cost * static_cast<double>(length);
}

std::size_t ChirpPaddedLength(std::size_t p) {
  const std::size_t least = 2 * p - 1;
  const std::size_t most = least + least / 4;
  std::size_t best = std::bit_ceil(least);
  double bestCost = BatchFft::Cost(best);
  for (std::size_t five = 1; five <= most; five *= 5) {
    for (std::size_t odd = five; odd <= most; odd *= 3) {
      const std::size_t length = odd * std::bit_ceil((least + odd - 1) / odd);
      if (length > most) continue;
      const double cost = BatchFft::Cost(length);
      if (cost < bestCost) {
        best = length;
        bestCost = cost;
      }
    }
  }
  return best;
}

std::vector<Cplx> ChirpFactors(std::size_t p) {
  const UnitRoots roots(2 * p);
  std::vector<Cplx> chirp(p);
  std::size_t square = 0;  // j^2 mod 2 p
  for (std::size_t j = 0; j < p; ++j) {
    chirp[j] = roots.At(square);
    square += 2 * j + 1;
    while (square >= 2 * p) square -= 2 * p;
  }
  return chirp;
}

std::vector<Cplx> WrappedChirp(std::span<const Cplx> chirp, std::size_t length) {
  const double scale = 1.0 / static_cast<double>(length);
  std::vector<Cplx> wrapped(length);
  for (std::size_t j = 0; j < chirp.size(); ++j) {
    wrapped[j] = {scale * chirp[j].re, -scale * chirp[j].im};
    if (j > 0) wrapped[length - j] = wrapped[j];
  }
  return wrapped;
}

PrimeConvolution::PrimeConvolution(std::size_t radix)
    : chirp_(ChirpFactors(radix)), padded_(ChirpPaddedLength(radix)), spectrum_(padded_.length()) {
  const std::vector<Cplx> wrapped = WrappedChirp(chirp_, padded_.length());
  const std::size_t part = wrapped.size() * kLaneQuantum;
  const LineMemory memory(2 * SplitDoubles(part) + padded_.ScratchDoubles(kLaneQuantum));
  std::span<double> rest = memory.span();
  const Rows in = TakeSplit(rest, part, kLaneQuantum);
  const Rows out = TakeSplit(rest, part, kLaneQuantum);
  std::fill_n(in.re, part, 0.0);
  std::fill_n(in.im, part, 0.0);
  for (std::size_t j = 0; j < wrapped.size(); ++j) {
    in.re[j * kLaneQuantum] = wrapped[j].re;
    in.im[j * kLaneQuantum] = wrapped[j].im;
  }
  padded_.Run(in, out, kLaneQuantum, rest);
  for (std::size_t k = 0; k < wrapped.size(); ++k) spectrum_[k] = {out.re[k * kLaneQuantum], out.im[k * kLaneQuantum]};
}

std::size_t PrimeConvolution::ScratchDoubles() const {
  return 2 * SplitDoubles(padded_.length() * kConvolutionLanes) + padded_.ScratchDoubles(kConvolutionLanes);
}

void PrimeConvolution::Run(const FftPass& pass, std::span<double> scratch) const {
  const std::size_t radix = chirp_.size();
  const std::size_t length = padded_.length();
  std::vector<Cplx> closing = chirp_;
  for (std::size_t p = 0; p < pass.steps; ++p) {
    if (pass.twiddles != nullptr) {
      for (std::size_t k = 1; k < radix; ++k) {
        const Cplx c = chirp_[k];
        const Cplx w = pass.twiddles[p * (radix - 1) + k - 1];
        closing[k] = {c.re * w.re - c.im * w.im, c.re * w.im + c.im * w.re};
      }
    }
    for (std::size_t q = 0; q < pass.run; q += kConvolutionLanes) {
      const std::size_t lanes = std::min(kConvolutionLanes, pass.run - q);
      const std::size_t part = length * lanes;
      std::span<double> rest = scratch;
      const Rows a = TakeSplit(rest, part, lanes);
      const Rows b = TakeSplit(rest, part, lanes);
      const std::size_t in = p * pass.inStep + q;
      const std::size_t out = p * pass.outStep + q;
      MultiplyRows({pass.inRe + in, pass.inIm + in, pass.inLeg}, a, lanes, chirp_, Product::kPlain);
      std::fill(a.re + radix * lanes, a.re + part, 0.0);
      std::fill(a.im + radix * lanes, a.im + part, 0.0);
      padded_.Run(a, b, lanes, rest);
      // A forward transform of the conjugate, conjugated, is the inverse one.
      MultiplyRows(b, b, lanes, spectrum_, Product::kConjugated);
      padded_.Run(b, a, lanes, rest);
      for (std::size_t k = 0; k < part; ++k) a.im[k] = -a.im[k];
      MultiplyRows(a, {pass.outRe + out, pass.outIm + out, pass.outLeg}, lanes, closing, Product::kPlain);
    }
  }
}

}  // namespace texturon
