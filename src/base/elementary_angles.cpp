// SPDX-License-Identifier: Apache-2.0

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>

#include "base/double_double.h"
#include "base/elementary.h"
#include "base/multiversion.h"

// Polynomials are near-minimax ones, interpolated at the Chebyshev nodes of their interval with 70 digits; the leading
// terms, which decide about the last bit, are kept in two doubles.

namespace texturon {
namespace {

constexpr DoubleDouble kPiOver2{0x1.921fb54442d18p+0, 0x1.1a62633145c07p-54};
constexpr double kPiOver4 = 0x1.921fb54442d18p-1;

template <std::size_t N>
TEXTURON_INLINE double Horner(const double (&coefficients)[N], double x) {
  double value = coefficients[N - 1];
  for (std::size_t k = N - 1; k-- > 0;) value = value * x + coefficients[k];
  return value;
}

// ---- sine and cosine ----

/// An angle less whole quarter turns, from -pi/4 to pi/4.
struct Octant {
  DoubleDouble rest;
  unsigned quarters;  // modulo 4
};

// Angles from 2^26 on: of x * 2 / pi only the bits from the units' second one downwards matter.
Octant ReduceLarge(double size) {
  constexpr std::uint32_t kTwoOverPi[] = {
      // digits of 2 / pi to the base 2^32, behind the point
      0xA2F9836E, 0x4E441529, 0xFC2757D1, 0xF534DDC0, 0xDB629599, 0x3C439041, 0xFE5163AB, 0xDEBBC561,
      0xB7246E3A, 0x424DD2E0, 0x06492EEA, 0x09D1921C, 0xFE1DEB1C, 0xB129A73E, 0xE88235F5, 0x2EBB4484,
      0xE99C7026, 0xB45F7E41, 0x3991D639, 0x835339F4, 0x9C845F8B, 0xBDF9283B, 0x1FF897FF, 0xDE05980F,
      0xEF2F118B, 0x5A0A6D1F, 0x6D367ECF, 0x27CB09B7, 0x4F463F66, 0x9E5FEA2D, 0x7527BAC7, 0xEBE5F17B,
      0x3D0739F7, 0x8A5292EA, 0x6BFB5FB1, 0x1F8D5D08, 0x56033046, 0xFC7B6BAB};
  constexpr int kDigits = 7;          // of 2 / pi that take part
  constexpr int kWide = kDigits + 2;  // of the product
  int exponent = 0;
  const auto mantissa = static_cast<std::uint64_t>(std::ldexp(std::frexp(size, &exponent), 53));
  exponent -= 53;
  const int first = exponent >= 2 ? (exponent - 2) / 32 : 0;  // digits before it give whole turns
  const std::uint64_t parts[] = {mantissa & 0xFFFFFFFFu, mantissa >> 32};
  std::uint32_t product[kWide + 1] = {};  // lowest digit first
  for (int p = 0; p < 2; ++p) {
    std::uint64_t carry = 0;
    for (int d = 0; d < kWide - p; ++d) {
      const std::uint64_t digit = d < kDigits ? kTwoOverPi[first + kDigits - 1 - d] : 0;
      const std::uint64_t sum = digit * parts[p] + product[d + p] + carry;
      product[d + p] = static_cast<std::uint32_t>(sum);
      carry = sum >> 32;
    }
  }
  const int point = 32 * (first + kDigits) - exponent;  // bits of the product behind the point
  const auto bitsAt = [&](int bit) {
    const std::uint64_t both = product[bit / 32] | (static_cast<std::uint64_t>(product[bit / 32 + 1]) << 32);
    return static_cast<unsigned>(both >> (bit % 32));
  };
  unsigned quarters = bitsAt(point) & 3u;
  const bool isAbove = (bitsAt(point - 1) & 1u) != 0;  // more than half a quarter: count down from the next
  if (isAbove) ++quarters;
  DoubleDouble share = 0.0;
  for (int d = point / 32; d >= 0; --d) {
    std::uint32_t digit = isAbove ? ~product[d] : product[d];
    if (d == point / 32) digit &= (std::uint32_t{1} << (point % 32)) - 1u;
    share += std::ldexp(static_cast<double>(digit), 32 * d - point);
  }
  return {(isAbove ? -share : share) * kPiOver2, quarters & 3u};
}

Octant Reduce(double angle) {
  constexpr double kTwoOverPi = 0x1.45f306dc9c883p-1;
  // pi / 2 in pieces of 27 bits, of which up to 2^26 times are exact, and a last one.
  constexpr double kPieces[] = {0x1.921fb54p+0, 0x1.10b46p-30, 0x1.1a62630p-54, 0x1.8a2e034p-81};
  constexpr double kLast = 0x1.839a252049c11p-108;
  const double size = std::abs(angle);
  if (size <= kPiOver4) return {angle, 0};
  if (size >= 0x1p26) {
    const Octant octant = ReduceLarge(size);
    return angle < 0.0 ? Octant{-octant.rest, (4u - octant.quarters) & 3u} : octant;
  }
  const double turns = std::floor(angle * kTwoOverPi + 0.5);
  DoubleDouble rest = angle - turns * kPieces[0];
  for (const double piece : {kPieces[1], kPieces[2], kPieces[3]}) rest -= turns * piece;
  rest -= turns * kLast;
  return {rest, static_cast<unsigned>(static_cast<std::int32_t>(turns)) & 3u};
}

/// r + r^3 (-1/6 + r^2 (...)).
DoubleDouble SineOf(DoubleDouble r) {
  constexpr DoubleDouble kSixth{-0x1.5555555555555p-3, -0x1.5555555555555p-57};
  constexpr double kTerms[] = {0x1.1111111111111p-7,   -0x1.a01a01a019ed6p-13, 0x1.71de3a550c9e6p-19,
                               -0x1.ae645533e4fc2p-26, 0x1.61225af9d753ep-33,  -0x1.ab93cc7ac5abcp-41};
  const DoubleDouble square = r * r;
  return r + r * (square * (kSixth + square.hi * Horner(kTerms, square.hi)));
}

/// 1 - r^2 / 2 + r^4 (1/24 + r^2 (...)).
DoubleDouble CosineOf(DoubleDouble r) {
  constexpr DoubleDouble kTwentyFourth{0x1.5555555555555p-5, 0x1.5555555555555p-59};
  constexpr double kTerms[] = {-0x1.6c16c16c16c17p-10, 0x1.a01a01a019f8ap-16,  -0x1.27e4fb775f589p-22,
                               0x1.1eed8e6c2ccc2p-29,  -0x1.93957dabf5e31p-37, 0x1.abe69fa572053p-45};
  const DoubleDouble square = r * r;
  return DoubleDouble(1.0) +
         square * (DoubleDouble(-0.5) + square * (kTwentyFourth + square.hi * Horner(kTerms, square.hi)));
}

double SineAfter(double angle, unsigned quartersMore) {
  const Octant octant = Reduce(angle);
  const unsigned quarters = octant.quarters + quartersMore;
  const double size = (quarters & 1u) != 0 ? CosineOf(octant.rest).hi : SineOf(octant.rest).hi;
  return (quarters & 2u) != 0 ? -size : size;
}

// ---- inverse tangent ----

/// Angle of (x, y), neither below 0, not both 0, finite; quotients below 2^-100 or above 2^100 lose the digits behind.
/// With c = q / p one of 0, 1/4, 1/2, 1, 2 and infinity it is atan c + atan t, t = (p y - q x) / (p x + q y), |t| up to
/// 0.25, at c = 0 half of that. p y - q x comes out exactly.
TEXTURON_INLINE DoubleDouble FirstQuadrant(double y, double x) {
  constexpr double kTerms[] = {-0x1.5555555555555p-2, 0x1.9999999999999p-3, -0x1.2492492492444p-3, 0x1.c71c71c712fe9p-4,
                               -0x1.745d174120f95p-4, 0x1.3b13afdeffebap-4, -0x1.1110d200ddd47p-4, 0x1.e1d32768f8f21p-5,
                               -0x1.ae0bcc9e9e04cp-5, 0x1.789632d933930p-5, -0x1.04889dbd1f2a2p-5};
  const bool quarter = y > 0.125 * x;
  const bool half = y > 0.375 * x;
  const bool one = y > 0.71875 * x;
  const bool two = y > 1.40625 * x;
  const bool steep = y > 4.0 * x;
  // Chosen one after the other, as vectors choose.
  double p = quarter ? 4.0 : 1.0;
  double q = quarter ? 1.0 : 0.0;
  double centre = quarter ? 0x1.f5b75f92c80ddp-3 : 0.0;
  double below = quarter ? 0x1.8ab6e3cf7afbdp-57 : 0.0;
  p = half ? 2.0 : p;
  centre = half ? 0x1.dac670561bb4fp-2 : centre;
  below = half ? 0x1.a2b7f222f65e2p-56 : below;
  p = one ? 1.0 : p;
  centre = one ? kPiOver4 : centre;
  below = one ? 0.5 * kPiOver2.lo : below;
  q = two ? 2.0 : q;
  centre = two ? 0x1.1b6e192ebbe44p+0 : centre;
  below = two ? 0x1.b1b466a88828ep-54 : below;
  p = steep ? 0.0 : p;
  q = steep ? 1.0 : q;
  centre = steep ? kPiOver2.hi : centre;
  below = steep ? kPiOver2.lo : below;
  const double over = p * y - q * x;
  const DoubleDouble under = TwoSum(p * x, q * y);
  const double t = over / under.hi;
  const DoubleDouble back = TwoProduct(t, under.hi);
  const double rest = (((over - back.hi) - back.lo) - t * under.lo) / under.hi;
  const double square = t * t;
  const double tail = (rest - rest * square) + t * square * Horner(kTerms, square);
  const DoubleDouble sum = FastTwoSum(centre, t);
  return {sum.hi, sum.lo + (below + tail)};
}

TEXTURON_INLINE double AtanOf(double x) {
  constexpr double kStraight = 0x1p-27;  // below it the angle is the slope
  constexpr double kUpright = 0x1p60;    // above it the angle is pi / 2
  const double size = std::abs(x);
  const DoubleDouble angle = FirstQuadrant(size < kUpright ? size : kUpright, 1.0);
  const double signedAngle = std::copysign(size < kStraight ? size : angle.hi + angle.lo, x);
  return x == x ? signedAngle : x;
}

}  // namespace

double Sin(double angle) {
  if (!(std::abs(angle) <= std::numeric_limits<double>::max())) return angle - angle;
  if (std::abs(angle) < 0x1p-27) return angle;
  return SineAfter(angle, 0);
}

double Cos(double angle) {
  if (!(std::abs(angle) <= std::numeric_limits<double>::max())) return angle - angle;
  return SineAfter(angle, 1);
}

double Tan(double angle) {
  if (!(std::abs(angle) <= std::numeric_limits<double>::max())) return angle - angle;
  if (std::abs(angle) < 0x1p-27) return angle;
  const Octant octant = Reduce(angle);
  const DoubleDouble sine = SineOf(octant.rest);
  const DoubleDouble cosine = CosineOf(octant.rest);
  return (octant.quarters & 1u) != 0 ? (-cosine / sine).hi : (sine / cosine).hi;
}

double Atan(double x) {
  return AtanOf(x);
}

TEXTURON_MULTIVERSION
void AtanOfEach(std::span<const double> x, std::span<double> angle) {
  const double* const from = x.data();
  double* const to = angle.data();
  TEXTURON_IVDEP
  for (std::size_t i = 0; i < x.size(); ++i) to[i] = AtanOf(from[i]);
}

double Atan2(double y, double x) {
  if (std::isnan(x) || std::isnan(y)) return x + y;
  double right = std::abs(x);
  double up = std::abs(y);
  if (std::isinf(right) || std::isinf(up)) {
    right = std::isinf(right) ? 1.0 : 0.0;
    up = std::isinf(up) ? 1.0 : 0.0;
  }
  int exponent = 0;
  std::frexp(std::max(right, up), &exponent);
  right = std::ldexp(right, -exponent);
  up = std::ldexp(up, -exponent);
  DoubleDouble angle = 0.0;
  if (up > 0x1p-30 * right) {
    angle = FirstQuadrant(up, right);
  } else if (up != 0.0 || y != 0.0) {
    angle = std::abs(y) / std::abs(x);  // of the numbers as they came: scaled, one of them may be subnormal
  }
  if (!std::signbit(x)) return std::copysign(angle.hi + angle.lo, y);
  return std::copysign((kPiOver2 + kPiOver2 - angle).hi, y);
}

}  // namespace texturon
