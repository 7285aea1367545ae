// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "base/index_range.h"

namespace texturon {

// What the form fits share. A fit takes heights in um at equal spacing, X = index * spacing in um from the first height
// handed in, and writes form and residual, in um, for every one of them: also for those that the fit itself leaves out.

enum class ResidualKind : std::uint8_t {
  kPerpendicular = 0,  // distance from the fitted geometry
  kVertical = 1,       // along the height axis
};

struct FormInput {
  std::span<const double> heights;
  double spacingUM = 1.0;
  std::int32_t step = 1;                  // the fit takes the indices 0, step, 2 step, ...; below 1 is 1
  std::optional<IndexRange> exclusion{};  // first to last, counted from the first height, take no part in the fit
  ResidualKind residual = ResidualKind::kVertical;
};

/// Both as long as the heights, and overlapping neither them nor each other.
struct FormOutput {
  std::span<double> form;
  std::span<double> residual;

  bool Fits(const FormInput& input) const {
    return form.size() == input.heights.size() && residual.size() == input.heights.size();
  }
};

/// An index as a double. By way of 32 bits, of which processors convert several at once.
inline double ExactDouble(std::size_t index) {
  return static_cast<double>(static_cast<std::int32_t>(index));
}

/// Fit points at first, first + step, ... without a gap.
struct FitRun {
  std::size_t first = 0;
  std::size_t step = 1;
  std::span<const double> heights;  // of these points only, one after the other

  double Index(std::size_t j) const { return static_cast<double>(first) + static_cast<double>(step) * ExactDouble(j); }
};

/// The points that take part in a fit, in at most two runs: before and behind the exclusion. Views the input's heights
/// where it can, so it must not outlive them.
class FitPoints {
public:
  explicit FitPoints(const FormInput& input);
  FitPoints(const FitPoints&) = delete;
  FitPoints& operator=(const FitPoints&) = delete;

  std::span<const FitRun> Runs() const { return runs_; }
  std::size_t Count() const { return count_; }

private:
  void Add(const FormInput& input, std::size_t first, std::size_t end, std::size_t step);

  std::vector<FitRun> runs_;
  std::vector<double> thinned_;
  std::size_t count_ = 0;
};

/// Mean distance from point to point along the profile, in um: the spacing of residuals that are taken perpendicular to
/// a curve. At least two heights.
double MeanPathStep(std::span<const double> heights, double spacingUM);

/// Fit points in millimetres, X from the first height handed in.
struct FitPointsMM {
  explicit FitPointsMM(const FormInput& input);

  std::vector<double> x, z;
};

}  // namespace texturon
