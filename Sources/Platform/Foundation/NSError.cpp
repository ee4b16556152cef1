#include "Platform/Foundation/NSError.h"

#include <functional>

#include "Platform/Foundation/Format.h"
#include "Platform/Foundation/NSString.h"
#include "Platform/Foundation/TextEncoding.h"

namespace kelvane {

NSError::NSError(TextView domain, std::int64_t code, Ref<NSDictionary> userInfo)
    : myDomain(domain), myCode(code), myUserInfo(std::move(userInfo)) {}

Ref<NSError> NSError::errorWithSystemError(const std::error_code& error, TextView path) {
  NSDictionary::Entries details;
  if (!path.empty()) details.emplace(NSFilePathErrorKey, std::make_shared<NSString>(path));
  return std::make_shared<NSError>(NSPOSIXErrorDomain, error.value(), std::make_shared<NSDictionary>(details));
}

Ref<NSError> NSError::errorWithDescription(TextView domain, std::int64_t code, TextView description) {
  return errorWithDescription(domain, code, description, nullptr);
}

Ref<NSError> NSError::errorWithDescription(TextView domain, std::int64_t code, TextView description,
                                           const Ref<NSError>& underlyingError) {
  NSDictionary::Entries details;
  details.emplace(NSLocalizedDescriptionKey, std::make_shared<NSString>(description));
  if (underlyingError) details.emplace(NSUnderlyingErrorKey, underlyingError);
  return std::make_shared<NSError>(domain, code, std::make_shared<NSDictionary>(std::move(details)));
}

Text NSError::localizedDescription() const {
  if (myUserInfo) {
    const Ref<NSObject> sentence = myUserInfo->objectForKey(NSLocalizedDescriptionKey);
    if (const NSString* text = as<NSString>(sentence.get())) return text->text();
  }
  if (myDomain == NSPOSIXErrorDomain)
    return textFromUTF8(std::error_code(static_cast<int>(myCode), std::generic_category()).message());
  return format(u"The operation couldn’t be completed. (%@ error %ld.)", myDomain, myCode);
}

Ref<NSError> NSError::underlyingError() const {
  return myUserInfo ? as<NSError>(myUserInfo->objectForKey(NSUnderlyingErrorKey)) : nullptr;
}

bool NSError::isEqual(const NSObject& other) const {
  const NSError* error = as<NSError>(&other);
  return error && error->myDomain == myDomain && error->myCode == myCode && areEqual(error->myUserInfo, myUserInfo);
}

std::size_t NSError::hash() const { return std::hash<Text>()(myDomain) * 31 + static_cast<std::size_t>(myCode); }

Text NSError::description() const {
  return format(u"Error Domain=%@ Code=%ld \"%@\"", myDomain, myCode, localizedDescription());
}

Ref<NSObject> NSError::copy() const {
  return selfOr([this] { return std::make_shared<NSError>(*this); });
}

}  // namespace kelvane
