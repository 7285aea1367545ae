// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QString>
#include <qcustomplot.h>
#include <vector>

#include "analysis/value_statistics.h"
#include "parameters/catalogue.h"

namespace texturon {

/// One parameter over the files of a process. Values and limits in the unit shown.
struct TrendSeries {
  QString title;                 ///< with the unit
  QString unit;                  ///< alone; empty: none
  ValueSeries values;            ///< in the order of the files; nothing for a file that gave none
  std::vector<double> timesS;    ///< as many, seconds since 1970; empty: over the number of the file
  std::vector<bool> outOfLimit;  ///< as many as values
  std::vector<bool> undecided;   ///< as many; empty: none
  LimitsInForce limits;
};

/// The values over number or time, those out of tolerance or undecided in the colour of that, with lines for limits,
/// mean and mean plus and minus three standard deviations, named at their right end. Axes hold all of it.
void DrawTrend(QCustomPlot& plot, const TrendSeries& series);

/// How often the values fall into classes of equal width, with the same limits and lines, upright.
void DrawHistogram(QCustomPlot& plot, const TrendSeries& series);

/// Suits a drawn chart or histogram to little room: titles of axes and names of lines that would be cut or lie on each
/// other are left out, those of three standard deviations first, then the mean's. To be called when the plot has been
/// laid out; true where something changed and the plot is to be laid out again.
bool FitToRoom(QCustomPlot& plot);

/// Number, mean and deviation with their unit, Cp and Cpk in a line; a figure that there is not is left out.
QString CapabilityText(const TrendSeries& series);

/// The value whose point lies nearest to a place of the plot, in pixels; nothing further away than a few of them.
std::optional<std::size_t> ValueAt(const QCustomPlot& plot, const TrendSeries& series, const QPointF& place);

}  // namespace texturon
