#include "Platform/Foundation/NSUserDefaultsController.h"

namespace kelvane {

NSUserDefaultsController& NSUserDefaultsController::sharedUserDefaultsController() {
  static const auto& controller = *new Ref<NSUserDefaultsController>(
      std::make_shared<NSUserDefaultsController>(NSUserDefaults::standardUserDefaults()));
  return *controller;
}

bool NSUserDefaultsController::save(const NSObject*, Ref<NSError>* error) { return defaults().synchronize(error); }

Ref<NSObject> NSUserDefaultsController::valueForKey(TextView key) const {
  return key == u"values" ? values() : NSObject::valueForKey(key);
}

}  // namespace kelvane
