// SPDX-License-Identifier: Apache-2.0

#include "ui/window/command_icons.h"

#include <QApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPainterPath>
#include <QPalette>
#include <vector>

#include "ui/colours.h"
#include "ui/plots/clickable_profile_graph.h"

namespace texturon {
namespace {

/// Each picture lies in a square of this side.
constexpr double kSide = 24.0;

/// What is drawn: strokes in the colour of text, accents in that of the first curve.
struct Drawing {
  std::vector<QPolygonF> strokes;
  std::vector<QPolygonF> accents;
};

QPolygonF Frame(double left, double top, double right, double bottom) {
  return {{left, top}, {right, top}, {right, bottom}, {left, bottom}, {left, top}};
}

/// A profile's trace between two places.
QPolygonF Trace(double left, double right, double middle, double height) {
  constexpr double kHeights[] = {0.0, -0.5, 0.3, -1.0, 0.1, -0.4, 0.8, -0.2, 0.4, 0.0};
  QPolygonF line;
  for (std::size_t i = 0; i < std::size(kHeights); ++i) {
    const double share = static_cast<double>(i) / static_cast<double>(std::size(kHeights) - 1);
    line << QPointF(left + share * (right - left), middle + kHeights[i] * height);
  }
  return line;
}

/// An arrow that turns back to the left, or its mirror image.
QPolygonF TurnedArrow(bool isMirrored) {
  QPolygonF line = {{9, 5},   {5, 9},     {9, 13},    {5, 9},   {14, 9}, {17, 10},
                    {19, 13}, {18.5, 16}, {16, 18.5}, {13, 19}, {9, 19}};
  for (QPointF& point : line) {
    if (isMirrored) point.setX(kSide - point.x());
  }
  return line;
}

Drawing DrawingOf(CommandIcon icon) {
  switch (icon) {
    case CommandIcon::kProgram:
      return {{Frame(2, 3, 22, 21)}, {Trace(4, 20, 12, 6)}};
    case CommandIcon::kOpen:
      return {{{{3, 19}, {3, 5}, {9, 5}, {11, 8}, {19, 8}, {19, 11}}, {{3, 19}, {7, 11}, {22, 11}, {18, 19}, {3, 19}}},
              {}};
    case CommandIcon::kSave:
      return {{{{3, 15}, {3, 20}, {21, 20}, {21, 15}}}, {{{12, 3}, {12, 15}, {8, 11}, {12, 15}, {16, 11}}}};
    case CommandIcon::kReport:
      return {{{{5, 3}, {15, 3}, {19, 7}, {19, 21}, {5, 21}, {5, 3}}, {{8, 16}, {16, 16}}, {{8, 18.5}, {13, 18.5}}},
              {Trace(8, 16, 11, 3)}};
    case CommandIcon::kParameters:
      return {{Frame(3, 4, 21, 16), {{3, 8}, {21, 8}}, {{3, 12}, {21, 12}}, {{10, 4}, {10, 16}}},
              {{{16, 18}, {16, 23}}, {{13.5, 20.5}, {18.5, 20.5}}}};
    case CommandIcon::kUndo:
      return {{TurnedArrow(false)}, {}};
    case CommandIcon::kRedo:
      return {{TurnedArrow(true)}, {}};
    case CommandIcon::kComputeAll:
      return {{{{2, 20}, {22, 20}}, {{2, 17}, {2, 20}}, {{22, 17}, {22, 20}}}, {Trace(2, 22, 10, 6)}};
    case CommandIcon::kComputeZoom:
      return {{Frame(4, 4, 20, 20)}, {Trace(7, 17, 12, 5)}};
    case CommandIcon::kComputeCursors:
      return {{{{6, 2}, {6, 22}}, {{18, 2}, {18, 22}}}, {Trace(6, 18, 12, 5)}};
    case CommandIcon::kSettings:
      return {{{{3, 6}, {21, 6}}, {{3, 12}, {21, 12}}, {{3, 18}, {21, 18}}},
              {Frame(7, 4.5, 10, 7.5), Frame(14, 10.5, 17, 13.5), Frame(5, 16.5, 8, 19.5)}};
    case CommandIcon::kShowAll:
      return {{{{3, 8}, {3, 3}, {8, 3}},
               {{16, 3}, {21, 3}, {21, 8}},
               {{21, 16}, {21, 21}, {16, 21}},
               {{8, 21}, {3, 21}, {3, 16}}},
              {Trace(5, 19, 12, 4)}};
    case CommandIcon::kStretchHeights:
      return {{{{8, 3}, {16, 3}}, {{8, 21}, {16, 21}}, {{2, 21}, {8, 12}}, {{16, 12}, {22, 21}}},
              {Trace(8, 16, 12, 7)}};
    case CommandIcon::kZoomBack:
      return {{{{4, 10}, {6, 5.5}, {10, 4}, {14, 5.5}, {16, 10}, {14, 14.5}, {10, 16}, {6, 14.5}, {4, 10}},
               {{14.5, 14.5}, {21, 21}}},
              {{{13, 10}, {7, 10}, {9.5, 7.5}, {7, 10}, {9.5, 12.5}}}};
    case CommandIcon::kUprightCursors:
      return {{Trace(2, 22, 12, 4)}, {{{7, 2}, {7, 22}}, {{17, 2}, {17, 22}}}};
    case CommandIcon::kLevelCursors:
      return {{Trace(2, 22, 12, 4)}, {{{2, 5}, {22, 5}}, {{2, 19}, {22, 19}}}};
    case CommandIcon::kCurves:
      return {{{{3, 3}, {3, 21}, {21, 21}}}, {{{3, 4}, {5, 7}, {9, 10}, {15, 13}, {19, 16}, {21, 20}}}};
    case CommandIcon::kSpectrum:
      return {{{{3, 3}, {3, 21}, {21, 21}}},
              {{{7, 21}, {7, 6}}, {{11, 21}, {11, 12}}, {{15, 21}, {15, 16}}, {{19, 21}, {19, 18}}}};
  }
  return {};
}

class DrawnIcon : public QIconEngine {
public:
  explicit DrawnIcon(CommandIcon icon) : icon_(icon) {}

  void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State /*state*/) override {
    const QPalette palette = QApplication::palette();
    const auto group = mode == QIcon::Disabled ? QPalette::Disabled : QPalette::Active;
    const QColor ink = palette.color(group, QPalette::WindowText);
    const Drawing drawing = DrawingOf(icon_);
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->translate(rect.topLeft());
    painter->scale(rect.width() / kSide, rect.height() / kSide);
    const auto draw = [&](const std::vector<QPolygonF>& lines, const QColor& colour) {
      painter->setPen(QPen(colour, 1.7, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
      for (const QPolygonF& line : lines) painter->drawPolyline(line);
    };
    draw(drawing.strokes, ink);
    draw(drawing.accents, mode == QIcon::Disabled ? ink : CurveColour(0, QGuiApplication::palette()));
    painter->restore();
  }

  QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
    QPixmap picture(size);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    paint(&painter, QRect(QPoint(), size), mode, state);
    return picture;
  }

  QIconEngine* clone() const override { return new DrawnIcon(icon_); }

private:
  CommandIcon icon_;
};

}  // namespace

QIcon IconOf(CommandIcon icon) {
  return QIcon(new DrawnIcon(icon));
}

}  // namespace texturon
