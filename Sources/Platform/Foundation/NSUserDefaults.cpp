#include "Platform/Foundation/NSUserDefaults.h"

#include <exception>
#include <map>
#include <mutex>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "Platform/Foundation/AtomicFile.h"
#include "Platform/Foundation/NSBundle.h"
#include "Platform/Foundation/NSLog.h"
#include "Platform/Foundation/PropertyList.h"
#include "Platform/Foundation/Raise.h"
#include "Platform/Foundation/StandardFolders.h"
#include "Platform/Foundation/SystemCalls.h"
#include "Platform/Foundation/TextEncoding.h"
#include "Platform/Foundation/TextScan.h"
#include "Platform/Foundation/UserLanguages.h"

namespace kelvane {
namespace {

Text applicationName() {
  const NSBundle& bundle = NSBundle::mainBundle();
  if (auto identifier = bundle.bundleIdentifier()) return *identifier;
  if (auto name = bundle.textInInfoDictionary(u"CFBundleName")) return *name;
  const TextView executable = bundle.executablePath();
  return Text(executable.substr(executable.rfind(u'/') + 1));
}

// Makes the folders above a file, for the user alone. That they are there already is as good; that they cannot be made
// shows when the file is written.
void createFoldersAbove(const std::string& file, SystemCalls& calls) {
  for (std::size_t slash = file.find('/', 1); slash != std::string::npos; slash = file.find('/', slash + 1))
    calls.mkdir(file.substr(0, slash).c_str(), 0700);
}

Ref<NSObject> found(const NSDictionary::Entries& entries, TextView key) {
  const auto place = entries.find(key);
  return place == entries.end() ? nullptr : place->second;
}

void put(NSDictionary::Entries& entries, TextView key, const Ref<NSObject>& value) {
  if (value)
    entries.insert_or_assign(Text(key), value);
  else if (const auto place = entries.find(key); place != entries.end())
    entries.erase(place);
}

// A copy of all that is in `entries`, however deep, so that what the caller changes later is no change to the
// preferences: written and read back. With its key each, so that one that XML cannot hold is refused as well. The
// writer's reason says where the trouble is.
NSDictionary::Entries deepCopy(NSDictionary::Entries entries, std::string_view operation) {
  const PropertyListBytes written = writePropertyList(NSDictionary(std::move(entries)));
  if (!written.error.empty()) raiseInvalidArgument(operation, utf8(written.error));
  const auto copy = as<NSDictionary>(readPropertyList(written.bytes).root);
  return {copy->begin(), copy->end()};
}

}  // namespace

class NSUserDefaults::Store {
 public:
  struct Change {
    Text key;
    Ref<NSObject> oldValue;
    Ref<NSObject> newValue;
  };

  Store(TextView path, SystemCalls& calls);

  Ref<NSObject> valueOf(TextView key) const;
  std::error_code saveChanges(std::vector<Change>& changes);
  void notify(const std::vector<Change>& changes);

  const Text path;
  std::mutex mutex;
  NSDictionary::Entries entries;
  NSDictionary::Entries defaults;
  // The keys that were set or removed since the last save.
  std::set<Text, std::less<>> changedKeys;
  std::map<std::size_t, std::shared_ptr<Observer>> observers;
  std::size_t nextObserver = 1;

 private:
  // The dictionary in the file; an empty one when there is no file. Sets aside a file that makes no sense, and fails
  // when that cannot be done.
  std::error_code readEntries(NSDictionary::Entries& read);
  std::error_code setDamagedFileAside(TextView reason);
  void takeUp(NSDictionary::Entries read, std::vector<Change>& changes);
  std::shared_ptr<Observer> observerOf(std::size_t number);

