// SPDX-License-Identifier: Apache-2.0

#include "parameters/window_rows.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <numbers>

#include "base/elementary.h"
#include "base/samples.h"
#include "base/units.h"
#include "parameters/swept_windows.h"

namespace texturon {
namespace {

constexpr std::size_t kSeven = 7;
constexpr double kMinutesOfArc = 180.0 / std::numbers::pi * 60.0;

/// Where a quantity of the moving window is largest; `first` is the first window that has it.
class Greatest {
public:
  void See(std::size_t first, double value) {
    if (seen_ && !(value > value_)) return;
    seen_ = true;
    value_ = value;
    first_ = first;
  }
  double Value() const { return value_; }
  double MiddleMM(std::size_t points, double spacingMM) const {
    return (static_cast<double>(first_) + 0.5 * static_cast<double>(points - 1)) * spacingMM;
  }

private:
  bool seen_ = false;
  double value_ = 0.0;
  std::size_t first_ = 0;
};

/// A row's value with its position, shared by two rows. A `Kind` says how many points its window has, sweeps it over
/// the profile for what is largest, and turns that into the value shown.
template <typename Kind>
struct Placed {
  struct Value {
    double value = 0.0;
    double positionMM = 0.0;
  };
  Defined<Value> found;
};

template <typename Kind>
const Defined<typename Placed<Kind>::Value>& PlacedOf(const RowInput& row) {
  using Value = typename Placed<Kind>::Value;
  const auto make = [&row]() -> Placed<Kind> {
    const Defined<std::size_t> points = Kind::Points(row);
    if (!points) return {points.Reason()};
    const Greatest greatest = Kind::Sweep(row, *points);
    return {Value{Kind::Shown(greatest.Value(), row, *points), greatest.MiddleMM(*points, row.profile.SpacingMM())}};
  };
  return row.profile.Cached<Placed<Kind>>(make).found;
}

template <typename Kind>
RowResult ValueOf(const RowInput& row) {
  const auto& placed = PlacedOf<Kind>(row);
  if (!placed) return placed.Reason();
  return placed->value;
}

template <typename Kind>
RowResult PositionOf(const RowInput& row) {
  const auto& placed = PlacedOf<Kind>(row);
  if (!placed) return placed.Reason();
  return placed->positionMM;
}

/// Points in a number of whole sampling lengths; empty when they do not fit.
Defined<std::size_t> PointsOfLengths(const RowInput& row, std::size_t number) {
  const auto lengths = DivideIntoSamplingLengths(row.profile.Heights().size(), row.profile.SpacingMM(),
                                                 row.profile.SamplingLengthMM(), ShortProfile::kFails);
  const auto needed = static_cast<double>(number);
  if (!lengths) {
    NoValue reason = row.profile.WhyNotDivided(row.profile.SamplingLengthMM());
    if (reason.why == Why::kFewSamplingLengths) reason.figures[0] = needed;
    return reason;
  }
  if (lengths->count < number) {
    return NoValue{Why::kFewSamplingLengths, {needed, static_cast<double>(lengths->count)}};
  }
  return lengths->pointsEach * number;
}

/// Points of a window that spans a length: its steps and one. Empty when it has no step or does not fit.
Defined<std::size_t> PointsOfWindow(const RowInput& row, double lengthMM) {
  const auto steps = StepsInLength(lengthMM, row.profile.SpacingUM());
  const std::size_t n = row.profile.Heights().size();
  if (steps < 1) return NoValue{Why::kShortWindow, {lengthMM, row.profile.SpacingUM()}};
  if (static_cast<std::size_t>(steps) >= n) {
    return NoValue{Why::kLongWindow, {lengthMM, static_cast<double>(n) * row.profile.SpacingMM()}};
  }
  return static_cast<std::size_t>(steps) + 1;
}

template <std::size_t Lengths>
struct MeanDeviation {
  static Defined<std::size_t> Points(const RowInput& row) { return PointsOfLengths(row, Lengths); }
  static Greatest Sweep(const RowInput& row, std::size_t points) {
    const std::span<const double> z = row.profile.Heights();
    Greatest greatest;
    SweepWindows(
        z.size(), points, [z](std::size_t i, std::size_t) { return std::abs(z[i]); },
        [](double a, double b) { return a + b; }, [&](std::size_t first, double sum) { greatest.See(first, sum); });
    return greatest;
  }
  static double Shown(double sum, const RowInput&, std::size_t points) { return sum / static_cast<double>(points); }
};

struct MeanPeak {
  static Defined<std::size_t> Points(const RowInput& row) { return PointsOfLengths(row, kSeven); }
  static Greatest Sweep(const RowInput& row, std::size_t points) {
    const std::span<const double> z = row.profile.Heights();
    const std::size_t each = points / kSeven;
    Samples highest(z.size() - each + 1);
    SweepWindows(
        z.size(), each, [z](std::size_t i, std::size_t) { return z[i]; },
        [](double a, double b) { return a < b ? b : a; },
        [&](std::size_t first, double value) { highest[first] = value; });
    Greatest greatest;
    for (std::size_t first = 0; first + points <= z.size(); ++first) {
      double sum = 0.0;
      for (std::size_t k = 0; k < kSeven; ++k) sum += highest[first + k * each];
      greatest.See(first, sum);
    }
    return greatest;
  }
  static double Shown(double sum, const RowInput&, std::size_t) { return sum / static_cast<double>(kSeven); }
};

struct Segment {
  static Defined<std::size_t> Points(const RowInput& row) {
    return PointsOfWindow(row, row.settings.WindowWidthForWseg);
  }
  static Greatest Sweep(const RowInput& row, std::size_t points) {
    const std::span<const double> z = row.profile.Heights();
    Greatest greatest;
    SweepWindows(
        z.size(), points,
        [z](std::size_t i, std::size_t) {
          return HeightExtremes{z[i], z[i]};
        },
        [](const HeightExtremes& a, const HeightExtremes& b) {
          return HeightExtremes{std::max(a.highest, b.highest), std::min(a.lowest, b.lowest)};
        },
        [&](std::size_t first, const HeightExtremes& e) { greatest.See(first, e.highest - e.lowest); });
    return greatest;
  }
  static double Shown(double height, const RowInput&, std::size_t) { return height; }
};

/// Least-squares slopes from the sums of z and of x z, x counted from the border between the window's two blocks: for a
/// window of w points about their middle m, (sum of x z - m sum of z) / (w (w^2 - 1) / 12).
struct FittedSlope {
  struct Sums {
    double height = 0.0;
    double moment = 0.0;
  };
  static Defined<std::size_t> Points(const RowInput& row) {
    return PointsOfWindow(row, row.settings.AsphereSlopeWindowMM);
  }
  static Greatest Sweep(const RowInput& row, std::size_t points) {
    const std::span<const double> z = row.profile.Heights();
    Greatest greatest;
    const auto seen = [&](std::size_t first, const Sums& sums) {
      const std::size_t border = first / points * points + points;
      const double middle = 0.5 * static_cast<double>(points - 1) - static_cast<double>(border - first);
      greatest.See(first, std::abs(sums.moment - middle * sums.height));
    };
    SweepWindows(
        z.size(), points,
        [z](std::size_t i, std::size_t border) -> Sums {
          return {z[i], z[i] * (static_cast<double>(i) - static_cast<double>(border))};
        },
        [](const Sums& a, const Sums& b) -> Sums {
          return {a.height + b.height, a.moment + b.moment};
        },
        seen);
    return greatest;
  }
  static double Shown(double moment, const RowInput& row, std::size_t points) {
    const auto w = static_cast<double>(points);
    return Atan(moment / (w * (w * w - 1.0) / 12.0 * row.profile.SpacingUM())) * kMinutesOfArc;
  }
};

struct ChordSlope {
  static Defined<std::size_t> Points(const RowInput& row) {
    return PointsOfWindow(row, row.settings.AsphereSlopeWindowMM);
  }
  static Greatest Sweep(const RowInput& row, std::size_t points) {
    const std::span<const double> z = row.profile.Heights();
    Greatest greatest;
    for (std::size_t first = 0; first + points <= z.size(); ++first) {
      greatest.See(first, std::abs(z[first + points - 1] - z[first]));
    }
    return greatest;
  }
  static double Shown(double drop, const RowInput& row, std::size_t points) {
    return Atan(drop / (static_cast<double>(points - 1) * row.profile.SpacingUM())) * kMinutesOfArc;
  }
};

/// Points of an end region, at most all; empty when the region has no length.
Defined<std::size_t> PointsOfEnd(const RowInput& row) {
  const std::size_t n = row.profile.Heights().size();
  if (n == 0) return NoValue{Why::kFewPoints, {1.0}};
  if (!(row.settings.WxpEndRegionsMM > 0.0)) return NoValue{Why::kNoEndRegion, {row.settings.WxpEndRegionsMM}};
  const auto points = static_cast<std::size_t>(StepsInLength(row.settings.WxpEndRegionsMM, row.profile.SpacingUM()));
  return std::clamp<std::size_t>(points, 1, n);
}

}  // namespace

RowResult GreatestDeviationOfOneLength(const RowInput& row) {
  return ValueOf<MeanDeviation<1>>(row);
}
RowResult PlaceOfDeviationOfOneLength(const RowInput& row) {
  return PositionOf<MeanDeviation<1>>(row);
}
RowResult GreatestDeviationOfSevenLengths(const RowInput& row) {
  return ValueOf<MeanDeviation<kSeven>>(row);
}
RowResult PlaceOfDeviationOfSevenLengths(const RowInput& row) {
  return PositionOf<MeanDeviation<kSeven>>(row);
}
RowResult GreatestMeanPeakOfSevenLengths(const RowInput& row) {
  return ValueOf<MeanPeak>(row);
}
RowResult PlaceOfMeanPeakOfSevenLengths(const RowInput& row) {
  return PositionOf<MeanPeak>(row);
}
RowResult SegmentHeight(const RowInput& row) {
  return ValueOf<Segment>(row);
}
RowResult SegmentPlace(const RowInput& row) {
  return PositionOf<Segment>(row);
}
RowResult SteepestLine(const RowInput& row) {
  return ValueOf<FittedSlope>(row);
}
RowResult SteepestLinePlace(const RowInput& row) {
  return PositionOf<FittedSlope>(row);
}
RowResult SteepestChord(const RowInput& row) {
  return ValueOf<ChordSlope>(row);
}
RowResult SteepestChordPlace(const RowInput& row) {
  return PositionOf<ChordSlope>(row);
}

RowResult HighestOfLeftEnd(const RowInput& row) {
  const auto points = PointsOfEnd(row);
  if (!points) return points.Reason();
  return FindExtremes(row.profile.Heights().first(*points)).highest;
}

RowResult HighestOfRightEnd(const RowInput& row) {
  const auto points = PointsOfEnd(row);
  if (!points) return points.Reason();
  return FindExtremes(row.profile.Heights().last(*points)).highest;
}

}  // namespace texturon
