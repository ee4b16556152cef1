#include "Platform/Desktop/NSStringDrawing.h"

#include "Platform/Desktop/Desktop.h"
#include "Platform/Desktop/NSGraphicsContext.h"

namespace kelvane {
namespace {

const NSDictionary& orNone(const Ref<NSDictionary>& attributes) {
  static const auto& none = *new NSDictionary();
  return attributes ? *attributes : none;
}

}  // namespace

CGSize sizeWithAttributes(TextView text, const Ref<NSDictionary>& attributes) {
  return Desktop::current().sizeOfText(text, orNone(attributes));
}

void drawAtPoint(TextView text, const CGPoint& point, const Ref<NSDictionary>& withAttributes) {
  if (NSGraphicsContext* context = NSGraphicsContext::currentContext())
    context->drawText(text, point, orNone(withAttributes));
}

void drawInRect(TextView text, const CGRect& rect, const Ref<NSDictionary>& withAttributes) {
  NSGraphicsContext* context = NSGraphicsContext::currentContext();
  if (!context) return;
  const GraphicsStateScope state(context);
  context->clipToRect(rect);
  context->drawText(text, rect, NSStringDrawingUsesLineFragmentOrigin, orNone(withAttributes));
}

void drawWithRect(TextView text, const CGRect& rect, std::int64_t options, const Ref<NSDictionary>& attributes) {
  if (NSGraphicsContext* context = NSGraphicsContext::currentContext())
    context->drawText(text, rect, options, orNone(attributes));
}

}  // namespace kelvane
