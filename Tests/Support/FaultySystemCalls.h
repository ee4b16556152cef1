#pragma once

#include <errno.h>

#include <cstddef>
#include <limits>
#include <string>
#include <vector>

#include "Platform/Foundation/SystemCalls.h"

namespace kelvane {

enum class Fault {
  Error,        // one call fails
  Interrupted,  // one call fails with EINTR
  Nothing,      // one write writes 0 bytes
  Short,        // from that call on, reads and writes do half of what they are asked for
  Crash,        // from that call on, nothing is done and everything fails; a write does half before
};

// The real system calls, except that the one of number `at`, counting from 0, has a fault, and that nothing is flushed
// to the disk. A crash is one of the machine: what was written and not flushed is gone. Descriptors are closed whatever
// happens. For one thread at a time.
class FaultySystemCalls : public SystemCalls {
 public:
  static constexpr std::size_t never = std::numeric_limits<std::size_t>::max();

  explicit FaultySystemCalls(std::size_t at = never, Fault fault = Fault::Error, int errorNumber = EIO);
  ~FaultySystemCalls() override;

  // The names of all calls so far.
  const std::vector<std::string>& calls() const { return myCalls; }
  // The name of the call that had the fault; empty when there were not that many calls, or it cannot have this fault.
  const std::string& faultyCall() const { return myFaultyCall; }
  int openDescriptors() const { return myOpenDescriptors; }

  int open(const char* path, int flags, mode_t mode) noexcept override;
  int close(int descriptor) noexcept override;
  ssize_t read(int descriptor, void* buffer, std::size_t size) noexcept override;
  ssize_t write(int descriptor, const void* buffer, std::size_t size) noexcept override;
  int fsync(int descriptor) noexcept override;
  int rename(const char* from, const char* to) noexcept override {
    return fails("rename") ? -1 : SystemCalls::rename(from, to);
  }
  int renameWithoutReplacing(const char* from, const char* to) noexcept override {
    return fails("renameWithoutReplacing") ? -1 : SystemCalls::renameWithoutReplacing(from, to);
  }
  int link(const char* from, const char* to) noexcept override {
    return fails("link") ? -1 : SystemCalls::link(from, to);
  }
  int unlink(const char* path) noexcept override { return fails("unlink") ? -1 : SystemCalls::unlink(path); }
  int fstat(int descriptor, struct stat* status) noexcept override {
    return fails("fstat") ? -1 : SystemCalls::fstat(descriptor, status);
  }
  int lstat(const char* path, struct stat* status) noexcept override {
    return fails("lstat") ? -1 : SystemCalls::lstat(path, status);
  }
  ssize_t readlink(const char* path, char* buffer, std::size_t size) noexcept override {
    return fails("readlink") ? -1 : SystemCalls::readlink(path, buffer, size);
  }
  int fchmod(int descriptor, mode_t mode) noexcept override {
    return fails("fchmod") ? -1 : SystemCalls::fchmod(descriptor, mode);
  }
  int fchown(int descriptor, uid_t owner, gid_t group) noexcept override {
    return fails("fchown") ? -1 : SystemCalls::fchown(descriptor, owner, group);
  }
  int flock(int descriptor, int operation) noexcept override {
    return fails("flock") ? -1 : SystemCalls::flock(descriptor, operation);
  }
  int mkdir(const char* path, mode_t mode) noexcept override {
    return fails("mkdir") ? -1 : SystemCalls::mkdir(path, mode);
  }

 private:
  struct Unflushed {
    int descriptor;  // -1 once it is closed
    int duplicate;
  };

  bool fails(const char* name) noexcept;
  bool isNow(Fault fault) const { return myFault == fault && myCalls.size() - 1 == myAt; }
  bool isSince(Fault fault) const { return myFault == fault && myCalls.size() > myAt; }
  void loseUnflushed() noexcept;

  std::size_t myAt;
  Fault myFault;
  int myErrorNumber;
  std::vector<std::string> myCalls;
  std::string myFaultyCall;
  std::vector<Unflushed> myUnflushed;
  int myOpenDescriptors = 0;
};

}  // namespace kelvane
