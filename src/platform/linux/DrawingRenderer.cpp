#include "platform/linux/DrawingRenderer.h"

#include <QFont>
#include <QFontDatabase>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <cmath>
#include <vector>

namespace harbor {
namespace {

// The regular and the small system font size, in points of the drawing.
constexpr double kRegularFontSize = 13.0;
constexpr double kSmallFontSize = 11.0;

QColor toQColor(const Colour& colour) {
  return QColor::fromRgbF(static_cast<float>(colour.red), static_cast<float>(colour.green),
                          static_cast<float>(colour.blue), static_cast<float>(colour.alpha));
}

QPainterPath toQPath(const Path& path, const QRectF& frame) {
  const auto at = [&frame](const Point& point) {
    return QPointF(frame.x() + point.x * frame.width(), frame.y() + point.y * frame.height());
  };
  QPainterPath result;
  result.setFillRule(Qt::WindingFill);
  for (const auto& element : path) {
    switch (element.kind) {
      case PathElement::Kind::moveTo:
        result.moveTo(at(element.to));
        break;
      case PathElement::Kind::lineTo:
        result.lineTo(at(element.to));
        break;
      case PathElement::Kind::curveTo:
        result.cubicTo(at(element.control1), at(element.control2), at(element.to));
        break;
      case PathElement::Kind::close:
        result.closeSubpath();
        break;
    }
  }
  return result;
}

// One direction of a box blur of that radius over the alpha values of a row or column.
void blurLine(std::vector<int>& line, int radius) {
  std::vector<int> blurred(line.size());
  const int count = static_cast<int>(line.size());
  for (int i = 0; i < count; ++i) {
    int sum = 0;
    for (int j = std::max(0, i - radius); j <= std::min(count - 1, i + radius); ++j)
      sum += line[static_cast<std::size_t>(j)];
    blurred[static_cast<std::size_t>(i)] = sum / (2 * radius + 1);
  }
  line = blurred;
}

void blur(QImage& mask, int radius) {
  if (radius < 1) return;
  std::vector<int> line(static_cast<std::size_t>(mask.width()));
  for (int y = 0; y < mask.height(); ++y) {
    auto* row = mask.scanLine(y);
    std::copy(row, row + mask.width(), line.begin());
    blurLine(line, radius);
    std::transform(line.begin(), line.end(), row, [](int value) { return static_cast<uchar>(value); });
  }
  line.resize(static_cast<std::size_t>(mask.height()));
  for (int x = 0; x < mask.width(); ++x) {
    for (int y = 0; y < mask.height(); ++y)
      line[static_cast<std::size_t>(y)] = mask.constScanLine(y)[x];
    blurLine(line, radius);
    for (int y = 0; y < mask.height(); ++y)
      mask.scanLine(y)[x] = static_cast<uchar>(line[static_cast<std::size_t>(y)]);
  }
}

void drawShadow(QPainter& painter, const QPainterPath& path, const Shadow& shadow, double scale) {
  const QRectF area = path.boundingRect().translated(shadow.offset.x * scale, shadow.offset.y * scale);
  const int radius = static_cast<int>(std::lround(shadow.blurRadius * scale));
  const QRect pixels = area.toAlignedRect().adjusted(-radius, -radius, radius, radius);
  if (pixels.isEmpty()) return;
  QImage mask(pixels.size(), QImage::Format_Alpha8);
  mask.fill(0);
  {
    QPainter maskPainter(&mask);
    maskPainter.setRenderHint(QPainter::Antialiasing);
    maskPainter.translate(shadow.offset.x * scale - pixels.x(), shadow.offset.y * scale - pixels.y());
    maskPainter.fillPath(path, Qt::black);
  }
  blur(mask, radius);
  QImage coloured(pixels.size(), QImage::Format_ARGB32_Premultiplied);
  coloured.fill(toQColor(shadow.colour));
  {
    QPainter colourPainter(&coloured);
    colourPainter.setCompositionMode(QPainter::CompositionMode_DestinationIn);
    colourPainter.drawImage(0, 0, mask);
  }
  painter.drawImage(pixels.topLeft(), coloured);
}

void drawLabel(QPainter& painter, const Label& label, const QRectF& frame, double scale) {
  QFont font = QFontDatabase::systemFont(QFontDatabase::GeneralFont);
  font.setBold(true);
  const double size = label.fontSize == Label::FontSize::small ? kSmallFontSize : kRegularFontSize;
  font.setPixelSize(std::max(1, static_cast<int>(std::lround(size * scale))));
  painter.setFont(font);
  painter.setPen(toQColor(label.colour));
  const QRectF bounds(frame.x() + label.bounds.x * frame.width(), frame.y() + label.bounds.y * frame.height(),
                      label.bounds.width * frame.width(), label.bounds.height * frame.height());
  Qt::Alignment alignment = Qt::AlignHCenter;
  if (label.alignment == Label::Alignment::left) alignment = Qt::AlignLeft;
  if (label.alignment == Label::Alignment::right) alignment = Qt::AlignRight;
  painter.drawText(bounds,
                   static_cast<int>(alignment | Qt::AlignVCenter) | Qt::TextSingleLine | Qt::TextDontClip,
                   QString::fromStdString(label.text));
}

}  // namespace

void drawInto(QPainter& painter, const Drawing& drawing, const QRectF& frame, double pixelsPerPoint) {
  painter.save();
  painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing);
  for (const auto& shape : drawing.shapes) {
    const QPainterPath path = toQPath(shape.path, frame);
    if (shape.shadow) drawShadow(painter, path, *shape.shadow, pixelsPerPoint);
    painter.fillPath(path, toQColor(shape.fill));
  }
  for (const auto& label : drawing.labels)
    drawLabel(painter, label, frame, pixelsPerPoint);
  painter.restore();
}

QImage renderDrawing(const Drawing& drawing, int width, int height, double pixelsPerPoint) {
  QImage image(std::max(width, 1), std::max(height, 1), QImage::Format_ARGB32_Premultiplied);
  image.fill(Qt::transparent);
  QPainter painter(&image);
  drawInto(painter, drawing, QRectF(0, 0, width, height), pixelsPerPoint);
  return image;
}

}  // namespace harbor
