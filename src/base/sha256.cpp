// SPDX-License-Identifier: Apache-2.0

#include "base/sha256.h"

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>

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

}  // namespace

std::string Sha256Of(std::string_view bytes) {
  State state = kConstants.start;
  std::size_t at = 0;
  for (; bytes.size() - at >= kBlock; at += kBlock) AddBlock(state, bytes.data() + at);
  std::string tail(bytes.substr(at));
  tail += '\x80';
  while (tail.size() % kBlock != kBlock - 8) tail += '\0';
  const std::uint64_t bits = std::uint64_t{8} * bytes.size();
  for (int shift = 56; shift >= 0; shift -= 8) tail += static_cast<char>(bits >> shift & 0xFF);
  for (at = 0; at < tail.size(); at += kBlock) AddBlock(state, tail.data() + at);
  constexpr std::string_view kDigits = "0123456789abcdef";
  std::string digest;
  for (const std::uint32_t word : state) {
    for (int shift = 28; shift >= 0; shift -= 4) digest += kDigits[word >> shift & 0xF];
  }
  return digest;
}

}  // namespace texturon