  const std::string myFile;
  SystemCalls& mySystemCalls;
};

NSUserDefaults& NSUserDefaults::standardUserDefaults() {
  static auto& defaults = *[] {
    const Text name = replacingUnit(applicationName(), u'/', u':');
    auto* standard = new NSUserDefaults(configurationFolderPath() + u"/" + name + u".plist");
    standard->registerDefaults(*languageDefaults());
    return standard;
  }();
  return defaults;
}

NSUserDefaults::NSUserDefaults(TextView path) : NSUserDefaults(path, SystemCalls::system()) {}

NSUserDefaults::NSUserDefaults(TextView path, SystemCalls& calls) : myStore(std::make_unique<Store>(path, calls)) {}

NSUserDefaults::~NSUserDefaults() = default;

const Text& NSUserDefaults::path() const { return myStore->path; }

Ref<NSObject> NSUserDefaults::objectForKey(TextView key) const {
  const std::lock_guard lock(myStore->mutex);
  return myStore->valueOf(key);
}

void NSUserDefaults::setObject(const Ref<NSObject>& object, TextView key) {
  Ref<NSObject> kept;
  if (object) {
    NSDictionary::Entries entry;
    entry.emplace(key, object);
    kept = found(deepCopy(std::move(entry), "setObject:forKey:"), key);
  }
  std::vector<Store::Change> changes;
  {
    const std::lock_guard lock(myStore->mutex);
    Ref<NSObject> before = myStore->valueOf(key);
    put(myStore->entries, key, kept);
    myStore->changedKeys.emplace(key);
    changes.push_back({Text(key), std::move(before), myStore->valueOf(key)});
  }
  myStore->notify(changes);
}

void NSUserDefaults::registerDefaults(const NSDictionary& defaults) {
  std::vector<Store::Change> changes;
  NSDictionary::Entries copy = deepCopy({defaults.begin(), defaults.end()}, "registerDefaults:");
  {
    const std::lock_guard lock(myStore->mutex);
    for (auto& [key, value] : copy) {
      Ref<NSObject> before = myStore->valueOf(key);
      myStore->defaults.insert_or_assign(key, std::move(value));
      Ref<NSObject> now = myStore->valueOf(key);
      if (!isEqual(before, now)) changes.push_back({key, std::move(before), std::move(now)});
    }
  }
  myStore->notify(changes);
}

bool NSUserDefaults::synchronize(Ref<NSError>* error) {
  std::vector<Store::Change> changes;
  std::error_code reason;
  {
    const std::lock_guard lock(myStore->mutex);
    reason = myStore->saveChanges(changes);
  }
  if (reason && error) *error = NSError::errorWithSystemError(reason, myStore->path);
  myStore->notify(changes);
  return !reason;
}

std::size_t NSUserDefaults::addObserver(std::shared_ptr<Observer> observer) {
  const std::lock_guard lock(myStore->mutex);
  myStore->observers.emplace(myStore->nextObserver, std::move(observer));
  return myStore->nextObserver++;
}

void NSUserDefaults::removeObserver(std::size_t number) {
  std::shared_ptr<Observer> removed;
  const std::lock_guard lock(myStore->mutex);
  const auto place = myStore->observers.find(number);
  if (place == myStore->observers.end()) return;
  removed = std::move(place->second);
  myStore->observers.erase(place);
}

NSUserDefaults::Store::Store(TextView thePath, SystemCalls& calls)
    : path(thePath), myFile(fileSystemRepresentation(thePath)), mySystemCalls(calls) {
  // Without a lock, since a save replaces the file as a whole. A file that makes no sense stays until the first save.
  const FileContents contents = readFile(myFile, maximumPropertyListSize, mySystemCalls);
  if (contents.error == std::errc::no_such_file_or_directory) return;
  if (contents.error) {
    NSLog(u"Can't read the preferences at '%@': %@", path, textFromUTF8(contents.error.message()));
    return;
  }
  if (const auto root = as<NSDictionary>(readPropertyList(contents.bytes).root))
    entries.insert(root->begin(), root->end());
  else
    NSLog(u"The preferences at '%@' are damaged and read as empty.", path);
}

Ref<NSObject> NSUserDefaults::Store::valueOf(TextView key) const {
  Ref<NSObject> value = found(entries, key);
  return value ? value : found(defaults, key);
}

std::error_code NSUserDefaults::Store::setDamagedFileAside(TextView reason) {
  std::string newFile;
  const std::error_code error = setAside(myFile, &newFile, mySystemCalls);
  if (error)
    NSLog(u"The preferences at '%@' are damaged (%@) and can't be set aside: %@", path, reason,
          textFromUTF8(error.message()));
  else
    NSLog(u"The preferences at '%@' were damaged (%@). They are kept as '%@'.", path, reason,
          textFromFileSystem(newFile));
  return error;
}

std::error_code NSUserDefaults::Store::readEntries(NSDictionary::Entries& read) {
  const FileContents contents = readFile(myFile, maximumPropertyListSize, mySystemCalls);
  if (contents.error == std::errc::no_such_file_or_directory) return {};
  if (contents.error == std::errc::file_too_large) return setDamagedFileAside(u"too large");
  // It may be good as soon as it can be read again, so it is not replaced.
  if (contents.error) return contents.error;
  const PropertyList list = readPropertyList(contents.bytes);
  const auto root = as<NSDictionary>(list.root);
  if (!root) {
    const Text reason = list.root ? Text(u"no dictionary") : format(u"line %lu: %@", list.line, list.error);
    return setDamagedFileAside(reason);
  }
  read.insert(root->begin(), root->end());
  return {};
}

std::error_code NSUserDefaults::Store::saveChanges(std::vector<Change>& changes) {
  createFoldersAbove(myFile, mySystemCalls);
  const FileLock fileLock(myFile + ".lock", mySystemCalls);
  if (fileLock.error()) return fileLock.error();
  NSDictionary::Entries read;
  if (const std::error_code error = readEntries(read)) return error;
  if (!changedKeys.empty()) {
    for (const Text& key : changedKeys) put(read, key, found(entries, key));
    const PropertyListBytes written = writePropertyList(NSDictionary(read));
    // Each value was tried when it was set, so this is what their sum exceeds.
    if (!written.error.empty()) return std::make_error_code(std::errc::file_too_large);
    if (const std::error_code error = writeFileAtomically(myFile, written.bytes, mySystemCalls)) return error;
    changedKeys.clear();
  }
  takeUp(std::move(read), changes);
  return {};
}

void NSUserDefaults::Store::takeUp(NSDictionary::Entries read, std::vector<Change>& changes) {
  NSDictionary::Entries before = std::exchange(entries, std::move(read));
  const auto compare = [&](const Text& key) {
    Ref<NSObject> old = found(before, key);
    if (!old) old = found(defaults, key);
    Ref<NSObject> now = valueOf(key);
    if (!isEqual(old, now)) changes.push_back({key, std::move(old), std::move(now)});
  };
  for (const auto& entry : entries) compare(entry.first);
  for (const auto& entry : before)
    if (!entries.contains(entry.first)) compare(entry.first);
}

std::shared_ptr<NSUserDefaults::Observer> NSUserDefaults::Store::observerOf(std::size_t number) {
  const std::lock_guard lock(mutex);
  const auto place = observers.find(number);
  return place == observers.end() ? nullptr : place->second;
}

void NSUserDefaults::Store::notify(const std::vector<Change>& changes) {
  if (changes.empty()) return;
  std::vector<std::size_t> numbers;
  {
    const std::lock_guard lock(mutex);
    for (const auto& entry : observers) numbers.push_back(entry.first);
  }
  std::exception_ptr failure;
  for (const Change& change : changes) {
    for (const std::size_t number : numbers) {
      const std::shared_ptr<Observer> observer = observerOf(number);
      if (!observer) continue;
      try {
        observer->valueChanged(change.key, change.oldValue, change.newValue);
      } catch (...) {
        if (!failure) failure = std::current_exception();
      }
    }
  }
  if (failure) std::rethrow_exception(failure);
}

}  // namespace kelvane
