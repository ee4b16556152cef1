#pragma once

#include <initializer_list>
#include <utility>
#include <vector>

#include "Platform/Foundation/NSObject.h"

namespace kelvane {

// Objects in an order. Elements are never nil (NSNull::null() stands for it): giving nil raises std::invalid_argument,
// an index beyond the end std::out_of_range. Two arrays are equal when their elements are, one by one. Immutable (its
// mutable form is not); the elements are shared, not copied. Boxing.h makes objects of plain values.
//
// ```cpp
// const auto names = std::make_shared<NSMutableArray>();
// names->addObject(box(u"Ann"));
// names->addObject(box(u"Bob"));
// std::cout << names->indexOfObject(box(u"Bob")) << '\n';  // 1
// ```
class KELVANE_EXPORT NSArray : public NSObject {
 public:
  NSArray() = default;
  explicit NSArray(std::vector<Ref<NSObject>> elements);
  NSArray(const NSArray&) = default;
  NSArray& operator=(const NSArray&) = default;
  ~NSArray() override;
  static Ref<NSArray> arrayWithObjects(std::initializer_list<Ref<NSObject>> elements);

  std::size_t count() const { return myElements.size(); }
  const Ref<NSObject>& objectAtIndex(std::size_t index) const;
  // Nil when the array is empty.
  Ref<NSObject> firstObject() const { return myElements.empty() ? nullptr : myElements.front(); }
  Ref<NSObject> lastObject() const { return myElements.empty() ? nullptr : myElements.back(); }
  // indexOfObject:  The first element that is equal to `object`; NSNotFound when there is none. Linear.
  std::size_t indexOfObject(const Ref<NSObject>& object) const;
  bool containsObject(const Ref<NSObject>& object) const { return indexOfObject(object) != NSNotFound; }

  auto begin() const { return myElements.begin(); }
  auto end() const { return myElements.end(); }

  static constexpr std::size_t NSNotFound = kelvane::NSNotFound;

  // Collections that stand within more than 512 others, and so those that hold themselves, are equal to none but
  // themselves there.
  bool isEqual(const NSObject& other) const override;
  // Collections within count with their number of elements alone.
  std::size_t hash() const override;
  // One element to a line, indented by 4 blanks, between "(" and ")", with commas between them; "()" when there are
  // none. An array that holds itself shows as "(...)" within.
  Text description() const override;
  void appendDescription(Text& out, const DescriptionNesting& within) const override;
  Ref<NSObject> copy() const override;
  Ref<NSObject> mutableCopy() const override;
  // The values that the elements have for the key, in an array; null objects for nil. "@count" is the number of
  // elements.
  Ref<NSObject> valueForKey(TextView key) const override;
  // Sets the value for each element.
  void setValueForKey(const Ref<NSObject>& value, TextView key) override;

 protected:
  std::vector<Ref<NSObject>> myElements;
};

// One thread at a time.
class KELVANE_EXPORT NSMutableArray : public NSArray {
 public:
  using NSArray::NSArray;

  void addObject(Ref<NSObject> object);
  // insertObject:atIndex:  At the end when `index` is the count.
  void insertObject(Ref<NSObject> object, std::size_t index);
  void removeObjectAtIndex(std::size_t index);
  void removeLastObject();
  void replaceObjectAtIndex(std::size_t index, Ref<NSObject> object);
  // exchangeObjectAtIndex:withObjectAtIndex:
  void exchangeObjectAtIndex(std::size_t index, std::size_t withObjectAtIndex);
  void removeAllObjects() { myElements.clear(); }
  // insertObjects:atIndexes:  Each stands in its place afterwards. The ranges ascend and do not overlap, and have as
  // many places as there are objects. Linear.
  void insertObjects(const NSArray& objects, const std::vector<NSRange>& atRanges);
  // removeObjectsAtIndexes:  Likewise.
  void removeObjects(const std::vector<NSRange>& ranges);

  Ref<NSObject> copy() const override;
};

}  // namespace kelvane
