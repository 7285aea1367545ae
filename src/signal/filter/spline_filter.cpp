// SPDX-License-Identifier: Apache-2.0

#include "signal/filter/spline_filter.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <numbers>

#include "base/double_double.h"
#include "base/elementary.h"
#include "signal/all_finite.h"
#include "signal/filter/filter_contract.h"

namespace texturon {
namespace {

// The mean line minimises, over all heights w,
//
//     sum W (w - z)^2 + tension alpha^2 sum (D1 w)^2 + (1 - tension) alpha^4 sum (D2 w)^2.
//
// Seen as a path, point by point, with the scaled slope v[i] = alpha (w[i] - w[i-1]), that is
//
//     sum W (w - z)^2 + tension sum v^2 + bending sum u^2,   u[i] = v[i+1] - v[i],   bending = (1 - tension) alpha^2,
//
// and everything that lies behind a point acts on the rest only through a quadratic form of its height and slope.

struct Equations {
  double step;  // 1 / alpha: w[i+1] = w[i] + step v[i+1]
  double tension;
  double bending;
};

// Cost of the points passed so far, least over their heights, as a function of the present height w and slope v:
// ww w^2 + 2 wv w v + vv v^2 - 2 hw w - 2 hv v. The slope is that by which the present point was reached.
template <typename Real>
struct Passed {
  Real ww, wv, vv, hw, hv;
};

// How the slope bends at a point in the best path: u = byHeight w + bySlope v - constant, with v the slope beyond it.
template <typename Real>
struct Bend {
  Real byHeight, bySlope, constant;
};

// Height and slope where the two costs meet. Left stands one point behind the middle and looks back at it, right the
// other way round; the right one's height and slope are w - step v and -v in terms of the left one's. Returns the
// determinant of the 2 x 2 system relative to the product of its diagonal: 1 at best, 0 for a singular one.
template <typename Real>
double Meet(const Passed<Real>& left, const Passed<Real>& right, Real step, Real tension, Real& height, Real& slope) {
  const Real ww = left.ww + right.ww;
  const Real wv = left.wv - (right.wv + step * right.ww);
  const Real vv = (left.vv + tension) + (right.vv + step * (right.wv + right.wv + step * right.ww));
  const Real hw = left.hw + right.hw;
  const Real hv = left.hv - (right.hv + step * right.hw);
  const Real determinant = ww * vv - wv * wv;
  height = (hw * vv - hv * wv) / determinant;
  slope = (hv * ww - hw * wv) / determinant;
  return static_cast<double>(determinant / (ww * vv));
}

template <typename Real>
class Path {
public:
  Path(std::span<const double> z, std::span<const double> weights, double reference, const Equations& equations)
      : z_(z),
        weights_(weights),
        reference_(reference),
        step_(equations.step),
        tension_(equations.tension),
        bending_(equations.bending) {}
  Path(std::span<const double>, std::span<const double>, double, Equations&&) = delete;

  void Solve(std::span<double> w, double& conditioning);

private:
  Real Weight(std::size_t i) const { return weights_.empty() ? 1.0 : weights_[i]; }
  Real Height(std::size_t i) const { return Real(z_[i]) - reference_; }

  // The cost of an end point alone, seen from its neighbour.
  Passed<Real> Leave(std::size_t end) const {
    const Real weight = Weight(end);
    const Real height = weight * Height(end);
    const Real lever = step_ * weight;
    return {weight, -lever, step_ * lever, height, -(step_ * height)};
  }

  // Takes point i with its weight and the slope before it into account, lets the slope bend there and moves on.
  Bend<Real> Pass(Passed<Real>& passed, std::size_t i) const {
    const Real weight = Weight(i);
    const Real ww = passed.ww + weight;
    const Real hw = passed.hw + weight * Height(i);
    const Real vv = passed.vv + tension_;
    const Real inverse = Real(1.0) / (bending_ + vv);
    const Bend<Real> bend{passed.wv * inverse, vv * inverse, passed.hv * inverse};
    const Real stay = bending_ * inverse;
    passed.ww = ww - passed.wv * bend.byHeight;
    passed.hw = hw - bend.byHeight * passed.hv;
    const Real wv = passed.wv * stay;
    passed.wv = wv - step_ * passed.ww;
    passed.vv = vv * stay - step_ * (wv + passed.wv);
    passed.hv = passed.hv * stay - step_ * passed.hw;
    return bend;
  }

