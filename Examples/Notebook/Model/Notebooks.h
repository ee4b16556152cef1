#pragma once

#include <functional>
#include <optional>
#include <unordered_map>
#include <vector>

#include "Model/Entry.h"
#include "Platform/Desktop/NSTreeController.h"
#include "Platform/Foundation/NSError.h"
#include "Platform/Foundation/Text.h"

namespace notebook {

// The folder that the notebook shows, as a tree of entries in a tree controller: folders first, each group by title.
// Hidden files, those of other kinds, and links to folders are left out. What an operation says that went wrong is one
// sentence; nothing when all went well. Main thread only.
class Notebooks {
 public:
  // A folder that is not there is made.
  explicit Notebooks(kelvane::Text folder);
  Notebooks(const Notebooks&) = delete;
  Notebooks& operator=(const Notebooks&) = delete;

  const kelvane::Text& folder() const { return myFolder; }
  const kelvane::Ref<kelvane::NSTreeController>& controller() const { return myController; }

  // Reads the folder anew, after it was changed by somebody else. Whatever is still there stays the same object.
  std::optional<kelvane::Text> refresh();

  // Whether there is something else to be shown in this folder now. Reads no other one, so that it can be asked after
  // each saving, which changes a folder, too.
  bool isOutdated(const kelvane::Text& folder) const;

  // Hears what goes wrong when a title is edited in the outline.
  void setTelling(std::function<void(kelvane::Text sentence)> telling) { myTelling = std::move(telling); }

  // The entry of the file; nil when there is none.
  kelvane::Ref<Entry> entryAtPath(kelvane::TextView path) const;
  // All but the folders, in the order of the outline.
  std::vector<kelvane::Ref<Entry>> notes() const;
  // The folders, this one first.
  std::vector<kelvane::Text> folders() const;

  // A new, empty note or a new folder with a title like this one, in the folder of that entry (the entry itself when it
  // is a folder; the outermost for nil). Nil, and a sentence in `error`, when it cannot be made.
  kelvane::Ref<Entry> addNote(const Entry* beside, kelvane::TextView title, kelvane::Text& error);
  kelvane::Ref<Entry> addFolder(const Entry* beside, kelvane::TextView title, kelvane::Text& error);
  // Also what becomes of setting an entry's title.
  std::optional<kelvane::Text> rename(Entry& entry, kelvane::TextView title);
  // Into a folder, or into the outermost for nil. What is in a folder that is moved goes along with it, and so into the
  // trash.
  std::optional<kelvane::Text> move(const std::vector<kelvane::Ref<Entry>>& entries, const Entry* into);
  std::optional<kelvane::Text> moveToTrash(const std::vector<kelvane::Ref<Entry>>& entries);

 private:
  using Entries = std::vector<kelvane::Ref<Entry>>;

  kelvane::Text folderFor(const Entry* beside) const;
  kelvane::Ref<Entry> entryFor(EntryKind kind, const kelvane::Text& path);
  kelvane::Ref<Entry> entryMadeAt(const kelvane::Text& path, kelvane::Text& error);
  Entries readFolders(kelvane::Ref<kelvane::NSError>& error);
  std::optional<kelvane::Text> moveFile(Entry& entry, const kelvane::Text& to);

  kelvane::Text myFolder;
  Entry::Renaming myRenaming;
  std::function<void(kelvane::Text)> myTelling;
  kelvane::Ref<kelvane::NSTreeController> myController;
  std::unordered_map<kelvane::Text, kelvane::Ref<Entry>> myEntries;
};

}  // namespace notebook
