// SPDX-License-Identifier: Apache-2.0

// The known values of the standards by another route than their formulas: shapes made in long double by other
// expressions, parameters by their plain definitions, transmissions by integrating the filter's weights, or by what its
// difference equation does to a wave.

#include "verification/software_standard.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <numbers>
#include <set>
#include <string>
#include <vector>

#include "verification/verification_run.h"

namespace texturon {
namespace {

using Real = long double;
constexpr Real kPi = std::numbers::pi_v<Real>;

const std::vector<SoftwareStandard>& Standards() {
  static const StandardsRead read = ReadStandards(VerificationFiles());
  EXPECT_EQ(read.reason, "");
  return read.standards;
}

/// A wave by the recurrence y[k] = 2 cos(step) y[k-1] - y[k-2], begun anew each turn so that rounding does not grow.
std::vector<Real> WaveByRecurrence(std::size_t count, Real step, Real phase, std::size_t turn) {
  std::vector<Real> wave(count);
  for (std::size_t i = 0; i < count; ++i) {
    const std::size_t k = i % turn;
    wave[i] = k < 2 ? std::sin(phase + static_cast<Real>(k) * step) : 2.0L * std::cos(step) * wave[i - 1] - wave[i - 2];
  }
  return wave;
}

/// Share of a wave in the mean line of the Gaussian filter: its weights, integrated against a cosine.
Real GaussianShare(Real cutoff, Real wavelength) {
  const Real alpha = std::sqrt(std::log(2.0L) / kPi);
  const Real width = alpha * cutoff;
  const Real step = width / 200.0L;
  Real sum = 0.0L;
  for (int i = -1200; i <= 1200; ++i) {  // trapezia of such a function are as good as exact
    const Real x = step * static_cast<Real>(i);
    sum += step / width * std::exp(-kPi * x * x / (width * width)) * std::cos(2.0L * kPi * x / wavelength);
  }
  return sum;
}

/// The same of the spline: what its equation w + b a^2 D2 w + (1 - b) a^4 D4 w = z makes of a wave, by differences.
Real SplineShare(Real cutoff, Real wavelength, Real spacing, Real tension) {
  const auto second = [spacing](Real length) {
    const Real step = 2.0L * kPi * spacing / length;
    return 2.0L - std::cos(step) - std::cos(-step);
  };
  const Real q = second(wavelength) / second(cutoff);
  return 1.0L / (1.0L + tension * q + (1.0L - tension) * q * q);
}

/// Heights of a standard; with a share of its waves (one of the first, one of the second) where a filter acts.
std::vector<Real> HeightsByOtherRoute(const SoftwareStandard& s, Real first = 1.0L, Real second = 1.0L) {
  const auto number = [&s](const char* name) { return static_cast<Real>(s.Number(name)); };
  const std::size_t count = s.Points();
  const auto n = static_cast<std::size_t>(std::max(s.Number("WavePoints"), 1.0));
  const Real a = number("HeightUM");
  std::vector<Real> z(count);
  if (s.shape == "sine" || s.shape == "waves") {
    const Real step = 2.0L * kPi / static_cast<Real>(n);
    const std::vector<Real> base = WaveByRecurrence(count, step, step / 2.0L, n);
    const Real m = s.shape == "waves" ? number("SecondHarmonic") : 1.0L;
    const std::vector<Real> other = WaveByRecurrence(count, m * step, m * step / 2.0L + kPi / 2.0L, n);
    for (std::size_t i = 0; i < count; ++i) {
      z[i] = first * a * base[i] + (s.shape == "waves" ? second * number("SecondHeightUM") * other[i] : 0.0L);
    }
    return z;
  }
  auto state = static_cast<unsigned long long>(s.Number("Seed"));
  for (std::size_t i = 0; i < count; ++i) {
    const Real t = (static_cast<Real>(i % n) + 0.5L) / static_cast<Real>(n);
    if (s.shape == "triangle") z[i] = a * (1.0L - 4.0L * std::abs(t - 0.5L));
    if (s.shape == "sawtooth") z[i] = a * (2.0L * t - 1.0L);
    if (s.shape == "rectangle") z[i] = t * static_cast<Real>(n) < number("HighPoints") ? a : 0.0L;
    if (s.shape == "chirp") {
      const unsigned long long turns = (i * i) % (2 * count);
      z[i] = a * std::sin(kPi * static_cast<Real>(turns) / static_cast<Real>(count));
    }
    if (s.shape == "noise") {
      state = (1664525ULL * state + 1013904223ULL) % 4294967296ULL;
      z[i] = static_cast<Real>(state) / 4294967296.0L;
    }
  }
  return z;
}

Real MeanOf(const std::vector<Real>& z, Real (*term)(Real)) {
  Real sum = 0.0L;
  for (const Real height : z) sum += term(height);
  return sum / static_cast<Real>(z.size());
}

/// A parameter of heights about their mean by its definition, without its first letter; NaN for another.
Real ByDefinition(std::string_view suffix, std::vector<Real> z, Real spacingMM) {
  const Real mean = MeanOf(z, [](Real x) { return x; });
  for (Real& height : z) height -= mean;
  const Real square = MeanOf(z, [](Real x) { return x * x; });
  const auto [lowest, highest] = std::minmax_element(z.begin(), z.end());
  if (suffix == "a") return MeanOf(z, [](Real x) { return std::abs(x); });
  if (suffix == "q") return std::sqrt(square);
  if (suffix == "m0") return square;
  if (suffix == "sk") return MeanOf(z, [](Real x) { return x * x * x; }) / (square * std::sqrt(square));
  if (suffix == "ku") return MeanOf(z, [](Real x) { return x * x * x * x; }) / (square * square);
  if (suffix == "t") return *highest - *lowest;
  if (suffix == "p") return *highest;
  if (suffix == "v") return -*lowest;
  if (suffix != "sm") return NAN;
  std::vector<Real> crossings;
  for (std::size_t i = 1; i < z.size(); ++i) {
    if (z[i - 1] < 0.0L && z[i] >= 0.0L) crossings.push_back(static_cast<Real>(i) - z[i] / (z[i] - z[i - 1]));
  }
  return spacingMM * (crossings.back() - crossings.front()) / static_cast<Real>(crossings.size() - 1);
}

/// What is left of a standard's waves in the profile of a letter.
std::vector<Real> ProfileOf(const SoftwareStandard& s, char letter) {
  const Document document = DocumentFor(s).value();
  const AnalysisSettings& settings = document.settings.analysis;
  if (letter == 'P') return HeightsByOtherRoute(s);
  const Real spacing = static_cast<Real>(s.SpacingUM()) / 1000.0L;
  const Real length = static_cast<Real>(s.Number("WavePoints")) * spacing;
  const auto share = [&](Real wavelength) {
    const auto cutoff = static_cast<Real>(settings.LcCutoffMM);
    return settings.FilterType == kFilterGaussian
               ? GaussianShare(cutoff, wavelength)
               : SplineShare(cutoff, wavelength, spacing, static_cast<Real>(settings.SplineTension));
  };
  const Real first = share(length);
  const Real second = s.shape == "waves" ? share(length / static_cast<Real>(s.Number("SecondHarmonic"))) : 0.0L;
  return letter == 'W' ? HeightsByOtherRoute(s, first, second) : HeightsByOtherRoute(s, 1.0L - first, 1.0L - second);
}

TEST(SoftwareStandards, KnownValuesHoldByAnotherRoute) {
  std::size_t compared = 0;
  for (const SoftwareStandard& standard : Standards()) {
    if (standard.family == "forms") continue;
    for (const KnownValue& known : standard.values) {
      const Real value = ByDefinition(std::string_view(known.name).substr(1), ProfileOf(standard, known.name[0]),
                                      static_cast<Real>(standard.SpacingUM()) / 1000.0L);
      const double scale = std::max(std::abs(known.value), 1e-3);
      EXPECT_NEAR(static_cast<double>(value), known.value, 1e-13 * scale) << standard.title << " " << known.name;
      ++compared;
    }
  }
  EXPECT_GT(compared, 300u);
}

// Of forms the known residual is none: arcs lie at their radius from a centre, conics fulfil their equation, the
// differences of a polynomial beyond its order vanish. Heights of all shapes are those of the other route.
TEST(SoftwareStandards, ShapesAreWhatTheyAreCalled) {
  std::set<std::string> titles;
  for (const SoftwareStandard& s : Standards()) {
    EXPECT_TRUE(titles.insert(s.title).second) << s.title;
    const std::vector<double> z = HeightsOf(s).value();
    const std::size_t count = z.size();
    ASSERT_EQ(count, s.Points());
    const auto x = [&](std::size_t i) {
      return (static_cast<double>(i) - 0.5 * static_cast<double>(count - 1)) * s.SpacingUM() / 1000.0;
    };
    if (s.family != "forms") {
      const std::vector<Real> other = HeightsByOtherRoute(s);
      for (std::size_t i = 0; i < count; ++i)
        ASSERT_NEAR(z[i], static_cast<double>(other[i]), 1e-13 * s.Number("HeightUM") + 1e-15) << s.title;
      continue;
    }
    for (std::size_t i = 0; i + 7 < count; i += 7) {
      const double mm = z[i] / 1000.0;
      if (s.shape == "arc") {
        const double radius = s.Number("RadiusMM");
        EXPECT_NEAR(std::hypot(x(i), mm + radius), std::abs(radius), 1e-13 * std::abs(radius)) << s.title;
      } else if (s.shape == "conic") {
        const double c = s.Number("CurvaturePerMM");
        EXPECT_NEAR(c * x(i) * x(i) - 2.0 * mm + (1.0 + s.Number("Conic")) * c * mm * mm, 0.0, 1e-13) << s.title;
      } else {
        double difference = 0.0, binomial = 1.0;
        const auto order = static_cast<double>(s.coefficients.size());
        for (std::size_t k = 0; k <= s.coefficients.size(); ++k) {
          difference += (k % 2 == 0 ? binomial : -binomial) * z[i + k];
          binomial *= (order - static_cast<double>(k)) / (static_cast<double>(k) + 1.0);
        }
        EXPECT_NEAR(difference, 0.0, 1e-12 * std::exp2(order) * 10.0) << s.title;
      }
    }
  }
  EXPECT_GE(titles.size(), 45u);
}

TEST(SoftwareStandards, AllPassThroughEveryFormat) {
  const VerificationFolder folder(std::filesystem::temp_directory_path());
  ASSERT_FALSE(folder.Path().empty());
  for (const VerifiedStandard& standard : VerifyStandards(Standards(), folder.Path())) {
    EXPECT_TRUE(standard.faults.empty()) << standard.title << standard.faults.front();
    const VerifiedValue& worst = *standard.Worst();
    EXPECT_TRUE(standard.Passes()) << standard.title << " " << worst.name << " " << worst.format << " "
                                   << worst.Share();
  }
}

// A value that is off by a little more than its tolerance, a row that nobody computes and a form that is not fitted
// fail; so does a file of standards with anything that is not understood.
TEST(SoftwareStandards, WhatIsWrongFails) {
  const VerificationFolder folder(std::filesystem::temp_directory_path());
  SoftwareStandard wrong = Standards().front();
  wrong.values.front().value += 2.0 * wrong.values.front().tolerance;
  wrong.values.push_back({.name = "Pnone", .value = 0.0, .tolerance = 1.0, .formula = "0"});
  wrong.values.push_back({.name = "form.radius_um", .value = 0.0, .tolerance = 1.0, .formula = "0"});
  const VerifiedStandard verified = VerifyStandards({&wrong, 1}, folder.Path()).front();
  EXPECT_FALSE(verified.Passes());
  EXPECT_FALSE(verified.values[0].passes);
  for (const VerifiedValue& value : verified.values) {
    EXPECT_TRUE(value.found.has_value() == (value.name != "Pnone" && value.name != "form.radius_um")) << value.name;
  }
  const std::string good =
      "[a]\nShape=sine\nPoints=100\nSpacingUM=1\nHeightUM=1\nWavePoints=10\nValue.Pa=1\nFormula.Pa=x\nTolerance.Pa=1\n";
  const std::pair<std::string, const char*> refused[] = {
      {good + "Set.ANALYSIS.Nothing=1\n", "t, [a]: a setting is not understood"},
      {good + "Value.Pq=1\nTolerance.Pq=1\n", "t, [a]: formula or tolerance of Pq is missing"},
      {good + "Points=5\n", "t, [a]: Points occurs again"},
      {good + "Value.Pt=much\n", "t, [a]: Value.Pt is no number"},
      {"[a]\nShape=cloud\nPoints=100\nSpacingUM=1\nValue.Pa=1\nFormula.Pa=x\nTolerance.Pa=1\n",
       "t, [a]: there is no shape \"cloud\""},
  };
  for (const auto& [text, reason] : refused) {
    const EmbeddedFile file{"t", text};
    EXPECT_EQ(ReadStandards({&file, 1}).reason, reason);
  }
  const EmbeddedFile file{"t", good};
  EXPECT_EQ(ReadStandards({&file, 1}).standards.size(), 1u);
}

}  // namespace
}  // namespace texturon
