#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <mutex>
#include <set>
#include <string>

#include "Platform/Foundation/Export.h"
#include "Platform/Foundation/NSDictionary.h"
#include "Platform/Foundation/NSError.h"
#include "Platform/Foundation/SystemCalls.h"

namespace kelvane {

// An application's preferences: property-list values under text keys, kept in one XML property list.
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
// Any thread. Observers are called on the thread that makes a change, without any lock held.
class KELVANE_EXPORT NSUserDefaults {
 public:
  // Hears that the value under a key is another one now; nil where there is none, defaults included.
  using Observer = std::function<void(TextView key, const Ref<NSObject>& oldValue, const Ref<NSObject>& newValue)>;

  // The running application's preferences, read on first use: "NAME.plist" in the user's configuration folder, where
  // NAME is the main bundle's identifier, else its name, else the name of the executable; "/" in it becomes ":".
  // "AppleLanguages" and "AppleLocale" have defaults from the environment (UserLanguages.h).
  static NSUserDefaults& standardUserDefaults();

  // The preferences in the file at `path`, which need not exist yet.
  explicit NSUserDefaults(TextView path, SystemCalls& calls = SystemCalls::system());
  NSUserDefaults(const NSUserDefaults&) = delete;
  NSUserDefaults& operator=(const NSUserDefaults&) = delete;

  const Text& path() const { return myPath; }

  // objectForKey:  What was set, else the registered default, else nil.
  Ref<NSObject> objectForKey(TextView key) const;

  // setObject:forKey:  Keeps a copy of `object` under the key; nil removes what was set, so that the default shows
  // again. std::invalid_argument for what no property list can hold: other objects, also within arrays and
  // dictionaries, and text with characters that XML has no way to write.
  void setObject(const Ref<NSObject>& object, TextView key);
  void removeObjectForKey(TextView key) { setObject(nullptr, key); }

  // registerDefaults:  Adds values for keys that are not set. They are not saved; a later registration of the same key
  // counts.
  void registerDefaults(const NSDictionary& defaults);

  // Saves what was changed, and takes up what other processes have saved. False when that failed: then the old file is
  // whole, the changes are kept for the next try, and `error`, unless null, is set to the reason.
  bool synchronize(Ref<NSError>* error = nullptr);

  // Adds an observer and returns the number by which it can be removed. An observer that is added or removed during a
  // notification is heard from the next one on, or no longer from then on.
  std::size_t addObserver(Observer observer);
  void removeObserver(std::size_t number);

 private:
  struct Change {
    Text key;
    Ref<NSObject> oldValue;
    Ref<NSObject> newValue;
  };

  Ref<NSObject> valueOf(TextView key) const;
  // The dictionary in the file; an empty one when there is no file. Sets aside a file that makes no sense, and fails
  // when that cannot be done.
  std::error_code readEntries(NSDictionary::Entries& entries);
  std::error_code setDamagedFileAside(TextView reason);
  std::error_code saveChanges(std::vector<Change>& changes);
  void takeUp(NSDictionary::Entries entries, std::vector<Change>& changes);
  void notify(const std::vector<Change>& changes);

  Text myPath;
  std::string myFile;
  SystemCalls& mySystemCalls;

  mutable std::mutex myMutex;
  NSDictionary::Entries myEntries;
  NSDictionary::Entries myDefaults;
  // The keys that were set or removed since the last save.
  std::set<Text, std::less<>> myChangedKeys;
  std::map<std::size_t, Observer> myObservers;
  std::size_t myNextObserver = 1;
};

}  // namespace kelvane
