#include "Platform/Foundation/NSString.h"

#include <functional>

#include "Platform/Foundation/CollectionDescription.h"
#include "Platform/Foundation/NSNumber.h"
#include "Platform/Foundation/TextNumbers.h"

namespace kelvane {

std::int32_t NSString::intValue() const { return kelvane::intValue(myText); }
std::int64_t NSString::integerValue() const { return kelvane::integerValue(myText); }
float NSString::floatValue() const { return kelvane::floatValue(myText); }
double NSString::doubleValue() const { return kelvane::doubleValue(myText); }
bool NSString::boolValue() const { return kelvane::boolValue(myText); }

bool NSString::isEqual(const NSObject& other) const {
  const NSString* string = as<NSString>(&other);
  return string && string->myText == myText;
}

std::size_t NSString::hash() const { return std::hash<TextView>()(myText); }

void NSString::appendDescription(Text& out, const DescriptionNesting&) const { appendQuotedUnlessWord(out, myText); }

std::weak_ordering NSString::compare(const NSObject& other) const {
  const NSString* string = as<NSString>(&other);
  return string ? myText <=> string->myText : NSObject::compare(other);
}

Ref<NSObject> NSString::copy() const {
  return selfOr([this] { return std::make_shared<NSString>(myText); });
}

Ref<NSObject> NSString::mutableCopy() const { return std::make_shared<NSMutableString>(myText); }

Ref<NSObject> NSString::valueForKey(TextView key) const {
  return key == u"length" ? std::make_shared<NSNumber>(length()) : NSObject::valueForKey(key);
}

Ref<NSObject> NSMutableString::copy() const { return std::make_shared<NSString>(myText); }

}  // namespace kelvane
