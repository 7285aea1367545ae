// SPDX-License-Identifier: Apache-2.0

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <iterator>
#include <limits>

#include "base/double_double.h"
#include "base/elementary.h"

// Polynomials as in elementary_angles.cpp.

namespace texturon {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr DoubleDouble kLn2{0x1.62e42fefa39efp-1, 0x1.abc9e3b39803fp-56};
constexpr DoubleDouble kLog2E{0x1.71547652b82fep+0, 0x1.777d0ffda0d24p-56};
constexpr DoubleDouble kLog10E{0x1.bcb7b1526e50ep-2, 0x1.95355baaafad3p-57};

template <std::size_t N>
double Horner(const double (&coefficients)[N], double x) {
  double value = coefficients[N - 1];
  for (std::size_t k = N - 1; k-- > 0;) value = value * x + coefficients[k];
  return value;
}

/// value x 2^exponent.
struct Scaled {
  DoubleDouble value;
  int exponent;

  double Number() const { return std::ldexp(value.hi, exponent); }
};

/// 2^x for |x| below 2000: 2^whole (1 + r + r^2 / 2 + r^3 (...)), r the natural logarithm of the rest.
Scaled Exp2Of(DoubleDouble x) {
  constexpr double kTerms[] = {0x1.5555555555555p-3,  0x1.5555555555556p-5,  0x1.1111111111111p-7,
                               0x1.6c16c16c162cfp-10, 0x1.a01a01a019b11p-13, 0x1.a01a01a6db6fbp-16,
                               0x1.71de3a590fe1bp-19, 0x1.27e4db5b3ae4ep-22, 0x1.ae64340ef249fp-26,
                               0x1.1f7316670bc13p-29, 0x1.61b326cfaf340p-33};
  const double whole = std::floor(x.hi + 0.5);
  const DoubleDouble r = (x - whole) * kLn2;
  const DoubleDouble square = r * r;
  const double tail = r.hi * square.hi * Horner(kTerms, r.hi);
  const DoubleDouble half{0.5 * square.hi, 0.5 * square.lo};
  return {DoubleDouble(1.0) + (r + (half + tail)), static_cast<int>(whole)};
}

/// 2^x as a number, whatever x.
double Exp2Number(DoubleDouble x) {
  if (!(x.hi < 1024.0)) return x.hi >= 1024.0 ? kInfinity : x.hi;
  if (x.hi < -1080.0) return 0.0;
  return Exp2Of(x).Number();
}

/// x = 2^exponent (1 + s) / (1 - s), |s| below 0.172.
struct Split {
  double exponent;
  DoubleDouble s;
};

Split SplitOf(double x) {
  constexpr double kRootHalf = 0x1.6a09e667f3bcdp-1;
  int exponent = 0;
  double m = std::frexp(x, &exponent);
  if (m < kRootHalf) {
    m *= 2.0;
    --exponent;
  }
  const double over = m - 1.0;
  const DoubleDouble under = TwoSum(m, 1.0);
  const double s = over / under.hi;
  const DoubleDouble back = TwoProduct(s, under.hi);
  return {static_cast<double>(exponent), {s, (((over - back.hi) - back.lo) - s * under.lo) / under.hi}};
}

/// Natural logarithm of a positive finite number to about 2^-66 of itself: 2 s + s^3 (2/3 + s^2 (...)).
DoubleDouble FineLog(double x) {
  constexpr DoubleDouble kTwoThirds{0x1.5555555555555p-1, 0x1.5555555555555p-55};
  constexpr double kTerms[] = {0x1.999999999999ap-2, 0x1.2492492492492p-2, 0x1.c71c71c71c705p-3, 0x1.745d1745d3f32p-3,
                               0x1.3b13b138ee205p-3, 0x1.111112205c9b4p-3, 0x1.e1e13f14a2b01p-4, 0x1.af46927e517b2p-4,
                               0x1.82bd1267b9790p-4, 0x1.9871e3a35ad80p-4};
  const Split split = SplitOf(x);
  const DoubleDouble square = split.s * split.s;
  const DoubleDouble tail = split.s * (square * (kTwoThirds + square.hi * Horner(kTerms, square.hi)));
  return kLn2 * split.exponent + (DoubleDouble(2.0 * split.s.hi, 2.0 * split.s.lo) + tail);
}

/// What a logarithm of a number is that has none, or no finite one.
double LimitOfLog(double x) {
  if (x == 0.0) return -kInfinity;
  return x > 0.0 || x != x ? x : kNaN;
}

bool HasLog(double x) {
  return x > 0.0 && x < kInfinity;
}

}  // namespace

double Exp2(double x) {
  return Exp2Number(x);
}

double Log(double x) {
  constexpr double kTerms[] = {0x1.5555555555555p-1, 0x1.9999999999998p-2, 0x1.249249249295dp-2,
                               0x1.c71c71c64bff9p-3, 0x1.745d17d3a387ap-3, 0x1.3b137b1bd652bp-3,
                               0x1.111d2b673d7e2p-3, 0x1.debe214e33b96p-4, 0x1.e6b660fec7379p-4};
  constexpr DoubleDouble kExactLn2{0x1.62e42fefa38p-1, 0x1.ef35793c76730p-45};  // any exponent times hi is exact
  if (!HasLog(x)) return LimitOfLog(x);
  const auto [exponent, s] = SplitOf(x);
  const double square = s.hi * s.hi;
  const DoubleDouble sum = FastTwoSum(exponent * kExactLn2.hi, 2.0 * s.hi);
  const double tail = 2.0 * s.lo + s.hi * square * Horner(kTerms, square);
  return sum.hi + (sum.lo + (exponent * kExactLn2.lo + tail));
}

