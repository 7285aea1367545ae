// SPDX-License-Identifier: Apache-2.0

#include "ui/window/readout_label.h"

#include <QRegularExpression>
#include <algorithm>

namespace texturon {
namespace {

/// What is worth least, first.
const QRegularExpression& PartsByWorth(std::size_t i) {
  static const QRegularExpression parts[] = {
      QRegularExpression("^Y[12] "),
      QRegularExpression("^X[12] "),
      QRegularExpression("^Z[12] "),
      QRegularExpression("^(?![XYZ][12] |[^ ]?[XYZ] )"),  // the slope, with the profile that heights are of
      QRegularExpression("^[^ ]?Y "),
      QRegularExpression("^[^ ]?Z ")};
  return parts[i];
}
constexpr std::size_t kPartsToLeaveOut = 6;

}  // namespace

QString ShortReadout(const QString& readout, int width, const QFontMetrics& metrics) {
  static const QRegularExpression gap(" {2,}");
  if (metrics.horizontalAdvance(readout) <= width) return readout;
  QStringList parts = readout.split(gap, Qt::SkipEmptyParts);
  for (std::size_t i = 0; i < kPartsToLeaveOut; ++i) {
    parts.removeIf([i](const QString& part) { return part.contains(PartsByWorth(i)); });
    const QString text = parts.join("  ");
    if (!parts.isEmpty() && metrics.horizontalAdvance(text) <= width) return text;
  }
  return metrics.elidedText(parts.isEmpty() ? readout : parts.join("  "), Qt::ElideRight, width);
}

CReadoutLabel::CReadoutLabel(QWidget* parent) : QLabel(parent) {
  setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Preferred);
  setAlignment(Qt::AlignRight | Qt::AlignVCenter);
}

void CReadoutLabel::SetReadout(const QString& readout) {
  whole_ = readout;
  setToolTip(QString(readout).replace("    ", "\n"));
  updateGeometry();
  Fit();
}

QSize CReadoutLabel::sizeHint() const {
  return {fontMetrics().horizontalAdvance(whole_) + 2, QLabel::sizeHint().height()};
}

QSize CReadoutLabel::minimumSizeHint() const {
  return {0, QLabel::minimumSizeHint().height()};
}

void CReadoutLabel::resizeEvent(QResizeEvent* event) {
  QLabel::resizeEvent(event);
  Fit();
}

void CReadoutLabel::Fit() {
  setText(ShortReadout(whole_, width(), fontMetrics()));
}

}  // namespace texturon
