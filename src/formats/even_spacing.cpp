// SPDX-License-Identifier: Apache-2.0

#include "formats/even_spacing.h"

#include <algorithm>
#include <cmath>

#include "base/number_text.h"

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

void WarnOfInvalid(std::size_t cut, std::size_t bridged, std::vector<std::string>& warnings) {
  if (cut + bridged == 0) return;
  warnings.push_back(IntegerText(static_cast<std::int64_t>(cut)) + " invalid points at the ends cut off, " +
                     IntegerText(static_cast<std::int64_t>(bridged)) + " inside interpolated");
}

/// Heights at x[0] + i * step by linear interpolation; x rises.
std::vector<double> Resample(const std::vector<double>& x, const std::vector<double>& z, double step) {
  std::vector<double> even(z.size());
  std::size_t right = 1;
  for (std::size_t i = 0; i < even.size(); ++i) {
    const double at = x.front() + static_cast<double>(i) * step;
    while (right + 1 < x.size() && x[right] < at) ++right;
    even[i] = std::lerp(z[right - 1], z[right], std::min((at - x[right - 1]) / (x[right] - x[right - 1]), 1.0));
  }
  return even;
}

}  // namespace

void FillInvalid(std::vector<double>& heightsUM, std::vector<std::string>& warnings) {
  std::vector<double> none;
  const std::size_t cut = CutEnds(none, heightsUM);
  WarnOfInvalid(cut, Bridge(heightsUM), warnings);
}

std::string MakeEven(Trace&& trace, ImportedProfile& profile) {
  std::vector<double>& x = trace.xUM;
  std::vector<double>& z = trace.zUM;
  const std::size_t cut = CutEnds(x, z);
  if (z.size() < 2) return "there are fewer than two valid points";
  if (x.front() > x.back()) {
    std::reverse(x.begin(), x.end());
    std::reverse(z.begin(), z.end());
  }
  const double step = (x.back() - x.front()) / static_cast<double>(x.size() - 1);
  if (!(step > 0.0) || !std::isfinite(step)) return "the positions do not rise";
  double deviation = 0.0;
  bool fallsBack = false;
  bool rises = true;
  for (std::size_t i = 0; i < x.size(); ++i) {
    deviation = std::max(deviation, std::abs(x[i] - (x.front() + static_cast<double>(i) * step)));
    fallsBack = fallsBack || (i > 0 && x[i] < x[i - 1]);
    rises = rises && (i == 0 || x[i] > x[i - 1]);
  }
  if (fallsBack) return "the positions go back and forth";
  WarnOfInvalid(cut, Bridge(z), profile.warnings);
  const double tolerance = std::max(1e-6 * step, 1.01 * trace.lastDigitUM);
  if (deviation > tolerance) {
    if (!rises) return "positions repeat";
    z = Resample(x, z, step);
    profile.warnings.push_back("positions are uneven by up to " + ShortestText(deviation) +
                               " um; the heights are interpolated to the mean step");
  }
  profile.spacingUM = step;
  profile.heightsUM = std::move(z);
  return {};
}

}  // namespace texturon
