// SPDX-License-Identifier: Apache-2.0

// Whether colours and signs can be read, by anybody.

#include "ui/colours.h"

#include "ui/window_fixture.h"

namespace texturon {
namespace {

struct Linear {
  double red, green, blue;
};

double Decoded(double value) {
  return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
}

Linear LinearOf(const QColor& colour) {
  return {Decoded(colour.redF()), Decoded(colour.greenF()), Decoded(colour.blueF())};
}

/// Contrast by WCAG 2.
double Contrast(const QColor& a, const QColor& b) {
  const auto luminance = [](const Linear& c) { return 0.2126 * c.red + 0.7152 * c.green + 0.0722 * c.blue; };
  const double first = luminance(LinearOf(a)) + 0.05;
  const double second = luminance(LinearOf(b)) + 0.05;
  return std::max(first, second) / std::min(first, second);
}

/// As it is seen without one kind of cones: the matrices of Machado, Oliveira and Fernandes (2009) at full severity;
/// the first is normal vision.
constexpr double kSight[][3][3] = {
    {{1, 0, 0}, {0, 1, 0}, {0, 0, 1}},
    {{0.152286, 1.052583, -0.204868}, {0.114503, 0.786281, 0.099216}, {-0.003882, -0.048116, 1.051998}},
    {{0.367322, 0.860646, -0.227968}, {0.280085, 0.672501, 0.047413}, {-0.011820, 0.042940, 0.968881}},
    {{1.255528, -0.076749, -0.178779}, {-0.078411, 0.930809, 0.147602}, {0.004733, 0.691367, 0.303900}}};

/// Place in CIE L*a*b*, white D65.
std::array<double, 3> LabOf(const QColor& colour, const double (&sight)[3][3]) {
  const Linear c = LinearOf(colour);
  double seen[3];
  for (int i = 0; i < 3; ++i) {
    seen[i] = std::clamp(sight[i][0] * c.red + sight[i][1] * c.green + sight[i][2] * c.blue, 0.0, 1.0);
  }
  const auto root = [](double t) { return t > 216.0 / 24389.0 ? std::cbrt(t) : (24389.0 / 27.0 * t + 16.0) / 116.0; };
  const double x = root((0.4124 * seen[0] + 0.3576 * seen[1] + 0.1805 * seen[2]) / 0.95047);
  const double y = root(0.2126 * seen[0] + 0.7152 * seen[1] + 0.0722 * seen[2]);
  const double z = root((0.0193 * seen[0] + 0.1192 * seen[1] + 0.9505 * seen[2]) / 1.08883);
  return {116.0 * y - 16.0, 500.0 * (x - y), 200.0 * (y - z)};
}

TEST(Colours, StandOutFromTheirGroundAndFromEachOther) {
  for (const bool isDark : {false, true}) {
    const QColor ground = isDark ? QColor(0x2B, 0x2B, 0x2B) : QColor(Qt::white);
    EXPECT_GE(Contrast(WarningColour(isDark), ground), 4.5);
    for (int a = 0; a < kCurveColours; ++a) {
      EXPECT_GE(Contrast(CurveColour(a, isDark), ground), 3.0) << isDark << a;
      for (int b = 0; b < a; ++b) {
        for (const auto& sight : kSight) {
          const auto first = LabOf(CurveColour(a, isDark), sight);
          const auto second = LabOf(CurveColour(b, isDark), sight);
          const double difference = std::hypot(first[0] - second[0], first[1] - second[1], first[2] - second[2]);
          // A just noticeable difference is 2.3.
          EXPECT_GE(difference, 10.0) << isDark << " " << a << " and " << b << ", sight " << &sight - kSight;
        }
      }
    }
  }
  for (const bool isGood : {false, true}) EXPECT_GE(Contrast(VerdictGround(isGood), Qt::white), 4.5);
  EXPECT_GE(Contrast(UndecidedGround(), Qt::white), 4.5);
  EXPECT_GE(Contrast(CautionGround(), Qt::white), 4.5);
}

}  // namespace
}  // namespace texturon
