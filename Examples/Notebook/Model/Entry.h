#pragma once

#include <functional>

#include "Platform/Foundation/NSArray.h"
#include "Platform/Foundation/NSObject.h"
#include "Platform/Foundation/Properties.h"
#include "Platform/Foundation/Text.h"

namespace notebook {

// What a file of the notebook is, by the extension of its name.
enum class EntryKind { Folder, Note, Table };

// What the outline shows: a folder of notes, or a file with a note or a table. Its properties are "title", "isLeaf" and
// "children", as a tree controller wants them.
class Entry : public kelvane::NSObject {
 public:
  Entry(EntryKind kind, kelvane::Text path);

  EntryKind kind() const { return myKind; }
  bool isLeaf() const { return myKind != EntryKind::Folder; }
  const kelvane::Text& path() const { return myPath; }
  // The name of the file without its extension; that of a folder as it stands.
  const kelvane::Text& title() const { return myTitle; }
  // What entries are sorted by.
  const kelvane::Text& sortKey() const { return mySortKey; }

  // What renames the file when somebody sets the title. Nobody by default: then a title stays.
  using Renaming = std::function<void(Entry& entry, kelvane::TextView title)>;
  void setRenaming(const Renaming* renaming) { myRenamingRef = renaming; }
  void setTitle(kelvane::Text title);
  // The file has another name now.
  void setPath(kelvane::Text path);
  void setChildren(kelvane::Ref<kelvane::NSArray> children) { setField(myChildren, std::move(children)); }
  const kelvane::Ref<kelvane::NSArray>& children() const { return myChildren; }

  const kelvane::PropertyTable& propertyTable() const override;

 private:
  const EntryKind myKind;
  kelvane::Text myPath;
  kelvane::Text myTitle;
  kelvane::Text mySortKey;
  // Never nil; of a leaf it is empty.
  kelvane::Ref<kelvane::NSArray> myChildren;
  const Renaming* myRenamingRef = nullptr;
};

}  // namespace notebook
