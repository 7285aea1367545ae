// SPDX-License-Identifier: Apache-2.0

#pragma once

namespace texturon {

/// A number as the unevaluated sum of two doubles, |lo| <= ulp(hi) / 2: about 32 significant digits in the range of a
/// double. For the few places where a result of 16 digits needs intermediate ones of more. Made of additions and
/// multiplications that are rounded one by one, never of a fused multiply-add, so that the bytes of a result are the
/// same on every processor. One operation: relative error below 2^-100. A product whose factors exceed 1e290
/// overflows in the split and becomes NaN.
struct DoubleDouble {
  double hi = 0.0;
  double lo = 0.0;

  constexpr DoubleDouble() = default;
  constexpr DoubleDouble(double value) : hi(value) {}  // implicit: every double is one
  constexpr DoubleDouble(double high, double low) : hi(high), lo(low) {}

  explicit constexpr operator double() const { return hi; }
};

/// a + b exactly (Knuth).
constexpr DoubleDouble TwoSum(double a, double b) {
  const double sum = a + b;
  const double part = sum - a;
  return {sum, (a - (sum - part)) + (b - part)};
}

/// a + b exactly, for |a| >= |b| or a = 0 (Dekker).
constexpr DoubleDouble FastTwoSum(double a, double b) {
  const double sum = a + b;
  return {sum, b - (sum - a)};
}

/// a * b exactly, by halves of 26 bits (Dekker, Veltkamp).
constexpr DoubleDouble TwoProduct(double a, double b) {
  constexpr double kSplitter = 134217729.0;  // 2^27 + 1
  const double bigA = kSplitter * a;
  const double bigB = kSplitter * b;
  const double highA = bigA - (bigA - a);
  const double highB = bigB - (bigB - b);
  const double lowA = a - highA;
  const double lowB = b - highB;
  const double product = a * b;
  return {product, ((highA * highB - product) + highA * lowB + lowA * highB) + lowA * lowB};
}

constexpr DoubleDouble operator-(DoubleDouble a) {
  return {-a.hi, -a.lo};
}

constexpr DoubleDouble operator+(DoubleDouble a, DoubleDouble b) {
  const DoubleDouble high = TwoSum(a.hi, b.hi);
  const DoubleDouble low = TwoSum(a.lo, b.lo);
  const DoubleDouble partly = FastTwoSum(high.hi, high.lo + low.hi);
  return FastTwoSum(partly.hi, partly.lo + low.lo);
}

constexpr DoubleDouble operator-(DoubleDouble a, DoubleDouble b) {
  return a + (-b);
}

constexpr DoubleDouble operator*(DoubleDouble a, DoubleDouble b) {
  const DoubleDouble product = TwoProduct(a.hi, b.hi);
  return FastTwoSum(product.hi, product.lo + (a.hi * b.lo + a.lo * b.hi));
}

constexpr DoubleDouble operator/(DoubleDouble a, DoubleDouble b) {
  const double first = a.hi / b.hi;
  DoubleDouble rest = a - b * DoubleDouble(first);
  const double second = rest.hi / b.hi;
  rest = rest - b * DoubleDouble(second);
  const double third = rest.hi / b.hi;
  return FastTwoSum(first, second) + DoubleDouble(third);
}

constexpr DoubleDouble& operator+=(DoubleDouble& a, DoubleDouble b) {
  return a = a + b;
}
constexpr DoubleDouble& operator-=(DoubleDouble& a, DoubleDouble b) {
  return a = a - b;
}
constexpr DoubleDouble& operator*=(DoubleDouble& a, DoubleDouble b) {
  return a = a * b;
}

}  // namespace texturon
