// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QObject>
#include <functional>
#include <limits>

class QCPItemStraightLine;
class QCustomPlot;

namespace texturon {

/// An upright and, where wanted, a level line over a plot. Each is grabbed with the left button; the arrow keys move
/// them by a pixel, with Ctrl by twenty.
class CPlotCursors : public QObject {
  Q_OBJECT

public:
  CPlotCursors(QCustomPlot& plot, bool hasLevel);

  double X() const { return x_; }
  double Y() const { return y_; }
  void Put(double x, double y);
  /// Puts both into view where they were never placed.
  void Begin();
  void SetVisible(bool visible);
  /// Where an upright cursor may stand: `settle` is asked for the place nearest to one, `step` for the place so many
  /// steps further to the right.
  void Confine(std::function<double(double)> settle, std::function<double(double, int)> step);
  bool eventFilter(QObject* watched, QEvent* event) override;

signals:
  void Moved();

private:
  enum class Grabbed { kNone, kUpright, kLevel };

  Grabbed At(const QPointF& position) const;
  bool OnKey(int key, bool fast);
  void Draw();

  QCustomPlot& plot_;
  QCPItemStraightLine* upright_;
  QCPItemStraightLine* level_ = nullptr;
  double x_ = std::numeric_limits<double>::quiet_NaN();  ///< not placed yet
  double y_ = x_;
  Grabbed grabbed_ = Grabbed::kNone;
  std::function<double(double)> settle_;
  std::function<double(double, int)> step_;
};

}  // namespace texturon
