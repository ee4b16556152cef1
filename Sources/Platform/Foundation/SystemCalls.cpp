#include "Platform/Foundation/SystemCalls.h"

#include <fcntl.h>
#include <stdio.h>
#include <sys/file.h>
#include <unistd.h>

namespace kelvane {

SystemCalls& SystemCalls::system() noexcept {
  // Never destroyed: destructors that run at exit may still save.
  static auto& calls = *new SystemCalls();
  return calls;
}

int SystemCalls::open(const char* path, int flags, mode_t mode) noexcept {
  return ::open(path, flags | O_CLOEXEC, mode);
}

int SystemCalls::close(int descriptor) noexcept { return ::close(descriptor); }

ssize_t SystemCalls::read(int descriptor, void* buffer, std::size_t size) noexcept {
  return ::read(descriptor, buffer, size);
}

ssize_t SystemCalls::write(int descriptor, const void* buffer, std::size_t size) noexcept {
  return ::write(descriptor, buffer, size);
}

int SystemCalls::fsync(int descriptor) noexcept { return ::fsync(descriptor); }

int SystemCalls::rename(const char* from, const char* to) noexcept { return ::rename(from, to); }

int SystemCalls::renameWithoutReplacing(const char* from, const char* to) noexcept {
  return ::renameat2(AT_FDCWD, from, AT_FDCWD, to, RENAME_NOREPLACE);
}

int SystemCalls::link(const char* from, const char* to) noexcept { return ::link(from, to); }

int SystemCalls::unlink(const char* path) noexcept { return ::unlink(path); }

int SystemCalls::fstat(int descriptor, struct stat* status) noexcept { return ::fstat(descriptor, status); }

int SystemCalls::lstat(const char* path, struct stat* status) noexcept { return ::lstat(path, status); }

ssize_t SystemCalls::readlink(const char* path, char* buffer, std::size_t size) noexcept {
  return ::readlink(path, buffer, size);
}

int SystemCalls::fchmod(int descriptor, mode_t mode) noexcept { return ::fchmod(descriptor, mode); }

int SystemCalls::fchown(int descriptor, uid_t owner, gid_t group) noexcept {
  return ::fchown(descriptor, owner, group);
}

int SystemCalls::flock(int descriptor, int operation) noexcept { return ::flock(descriptor, operation); }

int SystemCalls::mkdir(const char* path, mode_t mode) noexcept { return ::mkdir(path, mode); }

}  // namespace kelvane
