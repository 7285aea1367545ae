// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstdint>
#include <functional>
#include <span>

#include "platform/prompts.h"

namespace texturon {

/// What is to be made small. It must not depend on anything but its argument.
using MeritFunction = std::function<double(std::span<const double>)>;

inline constexpr int kMinimiseIterationLimit = 200;
inline constexpr int kBrentIterationLimit = 200;
inline constexpr double kLineTolerance = 2e-4;  // of a line search, relative to the step

struct LineResult {
  double step = 0.0;   // where the minimum lies, in lengths of the direction
  double merit = 0.0;  // there
  int evaluations = 0;
  bool hitLimit = false;  // Brent's iterations were used up; the best point so far
};

/// Three steps along a line with the middle one lowest, ends in either order.
struct Bracket {
  double a, b, c;
};

/// Brent's minimisation between the ends of a bracket: parabolas through three points, golden sections where those lead
/// nowhere. Stops when the minimum is known to `tolerance` of itself plus 1e-10, or after 200 iterations with the best
/// point found. The minimum of a smooth function that is not 0 there cannot be told closer than about 1e-8 of the step.
LineResult BrentMinimise(const std::function<double(double)>& along, const Bracket& bracket, double tolerance);

/// Minimum along a direction: bracketed from the steps 0 and 1 by golden ratio and parabolic extrapolation, then by
/// Brent. Moves the point there and scales the direction by the step taken, if any.
LineResult LineMinimise(const MeritFunction& merit, std::span<double> point, std::span<double> direction);

enum class MinimiseStop : std::uint8_t {
  kConverged,
  kIterationLimit,
  kCancelled,  // the progress window was closed
  kNotFinite,  // the merit is no number at the start or became none
};

struct MinimiseResult {
  int iterations = 0;  // complete passes over the directions
  MinimiseStop stop = MinimiseStop::kNotFinite;
  double merit = 0.0;
  int evaluations = 0;
  bool lineHitLimit = false;  // some line search ended at its limit of iterations

  bool Succeeded() const { return stop == MinimiseStop::kConverged; }
};

/// Powell's direction-set method. `point` is the start and becomes the best point found, whatever the reason to stop;
/// `steps` has the first step of each parameter. Converged when a pass lowers the merit by no more than
/// `tolerance` x (|before| + |after|) / 2.
///
/// `progress` may be null; it is given trunc(100 - 200 |before - after| / (|before| + |after|)) percent, 0 to 100, when
/// that changed, and ends the search by answering no, also where that pass would have been the last.
///
/// Where two parameters nearly cancel each other the merit falls so slowly that the tolerance is met far from the
/// minimum: a fit that needs every digit has to go on from here.
MinimiseResult Minimise(const MeritFunction& merit, std::span<double> point, std::span<const double> steps,
                        double tolerance, Progress* progress);

}  // namespace texturon
