// SPDX-License-Identifier: Apache-2.0

#include "ui/colours.h"

#include <cstddef>

namespace texturon {
namespace {

// Hues after Okabe and Ito, "Color Universal Design" (2008): blue, vermilion, green, purple, yellow, sky, grey; made
// darker for a white ground and lighter for a dark one, each by another share, so that lightness tells what a hue does
// not.
constexpr QRgb kOnLight[kCurveColours] = {0xFF163A99, 0xFFCE3006, 0xFF17736C, 0xFF762F71,
                                          0xFF828432, 0xFF15A1AC, 0xFF4D4940};
constexpr QRgb kOnDark[kCurveColours] = {0xFF44A1D2, 0xFFF77E5E, 0xFF3BC987, 0xFFE8A4CB,
                                         0xFFC6C210, 0xFF89D0FD, 0xFF9B8E9A};

}  // namespace

bool IsDark(const QPalette& palette) {
  return palette.color(QPalette::Base).lightness() < palette.color(QPalette::Text).lightness();
}

QColor CurveColour(int number, bool onDark) {
  const auto index = static_cast<std::size_t>(number % kCurveColours);
  return QColor::fromRgb(onDark ? kOnDark[index] : kOnLight[index]);
}

QColor CurveColour(int number, const QPalette& ground) {
  return CurveColour(number, IsDark(ground));
}

QColor VerdictGround(bool isGood) {
  return isGood ? QColor(0x00, 0x68, 0x4A) : QColor(0xB0, 0x48, 0x00);
}

QColor UndecidedGround() {
  return {0x6B, 0x3F, 0xA0};
}

QColor CautionGround() {
  return {0x7A, 0x5A, 0x00};
}

QColor WarningColour(bool onDark) {
  return onDark ? QColor(0xFF, 0x6B, 0x6B) : QColor(0xC8, 0x00, 0x00);
}

}  // namespace texturon
