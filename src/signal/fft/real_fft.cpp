// SPDX-License-Identifier: Apache-2.0

#include "signal/fft/real_fft.h"

#include <algorithm>
#include <array>
#include <utility>
#include <vector>

#include "signal/fft/fft_passes.h"

namespace texturon {
namespace {

/// Longest transform whose turns are kept.
constexpr std::size_t kMostTabled = 16384;

/// The pairs of an even length are 1 <= k < this.
constexpr std::size_t PairsEnd(std::size_t n) {
  return (n / 2 + 1) / 2;
}

/// Calls visit(first, turns, count) for pieces of the turns 1 <= k < end.
template <typename Visit>
void VisitTurns(const UnitRoots& roots, std::size_t end, const Visit& visit) {
  std::array<double, 512> re;
  std::array<double, 512> im;
  const std::span<const Cplx> fine = roots.Fine();
  for (std::size_t k = 1; k < end;) {
    const std::size_t offset = k % fine.size();
    const std::size_t count = std::min({fine.size() - offset, end - k, re.size()});
    ScaleTurns(fine.subspan(offset, count), roots.Coarse(k / fine.size()), {re.data(), im.data()});
    visit(k, ConstRows{re.data(), im.data()}, count);
    k += count;
  }
}

}  // namespace

RealFftPlan::RealFftPlan(std::size_t n, FftPlan complexPlan) : length_(n), complex_(std::move(complexPlan)), roots_(n) {
  if (n % 2 != 0 || n > kMostTabled) return;
  VisitTurns(roots_, PairsEnd(n), [this](std::size_t /*first*/, ConstRows turns, std::size_t count) {
    turnsRe_.insert(turnsRe_.end(), turns.re, turns.re + count);
    turnsIm_.insert(turnsIm_.end(), turns.im, turns.im + count);
  });
}

std::optional<RealFftPlan> RealFftPlan::Make(std::size_t n) {
  if (!FftAcceptsLength(n)) return std::nullopt;
  std::optional<FftPlan> plan = FftPlan::Make(n % 2 == 0 ? n / 2 : n);
  if (!plan) return std::nullopt;
  return RealFftPlan(n, *std::move(plan));
}

void RealFftPlan::Forward(std::span<const double> x, std::span<double> re, std::span<double> im) const {
  const std::size_t half = length_ / 2;
  if (length_ % 2 != 0) {
    complex_.ForwardReal(x, re, im);
    return;
  }
  // z[j] = x[2 j] + i x[2 j + 1] has the transform E + i O of the even and the odd samples, and X = E + w O.
  const Rows z{re.data(), im.data()};
  TakePairs(x.data(), half, z);
  complex_.Forward(re, im, re, im);
  re[half] = re[0] - im[0];
  im[half] = 0.0;
  re[0] += im[0];
  im[0] = 0.0;
  if (turnsRe_.empty()) {
    VisitTurns(roots_, PairsEnd(length_), [&](std::size_t first, ConstRows turns, std::size_t count) {
      JoinEvenAndOdd(z, half, first, turns, count);
    });
  } else {
    JoinEvenAndOdd(z, half, 1, {turnsRe_.data(), turnsIm_.data()}, turnsRe_.size());
  }
  if (half % 2 == 0) im[half / 2] = -im[half / 2];
}

void RealFftPlan::Inverse(std::span<const double> re, std::span<const double> im, std::span<double> x) const {
  // The Hartley transform H[k] = Re X[k] - Im X[k] of real values is its own inverse but for the factor n.
  const std::size_t half = length_ / 2;
  const std::size_t pairs = (length_ - 1) / 2;
  std::vector<double> hartley(length_);
  hartley[0] = re[0];
  for (std::size_t k = 1; k <= pairs; ++k) {
    hartley[k] = re[k] - im[k];
    hartley[length_ - k] = re[k] + im[k];
  }
  if (half != pairs) hartley[half] = re[half];
  std::vector<double> backRe(half + 1);
  std::vector<double> backIm(half + 1);
  Forward(hartley, backRe, backIm);
  const auto n = static_cast<double>(length_);
  x[0] = backRe[0] / n;
  for (std::size_t j = 1; j <= pairs; ++j) {
    x[j] = (backRe[j] - backIm[j]) / n;
    x[length_ - j] = (backRe[j] + backIm[j]) / n;
  }
  if (half != pairs) x[half] = backRe[half] / n;
}

}  // namespace texturon
