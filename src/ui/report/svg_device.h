// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QByteArray>
#include <QPaintDevice>
#include <QSize>
#include <memory>

namespace texturon {

class SvgEngine;

/// A device of so many dots of 1/96 inch that keeps what is painted on it as SVG: paths, texts as texts in a sans-serif
/// of the reader's, pictures as PNG. Brushes are flat; a pattern becomes its colour at a quarter.
class CSvgDevice : public QPaintDevice {
public:
  /// `idPrefix` begins the names within, so that several pictures can stand in one file.
  CSvgDevice(const QSize& size, const QByteArray& idPrefix);
  ~CSvgDevice() override;

  QPaintEngine* paintEngine() const override;
  /// The <svg> element, UTF-8, once the painter has ended.
  QByteArray Element() const;

protected:
  int metric(PaintDeviceMetric metric) const override;

private:
  QSize size_;
  std::unique_ptr<SvgEngine> engine_;
};

}  // namespace texturon
