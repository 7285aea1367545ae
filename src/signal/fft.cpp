#include "signal/fft.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

#include "signal/fft_memory.h"

namespace texturon {
namespace {

/// Columns that are transformed side by side.
constexpr std::size_t kBundle = 16;
static_assert(kBundle <= kMaxLanes && kBundle % kLaneQuantum == 0);

/// Weight of one element of a convolution over the whole length relative to BatchFft::Cost.
constexpr double kWholeOverhead = 4.0;

void CopyRows(ConstRows in, Rows out, std::size_t rows, std::size_t width) {
  for (std::size_t row = 0; row < rows; ++row) {
    std::copy_n(in.re + row * in.stride, width, out.re + row * out.stride);
    std::copy_n(in.im + row * in.stride, width, out.im + row * out.stride);
  }
}

/// Estimated time of the split n = n1 n2, partly filled lanes included.
double SplitCost(std::size_t n1, std::size_t n2) {
  const double first = n1 == 1 ? 0.0 : BatchFft::Cost(n1) * static_cast<double>(PaddedLanes(n2));
  const double second = BatchFft::Cost(n2) * static_cast<double>(PaddedLanes(n1));
  // What does not fit into the second-level cache is as bad as some more passes.
  const double large = static_cast<double>(std::max(n1, n2));
  return (first + second) * (1.0 + large / 4096.0);
}

std::size_t BestColumnLength(std::size_t n) {
  std::size_t best = 1;
  double bestCost = SplitCost(1, n);
  for (std::size_t n1 = 2; n1 * n1 <= n; ++n1) {
    if (n % n1 != 0) continue;
    for (const std::size_t candidate : {n1, n / n1}) {
      const double cost = SplitCost(candidate, n / candidate);
      if (cost < bestCost) {
        best = candidate;
        bestCost = cost;
      }
    }
  }
  return best;
}

}  // namespace

bool FftAcceptsLength(std::size_t n) {
  if (n == 0) return false;
  for (std::size_t factor = 2; factor <= kMaxFftPrime && n > 1; ++factor) {
    while (n % factor == 0) n /= factor;
  }
  return n == 1;
}

std::size_t LargestFftLength(std::size_t n) {
  while (n >= kMinFftLength && !FftAcceptsLength(n)) --n;
  return n >= kMinFftLength ? n : 0;
}

struct FftPlan::WholeChirp {
  WholeChirp(std::size_t n, std::size_t paddedLength)
      : chirp(ChirpFactors(n)),
        spectrumRe(paddedLength),
        spectrumIm(paddedLength),
        padded(paddedLength, BestColumnLength(paddedLength)) {
    const std::vector<Cplx> wrapped = WrappedChirp(chirp, paddedLength);
    std::transform(wrapped.begin(), wrapped.end(), spectrumRe.begin(), [](Cplx c) { return c.re; });
    std::transform(wrapped.begin(), wrapped.end(), spectrumIm.begin(), [](Cplx c) { return c.im; });
    padded.Forward(spectrumRe, spectrumIm, spectrumRe, spectrumIm);
  }
  std::vector<Cplx> chirp;
  std::vector<double> spectrumRe;
  std::vector<double> spectrumIm;
  FftPlan padded;
};

struct FftPlan::Work {
  Rows turned;  ///< blocks of kBundle values k1; in a block n2 rows of k1 lanes
  Rows tile;    ///< one bundle, input or output
  Rows edge;    ///< a bundle that is not full
  Rows coarse;  ///< roots of the turn
  Rows fine;
  std::span<double> scratch;
};

std::optional<FftPlan> FftPlan::Make(std::size_t n) {
  if (!FftAcceptsLength(n)) return std::nullopt;
  const std::size_t columnLength = BestColumnLength(n);
  // With few columns of a long prime length most lanes would be empty.
  if (std::min(columnLength, n / columnLength) < kBundle && n > kMaxDirectRadix) {
    const std::size_t padded = ChirpPaddedLength(n);
    const std::size_t split = BestColumnLength(padded);
    const double whole = 2.0 * SplitCost(split, padded / split) + kWholeOverhead * static_cast<double>(padded);
    if (whole < SplitCost(columnLength, n / columnLength)) {
      FftPlan plan(1, 1);
      plan.length_ = n;
      plan.whole_ = std::make_shared<const WholeChirp>(n, padded);
      return plan;
    }
  }
  return FftPlan(n, columnLength);
}

FftPlan::FftPlan(std::size_t n, std::size_t columnLength)
    : length_(n), columns_(columnLength), rows_(n / columnLength), roots_(n) {
  while (fineRows_ * fineRows_ < columnLength) fineRows_ *= 2;
  coarse_ = FirstLanes((PaddedLanes(columnLength) + fineRows_ - 1) / fineRows_, fineRows_);
  fine_ = FirstLanes(fineRows_, 1);
}

FftPlan::LaneTable FftPlan::FirstLanes(std::size_t rows, std::size_t step) const {
  LaneTable table{std::vector<double>(rows * kBundle), std::vector<double>(rows * kBundle)};
  for (std::size_t i = 0; i < rows && i * step < columns_.length(); ++i) {
    for (std::size_t q = 0; q < std::min(kBundle, rows_.length()); ++q) {
      const Cplx root = roots_.At(i * step * q);
      table.re[i * kBundle + q] = root.re;
      table.im[i * kBundle + q] = root.im;
    }
  }
  return table;
}

void FftPlan::MoveLanes(const LaneTable& first, std::size_t step, std::size_t c, Rows out) const {
  std::array<Cplx, kBundle> move;
  const std::size_t rows = first.re.size() / kBundle;
  for (std::size_t i = 0; i < rows; i += kBundle) {
    const std::size_t count = std::min(kBundle, rows - i);
    for (std::size_t k = 0; k < count; ++k) {
      const std::size_t row = (i + k) * step;
      move[k] = row < columns_.length() ? roots_.At(row * c) : Cplx{};
    }
    const std::size_t at = i * kBundle;
    MultiplyRows({first.re.data() + at, first.im.data() + at, kBundle}, {out.re + at, out.im + at, kBundle}, kBundle,
                 std::span(move).first(count), Product::kPlain);
  }
}

void FftPlan::Forward(std::span<const double> reIn, std::span<const double> imIn, std::span<double> reOut,
                      std::span<double> imOut) const {
  const std::size_t n1 = columns_.length();
  const std::size_t n2 = rows_.length();
  if (whole_) return ConvolveWhole({reIn.data(), imIn.data(), 1}, {reOut.data(), imOut.data(), 1});

  const std::size_t tile = std::max(PaddedLanes(n1), n2) * kBundle;
  const std::size_t coarse = coarse_.re.size();
  const std::size_t fine = fine_.re.size();
  const std::size_t scratch = std::max(columns_.ScratchDoubles(kBundle), rows_.ScratchDoubles(kBundle));
  const LineMemory memory(SplitDoubles(n2 * PaddedLanes(n1)) + 2 * SplitDoubles(tile) + SplitDoubles(coarse) +
                          SplitDoubles(fine) + scratch);
  std::span<double> rest = memory.span();
  Work work;
  work.turned = TakeSplit(rest, n2 * PaddedLanes(n1), kBundle);
  work.tile = TakeSplit(rest, tile, kBundle);
  work.edge = TakeSplit(rest, tile, kBundle);
  work.coarse = TakeSplit(rest, coarse, kBundle);
  work.fine = TakeSplit(rest, fine, kBundle);
  work.scratch = rest;
  TransformColumns({reIn.data(), imIn.data(), n2}, work);
  TransformRows({reOut.data(), imOut.data(), n1}, work);
}

void FftPlan::TransformColumns(ConstRows in, const Work& work) const {
  const std::size_t n1 = columns_.length();
  const std::size_t n2 = rows_.length();
  for (std::size_t c = 0; c < n2; c += kBundle) {
    const std::size_t width = std::min(kBundle, n2 - c);
    const std::size_t lanes = PaddedLanes(width);
    ConstRows source{in.re + c, in.im + c, in.stride};
    Rows tile = work.tile;
    tile.stride = lanes;
    if (width < lanes) {
      Rows edge = work.edge;
      edge.stride = lanes;
      std::fill_n(edge.re, n1 * lanes, 0.0);
      std::fill_n(edge.im, n1 * lanes, 0.0);
      CopyRows(source, edge, n1, width);
      source = edge;
    }
    columns_.Run(source, tile, lanes, work.scratch);
    MoveLanes(coarse_, fineRows_, c, work.coarse);
    MoveLanes(fine_, 1, c, work.fine);
    // The padding of the turned block is made of rows of zeros.
    std::fill(tile.re + n1 * lanes, tile.re + PaddedLanes(n1) * lanes, 0.0);
    std::fill(tile.im + n1 * lanes, tile.im + PaddedLanes(n1) * lanes, 0.0);
    RunTurnTile({.tile = tile,
                 .rows = PaddedLanes(n1),
                 .lanes = lanes,
                 .width = width,
                 .block = kBundle,
                 .outRows = n2,
                 .outRow = c,
                 .coarse = work.coarse,
                 .fine = work.fine,
                 .fineRows = fineRows_,
                 .outRe = work.turned.re,
                 .outIm = work.turned.im});
  }
}

void FftPlan::TransformRows(Rows out, const Work& work) const {
  const std::size_t n1 = columns_.length();
  const std::size_t n2 = rows_.length();
  for (std::size_t k = 0; k < n1; k += kBundle) {
    const std::size_t width = std::min(kBundle, n1 - k);
    const std::size_t lanes = PaddedLanes(width);
    const ConstRows source{work.turned.re + k * n2, work.turned.im + k * n2, lanes};
    const Rows target{out.re + k, out.im + k, out.stride};
    if (width == lanes) {
      rows_.Run(source, target, lanes, work.scratch);
    } else {
      Rows edge = work.edge;
      edge.stride = lanes;
      rows_.Run(source, edge, lanes, work.scratch);
      CopyRows(edge, target, n2, width);
    }
  }
}

void FftPlan::ConvolveWhole(ConstRows in, Rows out) const {
  const WholeChirp& whole = *whole_;
  std::vector<double> re(whole.padded.length());
  std::vector<double> im(whole.padded.length());
  for (std::size_t j = 0; j < length_; ++j) {
    const Cplx c = whole.chirp[j];
    re[j] = in.re[j] * c.re - in.im[j] * c.im;
    im[j] = in.re[j] * c.im + in.im[j] * c.re;
  }
  whole.padded.Forward(re, im, re, im);
  // A forward transform of the conjugate, conjugated, is the inverse one.
  for (std::size_t k = 0; k < re.size(); ++k) {
    const Cplx s = {whole.spectrumRe[k], whole.spectrumIm[k]};
    const double product = re[k] * s.re - im[k] * s.im;
    im[k] = -(re[k] * s.im + im[k] * s.re);
    re[k] = product;
  }
  whole.padded.Forward(re, im, re, im);
  for (std::size_t k = 0; k < length_; ++k) {
    const Cplx c = whole.chirp[k];
    out.re[k] = re[k] * c.re + im[k] * c.im;
    out.im[k] = re[k] * c.im - im[k] * c.re;
  }
}

void FftPlan::Inverse(std::span<const double> reIn, std::span<const double> imIn, std::span<double> reOut,
                      std::span<double> imOut) const {
  std::transform(imIn.begin(), imIn.begin() + static_cast<std::ptrdiff_t>(length_), imOut.begin(),
                 [](double value) { return -value; });
  Forward(reIn, imOut, reOut, imOut);
  const auto n = static_cast<double>(length_);
  for (std::size_t j = 0; j < length_; ++j) {
    reOut[j] /= n;
    imOut[j] /= -n;
  }
}

bool Fft(std::span<const double> reIn, std::span<const double> imIn, std::span<double> reOut, std::span<double> imOut) {
  const std::optional<FftPlan> plan = FftPlan::Make(reIn.size());
  if (plan) plan->Forward(reIn, imIn, reOut, imOut);
  return plan.has_value();
}

bool InverseFft(std::span<const double> reIn, std::span<const double> imIn, std::span<double> reOut,
                std::span<double> imOut) {
  const std::optional<FftPlan> plan = FftPlan::Make(reIn.size());
  if (plan) plan->Inverse(reIn, imIn, reOut, imOut);
  return plan.has_value();
}

}  // namespace texturon
