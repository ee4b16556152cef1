#pragma once

#include <concepts>
#include <optional>
#include <span>

#include "Platform/Foundation/Boxing.h"
#include "Platform/Foundation/Export.h"
#include "Platform/Foundation/NSDictionary.h"
#include "Platform/Foundation/Text.h"

// Settings and documents by type, in dictionaries with text keys:
//
// ```cpp
// NSMutableDictionary settings;
// encodeBool(settings, true, u"visible");
// const bool isVisible = decodeBoolForKey(settings, u"visible");
// ```
//
// The three readers at the top ask `valueForKey`, so that keys which begin with "@" mean properties of the dictionary
// itself; all else asks `objectForKey`. One thread at a time, like the dictionaries.
namespace kelvane {

namespace NSDictionaryExtensions {

// isValidPListObject:  Whether the object is of a kind that property lists hold: text, an array, a dictionary, a
// number, a date or bytes. What an array or a dictionary holds is not looked at. False for nil.
KELVANE_EXPORT bool isValidPListObject(const Ref<NSObject>& object);

}  // namespace NSDictionaryExtensions

// containsValueForKey:
KELVANE_EXPORT bool containsValueForKey(const NSDictionary& receiver, TextView key);
// decodeBoolForKey:  The truth value of a number, or of text ("YES", "true", "1"; boolValue in TextNumbers.h); false
// when there is no value. std::invalid_argument for a value of any other kind.
KELVANE_EXPORT bool decodeBoolForKey(const NSDictionary& receiver, TextView key);
// decodeFloatForKey:  The number, or the one that text begins with, in single precision; 0 when there is no value.
// std::invalid_argument for a value of any other kind.
KELVANE_EXPORT float decodeFloatForKey(const NSDictionary& receiver, TextView key);

// encodeBool:forKey:  Stores a boxed truth value; nothing when the key is nil. An immutable receiver raises
// std::invalid_argument.
void encodeBool(NSDictionary& receiver, std::same_as<bool> auto truth, std::optional<TextView> key) {
  if (key) receiver.setValueForKey(box(truth), *key);
}
// encodeFloat:forKey:  The same for a number in single precision.
KELVANE_EXPORT void encodeFloat(NSDictionary& receiver, float number, std::optional<TextView> key);

// pointerForKey:  The address that is boxed under the key; null when there is none.
KELVANE_EXPORT void* pointerForKey(const NSDictionary& receiver, TextView key);
// setPointer:forKey:  Boxes the address, and does not own what is there; nothing when it is null or the key is nil.
KELVANE_EXPORT void setPointer(NSMutableDictionary& receiver, void* pointer, std::optional<TextView> key);
// setValidString:forKey:  Stores the text; nothing when it is nil or empty, or the key is nil: then an earlier value
// stays.
KELVANE_EXPORT void setValidString(NSMutableDictionary& receiver, std::optional<TextView> string,
                                   std::optional<TextView> key);

// dictionaryWithObjectsForKeys:  The entries under those of the keys that there are. No keys stand for nil, too.
KELVANE_EXPORT Ref<NSDictionary> dictionaryWithObjectsForKeys(const NSDictionary& receiver, std::span<const Text> keys);
// normalizedDictionaryWithStringObjectsForKeys:  An entry for each key: text as it is, numbers as their decimal text,
// the empty text where the key is missing. std::invalid_argument for a value of any other kind.
KELVANE_EXPORT Ref<NSDictionary> normalizedDictionaryWithStringObjectsForKeys(const NSDictionary& receiver,
                                                                              std::span<const Text> keys);
// dictionaryWithDeepCopiedValues  A copy of every value, one that can be changed where its kind has such. One level
// deep: the copies of arrays and dictionaries share their elements. std::invalid_argument for a value that cannot be
// copied.
KELVANE_EXPORT Ref<NSMutableDictionary> dictionaryWithDeepCopiedValues(const NSDictionary& receiver);
// applyValuesAsPropertiesToObject:  Sets each entry as the property of that name, in ascending order of the keys. Bytes
// are always taken for an archive (NSArchiver.h), and the object in it is set; where they are none, that is logged and
// the property stays. Nothing for a nil object; std::invalid_argument when the object has no such property.
KELVANE_EXPORT void applyValuesAsPropertiesToObject(const NSDictionary& receiver, NSObject* object);

}  // namespace kelvane
