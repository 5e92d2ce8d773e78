#import "platform/macos/DrawingView.h"

#import "platform/macos/MacValues.h"

namespace harbor {
namespace {

NSPoint scaled(Point point, NSRect frame) {
  return NSMakePoint(frame.origin.x + point.x * frame.size.width,
                     frame.origin.y + point.y * frame.size.height);
}

NSBezierPath* bezierPath(const Path& path, NSRect frame) {
  NSBezierPath* const result = [NSBezierPath bezierPath];
  result.windingRule = NSWindingRuleNonZero;
  for (const PathElement& element : path) {
    switch (element.kind) {
      case PathElement::Kind::moveTo:
        [result moveToPoint:scaled(element.to, frame)];
        break;
      case PathElement::Kind::lineTo:
        [result lineToPoint:scaled(element.to, frame)];
        break;
      case PathElement::Kind::curveTo:
        [result curveToPoint:scaled(element.to, frame)
               controlPoint1:scaled(element.control1, frame)
               controlPoint2:scaled(element.control2, frame)];
        break;
      case PathElement::Kind::close:
        [result closePath];
        break;
    }
  }
  return result;
}

void draw(const Shape& shape, NSRect frame) {
  [NSGraphicsContext saveGraphicsState];
  if (shape.shadow) {
    NSShadow* const shadow = [[NSShadow alloc] init];
    shadow.shadowColor = nsColor(shape.shadow->colour);
    // A shadow's offset keeps growing upwards in a flipped view.
    shadow.shadowOffset = NSMakeSize(shape.shadow->offset.x, -shape.shadow->offset.y);
    shadow.shadowBlurRadius = shape.shadow->blurRadius;
    [shadow set];
  }
  [nsColor(shape.fill) setFill];
  [bezierPath(shape.path, frame) fill];
  [NSGraphicsContext restoreGraphicsState];
}

NSTextAlignment alignmentOf(const Label& label) {
  switch (label.alignment) {
    case Label::Alignment::left:
      return NSTextAlignmentLeft;
    case Label::Alignment::centre:
      return NSTextAlignmentCenter;
    case Label::Alignment::right:
      return NSTextAlignmentRight;
  }
}

void draw(const Label& label, NSRect frame) {
  NSMutableParagraphStyle* const style = [[NSMutableParagraphStyle alloc] init];
  style.alignment = alignmentOf(label);
  const CGFloat size =
      label.fontSize == Label::FontSize::regular ? NSFont.systemFontSize : NSFont.smallSystemFontSize;
  NSDictionary<NSAttributedStringKey, id>* const attributes = @{
    NSFontAttributeName : [NSFont boldSystemFontOfSize:size],
    NSForegroundColorAttributeName : nsColor(label.colour),
    NSParagraphStyleAttributeName : style
  };
  const NSPoint corner = scaled({label.bounds.x, label.bounds.y}, frame);
  const NSSize room =
      NSMakeSize(label.bounds.width * frame.size.width, label.bounds.height * frame.size.height);
  NSString* const text = shownString(label.text);
  const NSSize needed = [text boundingRectWithSize:room
                                           options:NSStringDrawingUsesLineFragmentOrigin
                                        attributes:attributes]
                            .size;
  [text drawInRect:NSMakeRect(corner.x, corner.y + (room.height - needed.height) / 2, room.width,
                              needed.height)
      withAttributes:attributes];
}

}  // namespace

void draw(const Drawing& drawing, NSRect frame) {
  for (const Shape& shape : drawing.shapes)
    draw(shape, frame);
  for (const Label& label : drawing.labels)
    draw(label, frame);
}

}  // namespace harbor

@implementation HarborDrawingView {
  harbor::Drawing _drawing;
}

- (BOOL)isFlipped {
  return YES;
}

- (void)setDrawing:(const harbor::Drawing&)drawing {
  if (drawing == _drawing) return;
  _drawing = drawing;
  self.needsDisplay = YES;
}

- (void)drawRect:(NSRect)dirtyRect {
  harbor::draw(_drawing, self.bounds);
}

@end
