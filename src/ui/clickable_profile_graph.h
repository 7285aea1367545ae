#pragma once

#include <qcustomplot.h>
#include <span>
#include <vector>

namespace texturon {

/// A graph of curves over millimetres that is looked at with the mouse: the wheel zooms about the pointer (with Ctrl
/// along X only), the left button drags, Shift and the left button mark what to zoom to, a double click shows all.
class CClickableProfileGraph : public QCustomPlot {
  Q_OBJECT

public:
  explicit CClickableProfileGraph(QWidget* parent = nullptr);

  /// A curve as the graph takes it: point i at firstX + i x step.
  struct Curve {
    QString name;
    QColor colour;
    double width = 0.0;  ///< of the pen; 0 is the thinnest
    std::span<const double> heights;
    double firstX = 0.0;
    double step = 1.0;
    double heightFactor = 1.0;  ///< to the units shown
  };
  /// Replaces the curves. The stretch in view stays unless `showsAll`.
  void SetCurves(std::span<const Curve> curves, bool showsAll);
  void ShowAll();
  /// Ends of what is in view along X.
  QCPRange VisibleX() const { return xAxis->range(); }

protected:
  void mousePressEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
};

/// Colours of the profiles, told apart with any colour vision, on light and dark ground.
QColor CurveColour(int number);

/// Takes axes, grid and ground from the palette in force.
void ApplyPalette(QCustomPlot& plot);

}  // namespace texturon
