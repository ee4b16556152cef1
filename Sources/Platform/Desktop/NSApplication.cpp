#include "Platform/Desktop/NSApplication.h"

namespace kelvane {

NSApplicationDelegate::~NSApplicationDelegate() {
  NSApplication& application = NSApplication::sharedApplication();
  if (application.delegate() == this) application.setDelegate(nullptr);
}

NSApplication& NSApplication::sharedApplication() {
  // Never destroyed: delegates that go at exit still sign off.
  static auto& application = *new NSApplication();
  return application;
}

}  // namespace kelvane
