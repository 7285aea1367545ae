// SPDX-License-Identifier: Apache-2.0

#include "ui/report/svg_device.h"

#include <QBuffer>
#include <QFontInfo>
#include <QPaintEngine>
#include <QPainter>
#include <QPainterPath>
#include <QPixmap>
#include <algorithm>
#include <cmath>

#include "base/number_text.h"
#include "base/units.h"

namespace texturon {
namespace {

constexpr int kDotsPerInch = 96;
constexpr double kPatternShare = 0.25;

QByteArray Number(double value) {
  constexpr int kDecimals = 2;
  QByteArray text = QByteArray::fromStdString(ReadoutText(value, kDecimals));
  while (text.endsWith('0')) text.chop(1);
  if (text.endsWith('.')) text.chop(1);
  return text;
}

QByteArray Attribute(const char* name, const QByteArray& value) {
  return QByteArray(" ") + name + "=\"" + value + "\"";
}

QByteArray PathData(const QPainterPath& path) {
  QByteArray data;
  for (int i = 0; i < path.elementCount(); ++i) {
    const QPainterPath::Element element = path.elementAt(i);
    // A curve is an element of its own and two with its further points.
    if (element.isMoveTo()) data += 'M';
    if (element.isLineTo()) data += 'L';
    if (element.isCurveTo()) data += 'C';
    if (element.type == QPainterPath::CurveToDataElement) data += ' ';
    data += Number(element.x) + ',' + Number(element.y);
  }
  return data;
}

QByteArray ColourOf(const char* name, const QColor& colour, double share = 1.0) {
  const double opacity = colour.alphaF() * share;
  QByteArray text = Attribute(name, colour.name(QColor::HexRgb).toLatin1());
  if (opacity < 1.0) text += Attribute((QByteArray(name) + "-opacity").constData(), Number(opacity));
  return text;
}

}  // namespace

class SvgEngine : public QPaintEngine {
public:
  explicit SvgEngine(QByteArray idPrefix) : QPaintEngine(AllFeatures), idPrefix_(std::move(idPrefix)) {}

  bool begin(QPaintDevice* /*device*/) override {
    body_.clear();
    return true;
  }
  bool end() override { return true; }
  Type type() const override { return User; }

  void updateState(const QPaintEngineState& changed) override {
    const DirtyFlags dirty = changed.state();
    if (dirty & (DirtyClipEnabled | DirtyClipRegion | DirtyClipPath)) isClipChanged_ = true;
  }

  void drawPath(const QPainterPath& path) override {
    const QTransform transform = painter()->transform();
    Write("<path" + Attribute("d", PathData(transform.map(path))) + Stroke() + Fill(path.fillRule()) + "/>");
  }
  void drawPolygon(const QPointF* points, int count, PolygonDrawMode mode) override {
    if (count < 1) return;
    QPainterPath path(points[0]);
    for (int i = 1; i < count; ++i) path.lineTo(points[i]);
    if (mode != PolylineMode) path.closeSubpath();
    path.setFillRule(mode == WindingMode ? Qt::WindingFill : Qt::OddEvenFill);
    const QTransform transform = painter()->transform();
    Write("<path" + Attribute("d", PathData(transform.map(path))) + Stroke() +
          (mode == PolylineMode ? Attribute("fill", "none") : Fill(path.fillRule())) + "/>");
  }
  using QPaintEngine::drawPolygon;

  void drawTextItem(const QPointF& at, const QTextItem& item) override {
    const QTransform transform = painter()->transform();
    const QFont font = item.font();
    QByteArray element = "<text";
    if (transform.type() > QTransform::TxTranslate) {
      element += Attribute("transform", "matrix(" + Number(transform.m11()) + ',' + Number(transform.m12()) + ',' +
                                            Number(transform.m21()) + ',' + Number(transform.m22()) + ',' +
                                            Number(transform.dx()) + ',' + Number(transform.dy()) + ')');
      element += Attribute("x", Number(at.x())) + Attribute("y", Number(at.y()));
    } else {
      element += Attribute("x", Number(at.x() + transform.dx())) + Attribute("y", Number(at.y() + transform.dy()));
    }
    element += Attribute("font-size", Number(QFontInfo(font).pixelSize()));
    if (font.bold()) element += Attribute("font-weight", "bold");
    // The reader's letters may be wider than those that the layout was made with.
    // Blanks at its ends count in that length.
    if (item.text().startsWith(' ') || item.text().endsWith(' ')) element += Attribute("xml:space", "preserve");
    element += Attribute("textLength", Number(item.width())) + Attribute("lengthAdjust", "spacingAndGlyphs");
    element += ColourOf("fill", painter()->pen().color());
    Write(element + ">" + item.text().toHtmlEscaped().toUtf8() + "</text>");
  }

