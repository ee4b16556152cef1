#include "Extensions/NSObject-QNExtensions.h"

#include <memory>

#include "Platform/Foundation/NSAttributedString.h"
#include "Platform/Foundation/NSManagedObject.h"

namespace kelvane {

Ref<NSMutableDictionary> dictionaryWithCopiedValuesForKeys(const NSObject& receiver, std::span<const Text> keys) {
  auto copies = std::make_shared<NSMutableDictionary>();
  const NSManagedObject* managed = as<NSManagedObject>(&receiver);
  for (const Text& key : keys) {
    const Ref<NSObject> value = managed ? managed->primitiveValueForKey(key) : receiver.valueForKey(key);
    if (!value) continue;
    const NSTextStorage* storage = as<NSTextStorage>(value.get());
    if (Ref<NSObject> copy = storage ? std::make_shared<NSTextStorage>(*storage) : value->copy())
      copies->setObject(std::move(copy), key);
  }
  return copies;
}

}  // namespace kelvane
