#include "Extensions/NSOutlineView-QNExtensions.h"

#include <unordered_set>
#include <vector>

namespace kelvane {
namespace {

// The objects below one model object, and how many of them have been looked at.
struct Level {
  Ref<NSObject> owner;
  Ref<NSArray> items;
  std::size_t next = 0;

  bool isAtEnd() const { return !items || next == items->count(); }
};

}  // namespace

Ref<NSObject> realItemForOpaqueItem(const NSOutlineView& receiver, const Ref<NSObject>& opaqueItem) {
  const Ref<NSTreeController> controller = _treeController(receiver);
  std::int64_t row = 0;
  return _realItemForOpaqueItem(receiver, opaqueItem, row, controller ? controller->content() : nullptr);
}

Ref<NSTreeController> _treeController(const NSOutlineView& receiver) {
  const Ref<NSDictionary> info = receiver.infoForBinding(u"contentAttributeKey");
  return info ? as<NSTreeController>(info->objectForKey(NSObservedObjectKey)) : nullptr;
}

Ref<NSObject> _realItemForOpaqueItem(const NSOutlineView& receiver, const Ref<NSObject>& opaqueItem,
                                     std::int64_t& outlineRowIndex, const Ref<NSArray>& items) {
  const Ref<NSTreeController> controller = _treeController(receiver);
  std::vector<Level> levels;
  std::unordered_set<const NSObject*> owners;
  levels.push_back({nullptr, items});
  for (;;) {
    Level& level = levels.back();
    if (level.isAtEnd() || outlineRowIndex >= receiver.numberOfRows()) {
      owners.erase(level.owner.get());
      levels.pop_back();
      if (levels.empty()) return nullptr;
      // Back at the object whose children these were.
      ++outlineRowIndex;
      continue;
    }
    const Ref<NSObject> model = level.items->objectAtIndex(level.next++);
    const Ref<NSObject> rowItem = receiver.itemAtRow(outlineRowIndex);
    if (rowItem == opaqueItem) return model;
    const bool descends = controller && receiver.isItemExpanded(rowItem) && owners.insert(model.get()).second;
    if (descends)
      levels.push_back({model, controller->childrenOf(*model)});
    else
      ++outlineRowIndex;
  }
}

}  // namespace kelvane
