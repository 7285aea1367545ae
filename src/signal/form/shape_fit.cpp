// SPDX-License-Identifier: Apache-2.0

#include "signal/form/shape_fit.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>
#include <utility>
#include <vector>

#include "base/elementary.h"
#include "signal/form/gauss_newton.h"

namespace texturon {
namespace {

constexpr std::size_t kCoarsePoints = 300;
constexpr std::size_t kMinimiserPoints = 2000;
constexpr double kTolerance = 1e-6;
constexpr double kFirstStep = 0.1;  // mm, slope, conic factor; of the curvature this part
constexpr std::size_t kOrigins = 121;
constexpr std::size_t kMostMinima = 5;
constexpr std::size_t kEvenlySpaced = 12;  // every so many-th origin is tried, whatever its merit
constexpr double kTurns[] = {-0.35, -0.2, -0.1, -0.03, 0.03, 0.1, 0.2, 0.35};  // rad
constexpr double kFarthest = 1e9;  // lengths of the data, beyond which X leaves no digits to tell the points apart
constexpr int kTryingSteps = 40;
constexpr int kSettlingSteps = 200;
constexpr int kPolishingSteps = 200;

using P = ShapeParameters;

/// Every so many-th of the points, so that at most `most` are left.
struct ThinnedPoints {
  ThinnedPoints(const PointsMM& points, std::size_t most) {
    const std::size_t step = (points.x.size() + most - 1) / most;
    for (std::size_t i = 0; i < points.x.size(); i += step) {
      x.push_back(points.x[i]);
      z.push_back(points.z[i]);
    }
  }
  PointsMM View() const { return {x, z}; }

  std::vector<double> x, z;
};

struct Candidate {
  P parameters;
  double merit = std::numeric_limits<double>::infinity();
};

/// The lowest of the merits that are lower than their neighbours'.
std::vector<Candidate> LocalMinima(std::vector<Candidate> scan) {
  std::vector<Candidate> minima;
  for (std::size_t i = 0; i < scan.size(); ++i) {
    const bool belowLeft = i == 0 || scan[i].merit <= scan[i - 1].merit;
    const bool belowRight = i + 1 == scan.size() || scan[i].merit <= scan[i + 1].merit;
    if (belowLeft && belowRight && std::isfinite(scan[i].merit)) minima.push_back(scan[i]);
  }
  std::sort(minima.begin(), minima.end(), [](const auto& a, const auto& b) { return a.merit < b.merit; });
  minima.resize(std::min(minima.size(), kMostMinima));
  return minima;
}

/// Signed distance of the points' centre of curvature above them, from the least-squares parabola; none for points on a
/// straight line.
std::optional<double> CentreDistance(const PointsMM& points) {
  const std::size_t n = points.x.size();
  const double middle = 0.5 * (points.x.front() + points.x.back());
  const double half = 0.5 * (points.x.back() - points.x.front());
  double s[5] = {};
  double r[3] = {};
  for (std::size_t i = 0; i < n; ++i) {
    const double t = (points.x[i] - middle) / half;
    double power = 1.0;
    for (std::size_t k = 0; k < 5; ++k, power *= t) {
      s[k] += power;
      if (k < 3) r[k] += power * points.z[i];
    }
  }
  const auto determinant = [](double a, double b, double c, double d, double e, double f, double g, double h,
                              double i) { return a * (e * i - f * h) - b * (d * i - f * g) + c * (d * h - e * g); };
  const double whole = determinant(s[0], s[1], s[2], s[1], s[2], s[3], s[2], s[3], s[4]);
  const double square = determinant(s[0], s[1], r[0], s[1], s[2], r[1], s[2], s[3], r[2]) / whole;
  const double distance = half * half / (2.0 * square);
  if (!std::isfinite(distance) || std::abs(distance) > 1e4 * half) return std::nullopt;
  return distance;
}

/// Of the least-squares line.
double MeanSlope(const PointsMM& points) {
  const double n = static_cast<double>(points.x.size());
  const double meanX = std::accumulate(points.x.begin(), points.x.end(), 0.0) / n;
  const double meanZ = std::accumulate(points.z.begin(), points.z.end(), 0.0) / n;
  double xx = 0.0, xz = 0.0;
  for (std::size_t i = 0; i < points.x.size(); ++i) {
    xx += (points.x[i] - meanX) * (points.x[i] - meanX);
    xz += (points.x[i] - meanX) * (points.z[i] - meanZ);
  }
  return xz / xx;
}

class CoarseSearch {
public:
  CoarseSearch(const PointsMM& points, Shape& shape, const ShapeFitOptions& options)
      : problem_(points, shape, options), options_(options) {}

