#include "Platform/Foundation/NSManagedObject.h"

#include "Platform/Foundation/PropertyChange.h"
#include "Platform/Foundation/PropertyTable.h"
#include "Platform/Foundation/Raise.h"
#include "Platform/Foundation/TextEncoding.h"

namespace kelvane {

NSManagedObject::NSManagedObject(std::initializer_list<TextView> attributeNames) {
  for (const TextView name : attributeNames) myValues.emplace(name, nullptr);
}

Ref<NSObject> NSManagedObject::primitiveValueForKey(TextView key) const {
  const auto place = myValues.find(key);
  if (place == myValues.end())
    raiseInvalidArgument("primitiveValueForKey:", "an object of class " + utf8(className()) + " has no attribute", key);
  return place->second;
}

void NSManagedObject::setPrimitiveValueForKey(const Ref<NSObject>& value, TextView key) {
  const auto place = myValues.find(key);
  if (place == myValues.end())
    raiseInvalidArgument("setPrimitiveValue:forKey:", "an object of class " + utf8(className()) + " has no attribute",
                         key);
  place->second = value;
}

Ref<NSObject> NSManagedObject::valueForKey(TextView key) const {
  if (propertyTable().find(key) || !myValues.contains(key)) return NSObject::valueForKey(key);
  willAccessValueForKey(key);
  return primitiveValueForKey(key);
}

void NSManagedObject::setValueForKey(const Ref<NSObject>& value, TextView key) {
  if (propertyTable().find(key) || !myValues.contains(key)) return NSObject::setValueForKey(value, key);
  detail::PropertyChange change(*this, key);
  setPrimitiveValueForKey(value, key);
  didChangeValueForKey(key);
  change.tell();
}

void NSManagedObject::willAccessValueForKey(TextView) const {}

void NSManagedObject::didChangeValueForKey(TextView) {}

}  // namespace kelvane
