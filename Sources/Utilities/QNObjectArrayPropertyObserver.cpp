#include "Utilities/QNObjectArrayPropertyObserver.h"

#include <exception>

#include "Platform/Foundation/Boxing.h"
#include "Platform/Foundation/NSArray.h"
#include "Platform/Foundation/NSLog.h"

namespace kelvane {

void QNObjectArrayPropertyObserverDelegate::objectArrayPropertyObserverPropertyChanged(QNObjectArrayPropertyObserver&) {
}

QNObjectArrayPropertyObserver::~QNObjectArrayPropertyObserver() {
  try {
    removeObserver();
  } catch (const std::exception& failure) {
    NSLog(u"-[QNObjectArrayPropertyObserver dealloc]: %s", failure.what());
  }
  stopObserving();
}

void QNObjectArrayPropertyObserver::observerObject(const Ref<NSObject>& object, TextView keyPath,
                                                   TextView propertyKeyPath) {
  for (const Ref<NSString>& context : {myKeyPath, myPropertyKeyPath})
    if (context) myFormerContexts.push_back(context);
  std::erase_if(myFormerContexts, [this](const auto& context) { return !isObservingWithContext(context.get()); });
  myObjectWeakRef = object;
  myKeyPath = box(keyPath);
  myPropertyKeyPath = box(propertyKeyPath);
  if (!object) return;
  object->addObserver(*this, keyPath, NSKeyValueObservingOptionNew | NSKeyValueObservingOptionOld, myKeyPath.get());
  addArrayObjectsObservers(object->valueForKeyPath(keyPath));
}

void QNObjectArrayPropertyObserver::observerObject(const Ref<NSObject>& object, TextView keyPath,
                                                   TextView propertyKeyPath, NSObject* handler) {
  myHandler = handler;
  observerObject(object, keyPath, propertyKeyPath);
}

void QNObjectArrayPropertyObserver::addArrayObjectsObservers(const Ref<NSObject>& value) {
  const auto array = as<NSArray>(value);
  if (!array || array->count() == 0 || !myPropertyKeyPath) return;
  myLastAddArrayWeakRef = array;
  myLastAddIndexes = NSIndexSet(NSRange{0, array->count()});
  kelvane::addObserver(*array, *this, *myLastAddIndexes, myPropertyKeyPath->text(), 0, myPropertyKeyPath.get());
}

void QNObjectArrayPropertyObserver::removeArrayObjectsObservers(const Ref<NSObject>& value) {
  const auto array = as<NSArray>(value);
  if (!array || array->count() == 0 || !myPropertyKeyPath) return;
  const bool hasGrown =
      array == myLastAddArrayWeakRef.lock() && myLastAddIndexes && myLastAddIndexes->count() < array->count();
  const NSIndexSet indexes = hasGrown ? *myLastAddIndexes : NSIndexSet(NSRange{0, array->count()});
  kelvane::removeObserver(*array, *this, indexes, myPropertyKeyPath->text(), myPropertyKeyPath.get());
}

void QNObjectArrayPropertyObserver::propagatePropertyChangeToDelegate() {
  if (const auto delegate = myDelegateWeakRef.lock()) delegate->objectArrayPropertyObserverPropertyChanged(*this);
}

void QNObjectArrayPropertyObserver::removeObserver() {
  const Ref<NSObject> object = myObjectWeakRef.lock();
  if (!object) return;
  removeArrayObjectsObservers(object->valueForKeyPath(myKeyPath->text()));
  object->removeObserver(*this, myKeyPath->text(), myKeyPath.get());
  for (const Ref<NSString>& context : {myKeyPath, myPropertyKeyPath})
    if (isObservingWithContext(context.get())) myFormerContexts.push_back(context);
  myLastAddArrayWeakRef.reset();
  myObjectWeakRef.reset();
  myLastAddIndexes.reset();
  myKeyPath = nullptr;
  myPropertyKeyPath = nullptr;
}

void QNObjectArrayPropertyObserver::observeValueForKeyPath(TextView keyPath, NSObject& ofObject,
                                                           const NSKeyValueChange& change, void* context) {
  if (context && context == myKeyPath.get()) {
    removeArrayObjectsObservers(change.oldValue());
    addArrayObjectsObservers(change.newValue());
    propagatePropertyChangeToDelegate();
  } else if (context && context == myPropertyKeyPath.get()) {
    propagatePropertyChangeToDelegate();
  } else {
    NSObject::observeValueForKeyPath(keyPath, ofObject, change, context);
  }
}

}  // namespace kelvane