  std::span<const double> z_;
  std::span<const double> weights_;
  Real reference_;
  Real step_;
  Real tension_;
  Real bending_;
};

// From both ends to the middle, where the two costs meet, and from there back to both ends: the two chains are
// independent of each other, which the processor makes use of. `conditioning` as from Meet.
template <typename Real>
void Path<Real>::Solve(std::span<double> w, double& conditioning) {
  const std::size_t n = z_.size();
  const std::size_t half = (n - 2) / 2;  // inner points passed from the left; the rest, as many or one more, not
  const auto bends = std::make_unique_for_overwrite<Bend<Real>[]>(n);
  Passed<Real> left = Leave(0);
  Passed<Real> right = Leave(n - 1);
  for (std::size_t k = 1; k <= half; ++k) {
    bends[k] = Pass(left, k);
    bends[n - 1 - k] = Pass(right, n - 1 - k);
  }
  if (n % 2 == 1) bends[half + 1] = Pass(right, half + 1);

  Real leftHeight, leftSlope;
  conditioning = Meet(left, right, step_, tension_, leftHeight, leftSlope);
  Real rightHeight = leftHeight - step_ * leftSlope;
  Real rightSlope = -leftSlope;
  const auto goBack = [&](Real& height, Real& slope, std::size_t i) {
    height = height - step_ * slope;
    w[i] = static_cast<double>(height + reference_);
    slope = slope - (bends[i].byHeight * height + (bends[i].bySlope * slope - bends[i].constant));
  };
  if (n % 2 == 1) goBack(rightHeight, rightSlope, half + 1);
  for (std::size_t k = half; k >= 1; --k) {
    goBack(leftHeight, leftSlope, k);
    goBack(rightHeight, rightSlope, n - 1 - k);
  }
  w[0] = static_cast<double>((leftHeight - step_ * leftSlope) + reference_);
  w[n - 1] = static_cast<double>((rightHeight - step_ * rightSlope) + reference_);
}

// The same where all points weigh 1: bit for bit what Path gives. Of a cost only hw and hv follow from the heights. The
// rest is the same seen from either end, so it is computed once; and after some thousand points, fewer the shorter the
// cutoff, it comes back to where it was a step or a few before, to the last bit: from there on its steps repeat.
class EvenPath {
public:
  EvenPath(std::span<const double> z, double reference, const Equations& equations)
      : z_(z), reference_(reference), equations_(equations) {}
  EvenPath(std::span<const double>, double, Equations&&) = delete;

  void Solve(std::span<double> w, double& conditioning) {
    const std::size_t n = z_.size();
    const std::size_t half = (n - 2) / 2;
    FindSteps(half, n - 2 - half);
    Passed<double> left = CostAfter(half);
    Passed<double> right = CostAfter(n - 2 - half);
    Begin(left, 0);
    Begin(right, n - 1);
    // Until the way back puts the height there, `w` keeps how the slope bends at a point.
    std::size_t slot = 0;
    for (std::size_t k = 1; k <= half; ++k) {
      w[k] = Pass(left, k, steps_[slot]);
      w[n - 1 - k] = Pass(right, n - 1 - k, steps_[slot]);
      if (++slot == stepCount_) slot = repeatsFrom_;
    }
    if (n % 2 == 1) w[half + 1] = Pass(right, half + 1, steps_[slot]);

    Place onLeft, onRight;
    conditioning = Meet(left, right, equations_.step, equations_.tension, onLeft.height, onLeft.slope);
    onRight = {onLeft.height - equations_.step * onLeft.slope, -onLeft.slope};
    if (n % 2 == 1) GoBack(onRight, half + 1, steps_[slot], w);
    for (std::size_t k = half; k >= 1; --k) {
      slot = slot == repeatsFrom_ && k >= stepCount_ ? stepCount_ - 1 : slot - 1;
      GoBack(onLeft, k, steps_[slot], w);
      GoBack(onRight, n - 1 - k, steps_[slot], w);
    }
    w[0] = (onLeft.height - equations_.step * onLeft.slope) + reference_;
    w[n - 1] = (onRight.height - equations_.step * onRight.slope) + reference_;
  }

private:
  /// What passing one more point does to hw and hv, and how the slope bends there.
  struct Step {
    double byHeight, bySlope, inverse, stay;
  };
  struct Place {
    double height, slope;
  };

  Step Advance(Passed<double>& cost) const {
    const double step = equations_.step;
    const double vv = cost.vv + equations_.tension;
    const double inverse = 1.0 / (equations_.bending + vv);
    const Step made{cost.wv * inverse, vv * inverse, inverse, equations_.bending * inverse};
    const double wv = cost.wv * made.stay;
    cost.ww = (cost.ww + 1.0) - cost.wv * made.byHeight;
    cost.wv = wv - step * cost.ww;
    cost.vv = vv * made.stay - step * (wv + cost.wv);
    return made;
  }

