#include "Extensions/NSFileManager-QNExtensions.h"

#include <errno.h>
#include <stdlib.h>
#include <sys/stat.h>

#include <memory>
#include <string>
#include <utility>

#include "Extensions/NSString-QNExtensions.h"
#include "Platform/Foundation/Format.h"
#include "Platform/Foundation/NSLog.h"
#include "Platform/Foundation/PathText.h"
#include "Platform/Foundation/TextEncoding.h"
#include "Platform/Foundation/Trash.h"
#include "Utilities/QNLogger.h"

namespace kelvane {

std::vector<Ref<NSURL>> contentsOfDirectoryAtURL(const NSFileManager& receiver, const Ref<NSURL>& url,
                                                 Ref<NSError>* error,
                                                 const std::function<bool(const NSURL&)>& matching) {
  if (!url || !matching) return {};
  return receiver.contentsOfDirectoryAtURL(*url, error, matching);
}

bool createDirectoryRecursivlyAtPath(const NSFileManager& receiver, std::optional<TextView> path,
                                     const Ref<NSDictionary>& attributes, Ref<NSError>* error) {
  Ref<NSError> reason;
  if (receiver.createDirectoryAtPath(path.value_or(TextView()), true, attributes.get(), &reason)) return true;
  NSLog(u"Error while creating recursiv directories at path '%@': %@", path, reason->localizedDescription());
  if (error) *error = reason;
  return false;
}

Ref<NSURL> moveFileToTrash(const NSFileManager& receiver, std::optional<TextView> path, Ref<NSError>* error) {
  if (!path || path->empty()) return nullptr;
  constexpr const char* method = "-[NSFileManager(QNExtensions) moveFileToTrash:]";
  QNLogger& logger = QNLogger::sharedLogger();
  if (!receiver.itemExistsAtPath(*path)) {
    logger.error(__LINE__, __FILE__, method,
                 format(u"Can't move file at path: '%@' to trash. File does not exists.", *path));
    if (error) *error = NSError::errorWithSystemError({ENOENT, std::generic_category()}, *path);
    return nullptr;
  }
  logger.info(__LINE__, __FILE__, method, format(u"Move file at path: '%@' to trash.", *path));
  Ref<NSURL> place;
  if (!trashItemAtPath(*path, &place, error))
    logger.error(__LINE__, __FILE__, method, format(u"Can't move file at path: '%@' to trash.", *path));
  return place;
}

std::optional<Text> resolveAliasAndLinkAtPath(const NSFileManager& receiver, std::optional<TextView> path) {
  if (!path) return std::nullopt;
  if (!receiver.fileExistsAtPath(*path)) return Text(*path);
  const Text standard = stringByStandardizingPath(*path);
  const std::string file = fileSystemRepresentation(standard);
  struct stat status = {};
  if (lstat(file.c_str(), &status) < 0 || !S_ISLNK(status.st_mode)) return standard;
  const std::unique_ptr<char, decltype(&free)> target(realpath(file.c_str(), nullptr), free);
  return target ? textFromFileSystem(target.get()) : standard;
}

bool fileExistsAtURL(const NSFileManager& receiver, const Ref<NSURL>& url) {
  return url && url->isFileURL() && receiver.fileExistsAtPath(url->path().value_or(Text()));
}

bool isDirectoryAtPath(const NSFileManager& receiver, std::optional<TextView> path) {
  bool isDirectory = false;
  return path && receiver.fileExistsAtPath(*path, &isDirectory) && isDirectory;
}

bool isFileAtPath(const NSFileManager& receiver, std::optional<TextView> path) {
  bool isDirectory = false;
  return path && receiver.fileExistsAtPath(*path, &isDirectory) && !isDirectory;
}

}  // namespace kelvane
