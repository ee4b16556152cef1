#include "Platform/Foundation/NSUserDefaults.h"

#include <sys/stat.h>

#include <cstdint>
#include <exception>
#include <map>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "Platform/Foundation/AtomicFile.h"
#include "Platform/Foundation/NSArray.h"
#include "Platform/Foundation/NSBundle.h"
#include "Platform/Foundation/NSDate.h"
#include "Platform/Foundation/NSLog.h"
#include "Platform/Foundation/NSString.h"
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

// Raises where a save would fail. With its key each, so that one that XML cannot hold is refused as well. The writer's
// reason says where the trouble is.
void requirePropertyList(const NSDictionary& entries, std::string_view operation) {
  const PropertyListBytes written = writePropertyList(entries);
  if (!written.error.empty()) raiseInvalidArgument(operation, utf8(written.error));
}

// A copy of a value that can be saved, so that what the caller changes later is no change to the preferences. Not by
// way of its written form, which lacks fractions of seconds and tells floating numbers of both widths alike. Property
// lists are not deep (maximumPropertyListDepth).
Ref<NSObject> deepCopy(const Ref<NSObject>& value) {
  if (const auto* text = as<NSString>(value.get())) return std::make_shared<NSString>(text->text());
  if (const auto* date = as<NSDate>(value.get())) return std::make_shared<NSDate>(*date);
  if (const auto* array = as<NSArray>(value.get())) {
    std::vector<Ref<NSObject>> objects;
    objects.reserve(array->count());
    for (const Ref<NSObject>& object : *array) objects.push_back(deepCopy(object));
    return std::make_shared<NSArray>(std::move(objects));
  }
  if (const auto* dictionary = as<NSDictionary>(value.get())) {
    NSDictionary::Entries entries;
    for (const auto& [key, object] : *dictionary) entries.emplace_hint(entries.end(), key, deepCopy(object));
    return std::make_shared<NSDictionary>(std::move(entries));
  }
  return value->copy();
}

Ref<NSMutableDictionary> mutableDictionary(NSDictionary& onlyReference) {
  return std::make_shared<NSMutableDictionary>(std::move(onlyReference).takeEntries());
}

// What tells one state of a file from all others. Whoever saves replaces the file, and so makes another one; who writes
// into it in place changes its times, unless that is in the same tick of the clock and leaves the size.
struct FileState {
  dev_t device;
  ino_t number;
  off_t size;
  std::int64_t modified;
  std::int64_t changed;
  bool operator==(const FileState&) const = default;
};

constexpr std::int64_t nanoseconds(const timespec& time) {
  return std::int64_t{time.tv_sec} * 1'000'000'000 + time.tv_nsec;
}

// Nothing for what is no file itself, such as a link to one.
std::optional<FileState> stateOf(const std::string& file, SystemCalls& calls) {
  struct stat status {};
  if (calls.lstat(file.c_str(), &status) != 0 || !S_ISREG(status.st_mode)) return std::nullopt;
  return FileState{status.st_dev, status.st_ino, status.st_size, nanoseconds(status.st_mtim),
                   nanoseconds(status.st_ctim)};
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
  Ref<NSMutableDictionary> entries = std::make_shared<NSMutableDictionary>();
  NSMutableDictionary defaults;
  // The keys that were set or removed since the last save.
  std::set<Text, std::less<>> changedKeys;
  std::map<std::size_t, std::shared_ptr<Observer>> observers;
  std::size_t nextObserver = 1;

 private:
  // The dictionary in the file; `read` stays as it is when there is no file. Sets aside a file that makes no sense, and
  // fails when that cannot be done.
  std::error_code readEntries(Ref<NSMutableDictionary>& read);
  std::error_code setDamagedFileAside(TextView reason);
  std::error_code writeEntries(const NSDictionary& all);
  void takeUp(Ref<NSMutableDictionary> read, std::vector<Change>& changes);
  std::shared_ptr<Observer> observerOf(std::size_t number);

  const std::string myFile;
  SystemCalls& mySystemCalls;
  // Of the file whose contents, but for the changed keys, are `entries`.
  std::optional<FileState> myFileState;
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
    const NSDictionary entry(NSDictionary::Entries{{Text(key), object}});
    requirePropertyList(entry, "setObject:forKey:");
    kept = deepCopy(object);
  }
  std::vector<Store::Change> changes;
  {
    const std::lock_guard lock(myStore->mutex);
    Ref<NSObject> before = myStore->valueOf(key);
    myStore->entries->setValueForKey(kept, key);
    myStore->changedKeys.emplace(key);
    changes.push_back({Text(key), std::move(before), myStore->valueOf(key)});
  }
  myStore->notify(changes);
}

