// SPDX-License-Identifier: Apache-2.0

#include "formats/md5.h"

#include <array>
#include <bit>
#include <cstdint>

#include "formats/little_endian.h"

namespace texturon {
namespace {

constexpr std::size_t kBlock = 64;

// 2^32 |sin(i + 1)|, as whole numbers.
constexpr std::array<std::uint32_t, 64> kSines = {
    0xd76aa478, 0xe8c7b756, 0x242070db, 0xc1bdceee, 0xf57c0faf, 0x4787c62a, 0xa8304613, 0xfd469501,
    0x698098d8, 0x8b44f7af, 0xffff5bb1, 0x895cd7be, 0x6b901122, 0xfd987193, 0xa679438e, 0x49b40821,
    0xf61e2562, 0xc040b340, 0x265e5a51, 0xe9b6c7aa, 0xd62f105d, 0x02441453, 0xd8a1e681, 0xe7d3fbc8,
    0x21e1cde6, 0xc33707d6, 0xf4d50d87, 0x455a14ed, 0xa9e3e905, 0xfcefa3f8, 0x676f02d9, 0x8d2a4c8a,
    0xfffa3942, 0x8771f681, 0x6d9d6122, 0xfde5380c, 0xa4beea44, 0x4bdecfa9, 0xf6bb4b60, 0xbebfbc70,
    0x289b7ec6, 0xeaa127fa, 0xd4ef3085, 0x04881d05, 0xd9d4d039, 0xe6db99e5, 0x1fa27cf8, 0xc4ac5665,
    0xf4292244, 0x432aff97, 0xab9423a7, 0xfc93a039, 0x655b59c3, 0x8f0ccc92, 0xffeff47d, 0x85845dd1,
    0x6fa87e4f, 0xfe2ce6e0, 0xa3014314, 0x4e0811a1, 0xf7537e82, 0xbd3af235, 0x2ad7d2bb, 0xeb86d391};

// Rotations of a round's four steps.
constexpr int kTurns[4][4] = {{7, 12, 17, 22}, {5, 9, 14, 20}, {4, 11, 16, 23}, {6, 10, 15, 21}};

using State = std::array<std::uint32_t, 4>;

void AddBlock(State& state, std::string_view block) {
  auto [a, b, c, d] = state;
  for (std::uint32_t i = 0; i < 64; ++i) {
    std::uint32_t mixed = 0;
    std::uint32_t word = 0;
    switch (i / 16) {
      case 0:
        mixed = (b & c) | (~b & d);
        word = i;
        break;
      case 1:
        mixed = (d & b) | (~d & c);
        word = (5 * i + 1) % 16;
        break;
      case 2:
        mixed = b ^ c ^ d;
        word = (3 * i + 5) % 16;
        break;
      default:
        mixed = c ^ (b | ~d);
        word = 7 * i % 16;
        break;
    }
    const std::uint32_t sum = a + mixed + kSines[i] + LittleEndian<std::uint32_t>(block, std::size_t{4} * word);
    a = d;
    d = c;
    c = b;
    b += std::rotl(sum, kTurns[i / 16][i % 4]);
  }
  state = {state[0] + a, state[1] + b, state[2] + c, state[3] + d};
}

}  // namespace

std::string Md5Of(std::string_view bytes) {
  State state = {0x67452301, 0xefcdab89, 0x98badcfe, 0x10325476};
  std::size_t at = 0;
  for (; bytes.size() - at >= kBlock; at += kBlock) AddBlock(state, bytes.substr(at, kBlock));
  std::string tail(bytes.substr(at));
  tail += '\x80';
  while (tail.size() % kBlock != kBlock - 8) tail += '\0';
  const std::uint64_t bits = std::uint64_t{8} * bytes.size();
  for (int shift = 0; shift < 64; shift += 8) tail += static_cast<char>(bits >> shift & 0xFF);
  for (at = 0; at < tail.size(); at += kBlock) AddBlock(state, std::string_view(tail).substr(at, kBlock));
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  std::string digest;
  for (const std::uint32_t word : state) {
    for (int shift = 0; shift < 32; shift += 8) {
      digest += kDigits[word >> (shift + 4) & 0xF];
      digest += kDigits[word >> shift & 0xF];
    }
  }
  return digest;
}

}  // namespace texturon
