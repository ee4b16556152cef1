#include "Platform/Foundation/NSBundle.h"

#include <dlfcn.h>
#include <sys/stat.h>

#include <filesystem>
#include <string>
#include <system_error>

#include "Platform/Foundation/AtomicFile.h"
#include "Platform/Foundation/NSLog.h"
#include "Platform/Foundation/NSString.h"
#include "Platform/Foundation/PathText.h"
#include "Platform/Foundation/PropertyList.h"
#include "Platform/Foundation/TextEncoding.h"

namespace kelvane {
namespace {

// From the folder of the installed library to that of its resources, such as "../../share/KelvaneFoundation".
constexpr TextView wayToSharedResources = KELVANE_SHARED_RESOURCES;

// The folder around the innermost "Contents" above the executable, else the executable's own folder.
Text bundlePathOf(TextView executable) {
  constexpr TextView contents = u"/Contents/";
  const std::size_t place = executable.rfind(contents);
  if (place != TextView::npos && place > 0) return Text(executable.substr(0, place));
  const std::size_t slash = executable.rfind(u'/');
  if (slash == 0) return u"/";
  return Text(executable.substr(0, slash == TextView::npos ? 0 : slash));
}

bool isFolder(TextView path) {
  std::error_code ignored;
  return std::filesystem::is_directory(fileSystemRepresentation(path), ignored);
}

Text resourcePathOf(TextView executable, TextView bundlePath, TextView sharedResources) {
  if (!sharedResources.empty()) {
    Text shared(executable.substr(0, executable.rfind(u'/') + 1));
    shared += sharedResources;
    if (isFolder(shared)) return shared;
  }
  Text path(bundlePath);
  path += executable.find(u"/Contents/") == TextView::npos ? u"/Resources" : u"/Contents/Resources";
  return path;
}

Ref<const NSDictionary> readInfoDictionary(TextView bundlePath) {
  const Text path = Text(bundlePath) + u"/Contents/Info.plist";
  const FileContents contents = readFile(fileSystemRepresentation(path), maximumPropertyListSize);
  const bool isMissing =
      contents.error == std::errc::no_such_file_or_directory || contents.error == std::errc::not_a_directory;
  if (!contents.error) {
    if (auto dictionary = as<NSDictionary>(readPropertyList(contents.bytes).root)) return dictionary;
  }
  if (!isMissing) NSLog(u"Can't read the information dictionary at '%@'.", path);
  return std::make_shared<NSDictionary>();
}

}  // namespace

const NSBundle& NSBundle::mainBundle() {
  static const auto& bundle = *[] {
    std::error_code ignored;
    const std::string executable = std::filesystem::read_symlink("/proc/self/exe", ignored).native();
    return new NSBundle(textFromFileSystem(executable));
  }();
  return bundle;
}

const NSBundle& NSBundle::libraryBundle() {
  static const auto& bundle = *[] {
    static const char here = 0;
    Dl_info object{};
    std::error_code failure;
    std::filesystem::path path;
    // Of a program's own executable the name may be what it was started as, which says nothing about its place.
    if (::dladdr(&here, &object) != 0 && object.dli_fname && object.dli_fname[0] == '/')
      path = std::filesystem::canonical(object.dli_fname, failure);
    if (path.empty()) return new NSBundle(mainBundle().executablePath(), wayToSharedResources);
    return new NSBundle(textFromFileSystem(path.native()), wayToSharedResources);
  }();
  return bundle;
}

NSBundle::NSBundle(TextView executablePath, TextView sharedResources)
    : myExecutablePath(executablePath),
      myBundlePath(bundlePathOf(executablePath)),
      myResourcePath(resourcePathOf(executablePath, myBundlePath, sharedResources)),
      myInfoDictionary(readInfoDictionary(myBundlePath)) {}

std::optional<Text> NSBundle::pathForResource(TextView name, TextView type) const {
  if (name.empty()) return std::nullopt;
  Text path = myResourcePath + u'/';
  path += name;
  if (!type.empty()) {
    path += u'.';
    path += type;
  }
  // Cut at a NUL, it would be another path.
  std::error_code ignored;
  if (path.find(u'\0') != Text::npos || !std::filesystem::exists(fileSystemRepresentation(path), ignored))
    return std::nullopt;
  return path;
}

Text NSBundle::builtInPlugInsPath() const {
  const Text contents = stringByAppendingPathComponent(myBundlePath, u"Contents");
  return stringByAppendingPathComponent(isFolder(contents) ? contents : myBundlePath, u"PlugIns");
}

std::optional<Text> NSBundle::stringForInfoDictionaryKey(TextView key) const {
  const auto value = as<NSString>(myInfoDictionary->objectForKey(key));
  if (!value) return std::nullopt;
  return value->text();
}

std::optional<Text> NSBundle::textInInfoDictionary(TextView key) const {
  auto text = stringForInfoDictionaryKey(key);
  if (text && text->empty()) return std::nullopt;
  return text;
}

}  // namespace kelvane
