// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QByteArray>
#include <QImage>
#include <QString>
#include <memory>
#include <qcustomplot.h>

#include "analysis/document.h"
#include "presentation/report_template.h"

namespace texturon {

/// Spaced by a hair, which keeps f and i apart: as one sign they are not found by who searches the file.
void KeepLettersApart(QFont& font);

/// The results that the pictures of a report read besides those that every analysis makes.
WantedResults ResultsFor(const ReportTemplate& layout);

/// The document with these results. What the run left out is made; where nothing is missing nothing is computed.
Document WithResults(const Document& document, const WantedResults& wanted);

/// One block's curve on white ground, in a font of so many pixels, and its title. Null where the block is no picture or
/// the document has nothing for it. The document must outlive it.
struct BlockPicture {
  std::unique_ptr<QCustomPlot> plot;
  QString title;
};
BlockPicture MakePicture(ReportBlockKind kind, const Document& document, int fontPixels);

/// A picture as an <svg> element; names in it begin with `idPrefix`.
QByteArray SvgOf(QCustomPlot& plot, const QSize& size, const QByteArray& idPrefix);
/// As a picture of dots, each of them 1/96 inch.
QImage ImageOf(QCustomPlot& plot, const QSize& size);

}  // namespace texturon
