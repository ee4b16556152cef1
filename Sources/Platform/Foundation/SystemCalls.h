#pragma once

#include <sys/stat.h>
#include <sys/types.h>

#include <cstddef>

#include "Platform/Foundation/Export.h"

namespace kelvane {

// The system calls that a save, a load and a log file make, as virtual functions, so that a test can let each of them
// fail in each way. Every function takes, returns and sets in `errno` what the call of that name does; none throws. The
// real ones keep nothing and may be called on any thread; a replacement says itself which threads may use it.
class KELVANE_EXPORT SystemCalls {
 public:
  SystemCalls() = default;
  SystemCalls(const SystemCalls&) = delete;
  SystemCalls& operator=(const SystemCalls&) = delete;
  virtual ~SystemCalls() = default;

  // The real calls. They outlive everything that may still save at exit.
  static SystemCalls& system() noexcept;

  // Adds O_CLOEXEC to whatever is asked for: a started program has no business with our files. `mode` counts when
  // `flags` have O_CREAT.
  virtual int open(const char* path, int flags, mode_t mode) noexcept;
  virtual int close(int descriptor) noexcept;
  virtual ssize_t read(int descriptor, void* buffer, std::size_t size) noexcept;
  virtual ssize_t write(int descriptor, const void* buffer, std::size_t size) noexcept;
  virtual int fsync(int descriptor) noexcept;
  virtual int rename(const char* from, const char* to) noexcept;
  // renameat2 with RENAME_NOREPLACE: EEXIST when there is something at `to`, EINVAL where the file system cannot do it.
  virtual int renameWithoutReplacing(const char* from, const char* to) noexcept;
  virtual int link(const char* from, const char* to) noexcept;
  virtual int unlink(const char* path) noexcept;
  virtual int fstat(int descriptor, struct stat* status) noexcept;
  virtual int lstat(const char* path, struct stat* status) noexcept;
  virtual ssize_t readlink(const char* path, char* buffer, std::size_t size) noexcept;
  virtual int fchmod(int descriptor, mode_t mode) noexcept;
  virtual int fchown(int descriptor, uid_t owner, gid_t group) noexcept;
  virtual int flock(int descriptor, int operation) noexcept;
  virtual int mkdir(const char* path, mode_t mode) noexcept;
};

}  // namespace kelvane
