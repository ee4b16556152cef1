#pragma once

#include <cstdint>
#include <utility>

#include "Platform/Foundation/NSObject.h"

namespace kelvane {

// Text as an object. Two are equal when their code units are; `description` is the text itself. Immutable (its mutable
// form is not).
class KELVANE_EXPORT NSString : public NSObject {
 public:
  NSString() = default;
  explicit NSString(Text text) : myText(std::move(text)) {}
  explicit NSString(TextView text) : myText(text) {}
  explicit NSString(const char16_t* text) : myText(text) {}

  const Text& text() const { return myText; }
  std::size_t length() const { return myText.size(); }

  // The number that the text begins with; the rules stand in TextNumbers.h.
  std::int32_t intValue() const;
  std::int64_t integerValue() const;
  float floatValue() const;
  double doubleValue() const;
  bool boolValue() const;

  bool isEqual(const NSObject& other) const override;
  std::size_t hash() const override;
  // Code unit by code unit.
  std::weak_ordering compare(const NSObject& other) const override;
  Text description() const override { return myText; }
  // The text in double quotes, with a backslash before double quotes and backslashes; as it stands when it is nothing
  // but ASCII letters, digits and "_".
  void appendDescription(Text& out, const DescriptionNesting& within) const override;
  // A mutable string gives an immutable one of the same text.
  Ref<NSObject> copy() const override;
  Ref<NSObject> mutableCopy() const override;
  // "length" besides the keys of every object.
  Ref<NSObject> valueForKey(TextView key) const override;

 protected:
  Text myText;
};

class KELVANE_EXPORT NSMutableString : public NSString {
 public:
  using NSString::NSString;

  // The text itself, to be changed in place. One thread at a time.
  Text& mutableText() { return myText; }
  Ref<NSObject> copy() const override;
};

}  // namespace kelvane
