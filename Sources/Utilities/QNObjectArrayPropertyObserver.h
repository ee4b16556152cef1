#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "Platform/Foundation/Export.h"
#include "Platform/Foundation/NSIndexSet.h"
#include "Platform/Foundation/NSKeyValueObserving.h"
#include "Platform/Foundation/NSObject.h"
#include "Platform/Foundation/NSString.h"

namespace kelvane {

class QNObjectArrayPropertyObserver;

// Hears that something changed. A delegate overrides what it wants to hear.
class KELVANE_EXPORT QNObjectArrayPropertyObserverDelegate {
 public:
  virtual ~QNObjectArrayPropertyObserverDelegate() = default;
  // objectArrayPropertyObserverPropertyChanged:
  virtual void objectArrayPropertyObserverPropertyChanged(QNObjectArrayPropertyObserver& observer);
};

// Tells its delegate, with one plain call, when an array property of an object changes or a property of one of the
// array's elements does:
//
// ```cpp
// class Sidebar : public QNObjectArrayPropertyObserverDelegate {
//  public:
//   void objectArrayPropertyObserverPropertyChanged(QNObjectArrayPropertyObserver&) override { isCurrent = false; }
//   bool isCurrent = false;
// };
//
// void keepCurrent(const std::shared_ptr<Sidebar>& sidebar, QNObjectArrayPropertyObserver& observer) {
//   observer.setDelegate(sidebar);
//   observer.observerObject(document, u"items", u"name");
// }
// ```
//
// Observed object, delegate and array are not kept alive. It can begin anew after `removeObserver`; beginning twice
// leaves the first registrations in place, whose notifications then count as nobody's. Main thread only.
class KELVANE_EXPORT QNObjectArrayPropertyObserver : public NSObject {
 public:
  QNObjectArrayPropertyObserver() = default;
  // dealloc  As `removeObserver`, except that what it would raise is logged; then ends what is left.
  ~QNObjectArrayPropertyObserver() override;
  QNObjectArrayPropertyObserver(const QNObjectArrayPropertyObserver&) = delete;
  QNObjectArrayPropertyObserver& operator=(const QNObjectArrayPropertyObserver&) = delete;

  // delegate  Nil when there is none, or none any more.
  std::shared_ptr<QNObjectArrayPropertyObserverDelegate> delegate() const { return myDelegateWeakRef.lock(); }
  // setDelegate:
  void setDelegate(const std::shared_ptr<QNObjectArrayPropertyObserverDelegate>& delegate) {
    myDelegateWeakRef = delegate;
  }

  // observerObject:keyPath:propertyKeyPath:  Begins to observe the array at the key path of the object, and the
  // property of its elements. A value that is no array is one without elements; of a nil object there is nothing to
  // observe. Raises as addObserver does.
  void observerObject(const Ref<NSObject>& object, TextView keyPath, TextView propertyKeyPath);
  // observerObject:keyPath:propertyKeyPath:handler:  The same; the handler is only stored, and not owned.
  void observerObject(const Ref<NSObject>& object, TextView keyPath, TextView propertyKeyPath, NSObject* handler);

  // addArrayObjectsObservers:  Registers with the elements of the array, and remembers which indexes of which array
  // these were. Nothing for an empty array and for what is none.
  void addArrayObjectsObservers(const Ref<NSObject>& value);
  // removeArrayObjectsObservers:  Ends the registrations with the elements: when it is the very array that was added
  // last and has grown since, with those at the remembered indexes, else with all. std::invalid_argument at the first
  // that there is no registration with.
  void removeArrayObjectsObservers(const Ref<NSObject>& value);
  // propagatePropertyChangeToDelegate
  void propagatePropertyChangeToDelegate();

  // removeObserver  Ends the observing, and forgets all but the delegate and the handler. Nothing when the object is
  // gone. Raises as `removeArrayObjectsObservers`, with the object still observed.
  void removeObserver();
  using NSObject::removeObserver;

  // observeValueForKeyPath:ofObject:change:context:  Where the notifications arrive.
  void observeValueForKeyPath(TextView keyPath, NSObject& ofObject, const NSKeyValueChange& change,
                              void* context) override;

 private:
  std::weak_ptr<QNObjectArrayPropertyObserverDelegate> myDelegateWeakRef;
  std::weak_ptr<NSObject> myObjectWeakRef;
  // Made anew at each beginning: which one comes back as context tells the notifications apart.
  Ref<NSString> myKeyPath;
  Ref<NSString> myPropertyKeyPath;
  NSObject* myHandler = nullptr;
  std::optional<NSIndexSet> myLastAddIndexes;
  std::weak_ptr<NSArray> myLastAddArrayWeakRef;
  // Those of earlier beginnings that registrations still refer to, so that no later one gets their place in memory.
  std::vector<Ref<NSString>> myFormerContexts;
};

}  // namespace kelvane
