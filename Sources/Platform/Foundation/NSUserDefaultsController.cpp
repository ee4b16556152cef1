#include "Platform/Foundation/NSUserDefaultsController.h"

#include <memory>

namespace kelvane {

class NSUserDefaultsController::Values : public NSObject {
 public:
  // The store calls from any thread, so it must not be what keeps this alive, nor find it half gone.
  static Ref<Values> of(NSUserDefaults& defaults) {
    auto values = std::make_shared<Values>(defaults);
    values->myNumber = defaults.addObserver(
        [weak = std::weak_ptr<Values>(values)](TextView key, const auto& oldValue, const auto& newValue) {
          if (const auto alive = weak.lock()) alive->didChangeValueForKey(key, oldValue, newValue);
        });
    return values;
  }

  explicit Values(NSUserDefaults& defaults) : myDefaults(defaults) {}
  ~Values() override { myDefaults.removeObserver(myNumber); }
  Values(const Values&) = delete;
  Values& operator=(const Values&) = delete;

  NSUserDefaults& defaults() const { return myDefaults; }
  Ref<NSObject> valueForKey(TextView key) const override { return myDefaults.objectForKey(key); }
  void setValueForKey(const Ref<NSObject>& value, TextView key) override { myDefaults.setObject(value, key); }

 private:
  NSUserDefaults& myDefaults;
  std::size_t myNumber = 0;
};

NSUserDefaultsController::NSUserDefaultsController(NSUserDefaults& defaults) : myValues(Values::of(defaults)) {}

NSUserDefaults& NSUserDefaultsController::defaults() const { return myValues->defaults(); }

Ref<NSObject> NSUserDefaultsController::values() const { return myValues; }

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
