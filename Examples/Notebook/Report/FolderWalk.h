#pragma once

#include <string>

namespace notebook {

// Is told what a walk through a folder comes across. Places are relative to the folder that the walk began in, which is
// "." itself.
class FolderVisitor {
 public:
  virtual ~FolderVisitor() = default;

  virtual void visitFolder(const std::string& place) = 0;
  // A regular file, or a link that leads to one, or to nothing.
  virtual void visitFile(const std::string& place) = 0;
  virtual void skipFolderLink(const std::string& place) = 0;
  // A pipe, socket or device.
  virtual void skipSpecialFile(const std::string& place) = 0;
  // A folder of which some or all entries could not be read. Comes instead of, or after, `visitFolder`.
  virtual void failFolder(const std::string& place, const std::string& reason) = 0;
  // The walk ends as soon as this is no longer so.
  virtual bool goesOn() const = 0;
};

// Visits everything in `folder`, in the order of the names' bytes; what a folder holds comes right after it. Does not
// follow links to folders, except for `folder` itself. Keeps the names of one folder and those above it in memory.
void walkFolder(const std::string& folder, FolderVisitor& visitor);

}  // namespace notebook
