// SPDX-License-Identifier: Apache-2.0

#include "signal/fft/fft_passes.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include "base/multiversion.h"

namespace texturon {
namespace {

TEXTURON_INLINE Cplx operator+(Cplx a, Cplx b) {
  return {a.re + b.re, a.im + b.im};
}
TEXTURON_INLINE Cplx operator-(Cplx a, Cplx b) {
  return {a.re - b.re, a.im - b.im};
}
TEXTURON_INLINE Cplx operator*(Cplx a, Cplx b) {
  return {a.re * b.re - a.im * b.im, a.re * b.im + a.im * b.re};
}
TEXTURON_INLINE Cplx operator*(double f, Cplx a) {
  return {f * a.re, f * a.im};
}
/// -i a, the quarter turn of a forward transform.
TEXTURON_INLINE Cplx Quarter(Cplx a) {
  return {a.im, -a.re};
}

template <std::size_t R>
using Legs = std::array<Cplx, R>;

// Transforms of R values in place. The constants are sines and cosines of the R-th part of a turn.

TEXTURON_INLINE void Butterfly(Legs<2>& a) {
  a = {a[0] + a[1], a[0] - a[1]};
}

TEXTURON_INLINE void Butterfly(Legs<3>& a) {
  constexpr double kSin = 0.86602540378443864676;
  const Cplx sum = a[1] + a[2];
  const Cplx mid = a[0] - 0.5 * sum;
  const Cplx turn = kSin * Quarter(a[1] - a[2]);
  a = {a[0] + sum, mid + turn, mid - turn};
}

TEXTURON_INLINE void Butterfly(Legs<4>& a) {
  const Cplx s0 = a[0] + a[2];
  const Cplx d0 = a[0] - a[2];
  const Cplx s1 = a[1] + a[3];
  const Cplx d1 = Quarter(a[1] - a[3]);
  a = {s0 + s1, d0 + d1, s0 - s1, d0 - d1};
}

TEXTURON_INLINE void Butterfly(Legs<5>& a) {
  constexpr double kCos1 = 0.30901699437494742410;
  constexpr double kCos2 = -0.80901699437494742410;
  constexpr double kSin1 = 0.95105651629515357212;
  constexpr double kSin2 = 0.58778525229247312917;
  const Cplx s1 = a[1] + a[4];
  const Cplx s2 = a[2] + a[3];
  const Cplx d1 = Quarter(a[1] - a[4]);
  const Cplx d2 = Quarter(a[2] - a[3]);
  const Cplx m1 = a[0] + (kCos1 * s1 + kCos2 * s2);
  const Cplx m2 = a[0] + (kCos2 * s1 + kCos1 * s2);
  const Cplx t1 = kSin1 * d1 + kSin2 * d2;
  const Cplx t2 = kSin2 * d1 - kSin1 * d2;
  a = {a[0] + (s1 + s2), m1 + t1, m2 + t2, m2 - t2, m1 - t1};
}

/// Transforms of eight values from those of every second one.
TEXTURON_INLINE void JoinEights(const Legs<4>& even, const Legs<4>& odd, Legs<8>& a) {
  constexpr double kHalfRoot = 0.70710678118654752440;
  const Cplx o1 = {kHalfRoot * (odd[1].re + odd[1].im), kHalfRoot * (odd[1].im - odd[1].re)};
  const Cplx o2 = Quarter(odd[2]);
  const Cplx o3 = {kHalfRoot * (odd[3].im - odd[3].re), -kHalfRoot * (odd[3].re + odd[3].im)};
  a = {even[0] + odd[0], even[1] + o1, even[2] + o2, even[3] + o3,
       even[0] - odd[0], even[1] - o1, even[2] - o2, even[3] - o3};
}

TEXTURON_INLINE void Butterfly(Legs<8>& a) {
  Legs<4> even = {a[0], a[2], a[4], a[6]};
  Legs<4> odd = {a[1], a[3], a[5], a[7]};
  Butterfly(even);
  Butterfly(odd);
  JoinEights(even, odd, a);
}

// The same where only the outer ones of the values are not 0.

/// The transform of a, 0, 0, d.
TEXTURON_INLINE Legs<4> OfEnds(Cplx a, Cplx d) {
  const Cplx turned = {-d.im, d.re};
  return {a + d, a + turned, a - d, a - turned};
}

/// The transform of a, b, 0, d.
TEXTURON_INLINE Legs<4> OfThree(Cplx a, Cplx b, Cplx d) {
  const Cplx sum = b + d;
  const Cplx turned = Quarter(b - d);
  return {a + sum, a + turned, a - sum, a - turned};
}

template <std::size_t kOuter, std::size_t R>
TEXTURON_INLINE void OuterButterfly(Legs<R>& a) {
  if constexpr (kOuter == 0) {
    Butterfly(a);
  } else if constexpr (R == 4) {
    a = OfEnds(a[0], a[3]);
  } else if constexpr (kOuter == 3) {
    const Legs<4> even = OfThree(a[0], a[2], a[6]);
    const Cplx sum = a[1] + a[5], difference = a[1] - a[5];
    const Cplx turned = {-a[7].im, a[7].re};
    JoinEights(even, {sum + a[7], difference + turned, sum - a[7], difference - turned}, a);
  } else if constexpr (kOuter == 2) {
    JoinEights(OfEnds(a[0], a[6]), OfEnds(a[1], a[7]), a);
  } else {
    constexpr double kHalfRoot = 0.70710678118654752440;
    const Cplx first = a[0];
    const Cplx last = a[7];
    const double difference = kHalfRoot * (last.re - last.im);
    const double sum = kHalfRoot * (last.re + last.im);
    const Cplx turn1 = {difference, sum}, turn2 = {-last.im, last.re}, turn3 = {-sum, difference};
    a = {first + last, first + turn1, first + turn2, first + turn3,
         first - last, first - turn1, first - turn2, first - turn3};
  }
}

/// kRun: so many values as the compiler knows, or 0.
template <std::size_t R, std::size_t kOuter, std::size_t kRun, bool kTwiddled, std::size_t... K>
TEXTURON_INLINE void RunPass(const FftPass& pass, std::index_sequence<K...> /*legs*/) {
  constexpr std::size_t kRead = kOuter == 0 ? R : kOuter;
  const std::size_t run = kRun > 0 ? kRun : pass.run / kLaneQuantum * kLaneQuantum;
  for (std::size_t p = 0; p < pass.steps; ++p) {
    const double* __restrict xr = pass.inRe + p * pass.inStep;
    const double* __restrict xi = pass.inIm + p * pass.inStep;
    double* __restrict yr = pass.outRe + p * pass.outStep;
    double* __restrict yi = pass.outIm + p * pass.outStep;
    const std::size_t inLeg = pass.inLeg;
    const std::size_t outLeg = pass.outLeg;
    Legs<R> w{};
    if constexpr (kTwiddled) ((w[K] = K == 0 ? Cplx{1.0, 0.0} : pass.twiddles[p * (R - 1) + K - 1]), ...);
    TEXTURON_IVDEP
    for (std::size_t q = 0; q < run; ++q) {
      Legs<R> a{};
      ((K < kRead || K >= R - kRead ? void(a[K] = Cplx{xr[K * inLeg + q], xi[K * inLeg + q]}) : void()), ...);
      OuterButterfly<kOuter>(a);
      if constexpr (kTwiddled) ((K == 0 ? void() : void(a[K] = a[K] * w[K])), ...);
      ((yr[K * outLeg + q] = a[K].re), ...);
      ((yi[K * outLeg + q] = a[K].im), ...);
    }
  }
}

template <std::size_t R, std::size_t kOuter = 0>
TEXTURON_INLINE void RunPass(const FftPass& pass) {
  constexpr auto kLegs = std::make_index_sequence<R>{};
  if (pass.twiddles == nullptr) return RunPass<R, kOuter, 0, false>(pass, kLegs);
  if (pass.run == kLaneQuantum) return RunPass<R, kOuter, kLaneQuantum, true>(pass, kLegs);
  if (pass.run == 2 * kLaneQuantum) return RunPass<R, kOuter, 2 * kLaneQuantum, true>(pass, kLegs);
  RunPass<R, kOuter, 0, true>(pass, kLegs);
}

constexpr std::size_t kTile = 8;
using TileRow = std::array<double, kTile>;
/// Folded input of one tile of lanes: x[j] + x[r - j] and x[j] - x[r - j].
struct FoldedLeg {
  TileRow sumRe, sumIm, diffRe, diffIm;
};

/// One tile of `lanes` <= kTile transforms at x, y. Entries beyond `lanes` are computed from zeros and not stored.
TEXTURON_INLINE void DirectTile(std::size_t radix, const Cplx* roots, const FftPass& pass, const Cplx* w,
                                std::array<const double*, 2> x, std::array<double*, 2> y, std::size_t lanes) {
  const std::size_t half = radix / 2;
  std::array<FoldedLeg, kMaxDirectRadix / 2> legs;
  TileRow firstRe{};
  TileRow firstIm{};
  for (std::size_t q = 0; q < lanes; ++q) {
    firstRe[q] = x[0][q];
    firstIm[q] = x[1][q];
  }
  TileRow totalRe = firstRe;
  TileRow totalIm = firstIm;
  for (std::size_t j = 1; j <= half; ++j) {
    FoldedLeg& leg = legs[j - 1];
    leg = {};
    const std::size_t a = j * pass.inLeg;
    const std::size_t b = (radix - j) * pass.inLeg;
    for (std::size_t q = 0; q < lanes; ++q) {
      leg.sumRe[q] = x[0][a + q] + x[0][b + q];
      leg.sumIm[q] = x[1][a + q] + x[1][b + q];
      leg.diffRe[q] = x[0][a + q] - x[0][b + q];
      leg.diffIm[q] = x[1][a + q] - x[1][b + q];
      totalRe[q] += leg.sumRe[q];
      totalIm[q] += leg.sumIm[q];
    }
  }
  for (std::size_t q = 0; q < lanes; ++q) {
    y[0][q] = totalRe[q];
    y[1][q] = totalIm[q];
  }
  for (std::size_t k = 1; k <= half; ++k) {
    TileRow evenRe = firstRe;
    TileRow evenIm = firstIm;
    TileRow oddRe{};
    TileRow oddIm{};
    for (std::size_t j = 0; j < half; ++j) {
      const Cplx root = roots[(k - 1) * half + j];
      const FoldedLeg& leg = legs[j];
      for (std::size_t q = 0; q < kTile; ++q) evenRe[q] += root.re * leg.sumRe[q];
      for (std::size_t q = 0; q < kTile; ++q) evenIm[q] += root.re * leg.sumIm[q];
      for (std::size_t q = 0; q < kTile; ++q) oddRe[q] += root.im * leg.diffRe[q];
      for (std::size_t q = 0; q < kTile; ++q) oddIm[q] += root.im * leg.diffIm[q];
    }
    const Cplx wa = w == nullptr ? Cplx{1.0, 0.0} : w[k - 1];
    const Cplx wb = w == nullptr ? Cplx{1.0, 0.0} : w[radix - k - 1];
    const std::size_t a = k * pass.outLeg;
    const std::size_t b = (radix - k) * pass.outLeg;
    for (std::size_t q = 0; q < lanes; ++q) {
      const Cplx near = Cplx{evenRe[q] - oddIm[q], evenIm[q] + oddRe[q]} * wa;
      const Cplx far = Cplx{evenRe[q] + oddIm[q], evenIm[q] - oddRe[q]} * wb;
      y[0][a + q] = near.re;
      y[1][a + q] = near.im;
      y[0][b + q] = far.re;
      y[1][b + q] = far.im;
    }
  }
}

using TurnRows = std::array<double, kMaxLanes * kMaxLanes>;

/// y[q * stride + k] = x[k * kMaxLanes + q] for k < rows (even) and q < width, two by two.
TEXTURON_INLINE void Transpose(const TurnRows& x, std::size_t rows, std::size_t width, double* y, std::size_t stride) {
  for (std::size_t q = 0; q + 1 < width; q += 2) {
    for (std::size_t k = 0; k < rows; k += 2) {
      const PairOfDoubles a = LoadPair(&x[k * kMaxLanes + q]);
      const PairOfDoubles b = LoadPair(&x[(k + 1) * kMaxLanes + q]);
      StorePair(y + q * stride + k, LowPair(a, b));
      StorePair(y + (q + 1) * stride + k, HighPair(a, b));
    }
  }
  if (width % 2 == 0) return;
  for (std::size_t k = 0; k < rows; ++k) y[(width - 1) * stride + k] = x[k * kMaxLanes + width - 1];
}

}  // namespace

bool IsFixedRadix(std::size_t radix) {
  return radix == 2 || radix == 3 || radix == 4 || radix == 5 || radix == 8;
}

TEXTURON_MULTIVERSION
void RunFixedPass(std::size_t radix, const FftPass& pass) {
  switch (radix) {
    case 2:
      return RunPass<2>(pass);
    case 3:
      return RunPass<3>(pass);
    case 4:
      return pass.outer == 1 ? RunPass<4, 1>(pass) : RunPass<4>(pass);
    case 5:
      return RunPass<5>(pass);
    default:
      if (pass.outer == 1) return RunPass<8, 1>(pass);
      if (pass.outer == 2) return RunPass<8, 2>(pass);
      return pass.outer == 3 ? RunPass<8, 3>(pass) : RunPass<8>(pass);
  }
}

TEXTURON_MULTIVERSION
void RunDirectPass(std::size_t radix, const Cplx* roots, const FftPass& pass) {
  for (std::size_t p = 0; p < pass.steps; ++p) {
    const Cplx* w = pass.twiddles == nullptr ? nullptr : pass.twiddles + p * (radix - 1);
    for (std::size_t q = 0; q < pass.run; q += kTile) {
      const std::size_t in = p * pass.inStep + q;
      const std::size_t out = p * pass.outStep + q;
      DirectTile(radix, roots, pass, w, {pass.inRe + in, pass.inIm + in}, {pass.outRe + out, pass.outIm + out},
                 std::min(kTile, pass.run - q));
    }
  }
}

TEXTURON_MULTIVERSION
void MultiplyRows(ConstRows in, Rows out, std::size_t lanes, std::span<const Cplx> factors, Product product) {
  const double sign = product == Product::kConjugated ? -1.0 : 1.0;
  lanes = lanes / kLaneQuantum * kLaneQuantum;
  for (std::size_t row = 0; row < factors.size(); ++row) {
    const Cplx f = factors[row];
    const Cplx g = sign * f;
    const double* xr = in.re + row * in.stride;
    const double* xi = in.im + row * in.stride;
    double* yr = out.re + row * out.stride;
    double* yi = out.im + row * out.stride;
    TEXTURON_IVDEP
    for (std::size_t q = 0; q < lanes; ++q) {
      const double re = xr[q];
      const double im = xi[q];
      yr[q] = re * f.re - im * f.im;
      yi[q] = re * g.im + im * g.re;
    }
  }
}

TEXTURON_MULTIVERSION
void SeparateRealPair(Rows z, std::size_t rows, Rows second, std::size_t lanes) {
  lanes = lanes / kLaneQuantum * kLaneQuantum;
  for (std::size_t k = 0; k <= rows / 2; ++k) {
    double* ar = z.re + k * z.stride;
    double* ai = z.im + k * z.stride;
    const double* mr = z.re + (k == 0 ? 0 : rows - k) * z.stride;
    const double* mi = z.im + (k == 0 ? 0 : rows - k) * z.stride;
    double* br = second.re + k * second.stride;
    double* bi = second.im + k * second.stride;
    TEXTURON_IVDEP
    for (std::size_t q = 0; q < lanes; ++q) {
      const Cplx here = {ar[q], ai[q]};
      const Cplx mirror = {mr[q], mi[q]};
      ar[q] = 0.5 * (here.re + mirror.re);
      ai[q] = 0.5 * (here.im - mirror.im);
      br[q] = 0.5 * (here.im + mirror.im);
      bi[q] = 0.5 * (mirror.re - here.re);
    }
  }
}

TEXTURON_MULTIVERSION
void TakePairs(const double* x, std::size_t count, Rows out) {
  double* __restrict re = out.re;
  double* __restrict im = out.im;
  for (std::size_t j = 0; j < count; ++j) {
    re[j] = x[2 * j];
    im[j] = x[2 * j + 1];
  }
}

TEXTURON_MULTIVERSION
void JoinEvenAndOdd(Rows z, std::size_t half, std::size_t first, ConstRows turns, std::size_t count) {
  double* lowRe = z.re + first;
  double* lowIm = z.im + first;
  double* highRe = z.re + (half - first);
  double* highIm = z.im + (half - first);
  const auto end = static_cast<std::ptrdiff_t>(count);
  TEXTURON_IVDEP
  for (std::ptrdiff_t i = 0; i < end; ++i) {
    const Cplx low = {lowRe[i], lowIm[i]};
    const Cplx high = {highRe[-i], highIm[-i]};
    const Cplx even = {0.5 * (low.re + high.re), 0.5 * (low.im - high.im)};
    const Cplx odd = Cplx{0.5 * (low.im + high.im), 0.5 * (high.re - low.re)} * Cplx{turns.re[i], turns.im[i]};
    lowRe[i] = even.re + odd.re;
    lowIm[i] = even.im + odd.im;
    highRe[-i] = even.re - odd.re;
    highIm[-i] = odd.im - even.im;
  }
}

TEXTURON_MULTIVERSION
void ScaleTurns(std::span<const Cplx> fine, Cplx coarse, Rows out) {
  for (std::size_t i = 0; i < fine.size(); ++i) {
    const Cplx turn = coarse * fine[i];
    out.re[i] = turn.re;
    out.im[i] = turn.im;
  }
}

TEXTURON_MULTIVERSION
void JoinTurns(ConstRows coarse, ConstRows fine, std::size_t fineRows, std::size_t rows, std::size_t lanes, Rows out) {
  for (std::size_t k = 0; k < rows; ++k) {
    const std::size_t c = k / fineRows * coarse.stride;
    const std::size_t f = k % fineRows * fine.stride;
    for (std::size_t q = 0; q < lanes; ++q) {
      const Cplx turn = Cplx{coarse.re[c + q], coarse.im[c + q]} * Cplx{fine.re[f + q], fine.im[f + q]};
      out.re[k * out.stride + q] = turn.re;
      out.im[k * out.stride + q] = turn.im;
    }
  }
}

TEXTURON_MULTIVERSION
void RunTurnTile(const TurnTile& turn) {
  alignas(64) TurnRows re;
  alignas(64) TurnRows im;
  const std::size_t lanes = turn.lanes / kLaneQuantum * kLaneQuantum;
  const bool isTabled = turn.turns.re != nullptr;
  for (std::size_t k0 = 0; k0 < turn.rows; k0 += turn.block) {
    const std::size_t count = std::min(turn.block, turn.rows - k0);
    for (std::size_t k = 0; k < count; ++k) {
      const double* xr = turn.tile.re + (k0 + k) * turn.tile.stride;
      const double* xi = turn.tile.im + (k0 + k) * turn.tile.stride;
      if (isTabled) {
        const double* wr = turn.turns.re + (k0 + k) * turn.turns.stride;
        const double* wi = turn.turns.im + (k0 + k) * turn.turns.stride;
        TEXTURON_IVDEP
        for (std::size_t q = 0; q < lanes; ++q) {
          const Cplx y = Cplx{xr[q], xi[q]} * Cplx{wr[q], wi[q]};
          re[k * kMaxLanes + q] = y.re;
          im[k * kMaxLanes + q] = y.im;
        }
        continue;
      }
      const std::size_t coarse = (k0 + k) / turn.fineRows * turn.coarse.stride;
      const std::size_t fine = (k0 + k) % turn.fineRows * turn.fine.stride;
      const double* ur = turn.coarse.re + coarse;
      const double* ui = turn.coarse.im + coarse;
      const double* vr = turn.fine.re + fine;
      const double* vi = turn.fine.im + fine;
      TEXTURON_IVDEP
      for (std::size_t q = 0; q < lanes; ++q) {
        const Cplx y = Cplx{xr[q], xi[q]} * (Cplx{ur[q], ui[q]} * Cplx{vr[q], vi[q]});
        re[k * kMaxLanes + q] = y.re;
        im[k * kMaxLanes + q] = y.im;
      }
    }
    const std::size_t out = k0 * turn.outRows + turn.outRow * count;
    Transpose(re, count, turn.width, turn.outRe + out, count);
    Transpose(im, count, turn.width, turn.outIm + out, count);
  }
}

}  // namespace texturon
