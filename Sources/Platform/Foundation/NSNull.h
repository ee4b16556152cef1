#pragma once

#include "Platform/Foundation/NSObject.h"

namespace kelvane {

// The object that stands for nil where only objects can stand, such as in an array. There is one. Immutable.
class KELVANE_EXPORT NSNull : public NSObject {
 public:
  static const Ref<NSNull>& null();
  NSNull(const NSNull&) = delete;
  NSNull& operator=(const NSNull&) = delete;

  // Null is equal to null only, which is identity.
  Text description() const override { return u"<null>"; }
  Ref<NSObject> copy() const override { return null(); }

 private:
  NSNull() = default;
};

}  // namespace kelvane
