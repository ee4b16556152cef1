#pragma once

#include <optional>

#include "Platform/Foundation/Export.h"
#include "Platform/Foundation/NSDictionary.h"
#include "Platform/Foundation/Ref.h"
#include "Platform/Foundation/Text.h"

namespace kelvane {

// An application's folder and what it says of itself: "X.app" (or any folder) around "Contents", where
// "Contents/Info.plist" is the information dictionary. Immutable.
class KELVANE_EXPORT NSBundle {
 public:
  // The running program's bundle: the folder around the "Contents" that the executable lies in, else the executable's
  // own folder. Found once.
  static const NSBundle& mainBundle();

  // The bundle of an executable at that absolute path.
  explicit NSBundle(TextView executablePath);

  const Text& bundlePath() const { return myBundlePath; }
  const Text& executablePath() const { return myExecutablePath; }
  // Empty when "Contents/Info.plist" is missing or unreadable; the latter is told to the system log.
  const NSDictionary& infoDictionary() const { return *myInfoDictionary; }
  // The value under "CFBundleIdentifier"; nil when it is missing or empty.
  std::optional<Text> bundleIdentifier() const { return textInInfoDictionary(u"CFBundleIdentifier"); }
  // The text under `key` of the information dictionary; nil when it is missing, empty or no text.
  std::optional<Text> textInInfoDictionary(TextView key) const;

 private:
  Text myExecutablePath;
  Text myBundlePath;
  Ref<const NSDictionary> myInfoDictionary;
};

}  // namespace kelvane
