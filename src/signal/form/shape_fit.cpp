// SPDX-License-Identifier: Apache-2.0

#include "signal/form/shape_fit.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>
#include <span>
#include <utility>
#include <vector>

#include "base/elementary.h"
#include "signal/form/gauss_newton.h"

namespace texturon {
namespace {

constexpr std::size_t kTryingPoints = 100;
constexpr std::size_t kCoarsePoints = 300;
constexpr std::size_t kMinimiserPoints = 2000;
constexpr double kTolerance = 1e-6;
constexpr double kFirstStep = 0.1;  // mm, slope, conic factor; of the curvature this part
constexpr std::size_t kOrigins = 121;
constexpr std::size_t kMostMinima = 5;
constexpr std::size_t kEvenlySpaced = 12;  // every so many-th origin is tried, whatever its merit
constexpr double kTurns[] = {-0.35, -0.2, -0.1, -0.03, 0.03, 0.1, 0.2, 0.35};  // rad
constexpr std::size_t kMostSettled = 8;  // candidates that go from the fewest points to the next more,
constexpr std::size_t kMostTurned = 2;   // of them those that are turned where no tighter fit did that,
constexpr std::size_t kMostKept = 4;     // and those that go on to more points,
constexpr double kCoarseMargin = 0.1;    // where their merit is above the best by no more than this part
constexpr double kFineMargin = 0.02;     // the same of the 2000 points
constexpr double kSameMerit = 1e-7;
constexpr double kFarthest = 1e9;  // lengths of the data, beyond which X leaves no digits to tell the points apart
constexpr double kBends[] = {-0.4, 0.4};  // of the conic factor; of the curvature this part
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
using Candidates = std::vector<Candidate>;

/// The best `most` of them that differ in merit, lowest first: those that descended into one minimum have one merit.
Candidates Distinct(Candidates all, std::size_t most) {
  std::erase_if(all, [](const Candidate& candidate) { return !std::isfinite(candidate.merit); });
  std::stable_sort(all.begin(), all.end(), [](const auto& a, const auto& b) { return a.merit < b.merit; });
  Candidates distinct;
  for (const Candidate& candidate : all) {
    if (distinct.size() == most) break;
    if (distinct.empty() || candidate.merit > distinct.back().merit * (1.0 + kSameMerit)) distinct.push_back(candidate);
  }
  return distinct;
}

/// Those that further points may yet show to be the best.
Candidates WithinMargin(Candidates sorted, double margin) {
  std::erase_if(sorted, [&](const Candidate& c) { return c.merit > sorted.front().merit * (1.0 + margin); });
  return sorted;
}

/// The lowest of the merits that are lower than their neighbours'.
Candidates LocalMinima(const Candidates& scan) {
  Candidates minima;
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
      : problem_(points, shape, options),
        fewest_(points, kTryingPoints),
        trying_(fewest_.View(), shape, options),
        options_(options) {}

  /// The best minima found, lowest first; `seeds` are starts besides its own.
  Candidates Run(const Candidates& seeds) {
    Candidates starts;
    for (const bool withSlope : {false, true}) {
      if (withSlope && !options_.free.tilt) break;
      const Candidates scan = Scan(withSlope);
      for (const Candidate& candidate : LocalMinima(scan)) starts.push_back(candidate);
      // Tighter fits have been there already.
      for (std::size_t i = 0; i < scan.size() && seeds.empty(); i += kEvenlySpaced) starts.push_back(scan[i]);
    }
    starts.push_back({At(options_.start.xMM)});
    problem_.Level(starts.back().parameters, false);
    if (const auto x = LevelledOrigin()) {
      starts.push_back({At(*x)});
      problem_.Level(starts.back().parameters, false);
    }
    starts.insert(starts.end(), seeds.begin(), seeds.end());
    AddBent(seeds, starts);
    for (Candidate& start : starts) Try(start, kTryingSteps);
    Candidates found = Distinct(std::move(starts), kMostSettled);
    if (options_.free.tilt && options_.free.x) AddTurned(found, seeds.empty() ? kMostTurned : 1);
    return Settled(Distinct(std::move(found), kMostSettled));
  }
  /// The minima below given starts.
  Candidates Settled(Candidates starts) {
    for (Candidate& start : starts) start.merit = problem_.Descend(start.parameters, kSettlingSteps);
    return Distinct(std::move(starts), kMostKept);
  }
  int Evaluations() const { return problem_.Evaluations() + trying_.Evaluations(); }

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
  Candidates Scan(bool withSlope) {
    Candidates scan;
    const std::size_t count = options_.free.x ? kOrigins : 1;
    const double step = (options_.originLast - options_.originFirst) / static_cast<double>(kOrigins - 1);
    for (std::size_t i = 0; i < count; ++i) {
      Candidate candidate{At(options_.originFirst + step * static_cast<double>(i))};
      if (!options_.free.x) candidate.parameters.values[P::kX] = options_.start.xMM;
      candidate.merit = trying_.Level(candidate.parameters, withSlope);
      scan.push_back(candidate);
    }
    return scan;
  }
  void Try(Candidate& candidate, int steps) { candidate.merit = trying_.Descend(candidate.parameters, steps); }
  /// The same placements of other surfaces.
  void AddBent(const Candidates& seeds, Candidates& starts) {
    for (const Candidate& seed : std::span(seeds).first(std::min(seeds.size(), kMostKept))) {
      for (const double more : kBends) {
        for (const std::size_t term : {P::kCurvature, P::kConic}) {
          if (!(term == P::kConic ? options_.free.conic : options_.free.curvature)) continue;
          starts.push_back(seed);
          starts.back().parameters.values[term] += more * (term == P::kConic ? 1.0 : seed.parameters.values[term]);
        }
      }
    }
  }
  void AddTurned(Candidates& found, std::size_t most) {
    const auto distance = CentreDistance(problem_.Points());
    if (!distance) return;
    const std::size_t count = std::min(found.size(), most);
    for (std::size_t i = 0; i < count; ++i) {
      const P from = found[i].parameters;
      const double angle = from.values[P::kAngle];
      for (const double turn : kTurns) {
        Candidate turned{from};
        turned.parameters.values[P::kAngle] = angle + turn;
        turned.parameters.values[P::kX] += *distance * (Sin(angle + turn) - Sin(angle));
        turned.parameters.values[P::kZ] -= *distance * (Cos(angle + turn) - Cos(angle));
        Try(turned, kSettlingSteps);
        found.push_back(turned);
      }
    }
  }

  ShapeProblem problem_;
  ThinnedPoints fewest_;
  ShapeProblem trying_;
  const ShapeFitOptions& options_;
};

/// The terms of a fit freed one by one: first neither curvature nor conic factor, at last what the fit frees.
std::vector<ShapeFitOptions> StepsOfFreedom(const ShapeFitOptions& options) {
  std::vector<ShapeFitOptions> steps;
  for (const bool curvature : {false, true}) {
    for (const bool conic : {false, true}) {
      if ((curvature && !options.free.curvature) || (conic && !options.free.conic)) continue;
      steps.push_back(options);
      steps.back().free.curvature = curvature;
      steps.back().free.conic = conic;
    }
  }
  return steps;
}

/// Candidates over a few of the points. A freer fit also starts from where the tighter ones ended.
class Stages {
public:
  Stages(const PointsMM& points, Shape& shape, const ShapeFitOptions& options)
      : points_(points), shape_(shape), steps_(StepsOfFreedom(options)), found_(steps_.size()) {}

