// SPDX-License-Identifier: Apache-2.0

#include "base/sha256.h"

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>

#if defined(__GNUC__) && defined(__x86_64__)
#include <cpuid.h>
#include <immintrin.h>
#define TEXTURON_SHA_INSTRUCTIONS
#endif

namespace texturon {
namespace {

constexpr std::size_t kBlock = 64;
constexpr std::size_t kRounds = 64;

using State = std::array<std::uint32_t, 8>;
using Words = std::array<std::uint32_t, kRounds>;

struct Constants {
  State start;
  Words round;
};

/// The first 32 bits of the fractional part of a square or cube root of `n`: the largest integer x with
/// x^power <= n 2^(32 power), cut to 32 bits.
constexpr std::uint32_t FractionOfRoot(std::uint32_t n, int power) {
  __extension__ using Wide = unsigned __int128;
  Wide root = 0;
  for (int bit = 36; bit >= 0; --bit) {
    const Wide trial = root | Wide{1} << bit;
    // trial^3 <= n 2^96 is told without leaving 128 bits: trial < 2^37 and n < 2^9.
    const bool fits = power == 2 ? trial * trial <= Wide{n} << 64 : trial * trial <= (Wide{n} << 96) / trial;
    if (fits) root = trial;
  }
  return static_cast<std::uint32_t>(root);
}

/// Square roots of the first eight primes, cube roots of the first 64.
constexpr Constants MakeConstants() {
  Constants constants{};
  std::size_t found = 0;
  for (std::uint32_t n = 2; found < kRounds; ++n) {
    bool isPrime = true;
    for (std::uint32_t d = 2; d * d <= n; ++d) isPrime = isPrime && n % d != 0;
    if (!isPrime) continue;
    if (found < constants.start.size()) constants.start[found] = FractionOfRoot(n, 2);
    constants.round[found++] = FractionOfRoot(n, 3);
  }
  return constants;
}

constexpr Constants kConstants = MakeConstants();

std::uint32_t BigEndianWord(const char* bytes) {
  std::uint32_t word = 0;
  for (int i = 0; i < 4; ++i) word = word << 8 | static_cast<unsigned char>(bytes[i]);
  return word;
}

void AddBlock(State& state, const char* block) {
  Words w;
  for (std::size_t i = 0; i < 16; ++i) w[i] = BigEndianWord(block + 4 * i);
  for (std::size_t i = 16; i < kRounds; ++i) {
    const std::uint32_t late = w[i - 2];
    const std::uint32_t early = w[i - 15];
    w[i] = w[i - 16] + (std::rotr(early, 7) ^ std::rotr(early, 18) ^ early >> 3) + w[i - 7] +
           (std::rotr(late, 17) ^ std::rotr(late, 19) ^ late >> 10);
  }
  auto [a, b, c, d, e, f, g, h] = state;
  for (std::size_t i = 0; i < kRounds; ++i) {
    const std::uint32_t first =
        h + (std::rotr(e, 6) ^ std::rotr(e, 11) ^ std::rotr(e, 25)) + ((e & f) ^ (~e & g)) + kConstants.round[i] + w[i];
    const std::uint32_t second =
        (std::rotr(a, 2) ^ std::rotr(a, 13) ^ std::rotr(a, 22)) + ((a & b) ^ (a & c) ^ (b & c));
    h = g;
    g = f;
    f = e;
    e = d + first;
    d = c;
    c = b;
    b = a;
    a = first + second;
  }
  const State sum = {a, b, c, d, e, f, g, h};
  for (std::size_t i = 0; i < state.size(); ++i) state[i] += sum[i];
}

void AddPlainly(State& state, const char* blocks, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) AddBlock(state, blocks + i * kBlock);
}

using AddBlocks = void (*)(State& state, const char* blocks, std::size_t count);

#ifdef TEXTURON_SHA_INSTRUCTIONS

/// Two rounds an instruction, on registers that hold the words a, b, e, f and c, d, g, h.
__attribute__((target("sha,sse4.1"))) void AddByInstructions(State& state, const char* blocks, std::size_t count) {
  const __m128i bigEndian = _mm_set_epi64x(0x0c0d0e0f08090a0b, 0x0405060700010203);
  const auto load = [](const void* from) __attribute__((target("sha,sse4.1"))) {
    return _mm_loadu_si128(static_cast<const __m128i*>(from));
  };
  const __m128i cdab = _mm_shuffle_epi32(load(&state[0]), 0xB1);
  const __m128i efgh = _mm_shuffle_epi32(load(&state[4]), 0x1B);
  __m128i abef = _mm_alignr_epi8(cdab, efgh, 8);
  __m128i cdgh = _mm_blend_epi16(efgh, cdab, 0xF0);
  for (std::size_t n = 0; n < count; ++n) {
    const __m128i formerAbef = abef;
    const __m128i formerCdgh = cdgh;
    __m128i w[4];  // the last sixteen words
    for (std::size_t g = 0; g < kRounds / 4; ++g) {
      __m128i& now = w[g % 4];
      if (g < 4) {
        now = _mm_shuffle_epi8(load(blocks + n * kBlock + 16 * g), bigEndian);
      } else {
        const __m128i seventh = _mm_alignr_epi8(w[(g + 3) % 4], w[(g + 2) % 4], 4);
        now = _mm_sha256msg2_epu32(_mm_add_epi32(_mm_sha256msg1_epu32(now, w[(g + 1) % 4]), seventh), w[(g + 3) % 4]);
      }
      const __m128i sum = _mm_add_epi32(now, load(&kConstants.round[4 * g]));
      cdgh = _mm_sha256rnds2_epu32(cdgh, abef, sum);
      abef = _mm_sha256rnds2_epu32(abef, cdgh, _mm_shuffle_epi32(sum, 0x0E));
    }
    abef = _mm_add_epi32(abef, formerAbef);
    cdgh = _mm_add_epi32(cdgh, formerCdgh);
  }
  const __m128i feba = _mm_shuffle_epi32(abef, 0x1B);
  const __m128i dchg = _mm_shuffle_epi32(cdgh, 0xB1);
  _mm_storeu_si128(reinterpret_cast<__m128i*>(&state[0]), _mm_blend_epi16(feba, dchg, 0xF0));
  _mm_storeu_si128(reinterpret_cast<__m128i*>(&state[4]), _mm_alignr_epi8(dchg, feba, 8));
}

bool HasInstructions() {
  unsigned a = 0, b = 0, c = 0, d = 0;
  if (__get_cpuid_count(7, 0, &a, &b, &c, &d) == 0 || (b >> 29 & 1U) == 0) return false;
  return __get_cpuid(1, &a, &b, &c, &d) != 0 && (c >> 19 & 1U) != 0;
}

#endif

AddBlocks RoutineFor(DigestRoute route) {
#ifdef TEXTURON_SHA_INSTRUCTIONS
  static const bool hasInstructions = HasInstructions();
  if (route == DigestRoute::kFastest && hasInstructions) return AddByInstructions;
#endif
  (void)route;
  return AddPlainly;
}

}  // namespace

std::string Sha256Of(std::string_view bytes, DigestRoute route) {
  State state = kConstants.start;
  const AddBlocks add = RoutineFor(route);
  const std::size_t whole = bytes.size() / kBlock;
  add(state, bytes.data(), whole);
  std::string tail(bytes.substr(whole * kBlock));
  tail += '\x80';
  while (tail.size() % kBlock != kBlock - 8) tail += '\0';
  const std::uint64_t bits = std::uint64_t{8} * bytes.size();
  for (int shift = 56; shift >= 0; shift -= 8) tail += static_cast<char>(bits >> shift & 0xFF);
  add(state, tail.data(), tail.size() / kBlock);
  constexpr std::string_view kDigits = "0123456789abcdef";
  std::string digest;
  for (const std::uint32_t word : state) {
    for (int shift = 28; shift >= 0; shift -= 4) digest += kDigits[word >> shift & 0xF];
  }
  return digest;
}

}  // namespace texturon
