#include "Report/FolderWalk.h"

#include <algorithm>
#include <filesystem>
#include <system_error>
#include <vector>

namespace notebook {
namespace {

namespace fs = std::filesystem;

struct Entry {
  enum class Kind { Folder, FolderLink, File, Special };

  std::string name;
  Kind kind;
};

Entry::Kind kindOf(const fs::directory_entry& entry) {
  std::error_code error;
  const bool isLink = entry.symlink_status(error).type() == fs::file_type::symlink;
  switch (entry.status(error).type()) {
    case fs::file_type::directory:
      return isLink ? Entry::Kind::FolderLink : Entry::Kind::Folder;
    case fs::file_type::block:
    case fs::file_type::character:
    case fs::file_type::fifo:
    case fs::file_type::socket:
      return Entry::Kind::Special;
    default:
      // What cannot be told apart is opened like a file: then there is a reason to report.
      return Entry::Kind::File;
  }
}

// All that could be read before `error`, sorted.
std::vector<Entry> entriesOf(const std::string& folder, std::error_code& error) {
  std::vector<Entry> entries;
  for (fs::directory_iterator entry(folder, error); !error && entry != fs::directory_iterator(); entry.increment(error))
    entries.push_back({entry->path().filename().native(), kindOf(*entry)});
  std::ranges::sort(entries, {}, &Entry::name);
  return entries;
}

class Walk {
 public:
  Walk(const std::string& root, FolderVisitor& visitor) : myRoot(root), myVisitor(visitor) {}

  // Recursion ends where paths become too long for the system.
  void walk(const std::string& place) {
    std::error_code error;
    const std::vector<Entry> entries = entriesOf(place.empty() ? myRoot : myRoot + '/' + place, error);
    const std::string shown = place.empty() ? "." : place;
    if (!error || !entries.empty()) myVisitor.visitFolder(shown);
    if (error) myVisitor.failFolder(shown, error.message());
    for (const Entry& entry : entries) {
      if (!myVisitor.goesOn()) return;
      visit(entry.kind, place.empty() ? entry.name : place + '/' + entry.name);
    }
  }

 private:
  void visit(Entry::Kind kind, const std::string& place) {
    switch (kind) {
      case Entry::Kind::Folder:
        return walk(place);
      case Entry::Kind::FolderLink:
        return myVisitor.skipFolderLink(place);
      case Entry::Kind::Special:
        return myVisitor.skipSpecialFile(place);
      case Entry::Kind::File:
        return myVisitor.visitFile(place);
    }
  }

  const std::string& myRoot;
  FolderVisitor& myVisitor;
};

}  // namespace

void walkFolder(const std::string& folder, FolderVisitor& visitor) { Walk(folder, visitor).walk(""); }

}  // namespace notebook
