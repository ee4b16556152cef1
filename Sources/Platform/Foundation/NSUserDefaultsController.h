#pragma once

#include "Platform/Foundation/Export.h"
#include "Platform/Foundation/NSObject.h"
#include "Platform/Foundation/NSUserDefaults.h"

namespace kelvane {

// Stands between an application and its preferences: every change that goes through `values` is heard at once by the
// observers of the store. Main thread only.
class KELVANE_EXPORT NSUserDefaultsController : public NSObject {
 public:
  // The controller of NSUserDefaults::standardUserDefaults().
  static NSUserDefaultsController& sharedUserDefaultsController();

  explicit NSUserDefaultsController(NSUserDefaults& defaults) : myValues(std::make_shared<Values>(defaults)) {}

  NSUserDefaults& defaults() const { return myValues->defaults(); }

  // The preferences as the properties of an object: reading a key gives its value, the registered default, or nil;
  // writing one changes the store. Any key is a property.
  Ref<NSObject> values() const { return myValues; }

  // save:  Makes the changes durable; see NSUserDefaults::synchronize.
  bool save(const NSObject* sender, Ref<NSError>* error = nullptr);

  // "values" besides the keys of every object, so that key paths such as "values.fontSize" work.
  Ref<NSObject> valueForKey(TextView key) const override;

 private:
  class Values : public NSObject {
   public:
    explicit Values(NSUserDefaults& defaults) : myDefaults(defaults) {}
    NSUserDefaults& defaults() const { return myDefaults; }
    Ref<NSObject> valueForKey(TextView key) const override { return myDefaults.objectForKey(key); }
    void setValueForKey(const Ref<NSObject>& value, TextView key) override { myDefaults.setObject(value, key); }

   private:
    NSUserDefaults& myDefaults;
  };

  Ref<Values> myValues;
};

}  // namespace kelvane