double Log2(double x) {
  return HasLog(x) ? (FineLog(x) * kLog2E).hi : LimitOfLog(x);
}

double Log10(double x) {
  return HasLog(x) ? (FineLog(x) * kLog10E).hi : LimitOfLog(x);
}

double Pow(double base, double exponent) {
  if (exponent == 0.0 || base == 1.0) return 1.0;
  if (base != base || exponent != exponent || base < 0.0) return kNaN;
  if (!HasLog(base) || std::isinf(exponent)) {
    const bool isLarge = (base > 1.0) == (exponent > 0.0);
    return isLarge ? kInfinity : 0.0;
  }
  constexpr double kFarthest = 1e5;  // over- or underflows for any base but those next to 1
  const DoubleDouble power = FineLog(base) * kLog2E;
  if (std::abs(power.hi) > kFarthest / std::abs(exponent)) {
    return (power.hi > 0.0) == (exponent > 0.0) ? kInfinity : 0.0;
  }
  return Exp2Number(power * exponent);
}

double Erfc(double x) {
  // erf x = 2 / sqrt(pi) x + x^3 (...) near 0; elsewhere erfc x = exp(-x^2) (p + t (...)) / (1 + 2 x) with t =
  // (x - 4) / (x + 4), where p carries all but a twelfth.
  constexpr DoubleDouble kTwoOverRootPi{0x1.20dd750429b6dp+0, 0x1.1ae3a914fed80p-56};
  constexpr double kNear[] = {-0x1.812746b0379e7p-2,  0x1.ce2f21a042be2p-4,   -0x1.b82ce31288a6fp-6,
                              0x1.565bcd0e4e1f3p-8,   -0x1.c02db3c8ceb5fp-11, 0x1.f9a2ebc30f014p-14,
                              -0x1.f4af4bad3d17fp-17, 0x1.af108f5ef5b9dp-20};
  constexpr DoubleDouble kMiddle{0x1.3ba5916e9fd7fp+0, -0x1.aa9c415679e6fp-55};
  constexpr double kFar[] = {
      -0x1.1df1ad154a28ep-3,  0x1.f7f5df66fd7bcp-7,   0x1.16ecefcfa5398p-4,   -0x1.9ddb23c3e90d9p-4,
      0x1.7fee004e1247ep-4,   -0x1.0fb06dfe49352p-4,  0x1.3079edf685416p-5,   -0x1.096238851c4fbp-6,
      0x1.49c672850ddf0p-8,   -0x1.8d4a99d2f6411p-11, -0x1.a1df244614cf9p-13, 0x1.3be03a5b01994p-13,
      -0x1.995975de1e7eap-16, -0x1.7883b670874fap-17, 0x1.7f2b7cd64d4f3p-18,  0x1.3930294c89fefp-22,
      -0x1.bb478a95bf420p-21, 0x1.4c5f6885ca72bp-24,  0x1.dbb8556944386p-24,  -0x1.56ab49382fe83p-26,
      -0x1.fecff092cbf22p-27, 0x1.5863c7c1557c3p-29,  0x1.b15d925e7c9cdp-30,  -0x1.1d73cefc3c2c0p-36};
  constexpr double kNearest = 0.25;
  constexpr double kFarthest = 27.3;  // beyond it nothing is left
  if (x != x) return x;
  const double size = std::abs(x);
  if (size < kNearest) {
    const double square = x * x;
    return (DoubleDouble(1.0) - (kTwoOverRootPi * x + x * square * Horner(kNear, square))).hi;
  }
  if (size > kFarthest) return x < 0.0 ? 2.0 : 0.0;
  const DoubleDouble t = TwoSum(size, -4.0) / TwoSum(size, 4.0);
  double rest = 0.0;
  double slope = 0.0;  // of t rest(t)
  for (std::size_t k = std::size(kFar); k-- > 0;) {
    rest = rest * t.hi + kFar[k];
    slope = slope * t.hi + static_cast<double>(k + 1) * kFar[k];
  }
  const DoubleDouble share = (kMiddle + (DoubleDouble(t.hi * rest) + slope * t.lo)) / TwoSum(1.0, 2.0 * size);
  const Scaled fall = Exp2Of(-(TwoProduct(size, size) * kLog2E));
  const Scaled upper{fall.value * share, fall.exponent};
  if (x > 0.0) return upper.Number();
  const DoubleDouble number{std::ldexp(upper.value.hi, upper.exponent), std::ldexp(upper.value.lo, upper.exponent)};
  return (DoubleDouble(2.0) - number).hi;
}

double Hypot(double x, double y) {
  double longer = std::max(std::abs(x), std::abs(y));
  double shorter = std::min(std::abs(x), std::abs(y));
  if (std::isinf(x) || std::isinf(y)) return kInfinity;
  if (x != x || y != y) return kNaN;
  double scale = 1.0;
  if (longer > 0x1p400 || longer < 0x1p-400) {
    if (longer == 0.0) return 0.0;
    scale = longer > 1.0 ? 0x1p600 : 0x1p-800;
    longer /= scale;
    shorter /= scale;
  }
  const DoubleDouble squares = TwoProduct(longer, longer) + TwoProduct(shorter, shorter);
  const double root = std::sqrt(squares.hi);
  const DoubleDouble back = TwoProduct(root, root);
  const double rest = ((squares.hi - back.hi) - back.lo) + squares.lo;
  return (root + rest / (2.0 * root)) * scale;
}

}  // namespace texturon
