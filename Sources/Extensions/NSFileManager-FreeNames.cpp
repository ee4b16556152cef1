// The operations of NSFileManager-QNExtensions.h that find names which are free.

#include <errno.h>
#include <fcntl.h>
#include <unistd.h>

#include <string>

#include "Extensions/NSFileManager-QNExtensions.h"
#include "Extensions/NSFileManager-ThreadSafeManager.h"
#include "Extensions/NSString-QNExtensions.h"
#include "Platform/Foundation/Format.h"
#include "Platform/Foundation/NSSearchPath.h"
#include "Platform/Foundation/PathText.h"
#include "Platform/Foundation/TextEncoding.h"
#include "Utilities/QNLogger.h"

namespace kelvane {
namespace {

constexpr int mostNumbers = 9999;
constexpr int mostTemporaryNames = 100;
constexpr const char* uniqueNameMethod =
    "-[NSFileManager(QNExtensions) uniqueFileNameAtPath:basedOnName:fileExtension:]";

std::error_code errorOf(int number) { return {number, std::generic_category()}; }

// Takes a file name if it is free: 0, EEXIST when it is not, or what is in the way otherwise.
using Taking = std::function<int(const Text& name)>;

void setError(Ref<NSError>* error, int number, TextView path) {
  if (error) *error = NSError::errorWithSystemError(errorOf(number), path);
}

// A new file of that path, which nobody else has made.
int makeFile(const std::string& path, mode_t mode) {
  const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW | O_NOCTTY, mode);
  if (file < 0) return errno;
  close(file);
  return 0;
}

// The first name of "NAME.EXTENSION", "NAME-1.EXTENSION" and so on that can be taken.
std::optional<Text> takeUniqueName(TextView base, TextView extension, const Taking& take, int& reason) {
  Text name = format(u"%@.%@", base, extension);
  reason = take(name);
  for (int number = 1; reason == EEXIST && number <= mostNumbers; ++number) {
    name = format(u"%@-%d.%@", base, number, extension);
    reason = take(name);
  }
  if (reason == 0) return name;
  QNLogger::sharedLogger().error(__LINE__, __FILE__, uniqueNameMethod, u"Could not create unique file name.");
  return std::nullopt;
}

bool isFolder(const NSFileManager& files, TextView path) {
  if (isDirectoryAtPath(files, path)) return true;
  QNLogger::sharedLogger().warn(__LINE__, __FILE__, uniqueNameMethod, u"Folder does not exist or path points to file.");
  return false;
}

Ref<NSURL> takeTemporaryName(std::optional<TextView> extension, const Taking& take, int& reason) {
  const Text folder = NSTemporaryDirectory();
  reason = EEXIST;
  for (int i = 0; i < mostTemporaryNames && reason == EEXIST; ++i) {
    Text name = NSStringExtensions::uniqueString();
    if (extension) name = format(u"%@.%@", name, *extension);
    const Text path = stringByAppendingPathComponent(folder, name);
    reason = take(path);
    if (reason == 0) return NSURL::fileURLWithPath(path);
  }
  QNLogger::sharedLogger().error(__LINE__, __FILE__, "+[NSFileManager(QNExtensions) temporaryFileURLWithExtension:]",
                                 u"Can't determine temporary file path.");
  return nullptr;
}

bool isFileName(TextView name) { return name.find(u'/') == TextView::npos && name.find(u'\0') == TextView::npos; }

}  // namespace

std::optional<Text> uniqueFileNameAtPath(const NSFileManager& receiver, std::optional<TextView> path,
                                         std::optional<TextView> basedOnName, std::optional<TextView> fileExtension) {
  if (!path || path->empty() || !basedOnName || basedOnName->empty()) return std::nullopt;
  if (!isFolder(receiver, *path)) return std::nullopt;
  const auto take = [&](const Text& name) {
    return receiver.itemExistsAtPath(stringByAppendingPathComponent(*path, name)) ? EEXIST : 0;
  };
  int reason = 0;
  return takeUniqueName(*basedOnName, fileExtension.value_or(TextView()), take, reason);
}

std::optional<Text> createUniqueFileAtPath(const NSFileManager& receiver, std::optional<TextView> path,
                                           std::optional<TextView> basedOnName, std::optional<TextView> fileExtension,
                                           Ref<NSError>* error) {
  const TextView folder = path.value_or(TextView());
  const TextView base = basedOnName.value_or(TextView());
  const TextView extension = fileExtension.value_or(TextView());
  int reason = EINVAL;
  std::optional<Text> name;
  if (!folder.empty() && !base.empty()) {
    reason = receiver.itemExistsAtPath(folder) ? ENOTDIR : ENOENT;
    const auto take = [&](const Text& candidate) {
      if (!isFileName(candidate)) return EINVAL;
      return makeFile(fileSystemRepresentation(stringByAppendingPathComponent(folder, candidate)), 0666);
    };
    if (isFolder(receiver, folder)) name = takeUniqueName(base, extension, take, reason);
  }
  if (!name) setError(error, reason, folder);
  return name;
}

namespace NSFileManagerExtensions {

Ref<NSURL> temporaryFileURLWithExtension(std::optional<TextView> extension) {
  const NSFileManager& files = threadSafeManager();
  int reason = 0;
  return takeTemporaryName(
      extension, [&files](const Text& path) { return files.itemExistsAtPath(path) ? EEXIST : 0; }, reason);
}

Ref<NSURL> createTemporaryFileWithExtension(std::optional<TextView> extension, Ref<NSError>* error) {
  const bool isPossible = isFileName(extension.value_or(TextView()));
  int reason = EINVAL;
  const auto take = [](const Text& path) { return makeFile(fileSystemRepresentation(path), 0600); };
  Ref<NSURL> url = isPossible ? takeTemporaryName(extension, take, reason) : nullptr;
  if (!url) setError(error, reason, NSTemporaryDirectory());
  return url;
}

}  // namespace NSFileManagerExtensions

}  // namespace kelvane