  void drawPixmap(const QRectF& where, const QPixmap& pixmap, const QRectF& part) override {
    drawImage(where, pixmap.toImage(), part, Qt::AutoColor);
  }
  void drawImage(const QRectF& where, const QImage& image, const QRectF& part,
                 Qt::ImageConversionFlags /*flags*/) override {
    QBuffer bytes;
    bytes.open(QIODevice::WriteOnly);
    image.copy(part.toAlignedRect()).save(&bytes, "PNG");
    const QRectF place = painter()->transform().mapRect(where);
    Write("<image" + Attribute("x", Number(place.x())) + Attribute("y", Number(place.y())) +
          Attribute("width", Number(place.width())) + Attribute("height", Number(place.height())) +
          Attribute("href", "data:image/png;base64," + bytes.data().toBase64()) + "/>");
  }

  QByteArray Element(const QSize& size) const {
    const QByteArray width = QByteArray::number(size.width());
    const QByteArray height = QByteArray::number(size.height());
    return "<svg xmlns=\"http://www.w3.org/2000/svg\"" + Attribute("width", width) + Attribute("height", height) +
           Attribute("viewBox", "0 0 " + width + ' ' + height) + Attribute("font-family", "sans-serif") +
           " stroke-linejoin=\"bevel\">\n" + body_ + (isClipOpen_ ? "</g>\n" : "") + "</svg>\n";
  }

private:
  QByteArray Stroke() const {
    const QPen pen = painter()->pen();
    if (pen.style() == Qt::NoPen) return {};
    const double width = pen.widthF() > 0.0 ? pen.widthF() : 1.0;
    QByteArray text = ColourOf("stroke", pen.color()) + Attribute("stroke-width", Number(width));
    if (pen.style() != Qt::SolidLine) {
      QByteArray dashes;
      for (const double dash : pen.dashPattern()) dashes += (dashes.isEmpty() ? "" : " ") + Number(dash * width);
      text += Attribute("stroke-dasharray", dashes);
    }
    return text;
  }

  QByteArray Fill(Qt::FillRule rule) const {
    const QBrush brush = painter()->brush();
    if (brush.style() == Qt::NoBrush) return Attribute("fill", "none");
    const bool isFlat = brush.style() == Qt::SolidPattern;
    return ColourOf("fill", brush.color(), isFlat ? 1.0 : kPatternShare) +
           (rule == Qt::OddEvenFill ? Attribute("fill-rule", "evenodd") : QByteArray());
  }

  void Write(const QByteArray& element) {
    if (isClipChanged_) ChangeClip();
    body_ += element + '\n';
  }

  void ChangeClip() {
    isClipChanged_ = false;
    const QPainterPath clip =
        painter()->hasClipping() ? painter()->transform().map(painter()->clipPath()) : QPainterPath();
    const QByteArray data = PathData(clip);
    if (data == clip_) return;
    clip_ = data;
    if (isClipOpen_) body_ += "</g>\n";
    isClipOpen_ = !data.isEmpty();
    if (!isClipOpen_) return;
    const QByteArray id = idPrefix_ + QByteArray::number(++clips_);
    body_ += "<clipPath" + Attribute("id", id) + "><path" + Attribute("d", data) + "/></clipPath>\n<g" +
             Attribute("clip-path", "url(#" + id + ")") + ">\n";
  }

  QByteArray idPrefix_;
  QByteArray body_;
  QByteArray clip_;
  int clips_ = 0;
  bool isClipOpen_ = false;
  bool isClipChanged_ = false;
};

CSvgDevice::CSvgDevice(const QSize& size, const QByteArray& idPrefix)
    : size_(size), engine_(std::make_unique<SvgEngine>(idPrefix)) {}

CSvgDevice::~CSvgDevice() = default;

QPaintEngine* CSvgDevice::paintEngine() const {
  return engine_.get();
}

QByteArray CSvgDevice::Element() const {
  return engine_->Element(size_);
}

int CSvgDevice::metric(PaintDeviceMetric metric) const {
  switch (metric) {
    case PdmWidth:
      return size_.width();
    case PdmHeight:
      return size_.height();
    case PdmWidthMM:
      return static_cast<int>(std::lround(size_.width() * kMillimetresPerInch / kDotsPerInch));
    case PdmHeightMM:
      return static_cast<int>(std::lround(size_.height() * kMillimetresPerInch / kDotsPerInch));
    case PdmDpiX:
    case PdmDpiY:
    case PdmPhysicalDpiX:
    case PdmPhysicalDpiY:
      return kDotsPerInch;
    case PdmNumColors:
      return 1 << 24;
    case PdmDepth:
      return 24;
    case PdmDevicePixelRatio:
      return 1;
    case PdmDevicePixelRatioScaled:
      return static_cast<int>(devicePixelRatioFScale());
  }
  return 0;
}

}  // namespace texturon
