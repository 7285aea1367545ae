// SPDX-License-Identifier: Apache-2.0

#include "base/elementary.h"

#include <bit>
#include <cmath>
#include <cstdint>
#include <gtest/gtest.h>
#include <limits>
#include <random>
#include <vector>

namespace texturon {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr int kDraws = 20000;

/// Error in units in the last place of a double.
double ErrorInUlps(double found, long double exact) {
  if (static_cast<long double>(found) == exact) return 0.0;
  return static_cast<double>(std::abs(found - exact) / std::ldexp(1.0L, std::ilogb(exact) - 52));
}

class Draws {
public:
  double Even(double from, double to) { return from + (to - from) * static_cast<double>(random_() >> 11) * 0x1p-53; }
  /// Of either sign, its exponent to the base 2 even.
  double Wide(double fromExponent, double toExponent) {
    const double size = static_cast<double>(std::exp2(static_cast<long double>(Even(fromExponent, toExponent))));
    return random_() % 2 == 0 ? size : -size;
  }

private:
  std::mt19937_64 random_{2026};
};

TEST(Elementary, IsRightToLittleMoreThanHalfAUnitInTheLastPlace) {
#ifdef _WIN32
  GTEST_SKIP() << "the library's own functions of wide numbers are no measure there; the bits are those of Linux";
#endif
  // The other side has 64 bits of mantissa: it adds 0.0005 units itself.
  Draws draw;
  const struct {
    const char* name;
    double (*ours)(double);
    long double (*other)(long double);
    double from, to, fromExponent, toExponent, most;
  } cases[] = {{"sin", Sin, std::sin, -50.0, 50.0, -40.0, 60.0, 0.55},
               {"cos", Cos, std::cos, -50.0, 50.0, -40.0, 60.0, 0.55},
               {"tan", Tan, std::tan, -50.0, 50.0, -40.0, 60.0, 0.55},
               {"atan", Atan, std::atan, -5.0, 5.0, -60.0, 200.0, 0.55},
               {"exp2", Exp2, std::exp2, -1021.0, 1023.9, -60.0, 9.9, 0.55},
               {"log", Log, std::log, 0.5, 2.0, -1070.0, 1023.0, 0.55},
               {"log2", Log2, std::log2, 0.5, 2.0, -1070.0, 1023.0, 0.55},
               {"log10", Log10, std::log10, 0.5, 2.0, -1070.0, 1023.0, 0.55},
               {"erfc", Erfc, std::erfc, -6.0, 26.5, -60.0, 4.7, 1.0}};
  for (const auto& c : cases) {
    for (int i = 0; i < kDraws; ++i) {
      double x = i % 2 == 0 ? draw.Even(c.from, c.to) : draw.Wide(c.fromExponent, c.toExponent);
      if (c.from > 0.0) x = std::abs(x);
      ASSERT_LT(ErrorInUlps(c.ours(x), c.other(x)), c.most) << c.name << " of " << x;
    }
  }
  for (int i = 0; i < kDraws; ++i) {
    const double x = i % 2 == 0 ? draw.Even(-1.0, 1.0) : draw.Wide(-900.0, 900.0);
    const double y = i % 2 == 0 ? draw.Even(-1.0, 1.0) : x * draw.Wide(-60.0, 60.0);
    const auto wideX = static_cast<long double>(x);
    ASSERT_LT(ErrorInUlps(Atan2(y, x), std::atan2(static_cast<long double>(y), wideX)), 0.55) << y << " / " << x;
    ASSERT_LT(ErrorInUlps(Hypot(x, y), std::hypot(wideX, static_cast<long double>(y))), 0.55) << x << ", " << y;
    const double base = std::abs(i % 2 == 0 ? x : draw.Wide(-1020.0, 1020.0));
    const double power = draw.Even(-1000.0, 1000.0) / std::max(1.0, std::abs(std::log2(base)));
    ASSERT_LT(ErrorInUlps(Pow(base, power), std::pow(static_cast<long double>(base), power)), 1.0) << base;
  }
}

TEST(Elementary, ReducesTheHardestAngles) {
  // Next to multiples of a quarter turn, where the sine is all cancellation; from 400 digits of pi.
  EXPECT_EQ(Sin(0x1.921fb54442d18p+1), 0x1.1a62633145c07p-53);
  EXPECT_EQ(Cos(0x1.6ac5b262ca1ffp+849), -0x1.14ae72e6ba22fp-61);
  EXPECT_EQ(Sin(0x1.fffffffffffffp+1023), 0x1.452fc98b34e97p-8);
  EXPECT_EQ(Sin(-0x1.fffffffffffffp+1023), -0x1.452fc98b34e97p-8);
}

TEST(Elementary, KeepsWhatIsExact) {
  for (int n = -1022; n < 1024; ++n) {
    ASSERT_EQ(Exp2(n), std::ldexp(1.0, n));
    ASSERT_EQ(Log2(std::ldexp(1.0, n)), n);
  }
  double ten = 1.0;
  for (int n = 0; n <= 22; ++n, ten *= 10.0) {
    EXPECT_EQ(Pow(10.0, n), ten);
    EXPECT_EQ(Log10(ten), n);
  }
  EXPECT_EQ(Hypot(0x3p600, 0x4p600), 0x5p600);
  EXPECT_EQ(Hypot(0x3p-1070, 0x4p-1070), 0x5p-1070);
}

TEST(Elementary, KnowsTheLimits) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  for (double (*const function)(double) : {Sin, Cos, Tan, Atan, Exp2, Log, Log2, Log10, Erfc}) {
    EXPECT_TRUE(std::isnan(function(nan)));
  }
  for (double (*const function)(double) : {Sin, Cos, Tan}) EXPECT_TRUE(std::isnan(function(kInfinity)));
  for (double (*const function)(double) : {Log, Log2, Log10}) {
    EXPECT_EQ(function(0.0), -kInfinity);
    EXPECT_EQ(function(kInfinity), kInfinity);
    EXPECT_TRUE(std::isnan(function(-1.0)));
  }
  const struct {
    double found, wanted;
  } cases[] = {{Atan(kInfinity), std::atan(kInfinity)},
               {Exp2(1024.0), kInfinity},
               {Exp2(-1081.0), 0.0},
               {Exp2(-1074.0), 5e-324},
               {Erfc(-kInfinity), 2.0},
               {Erfc(28.0), 0.0},
               {Pow(0.0, 2.0), 0.0},
               {Pow(0.0, -2.0), kInfinity},
               {Pow(0.5, kInfinity), 0.0},
               {Pow(2.0, -1e300), 0.0},
               {Pow(nan, 0.0), 1.0},
               {Hypot(-kInfinity, nan), kInfinity}};
  for (const auto& c : cases) EXPECT_EQ(c.found, c.wanted) << &c - cases;
  const double ends[] = {0.0, -0.0, 1.0, -1.0, 1e-310, kInfinity, -kInfinity};
  for (const double y : ends) {
    EXPECT_EQ(std::bit_cast<std::uint64_t>(Atan(-0.0)), std::bit_cast<std::uint64_t>(-0.0));
    for (const double x : ends) {
      EXPECT_EQ(std::bit_cast<std::uint64_t>(Atan2(y, x)), std::bit_cast<std::uint64_t>(std::atan2(y, x))) << y << x;
    }
  }
}

TEST(Elementary, GivesTheSameOneByOneAndInArrays) {
  Draws draw;
  std::vector<double> x(1003), angle(x.size());
  for (double& value : x) value = draw.Wide(-40.0, 40.0);
  x[5] = kInfinity;
  AtanOfEach(x, angle);
  for (std::size_t i = 0; i < x.size(); ++i) EXPECT_EQ(angle[i], Atan(x[i])) << x[i];
}

}  // namespace
}  // namespace texturon
