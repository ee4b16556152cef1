#include "Platform/Foundation/NSObject.h"

#include <cxxabi.h>

#include <charconv>
#include <cstdint>
#include <cstdlib>
#include <functional>
#include <iterator>
#include <stdexcept>
#include <string>
#include <string_view>
#include <typeinfo>

#include "Platform/Foundation/PropertyChange.h"
#include "Platform/Foundation/PropertyTable.h"
#include "Platform/Foundation/Raise.h"
#include "Platform/Foundation/TextEncoding.h"

namespace kelvane {

namespace {

// Where the last name behind "::" starts. Colons within brackets belong to a template's arguments or a function's.
std::size_t lastNameStart(std::string_view name) {
  std::size_t start = 0;
  int depth = 0;
  for (std::size_t i = 0; i < name.size(); ++i) {
    if (name[i] == '<' || name[i] == '(') ++depth;
    if (name[i] == '>' || name[i] == ')') --depth;
    if (name[i] == ':' && depth == 0) start = i + 1;
  }
  return start;
}

}  // namespace

bool NSObject::isEqual(const NSObject& other) const { return this == &other; }

std::size_t NSObject::hash() const { return std::hash<const NSObject*>()(this); }

std::weak_ordering NSObject::compare(const NSObject& other) const {
  raiseInvalidArgument("compare:", "an object of class " + utf8(className()) + " has no order to", other.description());
}

Text NSObject::description() const {
  char digits[2 * sizeof(std::uintptr_t)];
  const auto end = std::to_chars(digits, std::end(digits), reinterpret_cast<std::uintptr_t>(this), 16).ptr;
  return u"<" + className() + u": 0x" + textFromISOLatin1({digits, end}) + u">";
}

void NSObject::appendDescription(Text& out, const DescriptionNesting&) const { out += description(); }

Text NSObject::className() const {
  int status = 0;
  char* demangled = abi::__cxa_demangle(typeid(*this).name(), nullptr, nullptr, &status);
  std::string_view name = status == 0 ? demangled : typeid(*this).name();
  name.remove_prefix(lastNameStart(name));
  Text text = textFromUTF8(name);
  std::free(demangled);
  return text;
}

Ref<NSObject> NSObject::copy() const { raiseInvalidArgument("copy", "no copy can be made of", description()); }

Ref<NSObject> NSObject::mutableCopy() const { return nullptr; }

Ref<NSObject> NSObject::valueForKey(TextView key) const {
  if (const Property* property = propertyTable().find(key)) return property->get(*this);
  raiseInvalidArgument("valueForKey:", "an object of class " + utf8(className()) + " has no key", key);
}

void NSObject::setValueForKey(const Ref<NSObject>& value, TextView key) {
  const Property* property = propertyTable().find(key);
  if (!property)
    raiseInvalidArgument("setValue:forKey:", "an object of class " + utf8(className()) + " has no key", key);
  if (!property->set)
    raiseInvalidArgument("setValue:forKey:", "in class " + utf8(className()) + " nothing can be set for key", key);
  detail::PropertyChange change(*this, key);
  try {
    property->set(*this, value);
  } catch (const std::invalid_argument& reason) {
    raiseInvalidArgument("setValue:forKey:", std::string(reason.what()) + ", for key", key);
  }
  change.tell();
}

Ref<NSObject> NSObject::valueForKeyPath(TextView keyPath) const {
  const NSObject* object = this;
  Ref<NSObject> value;
  for (std::size_t point = keyPath.find(u'.'); point != TextView::npos; point = keyPath.find(u'.')) {
    value = object->valueForKey(keyPath.substr(0, point));
    if (!value) return nullptr;
    object = value.get();
    keyPath.remove_prefix(point + 1);
  }
  return object->valueForKey(keyPath);
}

void NSObject::setValueForKeyPath(const Ref<NSObject>& value, TextView keyPath) {
  const std::size_t point = keyPath.rfind(u'.');
  if (point == TextView::npos) return setValueForKey(value, keyPath);
  const Ref<NSObject> owner = valueForKeyPath(keyPath.substr(0, point));
  if (owner) owner->setValueForKey(value, keyPath.substr(point + 1));
}

const PropertyTable& NSObject::propertyTable() const {
  static const auto& none = *new PropertyTable();
  return none;
}

bool isEqual(const NSObject* a, const NSObject* b) { return a == b || (a && b && a->isEqual(*b)); }

std::weak_ordering compare(const NSObject* a, const NSObject* b) {
  if (!a) return std::weak_ordering::equivalent;
  if (!b) raiseInvalidArgument("compare:", "nil has no order");
  return a->compare(*b);
}

Text description(const NSObject* object) { return object ? object->description() : Text(u"(null)"); }

}  // namespace kelvane
