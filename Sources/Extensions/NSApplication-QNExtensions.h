#pragma once

#include <cstdint>
#include <optional>

#include "Platform/Desktop/NSApplication.h"
#include "Platform/Foundation/Export.h"
#include "Platform/Foundation/Ref.h"
#include "Platform/Foundation/SystemVersion.h"
#include "Platform/Foundation/Text.h"

// Operations on the running application. Main thread only.
namespace kelvane {

// appKitVersion  The version number of the user-interface library, cut toward zero; 0 without one.
KELVANE_EXPORT std::int32_t appKitVersion(const NSApplication& receiver);
// versionString  The main bundle's "CFBundleShortVersionString"; nil when it is missing.
KELVANE_EXPORT std::optional<Text> versionString(const NSApplication& receiver);
// revisionString  The main bundle's "CFBundleVersion"; nil when it is missing.
KELVANE_EXPORT std::optional<Text> revisionString(const NSApplication& receiver);
// name  Always nil.
KELVANE_EXPORT std::optional<Text> name(const NSApplication& receiver);

// isBetaVersion, isDevelopmentVersion, isPrototypeVersion  What the application's delegate answers; false without one.
KELVANE_EXPORT bool isBetaVersion(const NSApplication& receiver);
KELVANE_EXPORT bool isDevelopmentVersion(const NSApplication& receiver);
KELVANE_EXPORT bool isPrototypeVersion(const NSApplication& receiver);
// dockMenu  The menu that the delegate gives for the application's icon; nil without a delegate.
KELVANE_EXPORT Ref<NSMenu> dockMenu(const NSApplication& receiver);
// openHelpAtAnchor:  Asks the delegate to show the help at that place; nothing without one.
KELVANE_EXPORT void openHelpAtAnchor(const NSApplication& receiver, TextView anchor);

// osVersion  The code of the operating system's release: 0 to 9, from the minor and bug-fix number as
// NSApplicationExtensions::osVersion tells; -1 when they cannot be told. What runs is a Linux kernel, so it is the
// kernel's release that is meant.
KELVANE_EXPORT std::int32_t osVersion(const NSApplication& receiver);
// osMinorVersion  The second number of the release, or -1.
KELVANE_EXPORT std::int32_t osMinorVersion(const NSApplication& receiver);
// osBugfixVersion  The third number of the release, or -1.
KELVANE_EXPORT std::int32_t osBugfixVersion(const NSApplication& receiver);
// osVersionString  "Mac OS X 6.1.0" with the three numbers of the release; "-unknown-" when one cannot be told.
KELVANE_EXPORT Text osVersionString(const NSApplication& receiver);

// The same of any release.
namespace NSApplicationExtensions {

// The code of a combined version number (combinedSystemVersion): 0 below 0x1000, 1 up to 0x1009, then one more for each
// sixteen, and 9 from 0x107A on; -1 for nothing.
KELVANE_EXPORT std::int32_t osVersion(std::optional<std::int32_t> combinedVersion);
KELVANE_EXPORT Text osVersionString(const SystemVersion& version);

}  // namespace NSApplicationExtensions

}  // namespace kelvane
