// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cmath>
#include <cstddef>
#include <numbers>
#include <random>
#include <vector>

namespace texturon {

/// A complex sequence of the transform tests.
struct Signal {
  std::vector<double> re, im;
};

inline Signal RandomSignal(std::size_t n) {
  std::mt19937 generator(static_cast<unsigned>(n));
  std::uniform_real_distribution<double> value(-1.0, 1.0);
  Signal x{std::vector<double>(n), std::vector<double>(n)};
  for (double& v : x.re) v = value(generator);
  for (double& v : x.im) v = value(generator);
  return x;
}

/// amplitude * exp(2 pi i h j / n) for j < n, rounded once: with h j reduced modulo n and angles in long double.
inline Signal Harmonic(std::size_t n, std::size_t h, double amplitude) {
  Signal x{std::vector<double>(n), std::vector<double>(n)};
  for (std::size_t j = 0; j < n; ++j) {
    const long double turn = static_cast<long double>(h * j % n) / static_cast<long double>(n);
    const long double angle = 2.0L * std::numbers::pi_v<long double> * turn;
    x.re[j] = static_cast<double>(amplitude * std::cos(angle));
    x.im[j] = static_cast<double>(amplitude * std::sin(angle));
  }
  return x;
}

/// The forward transform by its definition, in long double.
inline Signal NaiveTransform(const Signal& x) {
  const std::size_t n = x.re.size();
  std::vector<long double> cosine(n);
  std::vector<long double> sine(n);
  for (std::size_t e = 0; e < n; ++e) {
    const long double turn = static_cast<long double>(e) / static_cast<long double>(n);
    cosine[e] = std::cos(2.0L * std::numbers::pi_v<long double> * turn);
    sine[e] = std::sin(2.0L * std::numbers::pi_v<long double> * turn);
  }
  Signal y{std::vector<double>(n), std::vector<double>(n)};
  for (std::size_t k = 0; k < n; ++k) {
    long double re = 0.0L;
    long double im = 0.0L;
    std::size_t e = 0;
    for (std::size_t j = 0; j < n; ++j) {
      re += cosine[e] * x.re[j] + sine[e] * x.im[j];
      im += cosine[e] * x.im[j] - sine[e] * x.re[j];
      e = e + k < n ? e + k : e + k - n;
    }
    y.re[k] = static_cast<double>(re);
    y.im[k] = static_cast<double>(im);
  }
  return y;
}

/// Root of the squared distance over the squared size of the expected signal.
inline double RelativeRms(const Signal& actual, const Signal& expected) {
  double distance = 0.0;
  double size = 0.0;
  for (std::size_t i = 0; i < expected.re.size(); ++i) {
    const double re = actual.re[i] - expected.re[i];
    const double im = actual.im[i] - expected.im[i];
    distance += re * re + im * im;
    size += expected.re[i] * expected.re[i] + expected.im[i] * expected.im[i];
  }
  return std::sqrt(distance / size);
}

/// What a transform may lose: an ulp of 1 for every factor of two, as rms. (Found: at most 0.4 of this.)
inline double AllowedLoss(std::size_t n) {
  return 2e-16 * (1.0 + std::log2(static_cast<double>(n)));
}

}  // namespace texturon
