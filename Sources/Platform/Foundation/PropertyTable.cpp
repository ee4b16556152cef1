#include "Platform/Foundation/PropertyTable.h"

#include <algorithm>

namespace kelvane {
namespace {

bool isBefore(const Property& property, TextView key) { return property.key < key; }

}  // namespace

PropertyTable::PropertyTable(const PropertyTable& base, std::initializer_list<Property> properties)
    : myProperties(base.myProperties) {
  for (const Property& property : properties) {
    const auto place = std::lower_bound(myProperties.begin(), myProperties.end(), property.key, isBefore);
    if (place != myProperties.end() && place->key == property.key)
      *place = property;
    else
      myProperties.insert(place, property);
  }
}

const Property* PropertyTable::find(TextView key) const {
  const auto place = std::lower_bound(myProperties.begin(), myProperties.end(), key, isBefore);
  return place != myProperties.end() && place->key == key ? &*place : nullptr;
}

}  // namespace kelvane
