#pragma once

#include <optional>

#include "Platform/Foundation/Export.h"
#include "Platform/Foundation/NSDictionary.h"
#include "Platform/Foundation/Ref.h"
#include "Platform/Foundation/Text.h"

namespace kelvane {

// An application's folder and what it says of itself: "X.app" (or any folder) around "Contents", where
// "Contents/Info.plist" is the information dictionary. Immutable.
//
// ```cpp
// const std::optional<Text> page = NSBundle::mainBundle().pathForResource(u"Welcome", u"html");
// ```
class KELVANE_EXPORT NSBundle {
 public:
  // The running program's bundle: the folder around the "Contents" that the executable lies in, else the executable's
  // own folder. Found once.
  static const NSBundle& mainBundle();
  // The library's own bundle, around the shared object that it is loaded from: its resources are the ones that it was
  // installed with. Linked into the program, it has the program's bundle. Found once.
  static const NSBundle& libraryBundle();

  // The bundle of an executable, or shared object, at that absolute path. `sharedResources`, a path from the
  // executable's folder, is where its resources are if there is such a folder.
  explicit NSBundle(TextView executablePath, TextView sharedResources = {});

  const Text& bundlePath() const { return myBundlePath; }
  const Text& executablePath() const { return myExecutablePath; }
  // The folder of the resources, whether or not there is one: "Contents/Resources" of the bundle, or "Resources" beside
  // an executable that lies in no "Contents".
  const Text& resourcePath() const { return myResourcePath; }
  // pathForResource:ofType:  The path of the resource "name.type", or "name" when `type` is empty; nil when there is no
  // such file, and when `name` is empty. Asks the file system each time.
  std::optional<Text> pathForResource(TextView name, TextView type) const;
  // builtInPlugInsPath  The folder "PlugIns", whether it is there or not, in "Contents", or where there is no
  // "Contents" in the bundle's folder itself.
  Text builtInPlugInsPath() const;
  // Empty when "Contents/Info.plist" is missing or unreadable; the latter is told to the system log.
  const NSDictionary& infoDictionary() const { return *myInfoDictionary; }
  // The value under "CFBundleIdentifier"; nil when it is missing or empty.
  std::optional<Text> bundleIdentifier() const { return textInInfoDictionary(u"CFBundleIdentifier"); }
  // The text under `key` of the information dictionary; nil when it is missing, empty or no text.
  std::optional<Text> textInInfoDictionary(TextView key) const;
  // objectForInfoDictionaryKey:  The text under `key` even if it is empty; nil when it is missing or no text.
  std::optional<Text> stringForInfoDictionaryKey(TextView key) const;

 private:
  Text myExecutablePath;
  Text myBundlePath;
  Text myResourcePath;
  Ref<const NSDictionary> myInfoDictionary;
};

}  // namespace kelvane
