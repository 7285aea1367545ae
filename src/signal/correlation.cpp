// SPDX-License-Identifier: Apache-2.0

#include "signal/correlation.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <vector>

#include "signal/fft/real_fft.h"
#include "signal/mean.h"

namespace texturon {
namespace {

/// The series about its mean, which takes nothing from a correlation and a large number from its sums.
std::vector<double> AboutMean(std::span<const double> z) {
  const double mean = Mean(z);
  std::vector<double> centred(z.begin(), z.end());
  for (double& value : centred) value -= mean;
  return centred;
}

/// Sums of the first k values and of their squares.
struct RunningSums {
  explicit RunningSums(std::span<const double> z) : sums(z.size() + 1), squares(z.size() + 1) {
    for (std::size_t i = 0; i < z.size(); ++i) {
      sums[i + 1] = sums[i] + z[i];
      squares[i + 1] = squares[i] + z[i] * z[i];
    }
  }
  double Sum(std::size_t from, std::size_t count) const { return sums[from + count] - sums[from]; }
  /// Sum of squares about the mean of the part.
  double Spread(std::size_t from, std::size_t count) const {
    const double sum = Sum(from, count);
    return squares[from + count] - squares[from] - sum * sum / static_cast<double>(count);
  }

  std::vector<double> sums;
  std::vector<double> squares;
};

/// products[lag mod m] = sum over i of first[i + lag] second[i]; m is at least the sum of both lengths.
std::vector<double> ProductsOfLags(std::span<const double> first, std::span<const double> second) {
  std::size_t m = 2;
  while (m < first.size() + second.size()) m *= 2;
  const auto plan = RealFftPlan::Make(m);
  std::vector<double> padded(m);
  std::vector<double> re1(m / 2 + 1), im1(m / 2 + 1), re2(m / 2 + 1), im2(m / 2 + 1);
  std::copy(first.begin(), first.end(), padded.begin());
  plan->Forward(padded, re1, im1);
  std::fill(padded.begin(), padded.end(), 0.0);
  std::copy(second.begin(), second.end(), padded.begin());
  plan->Forward(padded, re2, im2);
  for (std::size_t k = 0; k < re1.size(); ++k) {
    const double re = re1[k] * re2[k] + im1[k] * im2[k];
    im1[k] = im1[k] * re2[k] - re1[k] * im2[k];
    re1[k] = re;
  }
  plan->Inverse(re1, im1, padded);
  return padded;
}

}  // namespace

std::optional<BestLag> FindBestLag(std::span<const double> first, std::span<const double> second,
                                   std::size_t fewestShared) {
  constexpr double kNoSpread = 1e-12;  // of the spread of the whole series: rounding of the sums
  const auto n1 = static_cast<std::ptrdiff_t>(first.size());
  const auto n2 = static_cast<std::ptrdiff_t>(second.size());
  const auto fewest = static_cast<std::ptrdiff_t>(std::max<std::size_t>(fewestShared, 2));
  if (std::min(n1, n2) < fewest) return std::nullopt;
  const std::vector<double> a = AboutMean(first);
  const std::vector<double> b = AboutMean(second);
  const RunningSums sumsA(a);
  const RunningSums sumsB(b);
  const std::vector<double> products = ProductsOfLags(a, b);
  std::optional<BestLag> best;
  const auto see = [&](std::ptrdiff_t lag) {
    const std::ptrdiff_t fromA = std::max<std::ptrdiff_t>(lag, 0);
    const std::ptrdiff_t fromB = fromA - lag;
    const std::ptrdiff_t count = std::min(n1 - fromA, n2 - fromB);
    if (fromB >= n2 || count < fewest) return;
    const auto part = static_cast<std::size_t>(count);
    const double spreadA = sumsA.Spread(static_cast<std::size_t>(fromA), part);
    const double spreadB = sumsB.Spread(static_cast<std::size_t>(fromB), part);
    if (!(spreadA > kNoSpread * sumsA.squares.back()) || !(spreadB > kNoSpread * sumsB.squares.back())) return;
    const auto place = lag >= 0 ? static_cast<std::size_t>(lag) : products.size() - static_cast<std::size_t>(-lag);
    const double shared = products[place] - sumsA.Sum(static_cast<std::size_t>(fromA), part) *
                                                sumsB.Sum(static_cast<std::size_t>(fromB), part) /
                                                static_cast<double>(count);
    const double correlation = shared / std::sqrt(spreadA * spreadB);
    if (!best || correlation > best->correlation) best = {lag, correlation};
  };
  see(0);
  for (std::ptrdiff_t move = 1; move < std::max(n1, n2); ++move) {
    see(move);
    see(-move);
  }
  return best;
}

}  // namespace texturon
