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
/// four /= divisor.
TEXTURON_INLINE void DivideBy(FourDoubles& four, const FourDoubles& divisor) {
#if defined(__GNUC__)
  four /= divisor;
#else
  for (int i = 0; i < 4; ++i) four.value[i] /= divisor.value[i];
#endif
}

}  // namespace texturon
