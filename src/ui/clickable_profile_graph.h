#pragma once

#include <QElapsedTimer>
#include <array>
#include <qcustomplot.h>
#include <span>
#include <utility>
#include <vector>

namespace texturon {

/// A graph of curves over millimetres that is looked at with the mouse: the wheel zooms about the pointer (with Ctrl
/// along X only), the left button drags, Shift and the left button mark what to zoom to, a double click shows all. Two
/// upright and two level cursors are grabbed with the left button. By keys: + and - zoom, Home shows all, Backspace
/// goes back to the former view, C takes the next cursor and the arrows move it.
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
  /// A stretch along X that is set apart behind the curves; a line where both ends are the same.
  struct Mark {
    double first = 0.0;
    double last = 0.0;
    QBrush brush;
  };
  /// Replaces the curves, to be drawn with the next replot. The stretch in view stays unless `showsAll`.
  void SetCurves(std::span<const Curve> curves, bool showsAll);
  void SetMarks(std::span<const Mark> marks);
  void ShowAll();
  /// Shows all with the same scale for both axes, `heightUnits` of height being one of length. False, and nothing
  /// changes, where the curves would then fill less than `leastShare` of the height.
  bool ShowAllEquallyScaled(double heightUnits, double leastShare);
  /// The view before the last zoom or drag.
  void GoBack();
  bool CanGoBack() const { return !history_.empty(); }
  /// Ends of what is in view along X.
  QCPRange VisibleX() const { return xAxis->range(); }

  void ShowCursors(bool upright, bool level);
  bool HasUprightCursors() const { return cursors_[0] != nullptr && cursors_[0]->visible(); }
  bool HasLevelCursors() const { return cursors_[2] != nullptr && cursors_[2]->visible(); }
  /// Places of the two cursors in the units of the axes.
  std::pair<double, double> UprightCursors() const { return {places_[0], places_[1]}; }
  std::pair<double, double> LevelCursors() const { return {places_[2], places_[3]}; }
  void SetUprightCursors(double first, double second);
  /// Puts all cursors where they can be seen.
  void FetchCursors();

signals:
  void CursorsMoved();

protected:
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

private:
  using View = std::pair<QCPRange, QCPRange>;
  static constexpr std::size_t kNoCursor = 4;

  View Now() const { return {xAxis->range(), yAxis->range()}; }
  void Remember(const View& view);
  void Zoom(double factor);
  void MakeCursors();
  void MoveCursor(std::size_t cursor, double place);
  void DrawCursors();
  std::size_t CursorAt(const QPointF& position) const;

  std::vector<View> history_;
  View pressed_;
  QElapsedTimer sinceWheel_;
  std::vector<QCPAbstractItem*> marks_;
  /// Two upright ones, then two level ones.
  std::array<QCPItemStraightLine*, 4> cursors_{};
  std::array<double, 4> places_{};
  std::size_t grabbed_ = kNoCursor;
  std::size_t active_ = 0;
};

/// Colours of the profiles, told apart with any colour vision, on light and dark ground.
QColor CurveColour(int number);

/// Takes axes, grid and ground from the palette in force.
void ApplyPalette(QCustomPlot& plot);

}  // namespace texturon
