// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QSharedPointer>
#include <qcustomplot.h>

namespace texturon {

/// Of an axis whose numbers are written as everywhere on the screen.
QSharedPointer<QCPAxisTicker> MakeTicker();

/// As many numbers up the axis as stand clear of each other; draws again where that is another number of them. To be
/// called when the plot has been laid out.
void FitTicks(QCustomPlot& plot);

/// Takes axes, grid and ground from the palette in force.
void ApplyPalette(QCustomPlot& plot);

/// Puts the legend in a row above the axes, where it hides no curve.
void PutLegendAbove(QCustomPlot& plot, int mostInARow);

}  // namespace texturon
