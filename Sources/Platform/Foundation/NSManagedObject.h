#pragma once

#include <functional>
#include <initializer_list>
#include <map>

#include "Platform/Foundation/NSObject.h"
#include "Platform/Foundation/Text.h"

namespace kelvane {

// An object whose values a store keeps: each under the name of an attribute, of which the class says at construction
// which there are. `valueForKey` and `setValueForKey` are what everybody uses; a class that computes a value, or checks
// one, names a property for it, which then stands before the attribute of that name. The primitive accessors go to the
// stored value itself and tell nobody.
//
// ```cpp
// class Note : public NSManagedObject {
//  public:
//   Note() : NSManagedObject({u"title", u"text"}) {}
// };
// ```
//
// A store that fetches values when they are needed, or wants to know what was changed, overrides the two hooks. One
// thread at a time.
class KELVANE_EXPORT NSManagedObject : public NSObject {
 public:
  using Values = std::map<Text, Ref<NSObject>, std::less<>>;

  explicit NSManagedObject(std::initializer_list<TextView> attributeNames);

  // primitiveValueForKey:  The stored value; nil until there is one. std::invalid_argument when there is no such
  // attribute.
  Ref<NSObject> primitiveValueForKey(TextView key) const;
  // setPrimitiveValue:forKey:  Nil is a value like any other. std::invalid_argument when there is no such attribute.
  void setPrimitiveValueForKey(const Ref<NSObject>& value, TextView key);
  // All attributes with their stored values.
  const Values& primitiveValues() const { return myValues; }

  Ref<NSObject> valueForKey(TextView key) const override;
  void setValueForKey(const Ref<NSObject>& value, TextView key) override;

 protected:
  // Before the stored value is read by `valueForKey`.
  virtual void willAccessValueForKey(TextView key) const;
  // After it was set by `setValueForKey`.
  virtual void didChangeValueForKey(TextView key);

 private:
  Values myValues;
};

}  // namespace kelvane
