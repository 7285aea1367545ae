// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace texturon {

/// Random numbers by counting: number i of a stream is a function of the seed, the stream and i alone, so that any
/// thread can make any of them and they are the same bits on every machine. A stream is the sequence of SplitMix64
/// (Steele, Lea and Flood 2014: a counter that rises by the golden ratio, stirred), begun where seed, trial and line
/// lead when they are stirred one after another.
class CounterRandom {
public:
  CounterRandom(std::uint64_t seed, std::uint64_t trial, std::uint64_t line)
      : start_(Stir(Stir(Stir(seed + kStep) + trial + kStep) + line + kStep)) {}

  std::uint64_t Bits(std::uint64_t i) const { return Stir(start_ + (i + 1) * kStep); }
  /// In the middle of one of 2^52 equal parts of 0 to 1: never 0, never 1.
  double Uniform(std::uint64_t i) const { return (static_cast<double>(Bits(i) >> 12) + 0.5) * 0x1p-52; }
  /// Uniform(0), Uniform(1) ...
  void FillUniform(std::span<double> values) const {
    for (std::size_t i = 0; i < values.size(); ++i) values[i] = Uniform(i);
  }

private:
  static constexpr std::uint64_t kStep = 0x9E3779B97F4A7C15;
  static constexpr std::uint64_t Stir(std::uint64_t x) {
    x = (x ^ x >> 30) * 0xBF58476D1CE4E5B9;
    x = (x ^ x >> 27) * 0x94D049BB133111EB;
    return x ^ x >> 31;
  }

  std::uint64_t start_;
};

}  // namespace texturon
