#include "parameters/local_slopes.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <limits>
#include <numbers>

#include "core/units.h"
#include "signal/lane_sums.h"

namespace texturon {
namespace {

constexpr std::size_t kReach = 3;
constexpr double kDegrees = 180.0 / std::numbers::pi;

/// Slopes in um per um; empty for fewer than seven points.
struct LocalSlopes {
  std::vector<double> values;
};

LocalSlopes ComputeSlopes(const ParameterProfile& profile) {
  const std::span<const double> z = profile.Heights();
  LocalSlopes slopes;
  if (z.size() < 2 * kReach + 1) return slopes;
  const double divisor = 60.0 * profile.SpacingUM();
  slopes.values.resize(z.size() - 2 * kReach);
  for (std::size_t i = 0; i < slopes.values.size(); ++i) {
    slopes.values[i] = ((z[i + 6] - z[i]) - 9.0 * (z[i + 5] - z[i + 1]) + 45.0 * (z[i + 4] - z[i + 2])) / divisor;
  }
  return slopes;
}

const std::vector<double>& SlopesOf(const RowInput& row) {
  const ParameterProfile& profile = row.profile;
  return profile.Shared<LocalSlopes>([&profile] { return ComputeSlopes(profile); }).values;
}

}  // namespace

std::optional<double> RootMeanSquareSlope(const RowInput& row) {
  const std::vector<double>& slopes = SlopesOf(row);
  if (slopes.empty()) return std::nullopt;
  const double sum = LaneSums(slopes.size(), [&](std::size_t i) { return std::array{slopes[i] * slopes[i]}; })[0];
  return std::atan(std::sqrt(sum / static_cast<double>(slopes.size()))) * kDegrees;
}

std::optional<double> MeanAbsoluteSlopeAngle(const RowInput& row) {
  const std::vector<double>& slopes = SlopesOf(row);
  if (slopes.empty()) return std::nullopt;
  const double sum =
      LaneSums(slopes.size(), [&](std::size_t i) { return std::array{std::atan(std::abs(slopes[i]))}; })[0];
  return sum / static_cast<double>(slopes.size()) * kDegrees;
}

std::optional<double> MedianAbsoluteSlopeAngle(const RowInput& row) {
  const std::vector<double>& slopes = SlopesOf(row);
  if (slopes.empty()) return std::nullopt;
  std::vector<double> steepness(slopes.size());
  std::transform(slopes.begin(), slopes.end(), steepness.begin(), [](double slope) { return std::abs(slope); });
  if (std::any_of(steepness.begin(), steepness.end(), [](double s) { return std::isnan(s); })) return std::nullopt;
  const auto middle = steepness.begin() + static_cast<std::ptrdiff_t>(steepness.size() / 2);
  std::nth_element(steepness.begin(), middle, steepness.end());
  double angle = std::atan(*middle);
  if (steepness.size() % 2 == 0) angle = 0.5 * (angle + std::atan(*std::max_element(steepness.begin(), middle)));
  return angle * kDegrees;
}

std::optional<double> SlopeSkewness(const RowInput& row) {
  const std::vector<double>& slopes = SlopesOf(row);
  if (slopes.empty()) return std::nullopt;
  const auto n = static_cast<double>(slopes.size());
  const double mean = LaneSums(slopes.size(), [&](std::size_t i) { return std::array{slopes[i]}; })[0] / n;
  const auto [squares, cubes] = LaneSums(slopes.size(), [&](std::size_t i) -> std::array<double, 2> {
    const double deviation = slopes[i] - mean;
    return {deviation * deviation, deviation * deviation * deviation};
  });
  const double deviation = std::sqrt(squares / n);
  const HeightExtremes& extremes = row.profile.Extremes();
  const double rounding = 4.0 * std::numeric_limits<double>::epsilon() *
                          std::max(std::abs(extremes.highest), std::abs(extremes.lowest)) / row.profile.SpacingUM();
  if (!(deviation > rounding)) return 0.0;
  return cubes / n / (deviation * deviation * deviation);
}

}  // namespace texturon
