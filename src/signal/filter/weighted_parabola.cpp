// SPDX-License-Identifier: Apache-2.0

#include "signal/filter/weighted_parabola.h"

#include <array>
#include <cmath>
#include <cstddef>

namespace texturon {
namespace {

using Three = std::array<double, 3>;

/// The point whose weight times the square of `distance` is largest, the first of equals; null where all are 0.
template <typename Distance>
const WeightedHeight* Firmest(std::span<const WeightedHeight> points, const Distance& distance) {
  const WeightedHeight* firmest = nullptr;
  double most = 0.0;
  for (const WeightedHeight& point : points) {
    const double apart = distance(point.place);
    const double hold = point.weight * (apart * apart);
    if (!(hold > most)) continue;
    most = hold;
    firmest = &point;
  }
  return firmest;
}

/// The parabola through heights at three places is their sum with these factors.
class Through {
public:
  explicit Through(const Three& places) : places_(places) {
    const double first = places[1] - places[0], second = places[2] - places[1], both = places[2] - places[0];
    divisors_ = {first * both, -(first * second), both * second};
  }

  Three At(double place) const {
    const double a = place - places_[0], b = place - places_[1], c = place - places_[2];
    return {b * c / divisors_[0], a * c / divisors_[1], a * b / divisors_[2]};
  }

private:
  Three places_;
  Three divisors_{};
};

double Product(const Three& a, const Three& b) {
  return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

}  // namespace

std::optional<double> WeightedParabolaAtZero(std::span<const WeightedHeight> points) {
  const WeightedHeight* const first = Firmest(points, [](double) { return 1.0; });
  if (first == nullptr) return std::nullopt;
  const WeightedHeight* const second = Firmest(points, [first](double place) { return place - first->place; });
  if (second == nullptr) return std::nullopt;
  const WeightedHeight* const third =
      Firmest(points, [first, second](double place) { return (place - first->place) * (place - second->place); });
  if (third == nullptr) return std::nullopt;

  const Through through({first->place, second->place, third->place});
  const Three heights = {first->height, second->height, third->height};
  double a00 = 0.0, a01 = 0.0, a02 = 0.0, a11 = 0.0, a12 = 0.0, a22 = 0.0;
  Three rest{};  // what the heights of all points ask of the three beyond their own ones
  for (const WeightedHeight& point : points) {
    const Three factors = through.At(point.place);
    const double w0 = point.weight * factors[0], w1 = point.weight * factors[1], w2 = point.weight * factors[2];
    const double apart = point.height - Product(factors, heights);
    a00 += w0 * factors[0];
    a01 += w0 * factors[1];
    a02 += w0 * factors[2];
    a11 += w1 * factors[1];
    a12 += w1 * factors[2];
    a22 += w2 * factors[2];
    rest[0] += w0 * apart;
    rest[1] += w1 * apart;
    rest[2] += w2 * apart;
  }
  const double q01 = a01 / a00, q02 = a02 / a00;
  const double b11 = a11 - q01 * a01, b12 = a12 - q01 * a02, b22 = a22 - q02 * a02;
  const double q12 = b12 / b11;
  const double r1 = rest[1] - q01 * rest[0];
  const double r2 = rest[2] - q02 * rest[0] - q12 * r1;
  const double x2 = r2 / (b22 - q12 * b12);
  const double x1 = r1 / b11 - q12 * x2;
  const double x0 = rest[0] / a00 - q01 * x1 - q02 * x2;
  const double value = Product(through.At(0.0), {heights[0] + x0, heights[1] + x1, heights[2] + x2});
  return std::isfinite(value) ? std::optional(value) : std::nullopt;
}

}  // namespace texturon
