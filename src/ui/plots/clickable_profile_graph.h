// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QElapsedTimer>
#include <array>
#include <optional>
#include <qcustomplot.h>
#include <span>
#include <utility>
#include <vector>

namespace texturon {

/// A graph of curves over millimetres that is looked at with the mouse: the wheel zooms about the pointer along X, with
/// Ctrl along the heights, with Shift along both, the left button drags, Shift and the left button mark what to zoom
/// to, a double click shows all. Two upright and two level cursors are grabbed with the left button. By keys: + and -
/// zoom, Home shows all, Backspace goes back to the former view and with Shift forward again, C takes the next cursor
/// and the arrows move it.
///
/// It keeps the heights and gives the plot, for each picture, only those that can be seen in it: the first, last,
/// lowest and highest of every column of pixels.
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
    Qt::PenStyle style = Qt::SolidLine;
    bool isOverlay = false;  ///< lies on another curve: heights that are not a number are gaps, nothing is scaled by it
    bool isOutside = false;  ///< an overlay of what is not computed over, which the whole view has room for, too
    std::span<const double> ofStretch = {};  ///< heights of what is computed over, where these are not all
  };
  /// A stretch along X that is set apart behind the curves; a line where both ends are the same.
  struct Mark {
    double first = 0.0;
    double last = 0.0;
    QBrush brush;
  };
  /// What showing all means.
  struct WholeView {
    std::optional<QCPRange> record;   ///< along X, where that is more than the curves
    bool isOverStretch = false;       ///< part of the record is computed over, the rest is beside it
    std::optional<QCPRange> heights;  ///< fixed ends of the Y axis
    double heightsInLength = 1.0;     ///< how many units of height are one of length
    bool hasEqualScales = false;      ///< the same scale for both axes, where the curves then fill enough of the
                                      ///< height to be seen
  };
  void SetXTitle(const QString& title);
  /// Replaces the curves, to be drawn with the next replot. What is zoomed to stays, and so does that all is shown.
  void SetCurves(std::span<const Curve> curves, const WholeView& whole);
  void SetMarks(std::span<const Mark> marks);
  /// Without numbers the X axis says where the view ends and how far apart its lines are.
  void ShowXValues(bool shown);
  /// Shows all and, unlike ShowAll, forgets the views before.
  void StartAnew();
  void ShowAll();
  /// Gives the heights of the stretch that is computed over the whole room, until all is shown or HoldHeights called.
  void ShowStretchHeights();
  /// Whether these are others than those of the whole record, and nothing fixes the heights.
  bool HasStretchHeights() const;
  /// Whether hardly anything is seen of them beside the rest.
  bool IsStretchFlat() const;
  /// For another stretch that was computed over: all of the record's heights are in view, along X it stays.
  void HoldHeights();
  /// The view before the last zoom or drag.
  void GoBack();
  /// The view that GoBack left.
  void GoForward();
  bool CanGoBack() const { return !back_.empty(); }
  /// Whether a length along the heights is drawn as long as one along X.
  bool IsOneToOne() const;
  /// Makes it so about the middle of the view, even where the curves are then hardly seen.
  void ShowOneToOne();
  /// Zooms along X to a stretch, with the height as it is.
  void ShowX(const QCPRange& range);
  /// Moves along X; all moves of one pull at a scroll bar are one step back.
  void ScrollX(const QCPRange& range);
  /// Ends of what is in view along X.
  QCPRange VisibleX() const { return xAxis->range(); }
  /// Ends of the curves along X.
  QCPRange WholeX() const { return extentX_; }

  void ShowCursors(bool upright, bool level);
  bool HasUprightCursors() const { return cursors_[0] != nullptr && cursors_[0]->visible(); }
  bool HasLevelCursors() const { return cursors_[2] != nullptr && cursors_[2]->visible(); }
  /// Places of the two cursors in the units of the axes.
  std::pair<double, double> UprightCursors() const { return {places_[0], places_[1]}; }
  std::pair<double, double> LevelCursors() const { return {places_[2], places_[3]}; }
  void SetUprightCursors(double first, double second);
  /// Puts all cursors where they can be seen, on the curves.
  void FetchCursors();
  /// Texts at the two upright and the two level cursors.
  void SetCursorLabels(const std::array<QString, 4>& labels);

signals:
  void CursorsMoved();
  /// A part of the curves was left or come to.
  void ViewChanged();

protected:
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

private:
  struct View {
    QCPRange x;
    QCPRange y;
    bool isWhole = false;
    bool isOfStretch = false;

    bool operator==(const View&) const = default;
  };
  struct HeldCurve {
    QCPGraph* graph = nullptr;
    std::vector<double> heights;
    double firstX = 0.0;
    double step = 1.0;
    double heightFactor = 1.0;
  };
  static constexpr std::size_t kNoCursor = 4;

  View Now() const { return {xAxis->range(), yAxis->range(), isWhole_, showsStretch_}; }
  void Show(const View& view);
  void Remember(const View& view);
  /// Once for what follows shortly on each other.
  void RememberOnce();
  void FitWhole();
  /// Heights that the whole view shows.
  const QCPRange& WholeHeights() const { return showsStretch_ ? stretchY_ : extentY_; }
  /// Ends of the Y axis that hold these and a little more.
  QCPRange HeightsWithMargin() const;
  void OnLayout();
  void LabelEnds();
  void Thin();
  void Zoom(double factor);
  void MakeCursors();
  void MoveCursor(std::size_t cursor, double place);
  void DrawCursors();
  void PlaceLabels();
  std::size_t CursorAt(const QPointF& position) const;

  std::vector<HeldCurve> curves_;
  QCPRange extentX_;
  QCPRange extentY_;           ///< of the whole record
  QCPRange stretchY_;          ///< of what is computed over
  bool showsStretch_ = false;  ///< the whole view has the heights of the stretch alone
  WholeView whole_;
  bool isWhole_ = true;  ///< nobody has zoomed or dragged: the view follows the size of the window
  QSize fittedFor_;      ///< room for the curves when they were last fitted into it; none: fit them anew
  bool showsXValues_ = true;
  QString xTitle_;
  std::vector<View> back_;
  std::vector<View> forward_;
  View pressed_;
  QElapsedTimer sinceStep_;             ///< of the wheel or a scroll bar
  std::array<QCPItemText*, 2> ends_{};  ///< numbers at the ends of the X axis
  std::vector<QCPAbstractItem*> marks_;
  /// Two upright ones, then two level ones.
  std::array<QCPItemStraightLine*, 4> cursors_{};
  std::array<QCPItemText*, 4> labels_{};
  std::array<double, 4> places_{};
  std::size_t grabbed_ = kNoCursor;
  std::size_t active_ = 0;
};

/// Along which axes the wheel zooms while these keys are held.
Qt::Orientations WheelZoom(Qt::KeyboardModifiers keys);

}  // namespace texturon
