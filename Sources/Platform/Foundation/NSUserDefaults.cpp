#include "Platform/Foundation/NSUserDefaults.h"

#include <utility>

#include "Platform/Foundation/AtomicFile.h"
#include "Platform/Foundation/NSBundle.h"
#include "Platform/Foundation/NSLog.h"
#include "Platform/Foundation/PropertyList.h"
#include "Platform/Foundation/Raise.h"
#include "Platform/Foundation/StandardFolders.h"
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

}  // namespace

NSUserDefaults& NSUserDefaults::standardUserDefaults() {
  static auto& defaults = *[] {
    const Text name = replacingUnit(applicationName(), u'/', u':');
    auto* standard = new NSUserDefaults(configurationFolderPath() + u"/" + name + u".plist");
    standard->registerDefaults(*languageDefaults());
    return standard;
  }();
  return defaults;
}

NSUserDefaults::NSUserDefaults(TextView path, SystemCalls& calls)
    : myPath(path), myFile(fileSystemRepresentation(path)), mySystemCalls(calls) {
  // Without a lock, since a save replaces the file as a whole. A file that makes no sense stays until the first save.
  const FileContents contents = readFile(myFile, maximumPropertyListSize, mySystemCalls);
  if (contents.error == std::errc::no_such_file_or_directory) return;
  if (contents.error) {
    NSLog(u"Can't read the preferences at '%@': %@", myPath, textFromUTF8(contents.error.message()));
    return;
  }
  if (const auto root = as<NSDictionary>(readPropertyList(contents.bytes).root))
    myEntries.insert(root->begin(), root->end());
  else
    NSLog(u"The preferences at '%@' are damaged and read as empty.", myPath);
}

Ref<NSObject> NSUserDefaults::valueOf(TextView key) const {
  Ref<NSObject> value = found(myEntries, key);
  return value ? value : found(myDefaults, key);
}

Ref<NSObject> NSUserDefaults::objectForKey(TextView key) const {
  const std::lock_guard lock(myMutex);
  return valueOf(key);
}

void NSUserDefaults::setObject(const Ref<NSObject>& object, TextView key) {
  Ref<NSObject> kept;
  if (object) {
    // Under its key, so that a key that XML cannot hold is refused as well.
    NSDictionary::Entries entry;
    entry.emplace(key, object);
    const PropertyListBytes written = writePropertyList(NSDictionary(std::move(entry)));
    if (!written.error.empty()) raiseInvalidArgument("setObject:forKey:", utf8(written.error), key);
    // Read back, so that what the caller changes later, however deep, is no change to the preferences.
    kept = as<NSDictionary>(readPropertyList(written.bytes).root)->objectForKey(key);
  }
  std::vector<Change> changes;
  {
    const std::lock_guard lock(myMutex);
    Ref<NSObject> before = valueOf(key);
    put(myEntries, key, kept);
    myChangedKeys.emplace(key);
    changes.push_back({Text(key), std::move(before), valueOf(key)});
  }
  notify(changes);
}

void NSUserDefaults::registerDefaults(const NSDictionary& defaults) {
  const std::lock_guard lock(myMutex);
  for (const auto& [key, value] : defaults) myDefaults.insert_or_assign(key, value);
}

std::error_code NSUserDefaults::setDamagedFileAside(TextView reason) {
  std::string newFile;
  const std::error_code error = setAside(myFile, &newFile, mySystemCalls);
  if (error)
    NSLog(u"The preferences at '%@' are damaged (%@) and can't be set aside: %@", myPath, reason,
          textFromUTF8(error.message()));
  else
    NSLog(u"The preferences at '%@' were damaged (%@). They are kept as '%@'.", myPath, reason,
          textFromFileSystem(newFile));
  return error;
}

std::error_code NSUserDefaults::readEntries(NSDictionary::Entries& entries) {
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
  entries.insert(root->begin(), root->end());
  return {};
}

std::error_code NSUserDefaults::saveChanges(std::vector<Change>& changes) {
  createFoldersAbove(myFile, mySystemCalls);
  const FileLock fileLock(myFile + ".lock", mySystemCalls);
  if (fileLock.error()) return fileLock.error();
  NSDictionary::Entries entries;
  if (const std::error_code error = readEntries(entries)) return error;
  if (!myChangedKeys.empty()) {
    for (const Text& key : myChangedKeys) put(entries, key, found(myEntries, key));
    const PropertyListBytes written = writePropertyList(NSDictionary(entries));
    // Each value was tried when it was set, so this is what their sum exceeds.
    if (!written.error.empty()) return std::make_error_code(std::errc::file_too_large);
    if (const std::error_code error = writeFileAtomically(myFile, written.bytes, mySystemCalls)) return error;
    myChangedKeys.clear();
  }
  takeUp(std::move(entries), changes);
  return {};
}

void NSUserDefaults::takeUp(NSDictionary::Entries entries, std::vector<Change>& changes) {
  NSDictionary::Entries before = std::exchange(myEntries, std::move(entries));
  const auto compare = [&](const Text& key) {
    Ref<NSObject> old = found(before, key);
    if (!old) old = found(myDefaults, key);
    Ref<NSObject> now = valueOf(key);
    if (!isEqual(old, now)) changes.push_back({key, std::move(old), std::move(now)});
  };
  for (const auto& entry : myEntries) compare(entry.first);
  for (const auto& entry : before)
    if (!myEntries.contains(entry.first)) compare(entry.first);
}

bool NSUserDefaults::synchronize(Ref<NSError>* error) {
  std::vector<Change> changes;
  std::error_code reason;
  {
    const std::lock_guard lock(myMutex);
    reason = saveChanges(changes);
  }
  notify(changes);
  if (reason && error) *error = NSError::errorWithSystemError(reason, myPath);
  return !reason;
}

std::size_t NSUserDefaults::addObserver(Observer observer) {
  const std::lock_guard lock(myMutex);
  myObservers.emplace(myNextObserver, std::move(observer));
  return myNextObserver++;
}

void NSUserDefaults::removeObserver(std::size_t number) {
  const std::lock_guard lock(myMutex);
  myObservers.erase(number);
}

void NSUserDefaults::notify(const std::vector<Change>& changes) {
  if (changes.empty()) return;
  std::vector<std::size_t> numbers;
  {
    const std::lock_guard lock(myMutex);
    for (const auto& entry : myObservers) numbers.push_back(entry.first);
  }
  for (const Change& change : changes) {
    for (const std::size_t number : numbers) {
      Observer observer;
      {
        const std::lock_guard lock(myMutex);
        const auto place = myObservers.find(number);
        if (place == myObservers.end()) continue;
        observer = place->second;
      }
      observer(change.key, change.oldValue, change.newValue);
    }
  }
}

}  // namespace kelvane
