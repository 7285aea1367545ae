// SPDX-License-Identifier: Apache-2.0

#include "signal/form/nominal_curve.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <numeric>

#include "signal/all_finite.h"

namespace texturon {
namespace {

/// Second derivatives of the not-a-knot spline. With h the intervals and s the chords' slopes, row i says
/// h[i-1] b[i-1] + 2 (h[i-1] + h[i]) b[i] + h[i] b[i+1] = 6 (s[i] - s[i-1]); the ends lie on the line through their two
/// neighbours' b, which is put into the first and last row.
std::vector<double> Bends(std::span<const double> x, std::span<const double> z) {
  const std::size_t n = x.size();
  std::vector<double> main(n), above(n), rhs(n), bend(n);
  const auto h = [&](std::size_t i) { return x[i + 1] - x[i]; };
  const auto chord = [&](std::size_t i) { return (z[i + 1] - z[i]) / h(i); };
  for (std::size_t i = 1; i + 1 < n; ++i) {
    double below = h(i - 1);
    main[i] = 2.0 * (h(i - 1) + h(i));
    above[i] = h(i);
    rhs[i] = 6.0 * (chord(i) - chord(i - 1));
    if (i == 1) {  // b[0] = b[1] - (b[2] - b[1]) h0 / h1
      const double ratio = h(0) / h(1);
      main[i] += below * (1.0 + ratio);
      above[i] -= below * ratio;
      below = 0.0;
    }
    if (i + 2 == n) {
      const double ratio = h(i) / h(i - 1);
      main[i] += above[i] * (1.0 + ratio);
      below -= above[i] * ratio;
      above[i] = 0.0;
    }
    if (i > 1) {
      const double factor = below / main[i - 1];
      main[i] -= factor * above[i - 1];
      rhs[i] -= factor * rhs[i - 1];
    }
  }
  for (std::size_t i = n - 1; i-- > 1;) bend[i] = (rhs[i] - above[i] * bend[i + 1]) / main[i];
  bend[0] = bend[1] - (bend[2] - bend[1]) * h(0) / h(1);
  bend[n - 1] = bend[n - 2] + (bend[n - 2] - bend[n - 3]) * h(n - 2) / h(n - 3);
  return bend;
}

}  // namespace

std::optional<NominalCurve> NominalCurve::Through(std::span<const double> x, std::span<const double> z) {
  if (x.size() != z.size() || !AllFinite(x) || !AllFinite(z)) return std::nullopt;
  std::vector<std::size_t> order(x.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  std::stable_sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) { return x[a] < x[b]; });
  NominalCurve curve;
  for (const std::size_t i : order) {
    if (!curve.x_.empty() && x[i] == curve.x_.back()) continue;
    curve.x_.push_back(x[i]);
    curve.z_.push_back(z[i]);
  }
  if (curve.x_.size() < 4) return std::nullopt;
  curve.bend_ = Bends(curve.x_, curve.z_);
  if (!AllFinite(curve.bend_)) return std::nullopt;
  return curve;
}

NominalCurve::Value NominalCurve::At(double x, std::size_t& hint) const {
  const std::size_t last = x_.size() - 2;
  std::size_t i = std::min(hint, last);
  if (!(x >= x_[i] && (i == last || x < x_[i + 1]))) {
    if (i < last && x >= x_[i + 1] && (i + 1 == last || x < x_[i + 2])) {
      ++i;
    } else {
      const auto next = std::upper_bound(x_.begin() + 1, x_.end() - 1, x);
      i = static_cast<std::size_t>(next - x_.begin()) - 1;
    }
  }
  hint = i;
  const double h = x_[i + 1] - x_[i];
  const double inside = std::clamp(x, x_[i], x_[i + 1]);  // matters at the two ends only
  const double t = inside - x_[i];
  const double chord = (z_[i + 1] - z_[i]) / h;
  const double start = chord - h * (2.0 * bend_[i] + bend_[i + 1]) / 6.0;
  const double cubic = (bend_[i + 1] - bend_[i]) / (6.0 * h);
  const double slope = start + t * (bend_[i] + 3.0 * cubic * t);
  return {z_[i] + t * (start + t * (0.5 * bend_[i] + cubic * t)) + slope * (x - inside), slope};
}

NominalShape::NominalShape(const NominalCurve& curve, double originMM, BeyondCurve beyond)
    : curve_(curve), origin_(originMM), beyond_(beyond) {
  std::size_t hint = 0;
  originHeight_ = curve.At(originMM, hint).height;
}

void NominalShape::Evaluate(std::span<const double> u, const ShapeValues& values) const {
  std::size_t hint = 0;
  for (std::size_t i = 0; i < u.size(); ++i) {
    const double x = u[i] + origin_;
    const auto [height, slope] = curve_.At(x, hint);
    const bool isOn = beyond_ == BeyondCurve::kStraightOn || (x >= curve_.First() && x <= curve_.Last());
    values.height[i] = isOn ? height - originHeight_ : std::numeric_limits<double>::quiet_NaN();
    if (!values.slope.empty()) values.slope[i] = slope;
  }
}

}  // namespace texturon
