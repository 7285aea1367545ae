// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QByteArray>
#include <QImage>
#include <QString>
#include <memory>
#include <optional>
#include <qcustomplot.h>

#include "analysis/document.h"
#include "presentation/report_template.h"
#include "ui/report/report.h"

namespace texturon {

/// Spaced by a hair, which keeps f and i apart: as one sign they are not found by who searches the file.
void KeepLettersApart(QFont& font);

/// The results that the pictures of a report read besides those that every analysis makes.
WantedResults ResultsFor(const ReportTemplate& layout);

/// A document with these results: itself where it has them, else a copy in which they are made. The document must
/// outlive it.
class ReadyDocument {
public:
  ReadyDocument(const Document& document, const WantedResults& wanted);
  const Document& operator*() const { return made_ ? *made_ : document_; }

private:
  const Document& document_;
  std::optional<Document> made_;
};

/// One block's curve on white ground, in a font of so many pixels, and its title. Null where the block is no picture or
/// the document has nothing for it. The document must outlive it.
struct BlockPicture {
  std::unique_ptr<QCustomPlot> plot;
  QString title;
};
BlockPicture MakePicture(ReportBlockKind kind, const Document& document, int fontPixels);

/// The profiles of a view, over the stretch and the heights that it shows. The document must outlive it.
std::unique_ptr<QCustomPlot> MakePicture(const PictureOfView& view, const Document& document, int fontPixels);

/// The picture at the head of reports; null where the settings name none or it cannot be read.
QImage LogoOf(const Document& document);

/// Gives colours that let the ground through the colour that is then seen on white: files that are kept for long know
/// no such ones.
void MakeOpaque(QCustomPlot& plot);

/// A picture as an <svg> element; names in it begin with `idPrefix`.
QByteArray SvgOf(QCustomPlot& plot, const QSize& size, const QByteArray& idPrefix);
/// As a picture of dots, each of them 1/96 inch.
QImage ImageOf(QCustomPlot& plot, const QSize& size);

}  // namespace texturon
