// SPDX-License-Identifier: Apache-2.0

#pragma once

namespace texturon {

// What a program of windows says of the screen, and how that differs between systems.

/// Before the application object is made. `isHeadless`: nothing is going to be shown, pictures and pages are as on a
/// plain screen of 96 dots an inch.
void PrepareScreen(bool isHeadless);

/// Once it is made: a style that can be dark where the system wants it dark, and fonts for pages.
void SuitStyleToScreen();

}  // namespace texturon
