// SPDX-License-Identifier: Apache-2.0

#include "signal/fft/fft_batch.h"

#include <gtest/gtest.h>
#include <vector>

#include "support/naive_transform.h"

namespace texturon {
namespace {

/// Relative rms error of the worst lane: `lanes` different signals in rows of `stride`, read and written at an offset.
double WorstLane(std::size_t n, std::size_t lanes) {
  const std::size_t stride = lanes + 3;
  std::vector<double> in(2 * n * stride, 1e300);  // what lies between the rows must not be used
  std::vector<double> out(2 * n * stride, 1e300);
  const std::size_t half = n * stride;
  std::vector<Signal> signals;
  for (std::size_t lane = 0; lane < lanes; ++lane) {
    signals.push_back(RandomSignal(n));
    for (std::size_t j = 0; j < n; ++j) {
      signals[lane].re[j] += static_cast<double>(lane * j % 5);
      in[j * stride + lane] = signals[lane].re[j];
      in[half + j * stride + lane] = signals[lane].im[j];
    }
  }
  const BatchFft transform(n);
  std::vector<double> scratch(transform.ScratchDoubles(lanes));
  transform.Run({in.data(), in.data() + half, stride}, {out.data(), out.data() + half, stride}, lanes, scratch);
  double worst = 0.0;
  for (std::size_t lane = 0; lane < lanes; ++lane) {
    Signal y{std::vector<double>(n), std::vector<double>(n)};
    for (std::size_t k = 0; k < n; ++k) {
      y.re[k] = out[k * stride + lane];
      y.im[k] = out[half + k * stride + lane];
    }
    worst = std::max(worst, RelativeRms(y, NaiveTransform(signals[lane])));
  }
  for (std::size_t k = 0; k < n; ++k) EXPECT_EQ(out[k * stride + lanes], 1e300) << n;
  return worst;
}

TEST(BatchFft, TransformsEveryLaneAtEveryShortLength) {
  for (std::size_t n = 1; n <= 140; ++n) EXPECT_LT(WorstLane(n, n % 3 == 0 ? 12 : 4), AllowedLoss(n)) << n;
}

TEST(BatchFft, ChainsPassesOfEveryKind) {
  // Powers of two through eights and fours, powers of odd radices, two convolutions in one length, a prime beyond those
  // that the complex transform accepts.
  for (const std::size_t n : {256U, 512U, 1024U, 625U, 729U, 343U, 1001U, 4489U, 536U, 503U}) {
    EXPECT_LT(WorstLane(n, 8), AllowedLoss(n)) << n;
  }
}

}  // namespace
}  // namespace texturon
