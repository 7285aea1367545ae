// SPDX-License-Identifier: Apache-2.0

// The bits of transforms of several lengths, a line each. It is built twice: as usual, and for a processor that has
// fused operations. Called with the path of the other one it compares: exit status 0 the same, 1 not, 77 the processor
// has none.

#include <bit>
#include <cstdint>
#include <cstdio>
#include <iostream>
#include <string>
#include <vector>

#include "signal/fft/fft.h"

namespace {

std::string Bits() {
  std::string text;
  for (const std::size_t n : {449U, 487U * 18, 449U * 64, 8000U, 44100U, 65536U}) {
    std::vector<double> re(n);
    std::vector<double> im(n);
    std::uint32_t state = 1;
    for (std::size_t i = 0; i < n; ++i) {
      state = state * 1664525U + 1013904223U;
      re[i] = static_cast<double>(state) / 4294967296.0 - 0.5;
      im[i] = static_cast<double>(state ^ 0x5555U) / 4294967296.0 - 0.5;
    }
    texturon::Fft(re, im, re, im);
    std::uint64_t sum = 0;
    for (const std::vector<double>* const part : {&re, &im}) {
      for (const double value : *part) sum = (sum ^ std::bit_cast<std::uint64_t>(value)) * 1099511628211U;
    }
    text += std::to_string(n) + " " + std::to_string(sum) + "\n";
  }
  return text;
}

}  // namespace

int main(int argc, char** argv) {
  const std::string bits = Bits();
  if (argc < 2) {
    std::cout << bits;
    return 0;
  }
  if (!__builtin_cpu_supports("fma") || !__builtin_cpu_supports("avx2")) return 77;
  std::FILE* const other = ::popen(argv[1], "r");
  std::string otherBits;
  for (int c = 0; other != nullptr && (c = std::fgetc(other)) != EOF;) otherBits += static_cast<char>(c);
  if (other == nullptr || ::pclose(other) != 0) return 1;
  std::cout << bits << "with fused operations at hand:\n" << otherBits;
  return bits == otherBits ? 0 : 1;
}
