#include "Platform/Foundation/NSData.h"

#include <algorithm>
#include <functional>
#include <string_view>

#include "Platform/Foundation/NSNumber.h"

namespace kelvane {

bool NSData::isEqual(const NSObject& other) const {
  const NSData* data = as<NSData>(&other);
  return data && data->myBytes == myBytes;
}

std::size_t NSData::hash() const {
  return std::hash<std::string_view>()({reinterpret_cast<const char*>(myBytes.data()), myBytes.size()});
}

Text NSData::description() const {
  constexpr std::size_t most = 1024;
  constexpr TextView digits = u"0123456789abcdef";
  Text text = u"<";
  for (std::size_t i = 0; i < std::min(myBytes.size(), most); ++i) {
    if (i > 0 && i % 4 == 0) text += u' ';
    text += digits[myBytes[i] >> 4U];
    text += digits[myBytes[i] & 0xFU];
  }
  if (myBytes.size() > most) text += u"...";
  text += u'>';
  return text;
}

Ref<NSObject> NSData::copy() const {
  return selfOr([this] { return std::make_shared<NSData>(myBytes); });
}

Ref<NSObject> NSData::mutableCopy() const { return std::make_shared<NSMutableData>(myBytes); }

Ref<NSObject> NSData::valueForKey(TextView key) const {
  return key == u"length" ? std::make_shared<NSNumber>(length()) : NSObject::valueForKey(key);
}

Ref<NSObject> NSMutableData::copy() const { return std::make_shared<NSData>(myBytes); }

}  // namespace kelvane
