#pragma once

#include <cstddef>
#include <cstdint>
#include <unordered_map>
#include <utility>
#include <vector>

#include "Platform/Foundation/ElementTraits.h"
#include "Platform/Foundation/Raise.h"

namespace kelvane {

// Groups objects into buckets by key. Objects stand in their bucket in the order in which they were put, as often as
// they were put; nothing is ever removed.
//
// ```cpp
// QNBucketDictionary<Text, Text> byTown;
// byTown.putObject(u"Ann", u"Ulm");
// byTown.putObject(u"Bob", u"Ulm");
// for (const Text& name : byTown.objectsFromsBucketWithKey(u"Ulm")) std::cout << utf8(name) << '\n';
// ```
//
// Keys are found by equality and hash. An object as a key is copied, so that it cannot change under the dictionary:
// std::invalid_argument when its class cannot be copied. One thread at a time.
template <class Key = Ref<NSObject>, class Object = Ref<NSObject>>
class QNBucketDictionary {
 public:
  // putObject:intoBucketWithKey:  Puts the object at the end of the key's bucket, which is made when there is none;
  // nothing for a nil key. A nil object raises std::invalid_argument, and leaves an empty bucket under a new key.
  // Constant on average.
  void putObject(Object object, const Key& intoBucketWithKey) {
    if (ElementTraits<Key>::isNil(intoBucketWithKey)) return;
    auto place = myBucketDictionary.find(intoBucketWithKey);
    if (place == myBucketDictionary.end())
      place = myBucketDictionary.try_emplace(ElementTraits<Key>::copy(intoBucketWithKey)).first;
    if (ElementTraits<Object>::isNil(object))
      raiseInvalidArgument("putObject:intoBucketWithKey:", "an object cannot be nil");
    place->second.push_back(std::move(object));
  }

  // objectsFromsBucketWithKey:  The bucket itself, in which later puts show (and end its iterators); valid as long as
  // the dictionary. An empty one, in which nothing ever shows, for nil and for a key that has no bucket yet.
  const std::vector<Object>& objectsFromsBucketWithKey(const Key& key) const& {
    static const std::vector<Object> empty;
    const std::vector<Object>* bucket = find(key);
    return bucket ? *bucket : empty;
  }
  const std::vector<Object>& objectsFromsBucketWithKey(const Key& key) const&& = delete;

  // countOfObjectsInBucketWithKey:  How many objects the bucket holds; 0 for nil and for a key without one.
  std::int64_t countOfObjectsInBucketWithKey(const Key& key) const {
    const std::vector<Object>* bucket = find(key);
    return bucket ? static_cast<std::int64_t>(bucket->size()) : 0;
  }

  // count  The number of buckets, not of objects.
  std::int64_t count() const { return static_cast<std::int64_t>(myBucketDictionary.size()); }

  // keys  The keys of all buckets, in no order.
  std::vector<Key> keys() const {
    std::vector<Key> keys;
    keys.reserve(myBucketDictionary.size());
    for (const auto& [key, bucket] : myBucketDictionary) keys.push_back(key);
    return keys;
  }

 private:
  struct Hash {
    std::size_t operator()(const Key& key) const { return ElementTraits<Key>::hash(key); }
  };
  struct Equal {
    bool operator()(const Key& a, const Key& b) const { return ElementTraits<Key>::equal(a, b); }
  };

  // Null when there is no such bucket.
  const std::vector<Object>* find(const Key& key) const {
    if (ElementTraits<Key>::isNil(key)) return nullptr;
    const auto place = myBucketDictionary.find(key);
    return place == myBucketDictionary.end() ? nullptr : &place->second;
  }

  std::unordered_map<Key, std::vector<Object>, Hash, Equal> myBucketDictionary;
};

}  // namespace kelvane
