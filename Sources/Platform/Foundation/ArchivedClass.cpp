#include "Platform/Foundation/ArchivedClass.h"

#include <map>
#include <mutex>
#include <unordered_map>
#include <utility>

#include "Platform/Foundation/NSManagedObject.h"
#include "Platform/Foundation/PropertyTable.h"
#include "Platform/Foundation/Raise.h"

namespace kelvane {
namespace {

struct Registry {
  std::mutex lock;
  std::unordered_map<std::type_index, std::shared_ptr<const ArchivedClass>> byType;
  std::map<Text, std::type_index, std::less<>> byName;
};

Registry& registry() {
  static auto& theRegistry = *new Registry();
  return theRegistry;
}

}  // namespace

void registerArchivedClass(std::type_index type, ArchivedClass theClass) {
  Registry& known = registry();
  const std::scoped_lock guard(known.lock);
  const auto [place, isNew] = known.byName.try_emplace(theClass.name, type);
  if (!isNew && place->second != type)
    raiseInvalidArgument("registerArchivedClass", "another class is archived by the name", theClass.name);
  auto& entry = known.byType[type];
  if (entry && entry->name != theClass.name) known.byName.erase(entry->name);
  entry = std::make_shared<const ArchivedClass>(std::move(theClass));
}

std::shared_ptr<const ArchivedClass> archivedClassOfType(std::type_index type) {
  Registry& known = registry();
  const std::scoped_lock guard(known.lock);
  const auto place = known.byType.find(type);
  return place == known.byType.end() ? nullptr : place->second;
}

std::shared_ptr<const ArchivedClass> archivedClassNamed(TextView name) {
  Registry& known = registry();
  const std::scoped_lock guard(known.lock);
  const auto place = known.byName.find(name);
  return place == known.byName.end() ? nullptr : known.byType.at(place->second);
}

void encodeProperties(const NSObject& object, ArchiveEncoder& encoder) {
  const auto& properties = object.propertyTable().properties();
  std::size_t count = 0;
  for (const Property& property : properties) count += property.set ? 1 : 0;
  encoder.encodeUnsigned(count);
  for (const Property& property : properties) {
    if (!property.set) continue;
    encoder.encodeText(property.key);
    encoder.encodeObject(property.get(object));
  }
  const NSManagedObject* managed = as<NSManagedObject>(&object);
  if (!managed) return;
  encoder.encodeUnsigned(managed->primitiveValues().size());
  for (const auto& [key, value] : managed->primitiveValues()) {
    encoder.encodeText(key);
    encoder.encodeObject(value);
  }
}

void decodeProperties(NSObject& object, ArchiveDecoder& decoder) {
  const auto decodeValues = [&decoder](auto set) {
    for (std::size_t count = decoder.decodeCount(2); count > 0; --count) {
      const Text key = decoder.decodeText();
      const Ref<NSObject> value = decoder.decodeObject();
      if (decoder.hasFailed()) return;
      set(key, value);
    }
  };
  decodeValues([&object](TextView key, const Ref<NSObject>& value) { object.setValueForKey(value, key); });
  if (auto* managed = as<NSManagedObject>(&object))
    decodeValues([managed](TextView key, const auto& value) { managed->setPrimitiveValueForKey(value, key); });
}

}  // namespace kelvane
