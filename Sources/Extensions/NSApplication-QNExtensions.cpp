#include "Extensions/NSApplication-QNExtensions.h"

#include <algorithm>

#include "Platform/Desktop/Desktop.h"
#include "Platform/Foundation/Format.h"
#include "Platform/Foundation/NSBundle.h"
#include "Platform/Foundation/NSNumber.h"

namespace kelvane {

std::int32_t appKitVersion(const NSApplication&) {
  return NSNumber(Desktop::current().userInterfaceVersionNumber()).intValue();
}

std::optional<Text> versionString(const NSApplication&) {
  return NSBundle::mainBundle().stringForInfoDictionaryKey(u"CFBundleShortVersionString");
}

std::optional<Text> revisionString(const NSApplication&) {
  return NSBundle::mainBundle().stringForInfoDictionaryKey(u"CFBundleVersion");
}

std::optional<Text> name(const NSApplication&) { return std::nullopt; }

bool isBetaVersion(const NSApplication& receiver) {
  return receiver.delegate() && receiver.delegate()->isBetaVersion();
}

bool isDevelopmentVersion(const NSApplication& receiver) {
  return receiver.delegate() && receiver.delegate()->isDevelopmentVersion();
}

bool isPrototypeVersion(const NSApplication& receiver) {
  return receiver.delegate() && receiver.delegate()->isPrototypeVersion();
}

Ref<NSMenu> dockMenu(const NSApplication& receiver) {
  return receiver.delegate() ? receiver.delegate()->applicationDockMenu(receiver) : nullptr;
}

void openHelpAtAnchor(const NSApplication& receiver, TextView anchor) {
  if (receiver.delegate()) receiver.delegate()->openHelpAtAnchor(anchor);
}

std::int32_t osVersion(const NSApplication&) {
  return NSApplicationExtensions::osVersion(combinedSystemVersion(currentSystemVersion()));
}

std::int32_t osMinorVersion(const NSApplication&) { return currentSystemVersion().minor.value_or(-1); }

std::int32_t osBugfixVersion(const NSApplication&) { return currentSystemVersion().bugFix.value_or(-1); }

Text osVersionString(const NSApplication&) { return NSApplicationExtensions::osVersionString(currentSystemVersion()); }

namespace NSApplicationExtensions {

std::int32_t osVersion(std::optional<std::int32_t> combinedVersion) {
  if (!combinedVersion) return -1;
  if (*combinedVersion < 0x1000) return 0;
  // The rows begin at the digit A, not at the next minor release.
  return std::min((*combinedVersion - 0x1000 + 6) / 16 + 1, 9);
}

Text osVersionString(const SystemVersion& version) {
  if (!version.major || !version.minor || !version.bugFix) return u"-unknown-";
  return format(u"Mac OS X %d.%d.%d", *version.major, *version.minor, *version.bugFix);
}

}  // namespace NSApplicationExtensions

}  // namespace kelvane
