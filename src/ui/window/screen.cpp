// SPDX-License-Identifier: Apache-2.0

#include "ui/window/screen.h"

#include <QApplication>
#include <QByteArray>
#include <QFont>
#include <QPalette>

#include "ui/colours.h"

namespace texturon {

#ifdef Q_OS_WIN

// Programs have fonts and need no screen there; a screen in memory would have neither.
void PrepareScreen(bool isHeadless) {
  if (isHeadless) {
    qputenv("QT_ENABLE_HIGHDPI_SCALING", "0");
    qputenv("QT_FONT_DPI", "96");
  }
  // Title bar and content follow the system's dark mode, not the title bar alone.
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
    qputenv("QT_QPA_PLATFORM", isHeadless ? "windows:darkmode=0" : "windows:darkmode=2");
  }
}

// The name that stands for any plain font is not known there. The system's own style draws many things light whatever
// the palette says.
void SuitStyleToScreen() {
  QFont::insertSubstitutions("sans-serif", {"Segoe UI", "Tahoma", "Arial"});
  QPalette palette = QApplication::palette();
  if (!IsDark(palette)) return;
  QApplication::setStyle("fusion");
  // Every other row would be as blue as what is chosen.
  constexpr int kLighter = 120;
  palette.setColor(QPalette::AlternateBase, palette.color(QPalette::Base).lighter(kLighter));
  QApplication::setPalette(palette);
}

#else

void PrepareScreen(bool isHeadless) {
  if (isHeadless) qputenv("QT_QPA_PLATFORM", "offscreen");
}

// Some desktops hand over a dark palette without the colour of hints in empty fields, which are then dark, too. A
// middle grey is read on either ground.
void SuitStyleToScreen() {
  if (!IsDark(QApplication::palette())) return;
  QPalette hints;
  hints.setColor(QPalette::PlaceholderText, QColor(0x8C, 0x8C, 0x8C));
  QApplication::setPalette(hints);
}

#endif

}  // namespace texturon
