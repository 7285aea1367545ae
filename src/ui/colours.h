// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QColor>
#include <QPalette>

namespace texturon {

// The colours of the window beside those of its palette. Each has the contrast of its use against the ground it lies
// on, 4.5 for text and 3 for curves, and those of curves are told apart with any colour vision.

/// Whether light text stands on a dark ground.
bool IsDark(const QPalette& palette);

/// How many colours of curves there are.
inline constexpr int kCurveColours = 7;
/// What is usually seen together differs most.
QColor CurveColour(int number, bool onDark);
QColor CurveColour(int number, const QPalette& ground);

/// The ground of white words that say whether something is good.
QColor VerdictGround(bool isGood);
/// That of what nobody can say.
QColor UndecidedGround();
/// That of what is good as far as there is enough to tell.
QColor CautionGround();
/// Words about entries that cannot be used.
QColor WarningColour(bool onDark);

}  // namespace texturon
