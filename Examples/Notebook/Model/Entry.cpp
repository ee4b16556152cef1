#include "Model/Entry.h"

#include <memory>
#include <utility>

#include "Platform/Foundation/PathText.h"
#include "Platform/Foundation/TextCase.h"

namespace notebook {
namespace {

using kelvane::NSArray;
using kelvane::NSObject;
using kelvane::Text;
using kelvane::TextView;

Text titleOf(TextView path, EntryKind kind) {
  const TextView name = kelvane::lastPathComponent(path);
  return Text(kind == EntryKind::Folder ? name : kelvane::stringByDeletingPathExtension(name));
}

// Leaves share one, since most entries are leaves.
const kelvane::Ref<NSArray>& noChildren() {
  static const auto none = std::make_shared<NSArray>();
  return none;
}

}  // namespace

Entry::Entry(EntryKind kind, Text path)
    : myKind(kind),
      myPath(std::move(path)),
      myTitle(titleOf(myPath, kind)),
      mySortKey(kelvane::lowercaseString(myTitle)),
      myChildren(noChildren()) {}

void Entry::setTitle(Text title) {
  if (myRenamingRef) (*myRenamingRef)(*this, title);
}

void Entry::setPath(Text path) {
  myPath = std::move(path);
  mySortKey = kelvane::lowercaseString(titleOf(myPath, myKind));
  setField(myTitle, titleOf(myPath, myKind));
}

const kelvane::PropertyTable& Entry::propertyTable() const {
  static const kelvane::PropertyTable table(
      NSObject::propertyTable(),
      {kelvane::property(u"title", &Entry::title, &Entry::setTitle), kelvane::property(u"isLeaf", &Entry::isLeaf),
       kelvane::property(u"children", &Entry::myChildren)});
  return table;
}

}  // namespace notebook
