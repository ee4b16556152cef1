#include "Extensions/NSUserDefaultsController-OSCompatibility.h"

#include "Platform/Foundation/NSString.h"

namespace kelvane {

using NSUserDefaultsControllerExtensions::standardUserDefaults;

NSUserDefaultsController& NSUserDefaultsControllerExtensions::standardUserDefaults() {
  return NSUserDefaultsController::sharedUserDefaultsController();
}

Ref<NSObject> objectForKey(const NSUserDefaultsController&, TextView key) {
  return standardUserDefaults().values()->valueForKey(key);
}

std::optional<Text> stringForKey(const NSUserDefaultsController& receiver, TextView key) {
  const auto string = as<NSString>(objectForKey(receiver, key));
  if (!string) return std::nullopt;
  return string->text();
}

Ref<NSDate> dateForKey(const NSUserDefaultsController& receiver, TextView key) {
  return as<NSDate>(objectForKey(receiver, key));
}

bool boolForKey(const NSUserDefaultsController& receiver, TextView key) {
  const Ref<NSObject> value = objectForKey(receiver, key);
  if (const NSNumber* number = as<NSNumber>(value.get())) return number->boolValue();
  const NSString* string = as<NSString>(value.get());
  return string && string->text() == u"YES";
}

Ref<NSNumber> boolNumberForKey(const NSUserDefaultsController& receiver, TextView key, const NSNumber& defaultValue) {
  const Ref<NSObject> value = objectForKey(receiver, key);
  if (auto number = as<NSNumber>(value)) return number;
  if (const NSString* string = as<NSString>(value.get())) return std::make_shared<NSNumber>(string->boolValue());
  return std::make_shared<NSNumber>(defaultValue.boolValue());
}

float floatForKey(const NSUserDefaultsController& receiver, TextView key, float defaultValue) {
  const Ref<NSObject> value = objectForKey(receiver, key);
  if (const NSNumber* number = as<NSNumber>(value.get())) return number->floatValue();
  if (const NSString* string = as<NSString>(value.get())) return string->floatValue();
  return defaultValue;
}

std::int32_t integerForKey(const NSUserDefaultsController& receiver, TextView key) {
  const Ref<NSObject> value = objectForKey(receiver, key);
  if (const NSNumber* number = as<NSNumber>(value.get())) return number->intValue();
  if (const NSString* string = as<NSString>(value.get())) return string->intValue();
  return 0;
}

void setObject(NSUserDefaultsController&, const Ref<NSObject>& object, TextView key) {
  standardUserDefaults().values()->setValueForKey(object, key);
}

void setString(NSUserDefaultsController& receiver, std::optional<TextView> string, TextView key) {
  setObject(receiver, std::make_shared<NSString>(string.value_or(TextView())), key);
}

void setDate(NSUserDefaultsController& receiver, const Ref<NSDate>& date, TextView key) {
  setObject(receiver, date, key);
}

void setFloat(NSUserDefaultsController& receiver, float number, TextView key) {
  setObject(receiver, std::make_shared<NSNumber>(number), key);
}

void setInteger(NSUserDefaultsController& receiver, std::int64_t number, TextView key) {
  setObject(receiver, std::make_shared<NSNumber>(number), key);
}

void setValuesFromDictionary(NSUserDefaultsController& receiver, const Ref<NSDictionary>& values) {
  if (!values) return;
  for (const Text& key : values->allKeys()) setObject(receiver, values->valueForKey(key), key);
}

bool synchronize(NSUserDefaultsController& receiver) { return standardUserDefaults().save(&receiver); }

}  // namespace kelvane
