// Draws the core's drawings: the one place that knows how paths, shadows and labels become pixels.
#pragma once

#include <QImage>

#include "base/Drawing.h"

class QPainter;
class QRectF;

namespace harbor {

// Draws into the frame; `pixelsPerPoint` scales what a drawing gives in points (shadows and text).
void drawInto(QPainter& painter, const Drawing& drawing, const QRectF& frame, double pixelsPerPoint);

// The drawing alone on a clear image of that many pixels, with premultiplied alpha.
QImage renderDrawing(const Drawing& drawing, int width, int height, double pixelsPerPoint);

}  // namespace harbor
