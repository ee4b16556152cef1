#include "Utilities/QNObservationHandler.h"

#include <exception>
#include <vector>

#include "Platform/Foundation/Format.h"
#include "Platform/Foundation/NSLog.h"
#include "Platform/Foundation/Raise.h"
#include "Utilities/QNLogger.h"

namespace kelvane {
namespace {

constexpr const char* fileName = "Sources/Utilities/QNObservationHandler";

// Under which the handler itself is registered with the subject.
void* privateContext() { return reinterpret_cast<void*>(std::intptr_t{-4711}); }

// What went wrong where nobody can be told.
template <class Work>
void logFailure(Work work) {
  try {
    work();
  } catch (const std::exception& failure) {
    NSLog(u"-[QNObservationHandler dealloc]: %s", failure.what());
  }
}

}  // namespace

QNObservationHandler::~QNObservationHandler() {
  // Those that are gone have taken their registrations with them.
  if (mySubjectRef && isObserving(mySubjectRef)) {
    logFailure([&] { mySubjectRef->removeObserver(*this, myValueKeyPath, privateContext()); });
    if (myPropertyKeyPath) logFailure([&] { removePropertyObserverFromValues(currentValues()); });
  }
  stopObserving();
}

Ref<NSObject> QNObservationHandler::currentValues() const {
  return mySubjectRef ? mySubjectRef->valueForKeyPath(myValueKeyPath) : nullptr;
}

void QNObservationHandler::setSubject(NSObject* subject, TextView valueKeyPath, void* changeContext) {
  if (subject)
    subject->addObserver(*this, valueKeyPath, NSKeyValueObservingOptionNew | NSKeyValueObservingOptionOld,
                         privateContext());
  mySubjectRef = subject;
  myValueKeyPath = valueKeyPath;
  myValueAddRemoveContext = changeContext;
}

void QNObservationHandler::setPropertyKeyPath(TextView propertyKeyPath, NSKeyValueObservingOptions options,
                                              void* context) {
  if (myPropertyKeyPath) removePropertyObserverFromValues(currentValues());
  myPropertyKeyPath = KeyPath(propertyKeyPath);
  myPropertyOptions = options;
  myPropertyContext = context;
  addPropertyObserverToValues(currentValues());
}

void QNObservationHandler::addPropertyObserverToValues(const Ref<NSObject>& values) {
  const auto array = as<NSArray>(values);
  if (!array) return;
  if ((myPropertyOptions & NSKeyValueObservingOptionInitial) == 0)
    return addPropertyObserverToValues(std::span(array->begin(), array->end()));
  // Whoever is told at once of the first values may change the array.
  const std::vector<Ref<NSObject>> elements(array->begin(), array->end());
  addPropertyObserverToValues(elements);
}

void QNObservationHandler::addPropertyObserverToValues(std::span<const Ref<NSObject>> values) {
  if (!myPropertyKeyPath) return;
  myObjects.reserve(myObjects.size() + values.size());
  for (const Ref<NSObject>& value : values) {
    if (!value) {
      QNLogger::sharedLogger().warn(123, fileName, "-[QNObservationHandler addPropertyObserverToValues:]",
                                    u"Can't observe nil value!");
      continue;
    }
    // Registered before it is listed, so that one that refuses is not.
    value->addObserver(*this, *myPropertyKeyPath, myPropertyOptions, myPropertyContext);
    ++myObjects[value];
  }
}

void QNObservationHandler::removePropertyObserverFromValues(const Ref<NSObject>& values) {
  const auto array = as<NSArray>(values);
  if (!array || myObjects.empty() || !myPropertyKeyPath) return;
  for (const Ref<NSObject>& value : *array) {
    value->removeObserver(*this, *myPropertyKeyPath);
    myObjects.erase(value);
  }
}

void QNObservationHandler::observeValueForKeyPath(TextView keyPath, NSObject& ofObject, const NSKeyValueChange& change,
                                                  void* context) {
  if (context != privateContext()) {
    if (myTargetRef) myTargetRef->observeValueForKeyPath(keyPath, ofObject, change, context);
    return;
  }
  followChange(change);
  if (myValueAddRemoveContext && myTargetRef)
    myTargetRef->observeValueForKeyPath(keyPath, ofObject, change, myValueAddRemoveContext);
}

void QNObservationHandler::followChange(const NSKeyValueChange& change) {
  switch (change.kind()) {
    case NSKeyValueChangeKind::Replacement:
      removePropertyObserverFromValues(change.oldValue());
      return addPropertyObserverToValues(change.newValue());
    case NSKeyValueChangeKind::Removal:
      return removePropertyObserverFromValues(change.oldValue());
    case NSKeyValueChangeKind::Insertion:
      return addPropertyObserverToValues(change.newValue());
    case NSKeyValueChangeKind::Setting:
      break;
  }
  QNLogger::sharedLogger().warn(142, fileName,
                                "-[QNObservationHandler observeValueForKeyPath:ofObject:change:context:]",
                                u"don't know what to do");
}

}  // namespace kelvane
