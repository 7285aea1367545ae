// SPDX-License-Identifier: Apache-2.0

#include "signal/form/asphere.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <utility>

#include "base/multiversion.h"
#include "signal/lane_sums.h"

namespace texturon {
namespace {

constexpr double kNoLimit = 9.9e100;
constexpr double kEndOfSurface = 0.9999;  // of the conic's half width, where the straight continuation starts
constexpr double kSecondPoint = 0.999;    // of that
constexpr double kFlat = 1e-200;          // a curvature below it is none

double ConicLimit(const AsphereDescription& asphere) {
  const double q = asphere.conicFactor * asphere.curvature * asphere.curvature;
  return q <= std::numeric_limits<double>::epsilon() ? kNoLimit : std::sqrt(1.0 / q);
}

// Sag inside the limit.
double InnerSag(double u, const AsphereDescription& asphere) {
  double sum = 0.0;
  for (std::size_t i = asphere.coefficients.size(); i-- > 0;) sum = (sum + asphere.coefficients[i]) * u;
  const double c = asphere.curvature;
  if (std::abs(c) < kFlat) return sum;
  const double inside = 1.0 - asphere.conicFactor * c * c * u * u;  // at the tangent itself rounding may go below 0
  return c * u * u / (1.0 + std::sqrt(std::max(inside, 0.0))) + sum;
}

// Everything that the loops need of an asphere, in registers.
struct Terms {
  double c, conic, q, limit;
  double leftAt, leftHeight, leftSlope;
  double rightAt, rightHeight, rightSlope;
};

// Conic part and its derivatives; 0 outside the limit.
struct Conic {
  double height, slope, byCurvature, byConic;
};

template <bool kIsWithin>
TEXTURON_INLINE Conic ConicAt(double u, const Terms& t) {
  const double square = u * u;
  const double inside = kIsWithin || std::abs(u) <= t.limit ? 1.0 - t.q * square : 1.0;
  const double root = std::sqrt(inside > 1e-30 ? inside : 1e-30);  // at the tangent itself the slope stays a number
  const double sum = 1.0 + root;
  const double byCurvature = square / (root * sum);
  return {t.c * square / sum, t.c * u / root, byCurvature,
          t.c * t.c * t.c * square * square / (2.0 * root * sum * sum)};
}

constexpr std::size_t kTile = 16;

// Height and slope from those of the polynomial; known to be within the limit, or anywhere.
template <bool kIsWithin>
TEXTURON_INLINE void EndTile(const double* u, std::size_t count, const Terms& t, double* height, double* slope) {
  TEXTURON_IVDEP
  for (std::size_t j = 0; j < count; ++j) {
    const double at = u[j];
    const Conic conic = ConicAt<kIsWithin>(at, t);
    const double inner = conic.height + height[j];
    const double innerSlope = conic.slope + slope[j];
    if constexpr (kIsWithin) {
      height[j] = inner;
      slope[j] = innerSlope;
    } else {
      const double left = t.leftHeight + t.leftSlope * (at - t.leftAt);
      const double right = t.rightHeight + t.rightSlope * (at - t.rightAt);
      height[j] = at < -t.limit ? left : (at > t.limit ? right : inner);
      slope[j] = at < -t.limit ? t.leftSlope : (at > t.limit ? t.rightSlope : innerSlope);
    }
  }
}

// Polynomial and its derivative by Horner's rule, coefficient by coefficient over a tile. Every second one of an even
// asphere is 0.
template <bool kIsWithin>
TEXTURON_INLINE void EvaluateTiles(const double* u, std::size_t count, const Terms& t, const double* a,
                                   std::size_t order, double* height, double* slope) {
  for (; count >= kTile; count -= kTile, u += kTile, height += kTile, slope += kTile) {
    double sum[kTile] = {};
    double derivative[kTile] = {};
    for (std::size_t k = order; k-- > 0;) {
      const double coefficient = a[k];
      if (coefficient == 0.0) {
        for (std::size_t j = 0; j < kTile; ++j) {
          derivative[j] = derivative[j] * u[j] + sum[j];
          sum[j] = sum[j] * u[j];
        }
        continue;
      }
      for (std::size_t j = 0; j < kTile; ++j) {
        const double inner = sum[j] + coefficient;
        derivative[j] = derivative[j] * u[j] + inner;
        sum[j] = inner * u[j];
      }
    }
    for (std::size_t j = 0; j < kTile; ++j) height[j] = sum[j];
    for (std::size_t j = 0; j < kTile; ++j) slope[j] = derivative[j];
    EndTile<kIsWithin>(u, kTile, t, height, slope);
  }
  for (std::size_t j = 0; j < count; ++j) {
    double sum = 0.0;
    double derivative = 0.0;
    for (std::size_t k = order; k-- > 0;) {
      const double inner = sum + a[k];
      derivative = derivative * u[j] + inner;
      sum = inner * u[j];
    }
    height[j] = sum;
    slope[j] = derivative;
  }
  EndTile<kIsWithin>(u, count, t, height, slope);
}

TEXTURON_MULTIVERSION
void EvaluateBlock(const double* u, std::size_t count, const Terms& terms, std::span<const double> coefficients,
                   double* height, double* slope) {
  const Terms t = terms;
  std::size_t outside = 0;
  for (std::size_t i = 0; i < count; ++i) outside += std::abs(u[i]) > t.limit ? 1 : 0;
  if (outside == 0) {
    EvaluateTiles<true>(u, count, t, coefficients.data(), coefficients.size(), height, slope);
  } else {
    EvaluateTiles<false>(u, count, t, coefficients.data(), coefficients.size(), height, slope);
  }
}

TEXTURON_MULTIVERSION
void EvaluateTermDerivatives(const double* u, std::size_t count, const Terms& terms, double* byCurvature,
                             double* byConic) {
  const Terms t = terms;
  TEXTURON_IVDEP
  for (std::size_t i = 0; i < count; ++i) {
    const Conic conic = ConicAt<false>(u[i], t);
    const bool isInside = std::abs(u[i]) <= t.limit;
    byCurvature[i] = isInside ? conic.byCurvature : 0.0;
    byConic[i] = isInside ? conic.byConic : 0.0;
  }
}

}  // namespace

double AsphereSag(double xMM, const AspherePlacement& placement, const AsphereDescription& description) {
  const double u = xMM - placement.xMM;
  const double limit = ConicLimit(description);
  const auto within = [&](double at) { return InnerSag(at, description) + placement.zMM + at * placement.slope; };
  if (!(std::abs(u) > limit)) return within(u);
  const double first = std::copysign(kEndOfSurface * limit, u);
  const double second = kSecondPoint * first;
  const double height = within(first);
  return height + (within(second) - height) / (second - first) * (u - first);
}

double AsphereMerit(const PointsMM& points, const AspherePlacement& placement, const AsphereDescription& description) {
  const AsphereShape shape(description);
  const std::size_t n = points.x.size();
  std::vector<double> u(n), w(n), height(n);
  ToShapeAxes(points, Axes(placement), u, w);
  shape.Evaluate(u, {.height = height});
  const auto [sum] = LaneSums(n, [&](std::size_t i) {
    const double deviation = w[i] - height[i];
    return std::array{deviation * deviation};
  });
  return sum;
}

AsphereShape::AsphereShape(AsphereDescription description) : description_(std::move(description)) {
  SetTerms(description_.curvature, description_.conicFactor);
}

AsphereShape::Ray AsphereShape::Continuation(double side) const {
  const double first = side * kEndOfSurface * limit_;
  const double second = kSecondPoint * first;
  const double height = InnerSag(first, description_);
  return {first, height, (InnerSag(second, description_) - height) / (second - first)};
}

void AsphereShape::SetTerms(double curvature, double conicFactor) {
  description_.curvature = curvature;
  description_.conicFactor = conicFactor;
  limit_ = ConicLimit(description_);
  left_ = limit_ < kNoLimit ? Continuation(-1.0) : Ray{};
  right_ = limit_ < kNoLimit ? Continuation(1.0) : Ray{};
}

double AsphereShape::Height(double u) const {
  return AsphereSag(u, {}, description_);
}

void AsphereShape::Evaluate(std::span<const double> u, const ShapeValues& values) const {
  const double c = std::abs(description_.curvature) < kFlat ? 0.0 : description_.curvature;
  const double conic = description_.conicFactor;
  const Terms terms{c,           conic,     conic * c * c, limit_,      left_.at, left_.height,
                    left_.slope, right_.at, right_.height, right_.slope};
  std::vector<double> unwanted(values.slope.empty() ? u.size() : 0);
  double* const slope = values.slope.empty() ? unwanted.data() : values.slope.data();
  EvaluateBlock(u.data(), u.size(), terms, description_.coefficients, values.height.data(), slope);
  if (values.byCurvature.empty()) return;
  EvaluateTermDerivatives(u.data(), u.size(), terms, values.byCurvature.data(), values.byConic.data());
}

}  // namespace texturon