  /// Makes `most` steps, or those up to where they repeat. Keeps the cost after one of the first `half` of them.
  void FindSteps(std::size_t half, std::size_t most) {
    steps_ = std::make_unique_for_overwrite<Step[]>(most);
    Passed<double> cost{1.0, -equations_.step, equations_.step * equations_.step, 0.0, 0.0};
    kept_ = cost;
    std::size_t next = 1;
    while (stepCount_ < most) {
      steps_[stepCount_++] = Advance(cost);
      if (cost.ww == kept_.ww && cost.wv == kept_.wv && cost.vv == kept_.vv) {
        repeats_ = true;
        break;
      }
      if (stepCount_ < next || stepCount_ > half) continue;
      kept_ = cost;
      repeatsFrom_ = stepCount_;
      next = stepCount_ + stepCount_ / 8 + 8;
    }
  }

  Passed<double> CostAfter(std::size_t steps) const {
    Passed<double> cost = kept_;
    steps -= repeatsFrom_;
    if (repeats_) steps %= stepCount_ - repeatsFrom_;
    for (; steps > 0; --steps) Advance(cost);
    return cost;
  }

  double Height(std::size_t i) const { return z_[i] - reference_; }

  void Begin(Passed<double>& cost, std::size_t end) const {
    cost.hw = Height(end);
    cost.hv = -(equations_.step * cost.hw);
  }

  double Pass(Passed<double>& cost, std::size_t i, const Step& step) const {
    const double constant = cost.hv * step.inverse;
    cost.hw = (cost.hw + Height(i)) - step.byHeight * cost.hv;
    cost.hv = cost.hv * step.stay - equations_.step * cost.hw;
    return constant;
  }

  void GoBack(Place& at, std::size_t i, const Step& step, std::span<double> w) const {
    const double constant = w[i];
    at.height = at.height - equations_.step * at.slope;
    w[i] = at.height + reference_;
    at.slope = at.slope - (step.byHeight * at.height + (step.bySlope * at.slope - constant));
  }

  std::span<const double> z_;
  double reference_;
  Equations equations_;
  std::unique_ptr<Step[]> steps_;
  std::size_t stepCount_ = 0;
  std::size_t repeatsFrom_ = 0;  // the step that would follow the last is this one
  bool repeats_ = false;
  Passed<double> kept_{};  // cost after that many steps
};

// Below this measure of the middle system doubles are not trusted, since as much of their 16 digits is lost there. Only
// contrived weights get so far, such as two neighbours in a whole record, and tensions of indefinite equations.
constexpr double kWellConditioned = 1e-6;

std::size_t CountNonZero(std::span<const double> weights) {
  return weights.size() - static_cast<std::size_t>(std::count(weights.begin(), weights.end(), 0.0));
}

}  // namespace

std::optional<IndexRange> SplineFilter(std::span<const double> z, std::span<double> w, double spacingUM,
                                       double cutoffMM, double tension, std::span<const double> weights) {
  const std::size_t n = z.size();
  if (n < 1 || n > static_cast<std::size_t>(std::numeric_limits<std::int32_t>::max()) || w.size() != n) return {};
  if (!weights.empty() && weights.size() != n) return {};
  if (!(spacingUM > 0.0) || !(cutoffMM > 0.0) || !SpacingAllowsCutoff(spacingUM, cutoffMM)) return {};

  const std::size_t needed = tension == 0.0 ? std::min<std::size_t>(n, 2) : 1;
  if (!weights.empty() && CountNonZero(weights) < needed) return {};
  // The equations reproduce a constant, whatever the weights: any height of the data can be taken off and put back.
  const double reference = z[n / 2];

  if (n == 1) {
    w[0] = z[0];
  } else {
    const double alpha = 1.0 / (2.0 * Sin(std::numbers::pi * (spacingUM * kMillimetresPerMicrometre) / cutoffMM));
    const Equations equations{1.0 / alpha, tension, (1.0 - tension) * alpha * alpha};
    double conditioning = 0.0;
    if (weights.empty()) {
      EvenPath(z, reference, equations).Solve(w, conditioning);
    } else {
      Path<double>(z, weights, reference, equations).Solve(w, conditioning);
    }
    if (!(conditioning >= kWellConditioned)) {
      Path<DoubleDouble>(z, weights, reference, equations).Solve(w, conditioning);
    }
  }
  if (!AllFinite(w)) return {};
  return IndexRange::FromCount(0, static_cast<std::int32_t>(n));
}

}  // namespace texturon
