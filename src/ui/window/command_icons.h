// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QIcon>

namespace texturon {

/// Pictures of the tool bar. They are drawn in the colours of the palette in force, sharp at every size.
enum class CommandIcon {
  kProgram,
  kOpen,
  kSave,
  kReport,
  kParameters,
  kUndo,
  kRedo,
  kComputeAll,
  kComputeZoom,
  kComputeCursors,
  kSettings,
  kShowAll,
  kStretchHeights,
  kZoomBack,
  kUprightCursors,
  kLevelCursors,
  kCurves,
  kSpectrum,
};

QIcon IconOf(CommandIcon icon);

}  // namespace texturon
