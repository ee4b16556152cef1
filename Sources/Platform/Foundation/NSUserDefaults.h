#pragma once

#include <concepts>
#include <cstddef>
#include <memory>
#include <utility>

#include "Platform/Foundation/Export.h"
#include "Platform/Foundation/NSDictionary.h"
#include "Platform/Foundation/NSError.h"

namespace kelvane {

class SystemCalls;

// An application's preferences: property-list values under text keys, kept in one XML property list.
//
// ```cpp
// NSUserDefaults& preferences = NSUserDefaults::standardUserDefaults();
// preferences.registerDefaults(*NSDictionary::dictionaryWithEntries({{u"fontSize", box(12)}}));
// const int fontSize = unbox<int>(preferences.objectForKey(u"fontSize"));
// preferences.setObject(box(fontSize + 1), u"fontSize");
// preferences.synchronize();
// ```
//
// Reading finds what was set, else what is registered as default. Setting changes the memory; `synchronize` makes it
// durable. A save never loses what was there:
//
//  - it writes beside, flushes and renames (AtomicFile.h): a crash leaves the old file or the new one whole;
//  - it reads the file again under a lock and writes only the keys that were changed here on top: of processes that
//    save at the same time none loses a key that it alone changed, and of a key that several changed the last counts.
//    The lock is a file beside, "NAME.plist.lock", which stays;
//  - a file that makes no sense is set aside as "NAME.plist.damaged-1" and reported to the system log.
//
// Any thread. Observers are called on the thread that makes a change, without any lock held. When one throws, the
// others still hear; then the first exception reaches whoever made the change, which stays made.
class KELVANE_EXPORT NSUserDefaults {
 public:
  // Hears that the value under a key is another one now; nil where there is none, defaults included.
  class Observer {
   public:
    virtual ~Observer() = default;
    virtual void valueChanged(TextView key, const Ref<NSObject>& oldValue, const Ref<NSObject>& newValue) = 0;
  };

  // The running application's preferences, read on first use: "NAME.plist" in the user's configuration folder, where
  // NAME is the main bundle's identifier, else its name, else the name of the executable; "/" in it becomes ":".
  // "AppleLanguages" and "AppleLocale" have defaults from the environment (UserLanguages.h).
  static NSUserDefaults& standardUserDefaults();

  // The preferences in the file at `path`, which need not exist yet.
  explicit NSUserDefaults(TextView path);
  NSUserDefaults(TextView path, SystemCalls& calls);
  ~NSUserDefaults();
  NSUserDefaults(const NSUserDefaults&) = delete;
  NSUserDefaults& operator=(const NSUserDefaults&) = delete;

  const Text& path() const;

  // objectForKey:  What was set, else the registered default, else nil.
  Ref<NSObject> objectForKey(TextView key) const;

  // setObject:forKey:  Keeps a copy of `object` under the key; nil removes what was set, so that the default shows
  // again. std::invalid_argument for what no property list can hold: other objects, also within arrays and
  // dictionaries, and keys with characters that XML has no way to write. A date that is read from the file again has
  // lost the fraction of its second.
  void setObject(const Ref<NSObject>& object, TextView key);
  void removeObjectForKey(TextView key) { setObject(nullptr, key); }

  // registerDefaults:  Adds copies of these values for keys that are not set; observers hear which values are others
  // now. They are not saved; a later registration of the same key counts. Raises as setObject does, with none added.
  void registerDefaults(const NSDictionary& defaults);

  // Saves what was changed, and takes up what other processes have saved. False when that failed: then the old file is
  // whole, the changes are kept for the next try, and `error`, unless null, is set to the reason.
  bool synchronize(Ref<NSError>* error = nullptr);

  // Adds an observer and returns the number by which it can be removed. An observer that is added or removed during a
  // notification is heard from the next one on, or no longer from then on. The second form takes whatever can be called
  // as Observer::valueChanged is.
  std::size_t addObserver(std::shared_ptr<Observer> observer);
  template <std::invocable<TextView, const Ref<NSObject>&, const Ref<NSObject>&> Call>
  std::size_t addObserver(Call call) {
    struct Caller final : Observer {
      explicit Caller(Call&& theCall) : call(std::move(theCall)) {}
      void valueChanged(TextView key, const Ref<NSObject>& oldValue, const Ref<NSObject>& newValue) override {
        call(key, oldValue, newValue);
      }
      Call call;
    };
    return addObserver(std::shared_ptr<Observer>(std::make_shared<Caller>(std::move(call))));
  }
  void removeObserver(std::size_t number);

 private:
  class Store;
  std::unique_ptr<Store> myStore;
};

}  // namespace kelvane
