// SPDX-License-Identifier: Apache-2.0

#include "signal/form/minimise.h"

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

namespace texturon {
namespace {

constexpr double kGoldenRatio = 1.618034;
constexpr double kParabolicLimit = 100.0;  // of the last interval
constexpr double kLeastDivisor = 1e-20;
constexpr double kGoldenFraction = 0.381966;
constexpr double kAbsoluteGuard = 1e-10;

using Along = std::function<double(double)>;

struct Sample {
  double at, merit;
};

// Walks downhill from the steps 0 and 1 until the merit rises again.
Bracket FindBracket(const Along& along) {
  Sample a{0.0, along(0.0)};
  Sample b{1.0, along(1.0)};
  if (b.merit > a.merit) std::swap(a, b);
  const auto probe = [&along](double at) { return Sample{at, along(at)}; };
  Sample c = probe(b.at + kGoldenRatio * (b.at - a.at));
  while (b.merit > c.merit) {
    const double r = (b.at - a.at) * (b.merit - c.merit);
    const double q = (b.at - c.at) * (b.merit - a.merit);
    const double divisor = 2.0 * std::copysign(std::max(std::abs(q - r), kLeastDivisor), q - r);
    const double vertex = b.at - ((b.at - c.at) * q - (b.at - a.at) * r) / divisor;
    const double farthest = b.at + kParabolicLimit * (c.at - b.at);
    Sample u{};
    if ((b.at - vertex) * (vertex - c.at) > 0.0) {  // between b and c
      u = probe(vertex);
      if (u.merit < c.merit) return {b.at, u.at, c.at};
      if (u.merit > b.merit) return {a.at, b.at, u.at};
      u = probe(c.at + kGoldenRatio * (c.at - b.at));
    } else if ((c.at - vertex) * (vertex - farthest) > 0.0) {  // between c and the limit
      u = probe(vertex);
      if (u.merit < c.merit) {
        b = std::exchange(c, u);
        u = probe(c.at + kGoldenRatio * (c.at - b.at));
      }
    } else if ((vertex - farthest) * (farthest - c.at) >= 0.0) {
      u = probe(farthest);
    } else {
      u = probe(c.at + kGoldenRatio * (c.at - b.at));
    }
    a = std::exchange(b, std::exchange(c, u));
  }
  return {a.at, b.at, c.at};
}

// The step that a parabola through the three best points asks for, when it stays inside the interval and is less than
// half the step before last.
bool ParabolicStep(const Sample& x, const Sample& w, const Sample& v, const std::pair<double, double>& interval,
                   double beforeLast, double& step) {
  const double r = (x.at - w.at) * (x.merit - v.merit);
  double q = (x.at - v.at) * (x.merit - w.merit);
  double p = (x.at - v.at) * q - (x.at - w.at) * r;
  q = 2.0 * (q - r);
  if (q > 0.0) p = -p;
  q = std::abs(q);
  const bool isUsable = std::abs(p) < std::abs(0.5 * q * beforeLast) && p > q * (interval.first - x.at) &&
                        p < q * (interval.second - x.at);
  if (isUsable) step = p / q;
  return isUsable;
}

int PercentConverged(double before, double after) {
  const double size = std::abs(before) + std::abs(after);
  if (!(size > 0.0)) return 100;
  return static_cast<int>(std::clamp(std::trunc(100.0 - 200.0 * std::abs(before - after) / size), 0.0, 100.0));
}

}  // namespace

LineResult BrentMinimise(const Along& along, const Bracket& bracket, double tolerance) {
  std::pair interval = std::minmax({bracket.a, bracket.b, bracket.c});
  Sample best{bracket.b, along(bracket.b)};
  Sample second = best;
  Sample third = best;
  double step = 0.0;
  double beforeLast = 0.0;
  int evaluations = 1;
  for (int iteration = 0; iteration < kBrentIterationLimit; ++iteration) {
    const double middle = 0.5 * (interval.first + interval.second);
    const double least = tolerance * std::abs(best.at) + kAbsoluteGuard;
    if (std::abs(best.at - middle) <= 2.0 * least - 0.5 * (interval.second - interval.first)) {
      return {best.at, best.merit, evaluations, false};
    }
    double proposed = 0.0;
    if (std::abs(beforeLast) > least && ParabolicStep(best, second, third, interval, beforeLast, proposed)) {
      beforeLast = std::exchange(step, proposed);
      const double at = best.at + step;
      if (at - interval.first < 2.0 * least || interval.second - at < 2.0 * least) {
        step = std::copysign(least, middle - best.at);
      }
    } else {
      beforeLast = best.at >= middle ? interval.first - best.at : interval.second - best.at;
      step = kGoldenFraction * beforeLast;
    }
    const double at = best.at + (std::abs(step) >= least ? step : std::copysign(least, step));
    const Sample tried{at, along(at)};
    ++evaluations;
    if (tried.merit <= best.merit) {
      (tried.at >= best.at ? interval.first : interval.second) = best.at;
      third = std::exchange(second, std::exchange(best, tried));
      continue;
    }
    (tried.at < best.at ? interval.first : interval.second) = tried.at;
    if (tried.merit <= second.merit || second.at == best.at) {
      third = std::exchange(second, tried);
    } else if (tried.merit <= third.merit || third.at == best.at || third.at == second.at) {
      third = tried;
    }
  }
  return {best.at, best.merit, evaluations, true};
}

LineResult LineMinimise(const MeritFunction& merit, std::span<double> point, std::span<double> direction) {
  std::vector<double> moved(point.size());
  int evaluations = 0;
  const auto along = [&](double step) {
    for (std::size_t i = 0; i < moved.size(); ++i) moved[i] = point[i] + step * direction[i];
    ++evaluations;
    return merit(moved);
  };
  LineResult result = BrentMinimise(along, FindBracket(along), kLineTolerance);
  result.evaluations = evaluations;
  if (result.step == 0.0) return result;  // a direction of no length would be lost for good
  for (std::size_t i = 0; i < point.size(); ++i) {
    direction[i] *= result.step;
    point[i] += direction[i];
  }
  return result;
}

MinimiseResult Minimise(const MeritFunction& merit, std::span<double> point, std::span<const double> steps,
                        double tolerance, Progress* progress) {
  const std::size_t n = point.size();
  std::vector<std::vector<double>> directions(n, std::vector<double>(n));
  for (std::size_t i = 0; i < n; ++i) directions[i][i] = steps[i];
  MinimiseResult result{.merit = merit(point), .evaluations = 1};
  const auto search = [&](std::span<double> direction) {
    const LineResult line = LineMinimise(merit, point, direction);
    result.merit = line.merit;
    result.evaluations += line.evaluations;
    result.lineHitLimit |= line.hitLimit;
  };
  int shown = -1;
  while (std::isfinite(result.merit)) {
    const std::vector<double> start(point.begin(), point.end());
    const double before = result.merit;
    std::size_t steepest = 0;
    double largestDecrease = 0.0;
    for (std::size_t i = 0; i < n; ++i) {
      const double previous = result.merit;
      search(directions[i]);
      if (previous - result.merit > largestDecrease) {
        largestDecrease = previous - result.merit;
        steepest = i;
      }
    }
    ++result.iterations;
    const int percent = PercentConverged(before, result.merit);
    const bool closed = percent != shown && progress != nullptr && !progress->Advance(percent);
    shown = percent;
    if (closed) {
      result.stop = MinimiseStop::kCancelled;
      return result;
    }
    if (2.0 * std::abs(before - result.merit) <= tolerance * (std::abs(before) + std::abs(result.merit))) {
      result.stop = MinimiseStop::kConverged;
      return result;
    }
    if (result.iterations >= kMinimiseIterationLimit) {
      result.stop = MinimiseStop::kIterationLimit;
      return result;
    }
    std::vector<double> extrapolated(n), average(n);
    for (std::size_t i = 0; i < n; ++i) {
      extrapolated[i] = 2.0 * point[i] - start[i];
      average[i] = point[i] - start[i];
    }
    const double beyond = merit(extrapolated);
    ++result.evaluations;
    if (!(beyond < before)) continue;
    const double bend = before - result.merit - largestDecrease;
    const double gain = before - beyond;
    if (2.0 * (before - 2.0 * result.merit + beyond) * bend * bend - largestDecrease * gain * gain < 0.0) {
      search(average);
      directions[steepest] = directions[n - 1];
      directions[n - 1] = average;
    }
  }
  result.stop = MinimiseStop::kNotFinite;
  return result;
}

}  // namespace texturon
