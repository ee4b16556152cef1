#include "Extensions/NSDictionary-QNExtensions.h"

#include <utility>
#include <vector>

#include "Platform/Foundation/Format.h"
#include "Platform/Foundation/NSArchiver.h"
#include "Platform/Foundation/NSArray.h"
#include "Platform/Foundation/NSData.h"
#include "Platform/Foundation/NSDate.h"
#include "Platform/Foundation/NSNumber.h"
#include "Platform/Foundation/NSString.h"
#include "Platform/Foundation/NSValue.h"
#include "Platform/Foundation/Raise.h"
#include "Utilities/QNLogger.h"

namespace kelvane {
namespace {

// What `read` makes of a number or a text; `missing` for nil.
template <class Value, class Read>
Value readNumber(const NSObject* object, const char* selector, Value missing, Read read) {
  if (!object) return missing;
  if (const auto* number = as<NSNumber>(object)) return read(*number);
  if (const auto* string = as<NSString>(object)) return read(*string);
  raiseInvalidArgument(selector, "neither a number nor text, but of class", object->className());
}

Ref<NSObject> stringObject(const Ref<NSObject>& value) {
  if (!value) return std::make_shared<NSString>();
  if (as<NSString>(value)) return value;
  if (const auto number = as<NSNumber>(value)) return std::make_shared<NSString>(number->stringValue());
  raiseInvalidArgument("stringValue", "neither a number nor text, but of class", value->className());
}

}  // namespace

bool NSDictionaryExtensions::isValidPListObject(const Ref<NSObject>& object) {
  return as<NSString>(object) || as<NSArray>(object) || as<NSDictionary>(object) || as<NSNumber>(object) ||
         as<NSDate>(object) || as<NSData>(object);
}

bool containsValueForKey(const NSDictionary& receiver, TextView key) { return receiver.valueForKey(key) != nullptr; }

bool decodeBoolForKey(const NSDictionary& receiver, TextView key) {
  return readNumber(receiver.valueForKey(key).get(), "boolValue", false,
                    [](const auto& value) { return value.boolValue(); });
}

float decodeFloatForKey(const NSDictionary& receiver, TextView key) {
  return readNumber(receiver.valueForKey(key).get(), "floatValue", 0.0F,
                    [](const auto& value) { return value.floatValue(); });
}

void encodeFloat(NSDictionary& receiver, float number, std::optional<TextView> key) {
  if (key) receiver.setValueForKey(box(number), *key);
}

void* pointerForKey(const NSDictionary& receiver, TextView key) {
  const auto value = as<NSValue>(receiver.objectForKey(key));
  return value ? value->pointerValue() : nullptr;
}

void setPointer(NSMutableDictionary& receiver, void* pointer, std::optional<TextView> key) {
  if (pointer && key) receiver.setObject(std::make_shared<NSValue>(NSValue::valueWithPointer(pointer)), *key);
}

void setValidString(NSMutableDictionary& receiver, std::optional<TextView> string, std::optional<TextView> key) {
  if (string && !string->empty() && key) receiver.setObject(std::make_shared<NSString>(*string), *key);
}

Ref<NSDictionary> dictionaryWithObjectsForKeys(const NSDictionary& receiver, std::span<const Text> keys) {
  NSDictionary::Entries entries;
  for (const Text& key : keys)
    if (Ref<NSObject> value = receiver.objectForKey(key)) entries.insert_or_assign(key, std::move(value));
  return std::make_shared<NSDictionary>(std::move(entries));
}

Ref<NSDictionary> normalizedDictionaryWithStringObjectsForKeys(const NSDictionary& receiver,
                                                               std::span<const Text> keys) {
  NSDictionary::Entries entries;
  for (const Text& key : keys) entries.insert_or_assign(key, stringObject(receiver.objectForKey(key)));
  return std::make_shared<NSDictionary>(std::move(entries));
}

Ref<NSMutableDictionary> dictionaryWithDeepCopiedValues(const NSDictionary& receiver) {
  auto copies = std::make_shared<NSMutableDictionary>();
  for (const auto& [key, value] : receiver) {
    Ref<NSObject> copy = value->mutableCopy();
    copies->setObject(copy ? std::move(copy) : value->copy(), key);
  }
  return copies;
}

void applyValuesAsPropertiesToObject(const NSDictionary& receiver, NSObject* object) {
  if (!object) return;
  // Setters may change the dictionary.
  const std::vector<std::pair<Text, Ref<NSObject>>> entries(receiver.begin(), receiver.end());
  for (const auto& [key, value] : entries) {
    const NSData* data = as<NSData>(value.get());
    if (!data) {
      object->setValueForKey(value, key);
      continue;
    }
    const UnarchivedObject read = NSUnarchiver::unarchiveObjectWithData(*data);
    if (read.object)
      object->setValueForKey(read.object, key);
    else
      QNLogger::sharedLogger().error(__LINE__, __FILE__,
                                     "-[NSDictionary(QNExtensions) applyValuesAsPropertiesToObject:]",
                                     format(u"Can't set property '%@'. %@", key, read.error));
  }
}

}  // namespace kelvane
