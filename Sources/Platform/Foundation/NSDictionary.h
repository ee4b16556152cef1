#pragma once

#include <initializer_list>
#include <map>
#include <utility>
#include <vector>

#include "Platform/Foundation/NSObject.h"
#include "Platform/Foundation/TextOrder.h"

namespace kelvane {

// Objects under text keys, in ascending order of the keys' code units, so that everything made from a dictionary comes
// out the same in every run. Values are never nil: giving nil raises std::invalid_argument. Two dictionaries are equal
// when they have equal values under the same keys. Immutable (its mutable form is not); the values are shared, not
// copied. Boxing.h makes objects of plain values.
//
// ```cpp
// const auto person = NSDictionary::dictionaryWithEntries({{u"name", box(u"Ann")}, {u"age", box(30)}});
// for (const auto& [key, value] : *person) std::cout << utf8(key) << ": " << utf8(value->description()) << '\n';
// ```
class KELVANE_EXPORT NSDictionary : public NSObject {
 public:
  using Entries = std::map<Text, Ref<NSObject>, TextOrder>;

  NSDictionary() = default;
  explicit NSDictionary(Entries entries);
  NSDictionary(const NSDictionary&) = default;
  NSDictionary& operator=(const NSDictionary&) = default;
  ~NSDictionary() override;
  // A key and its value, to be written down.
  struct Entry {
    TextView key;
    Ref<NSObject> value;
  };
  // Of entries with the same key the first counts.
  static Ref<NSDictionary> dictionaryWithEntries(std::initializer_list<Entry> entries);

  std::size_t count() const { return myEntries.size(); }
  // objectForKey:  Nil when there is no such key. Logarithmic.
  Ref<NSObject> objectForKey(TextView key) const;
  std::vector<Text> allKeys() const;
  // Moves the entries out, without copying one. For whoever has the dictionary alone; it is empty afterwards.
  Entries takeEntries() && { return std::exchange(myEntries, {}); }

  // Pairs of key and value.
  auto begin() const { return myEntries.begin(); }
  auto end() const { return myEntries.end(); }

  // Collections within others as in NSArray.h.
  bool isEqual(const NSObject& other) const override;
  std::size_t hash() const override;
  // One "key = value;" to a line, indented by 4 blanks, between "{" and "}"; "{}" when there are none. A dictionary
  // that holds itself shows as "{...}" within.
  //
  //   {
  //       name = "Ann B";
  //       numbers = (
  //           1,
  //           2
  //       );
  //   }
  Text description() const override;
  void appendDescription(Text& out, const DescriptionNesting& within) const override;
  Ref<NSObject> copy() const override;
  Ref<NSObject> mutableCopy() const override;
  // The object under the key, or nil. "@count" is the number of entries; any other key that begins with "@" is a
  // property of the dictionary itself.
  Ref<NSObject> valueForKey(TextView key) const override;
  // Raises std::invalid_argument, since an immutable dictionary cannot be changed.
  void setValueForKey(const Ref<NSObject>& value, TextView key) override;

 protected:
  Entries myEntries;
};

// Its entries can be observed by their keys. One thread at a time.
class KELVANE_EXPORT NSMutableDictionary : public NSDictionary {
 public:
  using NSDictionary::NSDictionary;

  void setObject(Ref<NSObject> object, TextView key);
  void removeObjectForKey(TextView key);
  void removeAllObjects();

  // setValue:forKey:  Like setObject, except that nil removes the entry.
  void setValueForKey(const Ref<NSObject>& value, TextView key) override;
  Ref<NSObject> copy() const override;
};

}  // namespace kelvane
