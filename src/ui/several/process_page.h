// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QString>
#include <QStringList>

#include "ui/several/trend_plots.h"
#include "ui/tables/grid_ctrl.h"

namespace texturon {

/// What a page about a process holds besides its charts.
struct ProcessPage {
  QStringList heading;  ///< lines: folder, settings, time
  QStringList titles;   ///< of the table of statistics
  QList<CGridCtrl::Record> statistics;
};

/// Writes the trend of a parameter, all or nothing, in English whatever the window speaks: a page with heading, chart,
/// histogram and statistics where the name ends in .pdf, else the chart alone as SVG or PNG by its ending. False with a
/// sentence in `reason`.
bool WriteProcess(const QString& file, const TrendSeries& series, const ProcessPage& page, QString& reason);

}  // namespace texturon
