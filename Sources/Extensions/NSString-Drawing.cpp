#include <memory>
#include <utility>

#include "Extensions/NSString-QNExtensions.h"
#include "Platform/Desktop/NSStringDrawing.h"
#include "Platform/Foundation/Boxing.h"
#include "Platform/Foundation/NSAttributedString.h"
#include "Platform/Foundation/NSColor.h"

namespace kelvane {
namespace {

constexpr TextView ellipsis = u"...";

// The attributes of the edge that chiselled text shows above itself.
Ref<NSDictionary> edgeAttributes(const Ref<NSDictionary>& attributes) {
  NSDictionary::Entries entries;
  if (attributes) entries.insert(attributes->begin(), attributes->end());
  const double alpha = 0.9F;
  entries.insert_or_assign(Text(NSForegroundColorAttributeName), box(NSColor::colorWithCalibratedWhite(0.0, alpha)));
  return std::make_shared<NSDictionary>(std::move(entries));
}

CGRect above(CGRect rect) {
  rect.origin.y += 1.0;
  return rect;
}

}  // namespace

Text fitTextInRect(TextView text, const CGRect& rect, const Ref<NSDictionary>& withAttributes) {
  if (rect.size.width <= 0 || rect.size.height <= 0) return {};
  const auto fits = [&](TextView candidate) {
    return rect.size.width >= sizeWithAttributes(candidate, withAttributes).width;
  };
  if (fits(text)) return Text(text);
  Text candidate(text);
  for (std::size_t length = text.size(); length-- > 0;) {
    candidate.resize(length);
    candidate += ellipsis;
    if (fits(candidate)) return candidate;
  }
  return {};
}

void drawChiseledInRect(TextView text, const CGRect& rect, const Ref<NSDictionary>& withAttributes) {
  drawInRect(text, above(rect), edgeAttributes(withAttributes));
  drawInRect(text, rect, withAttributes);
}

void drawChiseledWithRect(TextView text, const CGRect& rect, std::int64_t options,
                          const Ref<NSDictionary>& attributes) {
  drawWithRect(text, above(rect), options, edgeAttributes(attributes));
  drawWithRect(text, rect, options, attributes);
}

}  // namespace kelvane
