// SPDX-License-Identifier: Apache-2.0

#include "signal/form/gauss_newton.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "base/elementary.h"
#include "base/multiversion.h"

namespace texturon {
namespace {

constexpr std::size_t kBlock = 512;
constexpr double kSteepestAngle = 1.4;  // rad; a shape placed on its side is no fit
constexpr double kDependent = 1e-13;    // squared sine below which a combination is left alone
constexpr double kUncorrelated = 0.05;  // cosine up to which combinations count as orthogonal
constexpr double kFirstDamping = 1e-3;
constexpr double kLeastDamping = 1e-12;
constexpr double kMostDamping = 1e6;
constexpr double kNothingGained = 1e-13;  // of the merit
constexpr double kLastStep = 1e-12;       // of the merit: a step that promises less is the last
constexpr double kLastDigits = 1e-17;     // of the points' extent: a rms change of all deviations by less is none
constexpr double kRelativeFloor = 1e-3;   // least-absolute weights stop growing at this part of the mean deviation ...
constexpr double kFloorShrink = 0.3;      // ... which becomes smaller by this factor with each step

struct DeviationTerms {
  const double* u;
  const double* w;
  const double* height;
  const double* slope;
  double cosine, sine;
};

/// Deviations and how they change with height, x and angle of the placement; 0 where there is no shape. The number of
/// points on the shape.
TEXTURON_MULTIVERSION
std::size_t DeviationBlock(const DeviationTerms& terms, std::size_t count, double* deviation, double* byZ, double* byX,
                           double* byAngle) {
  const DeviationTerms t = terms;
  double onShape = 0.0;
  for (std::size_t i = 0; i < count; ++i) {
    const double raw = t.w[i] - t.height[i];
    const bool on = raw == raw;
    const double s = on ? t.slope[i] : 0.0;
    deviation[i] = on ? raw : 0.0;
    byZ[i] = on ? s * t.sine - t.cosine : 0.0;
    byX[i] = on ? s * t.cosine + t.sine : 0.0;
    byAngle[i] = on ? -(t.u[i] + s * t.w[i]) : 0.0;
  }
  for (std::size_t i = 0; i < count; ++i) onShape += t.w[i] - t.height[i] == t.w[i] - t.height[i] ? 1.0 : 0.0;
  return static_cast<std::size_t>(onShape);
}

/// Sum of products over a block, in eight partial sums.
TEXTURON_MULTIVERSION
double Dot(const double* a, const double* b, std::size_t count) {
  double lanes[8] = {};
  std::size_t i = 0;
  for (; i + 8 <= count; i += 8) {
    for (std::size_t lane = 0; lane < 8; ++lane) lanes[lane] += a[i + lane] * b[i + lane];
  }
  double sum = ((lanes[0] + lanes[1]) + (lanes[2] + lanes[3])) + ((lanes[4] + lanes[5]) + (lanes[6] + lanes[7]));
  for (; i < count; ++i) sum += a[i] * b[i];
  return sum;
}

/// to = factor x from, or += with `add`.
TEXTURON_MULTIVERSION
void Accumulate(double* to, const double* from, double factor, bool add, std::size_t count) {
  if (add) {
    TEXTURON_IVDEP
    for (std::size_t i = 0; i < count; ++i) to[i] += factor * from[i];
  } else {
    TEXTURON_IVDEP
    for (std::size_t i = 0; i < count; ++i) to[i] = factor * from[i];
  }
}

double Extent(std::span<const double> values) {
  const auto [least, most] = std::minmax_element(values.begin(), values.end());
  return *most - *least;
}

}  // namespace

Placement ShapeParameters::Place() const {
  return {values[kX], values[kZ], Tan(values[kAngle])};
}

ShapeProblem::ShapeProblem(const PointsMM& points, Shape& shape, const ShapeFitOptions& options)
    : points_(points),
      shape_(shape),
      merit_(options.merit),
      leastOnShape_(static_cast<std::size_t>(std::ceil(options.leastOverlap * static_cast<double>(points.x.size())))),
      u_(kBlock),
      w_(kBlock),
      height_(kBlock),
      slope_(kBlock),
      byCurvature_(kBlock),
      byConic_(kBlock),
      deviation_(kBlock),
      weight_(kBlock) {
  free_.push_back(ShapeParameters::kZ);
  xIsFree_ = options.free.x;
  if (options.free.x) free_.push_back(ShapeParameters::kX);
  if (options.free.curvature) free_.push_back(ShapeParameters::kCurvature);
  if (options.free.conic) free_.push_back(ShapeParameters::kConic);
  if (options.free.tilt) free_.push_back(ShapeParameters::kAngle);
  for (auto& column : columns_) column.resize(kBlock);
  for (auto& column : combined_) column.resize(kBlock);
}

void ShapeProblem::UseTerms(const ShapeParameters& parameters) {
  shape_.SetTerms(parameters.values[ShapeParameters::kCurvature], parameters.values[ShapeParameters::kConic]);
}

ShapeProblem::Evaluation ShapeProblem::Rated(double sum, std::size_t onShape) const {
  const bool isRated = onShape >= std::max<std::size_t>(leastOnShape_, 1) && std::isfinite(sum);
  if (!isRated) return {std::numeric_limits<double>::infinity(), sum, onShape};
  const double share = static_cast<double>(onShape) / static_cast<double>(points_.x.size());
  return {sum / static_cast<double>(onShape) / share, sum, onShape};
}

ShapeProblem::Evaluation ShapeProblem::Evaluate(const ShapeParameters& parameters) {
  ++evaluations_;
  UseTerms(parameters);
  const Axes axes(parameters.Place());
  double sum = 0.0;
  std::size_t onShape = 0;
  for (std::size_t first = 0; first < points_.x.size(); first += kBlock) {
    const std::size_t count = std::min(kBlock, points_.x.size() - first);
    const std::span<double> u = std::span(u_).first(count);
    const std::span<double> height = std::span(height_).first(count);
    ToShapeAxes({points_.x.subspan(first, count), points_.z.subspan(first, count)}, axes, u,
                std::span(w_).first(count));
    shape_.Evaluate(u, {.height = height, .slope = std::span(slope_).first(count)});
    double* const z = columns_[ShapeParameters::kZ].data();
    double* const x = columns_[ShapeParameters::kX].data();
    onShape += DeviationBlock({u_.data(), w_.data(), height_.data(), slope_.data(), axes.cosine, axes.sine}, count,
                              deviation_.data(), z, x, columns_[ShapeParameters::kAngle].data());
    if (merit_ == ShapeMerit::kLeastSquares) {
      sum += Dot(deviation_.data(), deviation_.data(), count);
    } else {
      for (std::size_t i = 0; i < count; ++i) sum += std::abs(deviation_[i]);
    }
  }
  return Rated(sum, onShape);
}

ShapeProblem::Equations ShapeProblem::SetUp(const ShapeParameters& parameters, const Square& combinations,
                                            double leastDeviation) {
  ++evaluations_;
  UseTerms(parameters);
  const Axes axes(parameters.Place());
  const bool needsTerms = std::any_of(free_.begin(), free_.end(), [](std::size_t index) {
    return index == ShapeParameters::kCurvature || index == ShapeParameters::kConic;
  });
  const std::size_t m = free_.size();
  Equations equations;
  double sum = 0.0;
  std::size_t onShape = 0;
  for (std::size_t first = 0; first < points_.x.size(); first += kBlock) {
    const std::size_t count = std::min(kBlock, points_.x.size() - first);
    const std::span<double> u = std::span(u_).first(count);
    ToShapeAxes({points_.x.subspan(first, count), points_.z.subspan(first, count)}, axes, u,
                std::span(w_).first(count));
    ShapeValues wanted{.height = std::span(height_).first(count), .slope = std::span(slope_).first(count)};
    if (needsTerms) {
      wanted.byCurvature = std::span(byCurvature_).first(count);
      wanted.byConic = std::span(byConic_).first(count);
    }
    shape_.Evaluate(u, wanted);
    onShape += DeviationBlock({u_.data(), w_.data(), height_.data(), slope_.data(), axes.cosine, axes.sine}, count,
                              deviation_.data(), columns_[ShapeParameters::kZ].data(),
                              columns_[ShapeParameters::kX].data(), columns_[ShapeParameters::kAngle].data());
    if (needsTerms) {
      Accumulate(columns_[ShapeParameters::kCurvature].data(), byCurvature_.data(), -1.0, false, count);
      Accumulate(columns_[ShapeParameters::kConic].data(), byConic_.data(), -1.0, false, count);
    }
    for (std::size_t k = 0; k < m; ++k) {
      for (std::size_t l = 0; l <= k; ++l) {
        Accumulate(combined_[k].data(), columns_[free_[l]].data(), combinations[l][k], l > 0, count);
      }
    }
    if (merit_ == ShapeMerit::kLeastSquares) {
      sum += Dot(deviation_.data(), deviation_.data(), count);
    } else {
      for (std::size_t i = 0; i < count; ++i) {
        const double size = std::abs(deviation_[i]);
        sum += size;
        weight_[i] = 1.0 / std::sqrt(std::max(size, leastDeviation));
        deviation_[i] *= weight_[i];
        for (std::size_t k = 0; k < m; ++k) combined_[k][i] *= weight_[i];
      }
    }
    for (std::size_t k = 0; k < m; ++k) {
      equations.gradient[k] += Dot(combined_[k].data(), deviation_.data(), count);
      for (std::size_t l = 0; l <= k; ++l) {
        equations.matrix[k][l] += Dot(combined_[k].data(), combined_[l].data(), count);
      }
    }
  }
  equations.evaluation = Rated(sum, onShape);
  return equations;
}

namespace {

template <typename Square>
bool AreOrthogonal(const Square& matrix, std::size_t m) {
  for (std::size_t k = 0; k < m; ++k) {
    for (std::size_t l = 0; l < k; ++l) {
      if (std::abs(matrix[k][l]) > kUncorrelated * std::sqrt(matrix[k][k] * matrix[l][l])) return false;
    }
  }
  return true;
}

/// Combinations whose columns are orthonormal: the former ones times the inverse of the transposed Cholesky factor. A
/// column that depends on those before it becomes 0.
template <typename Square>
Square Orthogonalised(const Square& combinations, const Square& matrix, std::size_t m) {
  Square result{};
  Square lower{};
  for (std::size_t k = 0; k < m; ++k) {
    std::array<double, ShapeParameters::kCount> column{};
    for (std::size_t row = 0; row <= k; ++row) column[row] = combinations[row][k];
    double rest = matrix[k][k];
    for (std::size_t l = 0; l < k; ++l) {
      double product = matrix[k][l];
      for (std::size_t j = 0; j < l; ++j) product -= lower[k][j] * lower[l][j];
      if (lower[l][l] > 0.0) {
        lower[k][l] = product / lower[l][l];
        rest -= lower[k][l] * lower[k][l];
        for (std::size_t row = 0; row <= l; ++row) column[row] -= lower[k][l] * result[row][l];
      }
    }
    if (!(rest > kDependent * matrix[k][k])) continue;
    lower[k][k] = std::sqrt(rest);
    for (std::size_t row = 0; row <= k; ++row) result[row][k] = column[row] / lower[k][k];
  }
  return result;
}

/// Solves (matrix + damping x its diagonal) y = -gradient by Cholesky's method; y = 0 for a combination of no length.
template <typename Square, typename Vector>
Vector DampedStep(const Square& matrix, const Vector& gradient, double damping, std::size_t m) {
  Square lower{};
  Vector y{};
  for (std::size_t k = 0; k < m; ++k) {
    double rest = matrix[k][k] * (1.0 + damping);
    y[k] = -gradient[k];
    for (std::size_t l = 0; l < k; ++l) {
      if (!(lower[l][l] > 0.0)) continue;
      double product = matrix[k][l];
      for (std::size_t j = 0; j < l; ++j) product -= lower[k][j] * lower[l][j];
      lower[k][l] = product / lower[l][l];
      rest -= lower[k][l] * lower[k][l];
      y[k] -= lower[k][l] * y[l];
    }
    lower[k][k] = rest > kDependent * matrix[k][k] ? std::sqrt(rest) : 0.0;
    y[k] = lower[k][k] > 0.0 ? y[k] / lower[k][k] : 0.0;
  }
  for (std::size_t k = m; k-- > 0;) {
    if (!(lower[k][k] > 0.0)) continue;
    for (std::size_t l = k + 1; l < m; ++l) y[k] -= lower[l][k] * y[l];
    y[k] /= lower[k][k];
  }
  return y;
}

}  // namespace

std::optional<ShapeProblem::Centre> ShapeProblem::CentreOf(const ShapeParameters& parameters) {
  UseTerms(parameters);
  const Axes axes(parameters.Place());
  const std::size_t last = points_.x.size() - 1;
  std::array<double, 3> u{}, w{};
  std::size_t j = 0;
  for (const std::size_t i : {std::size_t{0}, last / 2, last}) u[j++] = axes.AlongU(points_.x[i], points_.z[i]);
  shape_.Evaluate(u, {.height = w});
  const double toMiddle[] = {u[1] - u[0], w[1] - w[0]};
  const double toLast[] = {u[2] - u[0], w[2] - w[0]};
  const double middleSquare = toMiddle[0] * toMiddle[0] + toMiddle[1] * toMiddle[1];
  const double lastSquare = toLast[0] * toLast[0] + toLast[1] * toLast[1];
  const double area = 2.0 * (toMiddle[0] * toLast[1] - toMiddle[1] * toLast[0]);
  const double along = u[0] + (toLast[1] * middleSquare - toMiddle[1] * lastSquare) / area;
  const double above = w[0] + (toMiddle[0] * lastSquare - toLast[0] * middleSquare) / area;
  const Centre centre{axes.MeasuredX(along, above), axes.MeasuredZ(along, above)};
  if (!std::isfinite(centre.x) || !std::isfinite(centre.z)) return std::nullopt;
  return centre;
}

// A turn by the angle t about the centre carries a vertex that lies at v from it by (turning matrix - 1) v. The
// equations know only the part that goes with t; this adds the rest.
void ShapeProblem::FollowTurn(const ShapeParameters& from, ShapeParameters& to) {
  const double turn = to.values[ShapeParameters::kAngle] - from.values[ShapeParameters::kAngle];
  if (turn == 0.0) return;
  const auto centre = CentreOf(from);
  if (!centre) return;
  const double x = from.values[ShapeParameters::kX] - centre->x;
  const double z = from.values[ShapeParameters::kZ] - centre->z;
  const double sine = Sin(turn) - turn;
  const double cosine = -2.0 * Sin(0.5 * turn) * Sin(0.5 * turn);
  if (xIsFree_) to.values[ShapeParameters::kX] += cosine * x - sine * z;
  to.values[ShapeParameters::kZ] += sine * x + cosine * z;
}

double ShapeProblem::Descend(ShapeParameters& parameters, int mostSteps) {
  const std::size_t m = free_.size();
  const double extent = Extent(points_.x) + Extent(points_.z);
  Square combinations{};
  for (std::size_t k = 0; k < m; ++k) combinations[k][k] = 1.0;
  double leastDeviation = std::numeric_limits<double>::min();
  if (merit_ == ShapeMerit::kLeastAbsolute) leastDeviation = Evaluate(parameters).meanMerit;
  double floor = kRelativeFloor;
  const auto setUp = [&](const ShapeParameters& at) {
    return SetUp(at, combinations, std::max(leastDeviation * floor, std::numeric_limits<double>::min()));
  };
  Equations equations = setUp(parameters);
  double damping = kFirstDamping;
  int idleSteps = 0;
  for (int step = 0; step < mostSteps && std::isfinite(equations.evaluation.meanMerit); ++step) {
    if (!AreOrthogonal(equations.matrix, m)) {
      combinations = Orthogonalised(combinations, equations.matrix, m);
      equations = setUp(parameters);
    }
    const auto y = DampedStep(equations.matrix, equations.gradient, damping, m);
    double promised = 0.0;
    ShapeParameters tried = parameters;
    for (std::size_t k = 0; k < m; ++k) {
      promised -= y[k] * equations.gradient[k];
      for (std::size_t row = 0; row <= k; ++row) tried.values[free_[row]] += combinations[row][k] * y[k];
    }
    FollowTurn(parameters, tried);
    const double points = static_cast<double>(equations.evaluation.onShape);
    const double current = equations.evaluation.meanMerit;
    const bool isAbsolute = merit_ == ShapeMerit::kLeastAbsolute;
    if (!isAbsolute && !(promised / points > std::max(kLastDigits * extent * kLastDigits * extent, 1e-16 * current))) {
      break;
    }
    const bool isUpright = std::abs(tried.values[ShapeParameters::kAngle]) < kSteepestAngle;
    const Equations next = isUpright ? setUp(tried) : Equations{.evaluation = Rated(0.0, 0)};
    if (next.evaluation.meanMerit < current) {
      idleSteps = current - next.evaluation.meanMerit <= kNothingGained * current ? idleSteps + 1 : 0;
      parameters = tried;
      equations = next;
      damping = std::max(0.1 * damping, kLeastDamping);
      floor *= kFloorShrink;
      if (idleSteps >= 2) break;
    } else if (!isAbsolute && promised <= kLastStep * equations.evaluation.sum &&
               next.evaluation.meanMerit <= current * (1.0 + kNothingGained)) {
      // The gradient still tells the way when the merit's own rounding hides the gain.
      parameters = tried;
      equations = next;
      break;
    } else {
      damping *= 10.0;
      if (damping > kMostDamping) break;
    }
  }
  lastCombinations_ = combinations;
  lastEquations_ = equations;
  return equations.evaluation.meanMerit;
}

std::optional<ShapeCovariance> ShapeProblem::Covariance() const {
  const std::size_t m = free_.size();
  const Evaluation& evaluation = lastEquations_.evaluation;
  if (merit_ != ShapeMerit::kLeastSquares || evaluation.onShape <= m || !std::isfinite(evaluation.sum)) return {};
  const double variance = evaluation.sum / static_cast<double>(evaluation.onShape - m);
  // With columns of unit length at right angles the inverse of the normal equations is their product.
  const Square columns = Orthogonalised(lastCombinations_, lastEquations_.matrix, m);
  ShapeCovariance covariance;
  for (std::size_t k = 0; k < m; ++k) {
    for (std::size_t row = 0; row <= k; ++row) {
      for (std::size_t other = 0; other <= k; ++other) {
        covariance.values[free_[row]][free_[other]] += variance * columns[row][k] * columns[other][k];
      }
    }
  }
  for (std::size_t k = 0; k < m; ++k) {
    if (columns[k][k] == 0.0) covariance.values[free_[k]][free_[k]] = std::numeric_limits<double>::infinity();
  }
  return covariance;
}

double ShapeProblem::Level(ShapeParameters& parameters, bool withSlope) {
  ++evaluations_;
  parameters.values[ShapeParameters::kZ] = 0.0;
  parameters.values[ShapeParameters::kAngle] = 0.0;
  UseTerms(parameters);
  const Axes axes(parameters.Place());
  double n = 0.0, meanU = 0.0, meanD = 0.0, uu = 0.0, ud = 0.0, dd = 0.0;
  for (std::size_t first = 0; first < points_.x.size(); first += kBlock) {
    const std::size_t count = std::min(kBlock, points_.x.size() - first);
    const std::span<double> u = std::span(u_).first(count);
    ToShapeAxes({points_.x.subspan(first, count), points_.z.subspan(first, count)}, axes, u,
                std::span(w_).first(count));
    shape_.Evaluate(u, {.height = std::span(height_).first(count), .slope = std::span(slope_).first(count)});
    for (std::size_t i = 0; i < count; ++i) {
      const double d = w_[i] - height_[i];
      if (std::isnan(d)) continue;
      n += 1.0;  // running means, as both may lie far from 0
      const double stepU = u_[i] - meanU;
      const double stepD = d - meanD;
      meanU += stepU / n;
      meanD += stepD / n;
      uu += stepU * (u_[i] - meanU);
      ud += stepU * (d - meanD);
      dd += stepD * (d - meanD);
    }
  }
  const double slope = withSlope && uu > 0.0 ? ud / uu : 0.0;
  parameters.values[ShapeParameters::kZ] = meanD - slope * meanU;
  parameters.values[ShapeParameters::kAngle] = Atan(slope);
  return Rated(dd - slope * ud, static_cast<std::size_t>(n)).meanMerit;
}

}  // namespace texturon