  P Run() {
    std::vector<Candidate> starts;
    for (const bool withSlope : {false, true}) {
      if (withSlope && !options_.free.tilt) break;
      const std::vector<Candidate> scan = Scan(withSlope);
      for (const Candidate& candidate : LocalMinima(scan)) starts.push_back(candidate);
      for (std::size_t i = 0; i < scan.size(); i += kEvenlySpaced) starts.push_back(scan[i]);
    }
    Candidate given{At(options_.start.xMM), 0.0};
    problem_.Level(given.parameters, false);
    starts.push_back(given);
    if (const auto x = LevelledOrigin()) {
      Candidate levelled{At(*x), 0.0};
      problem_.Level(levelled.parameters, false);
      starts.push_back(levelled);
    }
    for (const Candidate& start : starts) Try(start.parameters, kTryingSteps);
    best_.merit = problem_.Descend(best_.parameters, kSettlingSteps);
    if (options_.free.tilt && options_.free.x) TryTurned();
    return best_.parameters;
  }
  int Evaluations() const { return problem_.Evaluations(); }

private:
  P At(double x) const {
    P parameters;
    parameters.values[P::kX] = x;
    parameters.values[P::kCurvature] = options_.curvature;
    parameters.values[P::kConic] = options_.conicFactor;
    return parameters;
  }
  /// The vertex of a conic that must not tilt, from where it is as steep in the middle of the data as they are: on a
  /// weak one that place lies far beyond the origins of the scan.
  std::optional<double> LevelledOrigin() const {
    if (!options_.free.x || options_.free.tilt || options_.curvature == 0.0) return std::nullopt;
    const double slope = MeanSlope(problem_.Points());
    const double steep = 1.0 + options_.conicFactor * slope * slope;
    const double distance = slope / (options_.curvature * std::sqrt(std::max(steep, 0.0)));
    const std::span<const double> x = problem_.Points().x;
    if (!(std::abs(distance) < kFarthest * (x.back() - x.front()))) return std::nullopt;
    return x[x.size() / 2] - distance;
  }
  std::vector<Candidate> Scan(bool withSlope) {
    std::vector<Candidate> scan;
    const std::size_t count = options_.free.x ? kOrigins : 1;
    const double step = (options_.originLast - options_.originFirst) / static_cast<double>(kOrigins - 1);
    for (std::size_t i = 0; i < count; ++i) {
      Candidate candidate{At(options_.originFirst + step * static_cast<double>(i))};
      if (!options_.free.x) candidate.parameters.values[P::kX] = options_.start.xMM;
      candidate.merit = problem_.Level(candidate.parameters, withSlope);
      scan.push_back(candidate);
    }
    return scan;
  }
  void Try(P parameters, int steps) {
    const double merit = problem_.Descend(parameters, steps);
    if (merit < best_.merit) best_ = {parameters, merit};
  }
  void TryTurned() {
    const auto distance = CentreDistance(problem_.Points());
    if (!distance) return;
    const P from = best_.parameters;
    const double angle = from.values[P::kAngle];
    for (const double turn : kTurns) {
      P turned = from;
      turned.values[P::kAngle] = angle + turn;
      turned.values[P::kX] += *distance * (Sin(angle + turn) - Sin(angle));
      turned.values[P::kZ] -= *distance * (Cos(angle + turn) - Cos(angle));
      Try(turned, kSettlingSteps);
    }
  }

  ShapeProblem problem_;
  const ShapeFitOptions& options_;
  Candidate best_;
};

/// The minimiser's vector: what is free, in the order x, height, slope, curvature, conic factor.
class FreeVector {
public:
  FreeVector(const FreeTerms& free, const P& start) : start_(start) {
    Add(free.x, P::kX, kFirstStep);
    Add(true, P::kZ, kFirstStep);
    Add(free.tilt, P::kAngle, kFirstStep);
    const double curvature = start.values[P::kCurvature];
    Add(free.curvature, P::kCurvature, kFirstStep * (curvature != 0.0 ? std::abs(curvature) : kFirstStep));
    Add(free.conic, P::kConic, kFirstStep);
  }
  P Parameters(std::span<const double> vector) const {
    P parameters = start_;
    for (std::size_t i = 0; i < vector.size(); ++i) {
      parameters.values[indices_[i]] = indices_[i] == P::kAngle ? Atan(vector[i]) : vector[i];
    }
    return parameters;
  }

  std::vector<double> values, steps;

private:
  void Add(bool isFree, std::size_t index, double step) {
    if (!isFree) return;
    indices_.push_back(index);
    values.push_back(index == P::kAngle ? Tan(start_.values[index]) : start_.values[index]);
    steps.push_back(step);
  }

  P start_;
  std::vector<std::size_t> indices_;
};

}  // namespace

ShapeFit FitShape(const PointsMM& points, Shape& shape, const ShapeFitOptions& options) {
  ShapeFit fit;
  if (points.x.size() < 3 || points.x.size() != points.z.size()) return fit;
  const ThinnedPoints few(points, kCoarsePoints);
  CoarseSearch coarse(few.View(), shape, options);
  P parameters = coarse.Run();
  fit.coarseEvaluations = coarse.Evaluations();

  const ThinnedPoints more(points, kMinimiserPoints);
  ShapeProblem thinned(more.View(), shape, options);
  FreeVector vector(options.free, parameters);
  const auto merit = [&](std::span<const double> values) {
    const auto evaluation = thinned.Evaluate(vector.Parameters(values));
    return evaluation.meanMerit * static_cast<double>(more.x.size());
  };
  fit.search = Minimise(merit, vector.values, vector.steps, kTolerance, options.progress);
  if (!fit.search.Succeeded()) return fit;
  parameters = vector.Parameters(vector.values);

  ShapeProblem all(points, shape, options);
  all.Descend(parameters, kPolishingSteps);
  const auto evaluation = all.Evaluate(parameters);
  fit.placement = parameters.Place();
  fit.curvature = parameters.values[P::kCurvature];
  fit.conicFactor = parameters.values[P::kConic];
  fit.merit = evaluation.sum;
  fit.pointsOnShape = evaluation.onShape;
  fit.polishEvaluations = all.Evaluations();
  fit.isValid = std::isfinite(evaluation.meanMerit);
  return fit;
}

}  // namespace texturon
