// SPDX-License-Identifier: Apache-2.0

#include "parameters/edition2021/spatial_rows.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <vector>

#include "parameters/local_slopes.h"
#include "signal/fft/plain_spectrum.h"
#include "signal/lane_sums.h"

namespace texturon {
namespace {

constexpr std::size_t kReach = 3;
constexpr std::size_t kPointsOfSlope = 2 * kReach + 1;

/// Mean product at a lag.
double MeanProduct(std::span<const double> z, std::size_t lag) {
  const std::size_t pairs = z.size() - lag;
  return LaneSums(pairs, [&](std::size_t i) { return std::array{z[i] * z[i + lag]}; })[0] / static_cast<double>(pairs);
}

/// The first lag whose autocorrelation is at or below `level`, up to `most`.
std::optional<std::size_t> FirstLagBelow(std::span<const double> z, double level, std::size_t most) {
  const double square = MeanProduct(z, 0);
  const auto isBelow = [&](std::size_t lag) { return MeanProduct(z, lag) / square <= level; };
  // The products by transforms only find the place; the sums themselves decide.
  const std::vector<double> products = LaggedProducts(z, most + 1);
  std::size_t lag = 1;
  const auto n = static_cast<double>(z.size());
  constexpr double kDoubt = 1e-9;
  while (lag <= most && products[lag] / (n - static_cast<double>(lag)) / square > level + kDoubt) ++lag;
  while (lag <= most && !isBelow(lag)) ++lag;
  return lag <= most ? std::optional(lag) : std::nullopt;
}

struct SlopeSums {
  double squares = 0.0;
  double amounts = 0.0;
  double stretch = 0.0;  ///< of sqrt(1 + slope^2) - 1
  double greatest = 0.0;
  double count = 0.0;
};

Defined<SlopeSums> SumSlopes(const EditionInput& row) {
  const auto make = [&row]() -> Defined<SlopeSums> {
    const Samples slopes = LocalSlopes(row.profile.Heights(), row.profile.SpacingUM());
    if (slopes.empty()) {
      return NoValue{Why::kFewPoints,
                     {static_cast<double>(kPointsOfSlope), static_cast<double>(row.profile.Heights().size())}};
    }
    SlopeSums sums{.count = static_cast<double>(slopes.size())};
    const auto [squares, amounts, stretch] = LaneSums(slopes.size(), [&slopes](std::size_t i) -> std::array<double, 3> {
      const double square = slopes[i] * slopes[i];
      return {square, std::abs(slopes[i]), square / (std::sqrt(1.0 + square) + 1.0)};
    });
    sums.squares = squares;
    sums.amounts = amounts;
    sums.stretch = stretch;
    for (const double slope : slopes) sums.greatest = std::max(sums.greatest, std::abs(slope));
    return sums;
  };
  return row.profile.Cached<Defined<SlopeSums>>(make);
}

template <typename Value>
RowResult OfSlopes(const EditionInput& row, const Value& value) {
  const Defined<SlopeSums> sums = SumSlopes(row);
  if (!sums) return sums.Reason();
  return value(*sums);
}

}  // namespace

RowResult AutocorrelationLength(const EditionInput& row) {
  const std::span<const double> z = row.profile.Heights();
  const double level = row.Argument(0, row.Standard().AutocorrelationLevel);
  const std::size_t most = z.size() / 2;
  const NoValue none{Why::kNoDecay, {100.0 * level, static_cast<double>(most) * row.profile.SpacingMM()}};
  if (most < 1 || !(row.profile.Extremes().highest > row.profile.Extremes().lowest)) return none;
  const auto lag = FirstLagBelow(z, level, most);
  if (!lag) return none;
  const double square = MeanProduct(z, 0);
  const double above = MeanProduct(z, *lag - 1) / square;
  const double below = MeanProduct(z, *lag) / square;
  if (!(above > level)) return none;  // a level of 1 and more
  return (static_cast<double>(*lag - 1) + (above - level) / (above - below)) * row.profile.SpacingMM();
}

RowResult DominantWavelength(const EditionInput& row) {
  const std::vector<double> power = PlainPowerSpectrum(row.profile.Heights());
  if (power.size() < 2) return NoValue{Why::kFewPoints, {2.0, static_cast<double>(row.profile.Heights().size())}};
  const double largest = *std::max_element(power.begin() + 1, power.end());
  if (!(largest > 0.0)) return NoValue{Why::kNoSpacing};
  // The first of equals: an impulse has as much of every wavelength, but for rounding.
  constexpr double kRounding = 1e-12;
  const auto first = std::find_if(power.begin() + 1, power.end(),
                                  [largest](double amount) { return amount >= largest * (1.0 - kRounding); });
  return row.LengthMM() / static_cast<double>(first - power.begin());
}

RowResult SlopeDeviation(const EditionInput& row) {
  return OfSlopes(row, [](const SlopeSums& sums) { return std::sqrt(sums.squares / sums.count); });
}

RowResult MeanSlope(const EditionInput& row) {
  return OfSlopes(row, [](const SlopeSums& sums) { return sums.amounts / sums.count; });
}

RowResult GreatestSlope(const EditionInput& row) {
  return OfSlopes(row, [](const SlopeSums& sums) { return sums.greatest; });
}

RowResult DevelopedRatio(const EditionInput& row) {
  return OfSlopes(row, [](const SlopeSums& sums) { return 100.0 * sums.stretch / sums.count; });
}

RowResult DevelopedLength(const EditionInput& row) {
  return OfSlopes(row, [&row](const SlopeSums& sums) { return row.LengthMM() * (1.0 + sums.stretch / sums.count); });
}

}  // namespace texturon
