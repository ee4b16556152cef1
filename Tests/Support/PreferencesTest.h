#pragma once

#include "Platform/Foundation/NSUserDefaults.h"
#include "Support/Testing.h"

namespace kelvane {

// The user's preferences are in a folder of the test's own.
struct PreferencesTest : testing::Test {
  PreferencesTest() { setenv("XDG_CONFIG_HOME", folder.path().c_str(), 1); }

  static Ref<NSObject> kept(TextView key) { return NSUserDefaults::standardUserDefaults().objectForKey(key); }
  static void keep(const Ref<NSObject>& object, TextView key) {
    NSUserDefaults::standardUserDefaults().setObject(object, key);
  }

  TemporaryFolder folder;
};

}  // namespace kelvane
