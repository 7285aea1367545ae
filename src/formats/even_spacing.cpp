// SPDX-License-Identifier: Apache-2.0

#include "formats/even_spacing.h"

#include <algorithm>
#include <cmath>

#include "base/number_text.h"
#include "record/profile_set.h"

namespace texturon {
namespace {

/// Cuts invalid points off at both ends; how many.
std::size_t CutEnds(std::vector<double>& x, std::vector<double>& z) {
  const auto valid = [](double value) { return !std::isnan(value); };
  const auto first = std::find_if(z.begin(), z.end(), valid) - z.begin();
  const auto behind = z.rend() - std::find_if(z.rbegin(), z.rend(), valid);
  const std::size_t before = z.size();
  if (first >= behind) {
    z.clear();
  } else {
    z.erase(z.begin() + behind, z.end());
    z.erase(z.begin(), z.begin() + first);
  }
  if (!x.empty()) {
    x.resize(static_cast<std::size_t>(std::max(behind, first)));
    x.erase(x.begin(), x.begin() + first);
  }
  return before - z.size();
}

/// Interpolates invalid points between their valid neighbours by index; how many. The ends are valid.
std::size_t Bridge(std::vector<double>& z) {
  std::size_t bridged = 0;
  for (std::size_t i = 1; i < z.size(); ++i) {
    if (!std::isnan(z[i])) continue;
    const std::size_t left = i - 1;
    while (std::isnan(z[i])) ++i;
    for (std::size_t k = left + 1; k < i; ++k) {
      z[k] = std::lerp(z[left], z[i], static_cast<double>(k - left) / static_cast<double>(i - left));
    }
    bridged += i - left - 1;
  }
  return bridged;
}

std::string Counted(std::size_t count, std::string_view what) {
  return IntegerText(static_cast<std::int64_t>(count)) + " invalid point" + (count == 1 ? " " : "s ") +
         std::string(what);
}

void WarnOfInvalid(std::size_t cut, std::size_t bridged, std::vector<std::string>& warnings) {
  std::string text = cut > 0 ? Counted(cut, "at the ends cut off") : std::string();
  if (bridged > 0) text += (text.empty() ? "" : ", ") + Counted(bridged, "inside interpolated");
  if (!text.empty()) warnings.push_back(std::move(text));
}

/// Leaves out invalid points inside; how many.
std::size_t DropInvalid(std::vector<double>& x, std::vector<double>& z) {
  std::size_t kept = 0;
  for (std::size_t i = 0; i < z.size(); ++i) {
    if (std::isnan(z[i])) continue;
    x[kept] = x[i];
    z[kept++] = z[i];
  }
  const std::size_t dropped = z.size() - kept;
  x.resize(kept);
  z.resize(kept);
  return dropped;
}

double MedianStep(const std::vector<double>& x) {
  std::vector<double> steps(x.size() - 1);
  for (std::size_t i = 0; i < steps.size(); ++i) steps[i] = x[i + 1] - x[i];
  const auto middle = steps.begin() + static_cast<std::ptrdiff_t>((steps.size() - 1) / 2);
  std::nth_element(steps.begin(), middle, steps.end());
  return *middle;
}

/// Whether rows are missing from positions that are printed exactly: each step is a whole number of the median one, and
/// the longer ones do not come as regularly as the rounding of an even step would make them.
bool HasGaps(const std::vector<double>& x) {
  const double step = MedianStep(x);
  std::vector<std::size_t> gaps;
  for (std::size_t i = 1; i < x.size(); ++i) {
    const double steps = (x[i] - x[i - 1]) / step;
    if (std::abs(steps - std::round(steps)) > 1e-6 || steps < 0.5) return false;
    if (steps > 1.5) gaps.push_back(i);
  }
  if (gaps.size() < 2) return !gaps.empty();
  std::size_t longest = 0;
  std::size_t shortest = x.size();
  for (std::size_t i = 1; i < gaps.size(); ++i) {
    longest = std::max(longest, gaps[i] - gaps[i - 1]);
    shortest = std::min(shortest, gaps[i] - gaps[i - 1]);
  }
  constexpr std::size_t kOfRounding = 2;
  const std::size_t behind = x.size() - gaps.back();
  return longest - shortest > kOfRounding || gaps.front() > longest + kOfRounding || behind > longest + kOfRounding;
}

/// Heights at x[0] + i * step by linear interpolation up to the last position; x rises.
std::vector<double> Resample(const std::vector<double>& x, const std::vector<double>& z, double step,
                             std::size_t points) {
  constexpr double kOnPoint = 1e-9;  // of a step: a height that is there is taken as it is
  std::vector<double> even(points);
  std::size_t right = 1;
  for (std::size_t i = 0; i < points; ++i) {
    const double at = x.front() + static_cast<double>(i) * step;
    while (right + 1 < x.size() && x[right] < at - kOnPoint * step) ++right;
    const double share = std::min((at - x[right - 1]) / (x[right] - x[right - 1]), 1.0);
    even[i] = std::abs(x[right] - at) <= kOnPoint * step ? z[right] : std::lerp(z[right - 1], z[right], share);
  }
  return even;
}

/// How far positions lie from a line of equal steps, and which are in disorder.
struct Order {
  double deviation = 0.0;
  std::size_t back = 0;    ///< the first that lies before the one above it; 0: none
  std::size_t repeat = 0;  ///< the first that equals the one above it; 0: none
};

Order OrderOf(const std::vector<double>& x, double step) {
  Order order;
  for (std::size_t i = 0; i < x.size(); ++i) {
    order.deviation = std::max(order.deviation, std::abs(x[i] - (x.front() + static_cast<double>(i) * step)));
    if (i > 0 && x[i] < x[i - 1] && order.back == 0) order.back = i;
    if (i > 0 && x[i] == x[i - 1] && order.repeat == 0) order.repeat = i;
  }
  return order;
}

}  // namespace

void FillInvalid(std::vector<double>& heightsUM, std::vector<std::string>& warnings) {
  std::vector<double> none;
  const std::size_t cut = CutEnds(none, heightsUM);
  WarnOfInvalid(cut, Bridge(heightsUM), warnings);
}

EvenOutcome MakeEven(Trace&& trace, ImportedProfile& profile) {
  std::vector<double>& x = trace.xUM;
  std::vector<double>& z = trace.zUM;
  for (std::size_t i = 0; i < x.size(); ++i) {
    if (std::isnan(x[i]) && !std::isnan(z[i])) return {"there is no position", i};
  }
  const std::size_t before = z.size();
  const auto firstValid = std::find_if(z.begin(), z.end(), [](double value) { return !std::isnan(value); }) - z.begin();
  const std::size_t cut = CutEnds(x, z);
  if (z.size() < 2) return {"there are fewer than two valid points"};
  Bridge(x);  // a point without anything has its place between the others
  const bool isTurned = x.front() > x.back();
  if (isTurned) {
    std::reverse(x.begin(), x.end());
    std::reverse(z.begin(), z.end());
  }
  const auto pointOf = [&](std::size_t i) {
    const auto first = static_cast<std::size_t>(firstValid);
    return std::min(isTurned ? first + x.size() - i : first + i, before - 1);
  };
  double step = (x.back() - x.front()) / static_cast<double>(x.size() - 1);
  if (!(step > 0.0) || !std::isfinite(step)) return {"the positions do not rise", pointOf(x.size() - 1)};
  const Order order = OrderOf(x, step);
  if (order.back > 0) return {"the positions go back and forth", pointOf(order.back)};
  double tolerance = 1e-6 * step;
  if (order.deviation > tolerance && trace.lastDigitUM) tolerance = std::max(tolerance, 1.01 * trace.lastDigitUM());
  const bool isRounded = order.deviation > 1e-6 * step && order.deviation <= tolerance;
  if (order.deviation <= tolerance && !(isRounded && order.repeat == 0 && HasGaps(x))) {
    WarnOfInvalid(cut, Bridge(z), profile.warnings);
  } else {
    if (order.repeat > 0) return {"the position is that of the point before it", pointOf(order.repeat)};
    const double lengthUM = x.back() - x.front();
    WarnOfInvalid(cut, DropInvalid(x, z), profile.warnings);
    if (!trace.resamplesToMean) step = MedianStep(x);
    const double points = std::floor(lengthUM / step * (1.0 + 1e-12) + 1e-9) + 1.0;
    constexpr double kMostOfGaps = 4.0;
    const double most = std::min(kMostOfGaps * static_cast<double>(x.size()), static_cast<double>(kPointCapacity));
    if (!(points <= most)) return {"most of the trace lies in gaps between the positions"};
    z = Resample(x, z, step, static_cast<std::size_t>(points));
    profile.warnings.push_back("positions are uneven by up to " + SignificantText(order.deviation, 6) +
                               " um; the heights are interpolated to the " +
                               std::string(trace.resamplesToMean ? "mean" : "median") + " step");
  }
  profile.spacingUM = step;
  profile.heightsUM = std::move(z);
  return {};
}

}  // namespace texturon
