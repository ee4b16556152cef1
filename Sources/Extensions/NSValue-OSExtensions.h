#pragma once

#include "Platform/Foundation/Export.h"
#include "Platform/Foundation/Geometry.h"
#include "Platform/Foundation/NSValue.h"

// Geometry in value objects, and out of them. Any thread.
namespace kelvane {

namespace NSValueExtensions {

// valueWithCGRect:
KELVANE_EXPORT Ref<NSValue> valueWithCGRect(const CGRect& rect);
// valueWithCGPoint:
KELVANE_EXPORT Ref<NSValue> valueWithCGPoint(const CGPoint& point);
// valueWithCGSize:
KELVANE_EXPORT Ref<NSValue> valueWithCGSize(const CGSize& size);

}  // namespace NSValueExtensions

// CGRectValue  The boxed rectangle; the zero rectangle for nil and when something else is boxed.
KELVANE_EXPORT CGRect CGRectValue(const NSValue* value);
inline CGRect CGRectValue(const Ref<NSValue>& value) { return CGRectValue(value.get()); }
// CGPointValue  The boxed point, likewise.
KELVANE_EXPORT CGPoint CGPointValue(const NSValue* value);
inline CGPoint CGPointValue(const Ref<NSValue>& value) { return CGPointValue(value.get()); }
// CGSizeValue  The boxed size, likewise.
KELVANE_EXPORT CGSize CGSizeValue(const NSValue* value);
inline CGSize CGSizeValue(const Ref<NSValue>& value) { return CGSizeValue(value.get()); }

}  // namespace kelvane
