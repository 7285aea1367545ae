// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstring>

// Compiler help for inner loops. A multiversioned function is compiled twice, for the base instruction set and for
// AVX2, and the loader picks one, where it is glibc's. Fused multiply-add is left out on purpose: with the same
// operations in the same order per element every processor gives the same bytes. The loader asks before the thread
// sanitizer is ready: without it then.

#if defined(__GNUC__) && !defined(__clang__) && defined(__x86_64__) && defined(__GLIBC__) && \
    !defined(__SANITIZE_THREAD__)
#define TEXTURON_MULTIVERSION __attribute__((target_clones("avx2", "default")))
#else
#define TEXTURON_MULTIVERSION
#endif

// TEXTURON_INLINE: must end up inside its multiversioned caller. TEXTURON_NOINLINE: must not, so that the caller's
// usual way pays nothing for it. TEXTURON_IVDEP: no iteration of the next loop depends on another one.
#if defined(__GNUC__) && !defined(__clang__)
#define TEXTURON_INLINE inline __attribute__((always_inline))
#define TEXTURON_IVDEP _Pragma("GCC ivdep")
#else
#define TEXTURON_INLINE inline
#define TEXTURON_IVDEP
#endif

#if defined(__GNUC__)
#define TEXTURON_NOINLINE __attribute__((noinline))
#else
#define TEXTURON_NOINLINE
#endif

namespace texturon {

// Two doubles in one register, for transpositions; the compiler finds no good ones for loops.
#if defined(__GNUC__)
using PairOfDoubles = double __attribute__((vector_size(16)));
TEXTURON_INLINE PairOfDoubles LowPair(PairOfDoubles a, PairOfDoubles b) {
  return __builtin_shufflevector(a, b, 0, 2);
}
TEXTURON_INLINE PairOfDoubles HighPair(PairOfDoubles a, PairOfDoubles b) {
  return __builtin_shufflevector(a, b, 1, 3);
}
/// Of equal ones, and of two of which one is no number, the first.
TEXTURON_INLINE PairOfDoubles LargerOfPairs(PairOfDoubles a, PairOfDoubles b) {
  return a < b ? b : a;
}
TEXTURON_INLINE PairOfDoubles SmallerOfPairs(PairOfDoubles a, PairOfDoubles b) {
  return b < a ? b : a;
}
#else
struct PairOfDoubles {
  double low;
  double high;
};
inline PairOfDoubles LowPair(PairOfDoubles a, PairOfDoubles b) {
  return {a.low, b.low};
}
inline PairOfDoubles HighPair(PairOfDoubles a, PairOfDoubles b) {
  return {a.high, b.high};
}
inline PairOfDoubles LargerOfPairs(PairOfDoubles a, PairOfDoubles b) {
  return {a.low < b.low ? b.low : a.low, a.high < b.high ? b.high : a.high};
}
inline PairOfDoubles SmallerOfPairs(PairOfDoubles a, PairOfDoubles b) {
  return {b.low < a.low ? b.low : a.low, b.high < a.high ? b.high : a.high};
}
#endif

TEXTURON_INLINE PairOfDoubles LoadPair(const double* from) {
  PairOfDoubles pair;
  std::memcpy(&pair, from, sizeof pair);
  return pair;
}
TEXTURON_INLINE void StorePair(double* to, PairOfDoubles pair) {
  std::memcpy(to, &pair, sizeof pair);
}

}  // namespace texturon
