#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <span>
#include <vector>

#include "signal/fft_batch.h"
#include "signal/fft_roots.h"

namespace texturon {

/// A length with a prime factor above this is refused.
inline constexpr std::size_t kMaxFftPrime = 500;
/// Shortest length to which a profile may be cut so that its length is accepted.
inline constexpr std::size_t kMinFftLength = 5;

/// True for n >= 1 whose prime factors are all at most kMaxFftPrime.
bool FftAcceptsLength(std::size_t n);

/// The largest accepted length m with kMinFftLength <= m <= n; 0 when there is none.
std::size_t LargestFftLength(std::size_t n);

/// A complex Fourier transform of one length: X[k] = sum over j of x[j] exp(-2 pi i j k / n), real and imaginary parts
/// in separate arrays. The relative rms error is below 1e-15 log2(n) (found: see fft_test). Cheap to build (O(sqrt n)
/// sines), immutable, may be copied and used by several threads at once.
///
/// The length is split into two factors of about sqrt(n). Columns are transformed in bundles, turned and laid out for
/// the second half, which then transforms bundles again and writes rows of the result: two trips through memory, all
/// other work stays in the second-level cache and runs along neighbouring columns.
class FftPlan {
public:
  /// Nothing when the length is refused.
  static std::optional<FftPlan> Make(std::size_t n);

  std::size_t length() const { return length_; }

  /// All four spans hold at least length() values. Outputs may be the inputs themselves, but not overlap otherwise.
  void Forward(std::span<const double> reIn, std::span<const double> imIn, std::span<double> reOut,
               std::span<double> imOut) const;

  /// x[j] = 1/n sum over k of X[k] exp(+2 pi i j k / n), by a forward transform of the conjugate.
  void Inverse(std::span<const double> reIn, std::span<const double> imIn, std::span<double> reOut,
               std::span<double> imOut) const;

private:
  struct Work;
  struct WholeChirp;
  struct LaneTable {
    std::vector<double> re;
    std::vector<double> im;
  };

  FftPlan(std::size_t n, std::size_t columnLength);

  LaneTable FirstLanes(std::size_t rows, std::size_t step) const;
  /// The table's turns times those of the bundle that starts at column c.
  void MoveLanes(const LaneTable& first, std::size_t step, std::size_t c, Rows out) const;
  void TransformColumns(ConstRows in, const Work& work) const;
  void TransformRows(Rows out, const Work& work) const;
  void ConvolveWhole(ConstRows in, Rows out) const;

  std::size_t length_ = 1;
  BatchFft columns_;  ///< over j1 of x[j1 n2 + j2]
  BatchFft rows_;     ///< over j2
  UnitRoots roots_;
  std::size_t fineRows_ = 1;  ///< turns exp(-2 pi i k c / n) come from row k / fineRows_ and row k % fineRows_
  LaneTable coarse_;          ///< for the lanes c = 0, 1, .. of the first bundle, k = 0, fineRows_, ..
  LaneTable fine_;            ///< k = 0, 1, ..
  std::shared_ptr<const WholeChirp> whole_;  ///< replaces the split where that would leave most lanes empty
};

/// One transform with a plan of its own. False when the length of reIn is refused; then nothing is written.
bool Fft(std::span<const double> reIn, std::span<const double> imIn, std::span<double> reOut, std::span<double> imOut);
bool InverseFft(std::span<const double> reIn, std::span<const double> imIn, std::span<double> reOut,
                std::span<double> imOut);

}  // namespace texturon
