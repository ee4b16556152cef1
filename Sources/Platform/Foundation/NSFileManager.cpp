#include "Platform/Foundation/NSFileManager.h"

#include <filesystem>
#include <optional>
#include <string>
#include <system_error>

#include "Platform/Foundation/TextEncoding.h"

namespace kelvane {
namespace {

// Nothing for a path that the system's calls would cut short, or take for another.
std::optional<std::filesystem::path> systemPath(TextView path) {
  if (path.empty() || path.find(u'\0') != TextView::npos) return std::nullopt;
  return fileSystemRepresentation(path);
}

bool failWith(const std::error_code& reason, TextView path, Ref<NSError>* error) {
  if (error) *error = NSError::errorWithSystemError(reason, path);
  return false;
}

bool failWithoutFile(TextView path, Ref<NSError>* error) {
  return failWith(std::make_error_code(std::errc::no_such_file_or_directory), path, error);
}

}  // namespace

bool NSFileManager::fileExistsAtPath(TextView path) const { return fileExistsAtPath(path, nullptr); }

bool NSFileManager::fileExistsAtPath(TextView path, bool* isDirectory) const {
  const auto file = systemPath(path);
  std::error_code ignored;
  const std::filesystem::file_status status =
      file ? std::filesystem::status(*file, ignored) : std::filesystem::file_status();
  if (isDirectory) *isDirectory = std::filesystem::is_directory(status);
  return std::filesystem::exists(status);
}

bool NSFileManager::removeItemAtPath(TextView path, Ref<NSError>* error) const {
  const auto file = systemPath(path);
  if (!file) return failWithoutFile(path, error);
  std::error_code reason;
  const std::uintmax_t removed = std::filesystem::remove_all(*file, reason);
  if (reason) return failWith(reason, path, error);
  return removed > 0 || failWithoutFile(path, error);
}

bool NSFileManager::createDirectoryAtPath(TextView path, bool withIntermediateDirectories, Ref<NSError>* error) const {
  const auto file = systemPath(path);
  if (!file) return failWithoutFile(path, error);
  std::error_code reason;
  if (withIntermediateDirectories)
    std::filesystem::create_directories(*file, reason);
  else if (!std::filesystem::create_directory(*file, reason) && !reason)
    reason = std::make_error_code(std::errc::file_exists);
  return !reason || failWith(reason, path, error);
}

}  // namespace kelvane
