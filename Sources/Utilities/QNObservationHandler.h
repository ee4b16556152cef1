#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <unordered_map>

#include "Platform/Foundation/Export.h"
#include "Platform/Foundation/KeyPath.h"
#include "Platform/Foundation/NSArray.h"
#include "Platform/Foundation/NSKeyValueObserving.h"
#include "Platform/Foundation/NSObject.h"

namespace kelvane {

// Lets one target follow a property of every element of an array that hangs off a subject, while elements come and go:
//
// ```cpp
// char itemsContext, nameContext;
// QNObservationHandler handler;
// handler.setTarget(observer);
// handler.setSubject(document.get(), u"items", &itemsContext);
// handler.setPropertyKeyPath(u"name", NSKeyValueObservingOptionNew, &nameContext);
// ```
//
// From then on the target's `observeValueForKeyPath` gets each change of an element's name under &nameContext and each
// change of the array under &itemsContext, just as if it were registered itself.
//
// Setting a whole new array changes no registration: the handler stays with the elements of the old one and does not
// take up those of the new one; it warns that it does not know what to do. Elements are kept alive while the handler is
// registered with them. What ending a registration that does not exist raises goes to whoever made the change.
//
// Subject and target must outlive the handler or be replaced by null; a subject that dies earlier just ends the
// observing. Main thread only.
class KELVANE_EXPORT QNObservationHandler : public NSObject {
 public:
  // init
  QNObservationHandler() = default;
  // dealloc  Ends all registrations. What that would raise is logged.
  ~QNObservationHandler() override;
  QNObservationHandler(const QNObservationHandler&) = delete;
  QNObservationHandler& operator=(const QNObservationHandler&) = delete;

  // setTarget:  Who gets the notifications; null for nobody.
  void setTarget(NSObject* target) { myTargetRef = target; }

  // setSubject:valueKeyPath:
  // setSubject:valueKeyPath:changeContext:  Follows the array at the key path. Its changes are forwarded under the
  // context unless that is null. A second subject is not supported: the first stays observed. Raises, with nothing
  // changed, as addObserver does.
  void setSubject(NSObject* subject, TextView valueKeyPath, void* changeContext = nullptr);

  // setPropertyKeyPath:options:context:  Follows this property of the elements, in place of the one before. To be
  // called after setSubject: without a subject there are no elements.
  void setPropertyKeyPath(TextView propertyKeyPath, NSKeyValueObservingOptions options, void* context);

  // addPropertyObserverToValues:  Registers with each of the values; a nil one is warned of and skipped. Nothing for
  // what is no array. Linear.
  void addPropertyObserverToValues(std::span<const Ref<NSObject>> values);
  void addPropertyObserverToValues(const Ref<NSObject>& values);
  // removePropertyObserverFromValues:  Ends one registration with each of the values, and forgets these; nothing while
  // the handler is registered with none. std::invalid_argument at the first that it is not registered with. Linear.
  void removePropertyObserverFromValues(const Ref<NSObject>& values);

  // observeValueForKeyPath:ofObject:change:context:  Where the notifications arrive.
  void observeValueForKeyPath(TextView keyPath, NSObject& ofObject, const NSKeyValueChange& change,
                              void* context) override;

 private:
  void followChange(const NSKeyValueChange& change);
  Ref<NSObject> currentValues() const;

  NSObject* myTargetRef = nullptr;
  NSObject* mySubjectRef = nullptr;
  Text myValueKeyPath;
  void* myValueAddRemoveContext = nullptr;
  std::optional<KeyPath> myPropertyKeyPath;
  NSKeyValueObservingOptions myPropertyOptions = 0;
  void* myPropertyContext = nullptr;
  // Whom the handler is registered with, and how often.
  std::unordered_map<Ref<NSObject>, std::size_t> myObjects;
};

}  // namespace kelvane
