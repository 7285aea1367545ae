// SPDX-License-Identifier: Apache-2.0

// Generates the sample profiles: make_samples FOLDER. The same numbers everywhere, from a fixed seed.

#include <cmath>
#include <cstdint>
#include <ctime>
#include <filesystem>
#include <iostream>
#include <numbers>
#include <random>
#include <string>
#include <vector>

#include "base/number_text.h"
#include "formats/native_format.h"
#include "platform/platform.h"

namespace {

constexpr double kPi = std::numbers::pi;

/// Normal deviates that are the same with every standard library.
class Noise {
public:
  explicit Noise(std::uint64_t seed) : random_(seed) {}
  double Uniform() { return (static_cast<double>(random_() >> 11) + 0.5) * 0x1p-53; }
  double Normal() {
    const double radius = std::sqrt(-2.0 * std::log(Uniform()));
    return radius * std::cos(2.0 * kPi * Uniform());
  }

private:
  std::mt19937_64 random_;
};

/// Noise with the correlation length of a tool's grain: a first-order recursion forth and back.
std::vector<double> Grain(Noise& noise, std::size_t n, double correlationPoints, double rmsUM) {
  std::vector<double> z(n);
  for (double& height : z) height = noise.Normal();
  const double keep = std::exp(-1.0 / correlationPoints);
  for (std::size_t i = 1; i < n; ++i) z[i] = keep * z[i - 1] + (1.0 - keep) * z[i];
  for (std::size_t i = n - 1; i-- > 0;) z[i] = keep * z[i + 1] + (1.0 - keep) * z[i];
  double squares = 0.0;
  for (const double height : z) squares += height * height;
  const double scale = rmsUM / std::sqrt(squares / static_cast<double>(n));
  for (double& height : z) height *= scale;
  return z;
}

/// Ground: grain, chatter of 2.5 mm and the tilt of a part that was not levelled.
std::vector<double> Ground(double spacingUM) {
  Noise noise(1);
  std::vector<double> z = Grain(noise, 8000, 6.0, 0.45);
  for (std::size_t i = 0; i < z.size(); ++i) {
    const double x = static_cast<double>(i) * spacingUM;
    z[i] += 0.25 * std::sin(2.0 * kPi * x / 2500.0) + 0.002 * x;
  }
  return z;
}

/// Turned: the rounded tip's cusps at a feed of 0.1 mm, each a little different, under fine grain.
std::vector<double> Turned(double spacingUM) {
  constexpr double kFeedUM = 100.0;
  constexpr double kTipUM = 200.0;
  Noise noise(2);
  std::vector<double> z = Grain(noise, 8000, 3.0, 0.12);
  double depth = 0.0;
  double lastPass = -1.0;
  for (std::size_t i = 0; i < z.size(); ++i) {
    const double x = static_cast<double>(i) * spacingUM;
    const double pass = std::floor(x / kFeedUM);
    if (pass != lastPass) depth = 0.3 * noise.Normal();
    lastPass = pass;
    const double across = x - (pass + 0.5) * kFeedUM;
    z[i] += across * across / (2.0 * kTipUM) - depth;
  }
  return z;
}

/// Plateau-honed: a fine plateau cut by grooves, each a rounded notch.
std::vector<double> Honed() {
  Noise noise(3);
  std::vector<double> z = Grain(noise, 8000, 4.0, 0.15);
  for (int groove = 0; groove < 90; ++groove) {
    const double centre = noise.Uniform() * static_cast<double>(z.size());
    const double width = 8.0 + 18.0 * noise.Uniform();
    const double relativeDepth = noise.Uniform();
    const double depth = 0.5 + 3.5 * relativeDepth * relativeDepth;
    for (std::size_t i = 0; i < z.size(); ++i) {
      const double u = (static_cast<double>(i) - centre) / width;
      if (std::abs(u) < 1.0) z[i] -= depth * 0.5 * (1.0 + std::cos(kPi * u));
    }
  }
  return z;
}

/// A convex arc of 12 mm radius with fine grain, its apex off the middle.
std::vector<double> Arc(double spacingUM) {
  constexpr double kRadiusUM = 12'000.0;
  Noise noise(4);
  std::vector<double> z = Grain(noise, 10'000, 5.0, 0.2);
  for (std::size_t i = 0; i < z.size(); ++i) {
    const double x = static_cast<double>(i) * spacingUM - 2300.0;
    z[i] += std::sqrt(kRadiusUM * kRadiusUM - x * x) - kRadiusUM;
  }
  return z;
}

/// An aspheric lens face: R = -40 mm, k = -0.8, A4 and A6 as in asphere.ini; apex at 5.7 mm of 12, axis leaning by half
/// a degree, diamond-turned waviness of 1 mm and fine grain.
std::vector<double> Asphere(double spacingUM) {
  constexpr double kCurvature = -0.025;
  constexpr double kConicFactor = 0.2;
  Noise noise(5);
  std::vector<double> z = Grain(noise, 12'001, 4.0, 0.02);
  for (std::size_t i = 0; i < z.size(); ++i) {
    const double u = static_cast<double>(i) * spacingUM * 0.001 - 5.7;
    const double square = u * u;
    const double conic = kCurvature * square / (1.0 + std::sqrt(1.0 - kConicFactor * kCurvature * kCurvature * square));
    const double sag = conic + 2e-4 * square * square - 1e-6 * square * square * square;
    z[i] += 1000.0 * (sag + 0.0087 * u) + 0.05 * std::sin(2.0 * kPi * u);
  }
  return z;
}

/// The nominal of freeform.ini, um over mm: a cam's flank.
double Flank(double xMM) {
  return 120.0 * std::tanh(0.8 * (xMM - 5.0)) - 3.0 * (xMM - 4.0) * (xMM - 4.0);
}

/// The flank as measured: from 1.25 mm of the nominal on, 40 um higher, with grain and chatter.
std::vector<double> MeasuredFlank(double spacingUM) {
  Noise noise(6);
  std::vector<double> z = Grain(noise, 8001, 5.0, 0.15);
  for (std::size_t i = 0; i < z.size(); ++i) {
    const double x = static_cast<double>(i) * spacingUM * 0.001;
    z[i] += Flank(x + 1.25) + 40.0 + 0.2 * std::sin(2.0 * kPi * x / 0.6);
  }
  return z;
}

std::string FreeFormSettings() {
  constexpr int kPoints = 251;
  std::string text =
      "; Settings with a stored nominal shape: every 40 um of a cam's flank, fitted with shift and tilt.\n"
      "[TEXTURON]\nIniVersion=2.00\n\n[ANALYSIS]\nFormRemovalType=7\nResidualType=1\n\n"
      "[FREE_FORM]\nFreeFormPoints=" +
      texturon::IntegerText(kPoints) + "\n";
  for (int i = 0; i < kPoints; ++i) {
    const std::string number = texturon::IntegerText(2 * i, 6, '0');
    const double xMM = 0.04 * i;
    text += "X" + number + "(mm)=" + texturon::FixedText(xMM, 6) + "\n";
    text += "Z" + number + "(um)=" + texturon::FixedText(Flank(xMM), 6) + "\n";
  }
  return text;
}

struct Sample {
  std::string name;
  std::string identification;
  double spacingUM;
  std::vector<double> heights;
};

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::cerr << "usage: make_samples FOLDER\n";
    return 2;
  }
  const std::filesystem::path folder = texturon::PathFromSystemText(argv[1]);
  std::tm date{};
  date.tm_year = 126;
  date.tm_mday = 2;
  date.tm_hour = 9;
  const Sample samples[] = {
      {"ground.lmt", "Ground, generated", 0.5, Ground(0.5)},
      {"turned.lmt", "Turned, generated", 0.5, Turned(0.5)},
      {"honed.lmt", "Plateau-honed, generated", 0.7, Honed()},
      {"arc.lmt", "Arc of 12 mm, generated", 0.5, Arc(0.5)},
      {"asphere.lmt", "Asphere, generated", 1.0, Asphere(1.0)},
      {"freeform.lmt", "Cam flank, generated", 1.0, MeasuredFlank(1.0)},
  };
  const auto write = [&folder](const std::string& name, const std::string& text) {
    const auto path = folder / name;
    const auto written = texturon::ReplaceFile(path, text);
    if (!written.ok()) std::cerr << texturon::FileSentence(path, written.reason) << "\n";
    return written.ok();
  };
  for (const Sample& sample : samples) {
    const std::string text = texturon::NativeProfileText(sample.heights, sample.spacingUM, sample.identification, date);
    const auto path = folder / sample.name;
    const auto written = texturon::ReplaceFile(path, text);
    if (written.ok()) continue;
    std::cerr << texturon::FileSentence(path, written.reason) << "\n";
    return 1;
    if (!write(sample.name, text)) return 1;
  }
  return write("freeform.ini", FreeFormSettings()) ? 0 : 1;
}
