#include "Model/Notebooks.h"

#include <algorithm>
#include <filesystem>
#include <memory>
#include <unordered_set>
#include <utility>

#include "Extensions/NSFileManager-QNExtensions.h"
#include "Extensions/NSFileManager-ThreadSafeManager.h"
#include "Model/NoteFile.h"
#include "Platform/Foundation/Format.h"
#include "Platform/Foundation/NSDirectoryEnumerator.h"
#include "Platform/Foundation/NSError.h"
#include "Platform/Foundation/NSFileManager.h"
#include "Platform/Foundation/PathText.h"
#include "Platform/Foundation/TextEncoding.h"

namespace notebook {
namespace {

using kelvane::NSArray;
using kelvane::NSError;
using kelvane::NSFileManager;
using kelvane::Ref;
using kelvane::Text;
using kelvane::TextView;
using kelvane::NSFileManagerExtensions::threadSafeManager;

bool standsBefore(const Ref<Entry>& a, const Ref<Entry>& b) {
  if (a->isLeaf() != b->isLeaf()) return b->isLeaf();
  return a->sortKey() != b->sortKey() ? a->sortKey() < b->sortKey() : a->path() < b->path();
}

Text sentence(const Ref<NSError>& error) { return error ? error->localizedDescription() : Text(); }

bool isLink(TextView path) {
  std::error_code ignored;
  return std::filesystem::is_symlink(kelvane::fileSystemRepresentation(path), ignored);
}

// A title as it can stand in a path.
Text fileName(TextView title) {
  Text name(title);
  std::ranges::replace(name, u'/', u'-');
  std::erase(name, u'\0');
  while (name.starts_with(u'.')) name.erase(0, 1);
  return name.empty() ? Text(u"Untitled") : name;
}

// Those that do not go along with another of them anyway.
std::vector<Ref<Entry>> outermost(const std::vector<Ref<Entry>>& entries) {
  std::unordered_set<Text> paths;
  for (const Ref<Entry>& entry : entries) paths.insert(entry->path());
  std::vector<Ref<Entry>> result;
  for (const Ref<Entry>& entry : entries) {
    Text above = entry->path();
    do above = Text(kelvane::stringByDeletingLastPathComponent(above));
    while (above.size() > 1 && !paths.contains(above));
    if (above.size() <= 1) result.push_back(entry);
  }
  return result;
}

// Calls `visit` with each entry below, in the order of the outline.
template <class Visit>
void walk(const Ref<NSArray>& entries, Visit visit) {
  std::vector<std::pair<Ref<NSArray>, std::size_t>> way{{entries, 0}};
  while (!way.empty()) {
    auto& [array, next] = way.back();
    if (next == array->count()) {
      way.pop_back();
      continue;
    }
    const auto entry = kelvane::as<Entry>(array->objectAtIndex(next++));
    visit(entry);
    if (!entry->isLeaf()) way.emplace_back(entry->children(), 0);
  }
}

}  // namespace

Notebooks::Notebooks(Text folder)
    : myFolder(std::move(folder)),
      myRenaming([this](Entry& entry, TextView title) {
        const auto failure = rename(entry, title);
        if (failure && myTelling) myTelling(*failure);
      }),
      myController(std::make_shared<kelvane::NSTreeController>(u"children", std::nullopt, u"isLeaf")) {
  if (!isDirectoryAtPath(threadSafeManager(), myFolder))
    createDirectoryRecursivlyAtPath(threadSafeManager(), myFolder, nullptr);
}

Ref<Entry> Notebooks::entryFor(EntryKind kind, const Text& path) {
  const auto known = myEntries.find(path);
  if (known != myEntries.end() && known->second->kind() == kind) return known->second;
  auto entry = std::make_shared<Entry>(kind, path);
  entry->setRenaming(&myRenaming);
  return entry;
}

// All entries, those of a folder behind it.
Notebooks::Entries Notebooks::readFolders(Ref<NSError>& error) {
  const NSFileManager& files = threadSafeManager();
  Entries entries;
  // A walk that cannot begin looks like one through an empty folder.
  files.contentsOfDirectoryAtPath(myFolder, &error);
  if (error) return entries;
  kelvane::NSDirectoryEnumerator enumerator(myFolder);
  while (const auto relative = enumerator.nextObject()) {
    const Text path = kelvane::stringByAppendingPathComponent(myFolder, *relative);
    const bool isHidden = kelvane::lastPathComponent(path).starts_with(u'.');
    if (isDirectoryAtPath(files, path)) {
      if (isHidden)
        enumerator.skipDescendants();
      else if (!isLink(path))
        entries.push_back(entryFor(EntryKind::Folder, path));
    } else if (const auto kind = kindOfFile(path); kind && !isHidden) {
      entries.push_back(entryFor(*kind, path));
    }
  }
  return entries;
}

std::optional<Text> Notebooks::refresh() {
  Ref<NSError> error;
  const Entries entries = readFolders(error);
  if (error) return sentence(error);
  myEntries.clear();
  std::unordered_map<Text, std::vector<Ref<kelvane::NSObject>>> children;
  Entries sorted = entries;
  std::ranges::sort(sorted, standsBefore);
  for (const Ref<Entry>& entry : sorted) {
    myEntries.emplace(entry->path(), entry);
    children[Text(kelvane::stringByDeletingLastPathComponent(entry->path()))].push_back(entry);
  }
  for (const Ref<Entry>& entry : entries) {
    if (entry->isLeaf()) continue;
    const auto found = children.find(entry->path());
    entry->setChildren(std::make_shared<NSArray>(found == children.end() ? std::vector<Ref<kelvane::NSObject>>()
                                                                         : std::move(found->second)));
  }
  myController->setContent(std::make_shared<NSArray>(std::move(children[myFolder])));
  return std::nullopt;
}

bool Notebooks::isOutdated(const Text& folder) const {
  const NSFileManager& files = threadSafeManager();
  const Ref<Entry> entry = entryAtPath(folder);
  Ref<NSError> error;
  std::size_t known = 0;
  for (const Text& name : files.contentsOfDirectoryAtPath(folder, &error)) {
    if (name.starts_with(u'.')) continue;
    const Text path = kelvane::stringByAppendingPathComponent(folder, name);
    if (myEntries.contains(path))
      ++known;
    else if (kindOfFile(path) || (isDirectoryAtPath(files, path) && !isLink(path)))
      return true;
  }
  const Ref<NSArray>& shown = entry ? entry->children() : myController->content();
  return error || !shown || known != shown->count();
}

Ref<Entry> Notebooks::entryAtPath(TextView path) const {
  const auto found = myEntries.find(Text(path));
  return found == myEntries.end() ? nullptr : found->second;
}

std::vector<Ref<Entry>> Notebooks::notes() const {
  Entries leaves;
  walk(myController->content(), [&](const Ref<Entry>& entry) {
    if (entry->isLeaf()) leaves.push_back(entry);
  });
  return leaves;
}

std::vector<Text> Notebooks::folders() const {
  std::vector<Text> paths{myFolder};
  walk(myController->content(), [&](const Ref<Entry>& entry) {
    if (!entry->isLeaf()) paths.push_back(entry->path());
  });
  return paths;
}

Text Notebooks::folderFor(const Entry* beside) const {
  if (!beside) return myFolder;
  return beside->isLeaf() ? Text(kelvane::stringByDeletingLastPathComponent(beside->path())) : beside->path();
}

Ref<Entry> Notebooks::addNote(const Entry* beside, TextView title, Text& error) {
  const Text folder = folderFor(beside);
  Ref<NSError> reason;
  const auto name = createUniqueFileAtPath(threadSafeManager(), folder, fileName(title), u"note", &reason);
  if (!name) {
    error = sentence(reason);
    return nullptr;
  }
  const Text path = kelvane::stringByAppendingPathComponent(folder, *name);
  // An empty file is no archive.
  if (const auto failure = writeNote(kelvane::NSAttributedString(), path)) {
    error = *failure;
    threadSafeManager().removeItemAtPath(path, nullptr);
    return nullptr;
  }
  return entryMadeAt(path, error);
}

Ref<Entry> Notebooks::addFolder(const Entry* beside, TextView title, Text& error) {
  const NSFileManager& files = threadSafeManager();
  const Text folder = folderFor(beside);
  const Text name = fileName(title);
  Text path = kelvane::stringByAppendingPathComponent(folder, name);
  for (int number = 1; files.itemExistsAtPath(path); ++number)
    path = kelvane::stringByAppendingPathComponent(folder, kelvane::format(u"%@-%d", name, number));
  Ref<NSError> reason;
  if (!files.createDirectoryAtPath(path, false, &reason)) {
    error = sentence(reason);
    return nullptr;
  }
  return entryMadeAt(path, error);
}

Ref<Entry> Notebooks::entryMadeAt(const Text& path, Text& error) {
  if (auto failure = refresh()) {
    error = std::move(*failure);
    return nullptr;
  }
  auto entry = entryAtPath(path);
  if (!entry) error = kelvane::format(u"'%@' has vanished again.", path);
  return entry;
}

std::optional<Text> Notebooks::moveFile(Entry& entry, const Text& to) {
  if (to == entry.path()) return std::nullopt;
  Ref<NSError> error;
  if (!threadSafeManager().moveItemAtPath(entry.path(), to, &error)) return sentence(error);
  // What is below a folder moves along, and remains the same as well.
  const Text from = entry.path();
  const Text below = from + u"/";
  Entries moved;
  if (const auto known = entryAtPath(from)) moved.push_back(known);
  if (!entry.isLeaf())
    for (const auto& [path, one] : myEntries)
      if (path.starts_with(below)) moved.push_back(one);
  for (const Ref<Entry>& one : moved) {
    const Text path = to + one->path().substr(from.size());
    myEntries.erase(one->path());
    one->setPath(path);
    myEntries.insert_or_assign(path, one);
  }
  return std::nullopt;
}

std::optional<Text> Notebooks::rename(Entry& entry, TextView title) {
  Text name = fileName(title);
  if (entry.isLeaf()) name = kelvane::stringByAppendingPathExtension(name, kelvane::pathExtension(entry.path()));
  const TextView folder = kelvane::stringByDeletingLastPathComponent(entry.path());
  if (auto failure = moveFile(entry, kelvane::stringByAppendingPathComponent(folder, name))) return failure;
  return refresh();
}

std::optional<Text> Notebooks::move(const std::vector<Ref<Entry>>& entries, const Entry* into) {
  const Text folder = folderFor(into);
  std::optional<Text> failure;
  for (const Ref<Entry>& entry : outermost(entries)) {
    const TextView name = kelvane::lastPathComponent(entry->path());
    if (auto reason = moveFile(*entry, kelvane::stringByAppendingPathComponent(folder, name)))
      failure = std::move(reason);
  }
  const auto reading = refresh();
  return failure ? failure : reading;
}

std::optional<Text> Notebooks::moveToTrash(const std::vector<Ref<Entry>>& entries) {
  Ref<NSError> error;
  for (const Ref<Entry>& entry : outermost(entries)) moveFileToTrash(threadSafeManager(), entry->path(), &error);
  const auto reading = refresh();
  return error ? std::optional(sentence(error)) : reading;
}

}  // namespace notebook
