#pragma once

#include <cstddef>
#include <utility>
#include <vector>

#include "Platform/Foundation/Export.h"
#include "Platform/Foundation/NSObject.h"

namespace kelvane {

// The way to a place in a tree: the index among the children at each level, from the top down. Immutable; any thread.
class KELVANE_EXPORT NSIndexPath : public NSObject {
 public:
  // The empty path.
  NSIndexPath() = default;
  explicit NSIndexPath(std::vector<std::size_t> indexes) : myIndexes(std::move(indexes)) {}
  // indexPathWithIndex:
  static Ref<NSIndexPath> indexPathWithIndex(std::size_t index);

  // indexPathByAddingIndex:  The path of one child of this place.
  Ref<NSIndexPath> indexPathByAddingIndex(std::size_t index) const;

  std::size_t length() const { return myIndexes.size(); }
  // indexAtPosition:  std::out_of_range beyond the length.
  std::size_t indexAtPosition(std::size_t position) const;
  const std::vector<std::size_t>& indexes() const { return myIndexes; }

  // Equal when the indexes are.
  bool isEqual(const NSObject& other) const override;
  std::size_t hash() const override;
  // Index by index, a place before those below it. std::invalid_argument for what is no index path.
  std::weak_ordering compare(const NSObject& other) const override;
  // "(0, 2, 1)".
  Text description() const override;
  Ref<NSObject> copy() const override;

 private:
  std::vector<std::size_t> myIndexes;
};

}  // namespace kelvane
