#pragma once

#include <functional>
#include <initializer_list>
#include <vector>

#include "Platform/Foundation/Export.h"
#include "Platform/Foundation/Ref.h"
#include "Platform/Foundation/Text.h"

namespace kelvane {

// One property of a class: its name, how it is read and, unless it can only be read, written, and where an object keeps
// it, if in a field.
struct Property {
  Text key;
  std::function<Ref<NSObject>(const NSObject&)> get;
  std::function<void(NSObject&, const Ref<NSObject>&)> set;
  std::function<const void*(const NSObject&)> field = {};
};

// The properties of a class, made once per class; NSObject.h shows how. Immutable.
class KELVANE_EXPORT PropertyTable {
 public:
  PropertyTable() = default;
  // The properties of the base class and these; a name that both have means this one.
  PropertyTable(const PropertyTable& base, std::initializer_list<Property> properties);

  // Null when there is no property of that name. Logarithmic.
  const Property* find(TextView key) const;
  // In ascending order of their keys.
  const std::vector<Property>& properties() const { return myProperties; }

 private:
  std::vector<Property> myProperties;
};

}  // namespace kelvane
