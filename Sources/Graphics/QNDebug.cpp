#include "Graphics/QNDebug.h"

#include "Platform/Desktop/NSBezierPath.h"
#include "Platform/Desktop/NSGraphicsContext.h"

namespace kelvane {

void QNDebug::draw(const CGRect& rect, const NSColor& color, bool fillBackground) {
  NSGraphicsContext* context = NSGraphicsContext::currentContext();
  if (!context) return;
  const GraphicsStateScope state(context);
  NSBezierPath path;
  path.setLineWidth(2.0);
  path.appendBezierPathWithRect(rect);
  if (fillBackground) {
    context->setColor(NSColor::grayColor());
    path.fill();
  }
  path.moveToPoint({CGRectGetMinX(rect), CGRectGetMinY(rect)});
  path.lineToPoint({CGRectGetMaxX(rect), CGRectGetMaxY(rect)});
  path.moveToPoint({CGRectGetMinX(rect), CGRectGetMaxY(rect)});
  path.lineToPoint({CGRectGetMaxX(rect), CGRectGetMinY(rect)});
  context->setColor(color);
  path.stroke();
}

}  // namespace kelvane
