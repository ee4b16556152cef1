#pragma once

#include <concepts>
#include <cstdint>
#include <optional>

#include "Platform/Foundation/Export.h"
#include "Platform/Foundation/NSDate.h"
#include "Platform/Foundation/NSDictionary.h"
#include "Platform/Foundation/NSNumber.h"
#include "Platform/Foundation/NSUserDefaultsController.h"
#include "Platform/Foundation/Text.h"

// The user's preferences by type, through the application's shared controller, so that whoever observes them hears each
// change at once:
//
// ```cpp
// auto& preferences = NSUserDefaultsControllerExtensions::standardUserDefaults();
// setFloat(preferences, 1.5F, u"zoom");
// const float zoom = floatForKey(preferences, u"zoom", 1.0F);
// ```
//
// The receiver is any controller, but all of these read and write the shared one. A reader takes a number, or text that
// holds one; a value of another kind reads as if it were missing. Nothing here fails, except that
// NSUserDefaults::setObject tells which values raise. Main thread.
namespace kelvane {

namespace NSUserDefaultsControllerExtensions {

// standardUserDefaults  The shared controller.
KELVANE_EXPORT NSUserDefaultsController& standardUserDefaults();

}  // namespace NSUserDefaultsControllerExtensions

// objectForKey:  The value as it is, or nil.
KELVANE_EXPORT Ref<NSObject> objectForKey(const NSUserDefaultsController& receiver, TextView key);
// stringForKey:  The value when it is text.
KELVANE_EXPORT std::optional<Text> stringForKey(const NSUserDefaultsController& receiver, TextView key);
// dateForKey:  The value when it is a date, or nil.
KELVANE_EXPORT Ref<NSDate> dateForKey(const NSUserDefaultsController& receiver, TextView key);
// boolForKey:  The truth value of a number; of text true only for exactly "YES"; otherwise false.
KELVANE_EXPORT bool boolForKey(const NSUserDefaultsController& receiver, TextView key);
// boolNumberForKey:defaultValue:  The stored number itself (7 stays 7); of text the boxed truth value that the general
// rule gives ("yes", "1" and "true" are true; boolValue in Platform/Foundation/TextNumbers.h); otherwise the boxed
// default.
KELVANE_EXPORT Ref<NSNumber> boolNumberForKey(const NSUserDefaultsController& receiver, TextView key,
                                              const NSNumber& defaultValue);
inline Ref<NSNumber> boolNumberForKey(const NSUserDefaultsController& receiver, TextView key,
                                      std::same_as<bool> auto defaultValue) {
  return boolNumberForKey(receiver, key, NSNumber(defaultValue));
}
// floatForKey:defaultValue:  The number, or the one that the text begins with, in single precision; otherwise the
// default.
KELVANE_EXPORT float floatForKey(const NSUserDefaultsController& receiver, TextView key, float defaultValue);
// integerForKey:  The number, or the one that the text begins with, as a signed 32-bit integer; otherwise 0. A number
// beyond that range keeps its low 32 bits, text is held at the largest and smallest value.
KELVANE_EXPORT std::int32_t integerForKey(const NSUserDefaultsController& receiver, TextView key);

// setObject:forKey:  Stores the object as it is; nil removes the value.
KELVANE_EXPORT void setObject(NSUserDefaultsController& receiver, const Ref<NSObject>& object, TextView key);
// setString:forKey:  Stores the text; nil is stored as the empty text, never as removal.
KELVANE_EXPORT void setString(NSUserDefaultsController& receiver, std::optional<TextView> string, TextView key);
// setDate:forKey:
KELVANE_EXPORT void setDate(NSUserDefaultsController& receiver, const Ref<NSDate>& date, TextView key);
// setBool:forKey:
void setBool(NSUserDefaultsController& receiver, std::same_as<bool> auto truth, TextView key) {
  setObject(receiver, std::make_shared<NSNumber>(truth), key);
}
// setFloat:forKey:
KELVANE_EXPORT void setFloat(NSUserDefaultsController& receiver, float number, TextView key);
// setInteger:forKey:
KELVANE_EXPORT void setInteger(NSUserDefaultsController& receiver, std::int64_t number, TextView key);
// setValuesFromDictionary:  Stores each entry of `values` under its key, one after another; keys that it lacks keep
// their values. Nothing for nil.
KELVANE_EXPORT void setValuesFromDictionary(NSUserDefaultsController& receiver, const Ref<NSDictionary>& values);

// synchronize  Saves the changes; false when that failed (the reason is given by NSUserDefaultsController::save).
KELVANE_EXPORT bool synchronize(NSUserDefaultsController& receiver);

}  // namespace kelvane
