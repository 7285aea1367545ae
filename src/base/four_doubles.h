// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstring>

#include "base/multiversion.h"

namespace texturon {

// Four doubles side by side for inner loops whose sums shall stay in registers: one register with AVX2, two without.
// Never handed over by value, because that depends on the instruction set.
#if defined(__GNUC__)
using FourDoubles = double __attribute__((vector_size(32)));
#else
struct FourDoubles {
  double value[4];
};
#define TEXTURON_FOUR_OPERATOR(op)                                                                                   \
  inline FourDoubles operator op(const FourDoubles& a, const FourDoubles& b) {                                       \
    return {a.value[0] op b.value[0], a.value[1] op b.value[1], a.value[2] op b.value[2], a.value[3] op b.value[3]}; \
  }
TEXTURON_FOUR_OPERATOR(+)
TEXTURON_FOUR_OPERATOR(-)
TEXTURON_FOUR_OPERATOR(*)
TEXTURON_FOUR_OPERATOR(/)
#undef TEXTURON_FOUR_OPERATOR
#endif

TEXTURON_INLINE void LoadFour(const double* from, FourDoubles& four) {
  std::memcpy(&four, from, sizeof four);
}
TEXTURON_INLINE void StoreFour(double* to, const FourDoubles& four) {
  std::memcpy(to, &four, sizeof four);
}
/// sum += factor x four, rounded twice.
TEXTURON_INLINE void AddProduct(FourDoubles& sum, double factor, const FourDoubles& four) {
#if defined(__GNUC__)
  sum += factor * four;
#else
  for (int i = 0; i < 4; ++i) sum.value[i] += factor * four.value[i];
#endif
}
TEXTURON_INLINE void MultiplyBy(FourDoubles& four, double factor) {
#if defined(__GNUC__)
  four *= factor;
#else
  for (int i = 0; i < 4; ++i) four.value[i] *= factor;
#endif
}
/// Counts the values below a limit, lane by lane.
TEXTURON_INLINE void CountBelow(FourDoubles& counts, const FourDoubles& four, double limit) {
#if defined(__GNUC__)
  const FourDoubles one = {1.0, 1.0, 1.0, 1.0}, none = {};
  counts += four < limit ? one : none;
#else
  for (int i = 0; i < 4; ++i) counts.value[i] += four.value[i] < limit ? 1.0 : 0.0;
#endif
}
/// Four rows become four columns.
TEXTURON_INLINE void TurnFours(FourDoubles& a, FourDoubles& b, FourDoubles& c, FourDoubles& d) {
#if defined(__GNUC__)
  const FourDoubles evenAB = __builtin_shufflevector(a, b, 0, 4, 2, 6);
  const FourDoubles oddAB = __builtin_shufflevector(a, b, 1, 5, 3, 7);
  const FourDoubles evenCD = __builtin_shufflevector(c, d, 0, 4, 2, 6);
  const FourDoubles oddCD = __builtin_shufflevector(c, d, 1, 5, 3, 7);
  a = __builtin_shufflevector(evenAB, evenCD, 0, 1, 4, 5);
  b = __builtin_shufflevector(oddAB, oddCD, 0, 1, 4, 5);
  c = __builtin_shufflevector(evenAB, evenCD, 2, 3, 6, 7);
  d = __builtin_shufflevector(oddAB, oddCD, 2, 3, 6, 7);
#else
  const FourDoubles rows[] = {a, b, c, d};
  for (int i = 0; i < 4; ++i) {
    a.value[i] = rows[i].value[0];
    b.value[i] = rows[i].value[1];
    c.value[i] = rows[i].value[2];
    d.value[i] = rows[i].value[3];
  }
#endif
}
/// sum += |a - b|.
TEXTURON_INLINE void AddDistance(FourDoubles& sum, const FourDoubles& a, const FourDoubles& b) {
#if defined(__GNUC__)
  const FourDoubles step = a - b;
  sum += step < 0.0 ? -step : step;
#else
  for (int i = 0; i < 4; ++i)
    sum.value[i] += a.value[i] < b.value[i] ? b.value[i] - a.value[i] : a.value[i] - b.value[i];
#endif
}
/// Lane by lane the larger, the smaller one: `four` keeps its own of equal ones, and where either is no number.
TEXTURON_INLINE void TakeLarger(FourDoubles& four, const FourDoubles& other) {
#if defined(__GNUC__)
  four = four < other ? other : four;
#else
  for (int i = 0; i < 4; ++i) four.value[i] = four.value[i] < other.value[i] ? other.value[i] : four.value[i];
#endif
}
TEXTURON_INLINE void TakeSmaller(FourDoubles& four, const FourDoubles& other) {
#if defined(__GNUC__)
  four = other < four ? other : four;
#else
  for (int i = 0; i < 4; ++i) four.value[i] = other.value[i] < four.value[i] ? other.value[i] : four.value[i];
#endif
}
/// four /= divisor.
TEXTURON_INLINE void DivideBy(FourDoubles& four, const FourDoubles& divisor) {
#if defined(__GNUC__)
  four /= divisor;
#else
  for (int i = 0; i < 4; ++i) four.value[i] /= divisor.value[i];
#endif
}

}  // namespace texturon
