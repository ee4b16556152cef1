#include "Platform/Foundation/NSBundle.h"

#include <filesystem>
#include <string>
#include <system_error>

#include "Platform/Foundation/AtomicFile.h"
#include "Platform/Foundation/NSLog.h"
#include "Platform/Foundation/NSString.h"
#include "Platform/Foundation/PropertyList.h"
#include "Platform/Foundation/TextEncoding.h"

namespace kelvane {
namespace {

// The folder around the innermost "Contents" above the executable, else the executable's own folder.
Text bundlePathOf(TextView executable) {
  constexpr TextView contents = u"/Contents/";
  const std::size_t place = executable.rfind(contents);
  if (place != TextView::npos && place > 0) return Text(executable.substr(0, place));
  const std::size_t slash = executable.rfind(u'/');
  if (slash == 0) return u"/";
  return Text(executable.substr(0, slash == TextView::npos ? 0 : slash));
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

NSBundle::NSBundle(TextView executablePath)
    : myExecutablePath(executablePath),
      myBundlePath(bundlePathOf(executablePath)),
      myInfoDictionary(readInfoDictionary(myBundlePath)) {}

std::optional<Text> NSBundle::textInInfoDictionary(TextView key) const {
  const Ref<NSObject> value = myInfoDictionary->objectForKey(key);
  const NSString* text = as<NSString>(value.get());
  if (!text || text->text().empty()) return std::nullopt;
  return text->text();
}

}  // namespace kelvane