void NSUserDefaults::registerDefaults(const NSDictionary& defaults) {
  std::vector<Store::Change> changes;
  requirePropertyList(defaults, "registerDefaults:");
  NSDictionary::Entries copies;
  for (const auto& [key, value] : defaults) copies.emplace_hint(copies.end(), key, deepCopy(value));
  {
    const std::lock_guard lock(myStore->mutex);
    for (const auto& [key, value] : copies) {
      Ref<NSObject> before = myStore->valueOf(key);
      myStore->defaults.setObject(value, key);
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
  const std::optional<FileState> stateBefore = stateOf(myFile, mySystemCalls);
  const FileContents contents = readFile(myFile, maximumPropertyListSize, mySystemCalls);
  if (contents.error == std::errc::no_such_file_or_directory) return;
  if (contents.error) {
    NSLog(u"Can't read the preferences at '%@': %@", path, textFromUTF8(contents.error.message()));
    return;
  }
  const auto root = as<NSDictionary>(readPropertyList(contents.bytes).root);
  if (!root) {
    NSLog(u"The preferences at '%@' are damaged and read as empty.", path);
    return;
  }
  entries = mutableDictionary(*root);
  if (stateOf(myFile, mySystemCalls) == stateBefore) myFileState = stateBefore;
}

Ref<NSObject> NSUserDefaults::Store::valueOf(TextView key) const {
  Ref<NSObject> value = entries->objectForKey(key);
  return value ? value : defaults.objectForKey(key);
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

std::error_code NSUserDefaults::Store::readEntries(Ref<NSMutableDictionary>& read) {
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
  read = mutableDictionary(*root);
  return {};
}

std::error_code NSUserDefaults::Store::saveChanges(std::vector<Change>& changes) {
  createFoldersAbove(myFile, mySystemCalls);
  const FileLock fileLock(myFile + ".lock", mySystemCalls);
  if (fileLock.error()) return fileLock.error();
  std::optional<FileState> state = stateOf(myFile, mySystemCalls);
  const bool isKnown = state && state == myFileState;
  Ref<NSMutableDictionary> all = isKnown ? entries : std::make_shared<NSMutableDictionary>();
  if (!isKnown) {
    if (const std::error_code error = readEntries(all)) return error;
    for (const Text& key : changedKeys) all->setValueForKey(entries->objectForKey(key), key);
  }
  if (!changedKeys.empty()) {
    if (const std::error_code error = writeEntries(*all)) return error;
    changedKeys.clear();
    state = stateOf(myFile, mySystemCalls);
  }
  if (!isKnown) takeUp(std::move(all), changes);
  myFileState = state;
  return {};
}

std::error_code NSUserDefaults::Store::writeEntries(const NSDictionary& all) {
  const PropertyListBytes written = writePropertyList(all);
  // Each value was tried when it was set, so this is what their sum exceeds.
  if (!written.error.empty()) return std::make_error_code(std::errc::file_too_large);
  return writeFileAtomically(myFile, written.bytes, mySystemCalls);
}

void NSUserDefaults::Store::takeUp(Ref<NSMutableDictionary> read, std::vector<Change>& changes) {
  const Ref<NSMutableDictionary> before = std::exchange(entries, std::move(read));
  const auto compare = [&](const Text& key) {
    Ref<NSObject> old = before->objectForKey(key);
    if (!old) old = defaults.objectForKey(key);
    Ref<NSObject> now = valueOf(key);
    if (!isEqual(old, now)) changes.push_back({key, std::move(old), std::move(now)});
  };
  for (const auto& entry : *entries) compare(entry.first);
  for (const auto& entry : *before)
    if (!entries->objectForKey(entry.first)) compare(entry.first);
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
