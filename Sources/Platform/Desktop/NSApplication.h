#pragma once

#include "Platform/Foundation/Export.h"
#include "Platform/Foundation/Ref.h"
#include "Platform/Foundation/Text.h"

namespace kelvane {

class NSApplication;
class NSMenu;

// Posted by hosts when the application is about to quit, for those who want to know; the library does neither.
inline constexpr TextView QNApplicationWillQuitNotification = u"QNApplicationWillQuitNotification";

// What the host answers for its application. Main thread only.
class KELVANE_EXPORT NSApplicationDelegate {
 public:
  NSApplicationDelegate() = default;
  NSApplicationDelegate(const NSApplicationDelegate&) = delete;
  NSApplicationDelegate& operator=(const NSApplicationDelegate&) = delete;
  // The application has no delegate any more, if it was this one.
  virtual ~NSApplicationDelegate();

  virtual bool isBetaVersion() const { return false; }
  virtual bool isDevelopmentVersion() const { return false; }
  virtual bool isPrototypeVersion() const { return false; }
  // openHelpAtAnchor:  Shows the host's help at that place.
  virtual void openHelpAtAnchor(TextView) {}
  // applicationDockMenu:  The menu to show at the application's icon; nil for none.
  virtual Ref<NSMenu> applicationDockMenu(const NSApplication&) { return nullptr; }
};

// The running application. Main thread only.
class KELVANE_EXPORT NSApplication {
 public:
  // The one application of the process.
  static NSApplication& sharedApplication();

  NSApplication(const NSApplication&) = delete;
  NSApplication& operator=(const NSApplication&) = delete;

  // Null until the host sets one. It is not owned: it may go at any time, and is then forgotten.
  NSApplicationDelegate* delegate() const { return myDelegateRef; }
  void setDelegate(NSApplicationDelegate* delegate) { myDelegateRef = delegate; }

 private:
  NSApplication() = default;
  ~NSApplication() = default;

  NSApplicationDelegate* myDelegateRef = nullptr;
};

}  // namespace kelvane
