#pragma once

#include <concepts>
#include <memory>
#include <vector>

#include "Platform/Foundation/Export.h"
#include "Platform/Foundation/Text.h"

namespace kelvane {

// A key path, split at its points: "author.name" is the key "author" of an object, then the key "name" of what that
// gives. Text turns into one by itself; who registers with many objects makes one before the loop, and saves splitting
// and copying it for each. Copies share the text. Immutable.
class KELVANE_EXPORT KeyPath {
 public:
  template <std::convertible_to<TextView> T>
  KeyPath(const T& text) : KeyPath(TextView(text), Split()) {}

  TextView text() const { return myParts->text; }
  // One at least; views that live as long as any copy does.
  const std::vector<TextView>& keys() const { return myParts->keys; }

  friend bool operator==(const KeyPath& a, const KeyPath& b) { return a.myParts == b.myParts || a.text() == b.text(); }

 private:
  struct Split {};
  struct Parts {
    Text text;
    std::vector<TextView> keys;
  };
  KeyPath(TextView text, Split);

  std::shared_ptr<const Parts> myParts;
};

}  // namespace kelvane
