#include "Support/FaultySystemCalls.h"

#include <stdlib.h>
#include <unistd.h>

#include <algorithm>

namespace kelvane {

FaultySystemCalls::FaultySystemCalls(std::size_t at, Fault fault, int errorNumber)
    : myAt(at), myFault(fault), myErrorNumber(fault == Fault::Interrupted ? EINTR : errorNumber) {}

FaultySystemCalls::~FaultySystemCalls() {
  for (const Unflushed& file : myUnflushed) ::close(file.duplicate);
}

// Counts the call and tells whether it fails.
bool FaultySystemCalls::fails(const char* name) noexcept {
  myCalls.emplace_back(name);
  const bool failed = isNow(Fault::Error) || isNow(Fault::Interrupted) || isSince(Fault::Crash);
  if (failed && myFaultyCall.empty()) myFaultyCall = name;
  if (isNow(Fault::Crash)) loseUnflushed();
  if (failed) errno = myErrorNumber;
  return failed;
}

void FaultySystemCalls::loseUnflushed() noexcept {
  for (const Unflushed& file : myUnflushed)
    if (::ftruncate(file.duplicate, 0) < 0) ::abort();
}

int FaultySystemCalls::open(const char* path, int flags, mode_t mode) noexcept {
  if (fails("open")) return -1;
  const int descriptor = SystemCalls::open(path, flags, mode);
  if (descriptor >= 0) ++myOpenDescriptors;
  return descriptor;
}

int FaultySystemCalls::close(int descriptor) noexcept {
  for (Unflushed& file : myUnflushed)
    if (file.descriptor == descriptor) file.descriptor = -1;
  const int result = SystemCalls::close(descriptor);
  if (result == 0) --myOpenDescriptors;
  return fails("close") ? -1 : result;
}

ssize_t FaultySystemCalls::read(int descriptor, void* buffer, std::size_t size) noexcept {
  if (fails("read")) return -1;
  return SystemCalls::read(descriptor, buffer, isSince(Fault::Short) ? (size + 1) / 2 : size);
}

ssize_t FaultySystemCalls::write(int descriptor, const void* buffer, std::size_t size) noexcept {
  const bool known = std::ranges::any_of(myUnflushed, [&](auto& file) { return file.descriptor == descriptor; });
  if (!known) myUnflushed.push_back({descriptor, ::dup(descriptor)});
  if (fails("write")) {
    const int reason = errno;
    if (isNow(Fault::Crash)) SystemCalls::write(descriptor, buffer, size / 2);
    errno = reason;
    return -1;
  }
  if (isNow(Fault::Nothing)) {
    myFaultyCall = "write";
    return 0;
  }
  return SystemCalls::write(descriptor, buffer, isSince(Fault::Short) ? (size + 1) / 2 : size);
}

int FaultySystemCalls::fsync(int descriptor) noexcept {
  if (fails("fsync")) return -1;
  std::erase_if(myUnflushed,
                [&](const Unflushed& file) { return file.descriptor == descriptor && ::close(file.duplicate) == 0; });
  return 0;
}

}  // namespace kelvane
