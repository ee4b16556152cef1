#pragma once

#include "Platform/Foundation/Export.h"
#include "Platform/Foundation/NSObject.h"
#include "Platform/Foundation/NSUserDefaults.h"

namespace kelvane {

// Stands between an application and its preferences: every change that goes through `values` is heard at once by the
// observers of the store.
//
// The values can be observed (NSKeyValueObserving.h), by "values.KEY" of the controller or by "KEY" of `values`, and
// tell of whatever changes the store: this controller, others, the store itself, and what other processes saved when it
// is taken up. Such observers hear on the thread that changed the store.
//
// Main thread only; while its values are observed, so is changing the store.
class KELVANE_EXPORT NSUserDefaultsController : public NSObject {
 public:
  // The controller of NSUserDefaults::standardUserDefaults().
  static NSUserDefaultsController& sharedUserDefaultsController();

  // The store must outlive the controller and its values.
  explicit NSUserDefaultsController(NSUserDefaults& defaults);

  NSUserDefaults& defaults() const;

  // The preferences as the properties of an object: reading a key gives its value, the registered default, or nil;
  // writing one changes the store. Any key is a property.
  Ref<NSObject> values() const;

  // save:  Makes the changes durable; see NSUserDefaults::synchronize.
  bool save(const NSObject* sender, Ref<NSError>* error = nullptr);

  // "values" besides the keys of every object, so that key paths such as "values.fontSize" work.
  Ref<NSObject> valueForKey(TextView key) const override;

 private:
  class Values;
  Ref<Values> myValues;
};

}  // namespace kelvane
