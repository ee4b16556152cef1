#pragma once

#include <QObject>
#include <QPointer>
#include <unordered_map>
#include <utility>

#include "Platform/Foundation/Ref.h"

namespace kelvane {

// The adapters that stand for objects of Qt's, one for each, so that identity tells the originals apart. It is held as
// long as the original lives; whoever holds it for longer has one without an original. Never destroyed itself:
//
//   static auto& cache = *new AdapterCache<NSScreen>;
//
// Main thread only.
template <class Adapter>
class AdapterCache {
 public:
  AdapterCache() = default;
  AdapterCache(const AdapterCache&) = delete;
  AdapterCache& operator=(const AdapterCache&) = delete;

  // The adapter of `original`, which `make` makes when it is asked for the first time. Constant time.
  template <class Make>
  Ref<Adapter> adapterOf(QObject& original, Make make) {
    const auto found = myAdapters.find(&original);
    if (found != myAdapters.end() && found->second.original) return found->second.adapter;
    const Ref<Adapter> adapter = make();
    myAdapters.insert_or_assign(&original, Entry{&original, adapter});
    // The last reference goes after the entry, so that an adapter's end finds the cache in order.
    QObject::connect(&original, &QObject::destroyed,
                     [this](QObject* gone) { const auto entry = myAdapters.extract(gone); });
    return adapter;
  }

  // Nil for an original that has none yet.
  Ref<Adapter> knownAdapterOf(const QObject& original) const {
    const auto found = myAdapters.find(&original);
    return found != myAdapters.end() && found->second.original ? found->second.adapter : nullptr;
  }

 private:
  struct Entry {
    // Null in the entry of an original that was asked for once more after it had said that it goes, by a child in its
    // destructor for example: nobody says when that entry is to go, and another original may come to the same place.
    QPointer<QObject> original;
    Ref<Adapter> adapter;
  };

  std::unordered_map<const QObject*, Entry> myAdapters;
};

}  // namespace kelvane
