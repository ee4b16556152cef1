#pragma once

#include <span>

#include "Platform/Foundation/NSDictionary.h"
#include "Platform/Foundation/NSObject.h"
#include "Platform/Foundation/Text.h"

namespace kelvane {

// dictionaryWithCopiedValuesForKeys:  Copies of the receiver's values for `keys`, under these keys, in a new
// dictionary; keys whose value is nil are left out. No keys stand for nil, too. Of a managed object the stored values
// are read, without its store being told. A text storage is copied as a text storage, any other value by its `copy`.
// std::invalid_argument for a key that the receiver does not have, and for a value that cannot be copied.
KELVANE_EXPORT Ref<NSMutableDictionary> dictionaryWithCopiedValuesForKeys(const NSObject& receiver,
                                                                          std::span<const Text> keys);

}  // namespace kelvane