  void SearchCoarsely() {
    const ThinnedPoints few(points_, kCoarsePoints);
    Candidates tighter;
    for (std::size_t i = 0; i < steps_.size(); ++i) {
      CoarseSearch search(few.View(), shape_, steps_[i]);
      const bool isOnTheWay = i > 0 && i + 1 < steps_.size();
      found_[i] = isOnTheWay ? search.Settled(tighter) : search.Run(tighter);
      coarseEvaluations_ += search.Evaluations();
      tighter.insert(tighter.end(), found_[i].begin(), found_[i].end());
    }
  }
  /// The candidates of the fit itself, settled over `more` points, lowest first.
  Candidates Settle(const PointsMM& more) {
    Candidates tighter;
    for (std::size_t i = 0; i < steps_.size(); ++i) {
      Candidates starts = WithinMargin(found_[i], kCoarseMargin);
      starts.insert(starts.end(), tighter.begin(), tighter.end());
      found_[i] = CoarseSearch(more, shape_, steps_[i]).Settled(starts);
      tighter.insert(tighter.end(), found_[i].begin(), found_[i].end());
    }
    return found_.back();
  }
  int CoarseEvaluations() const { return coarseEvaluations_; }

private:
  PointsMM points_;
  Shape& shape_;
  std::vector<ShapeFitOptions> steps_;
  std::vector<Candidates> found_;  // by step
  int coarseEvaluations_ = 0;
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

std::optional<double> ShapeCovariance::Uncertainty(ShapeParameters::Index parameter, double scale) const {
  const double variance = values[parameter][parameter];
  if (variance == 0.0) return std::nullopt;
  return std::abs(scale) * std::sqrt(variance);
}

ShapeFit FitShape(const PointsMM& points, Shape& shape, const ShapeFitOptions& options) {
  ShapeFit fit;
  if (points.x.size() < 3 || points.x.size() != points.z.size()) return fit;
  Stages stages(points, shape, options);
  stages.SearchCoarsely();
  fit.coarseEvaluations = stages.CoarseEvaluations();

  const ThinnedPoints more(points, kMinimiserPoints);
  Candidates settled = WithinMargin(stages.Settle(more.View()), kFineMargin);
  if (settled.empty()) settled.emplace_back();
  ShapeProblem thinned(more.View(), shape, options);
  FreeVector vector(options.free, settled.front().parameters);
  const auto merit = [&](std::span<const double> values) {
    const auto evaluation = thinned.Evaluate(vector.Parameters(values));
    return evaluation.meanMerit * static_cast<double>(more.x.size());
  };
  fit.search = Minimise(merit, vector.values, vector.steps, kTolerance, options.progress);
  if (!fit.search.Succeeded()) return fit;
  settled.front().parameters = vector.Parameters(vector.values);

  ShapeProblem all(points, shape, options);
  if (points.x.size() == more.x.size()) settled.resize(1);
  for (Candidate& candidate : settled) candidate.merit = all.Descend(candidate.parameters, kPolishingSteps);
  const auto best =
      std::min_element(settled.begin(), settled.end(), [](const auto& a, const auto& b) { return a.merit < b.merit; });
  const P parameters = best->parameters;
  const bool isOfLast = settled.size() == 1;  // the equations are those of the last one
  if (!isOfLast) {
    P again = parameters;
    all.Descend(again, 1);
  }
  fit.covariance = all.Covariance();
  const auto evaluation = isOfLast ? all.Reached() : all.Evaluate(parameters);
  shape.SetTerms(parameters.values[P::kCurvature], parameters.values[P::kConic]);
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
