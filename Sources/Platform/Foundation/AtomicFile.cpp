#include "Platform/Foundation/AtomicFile.h"

#include <errno.h>
#include <fcntl.h>
#include <limits.h>
#include <sys/file.h>

#include <algorithm>
#include <cstdint>
#include <string>
#include <utility>

#include "Platform/Foundation/RandomBytes.h"

namespace kelvane {
namespace {

constexpr int mostLinks = 40;
constexpr int mostTemporaryNames = 100;
constexpr int mostDamagedFiles = 1000;

std::error_code errorOf(int number) { return {number, std::generic_category()}; }
std::error_code lastError() { return errorOf(errno); }

// Not for close, whose descriptor is gone even so, nor for rename, which may have happened.
template <class Call>
auto retried(Call call) {
  auto result = call();
  while (result < 0 && errno == EINTR) result = call();
  return result;
}

class Descriptor {
 public:
  explicit Descriptor(SystemCalls& calls) : myCalls(calls) {}
  ~Descriptor() { close(); }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;

  int number() const { return myNumber; }

  std::error_code open(const std::string& path, int flags, mode_t mode = 0) {
    myNumber = retried([&] { return myCalls.open(path.c_str(), flags, mode); });
    return myNumber < 0 ? lastError() : std::error_code();
  }

  std::error_code close() {
    if (myNumber < 0) return {};
    const int result = myCalls.close(std::exchange(myNumber, -1));
    // On Linux the descriptor is closed whatever is returned; a second try could hit another thread's file.
    return result < 0 && errno != EINTR ? lastError() : std::error_code();
  }

  int release() { return std::exchange(myNumber, -1); }

 private:
  SystemCalls& myCalls;
  int myNumber = -1;
};

std::error_code checkPath(const std::string& path) {
  if (path.empty()) return errorOf(ENOENT);
  // Cut at the NUL, it would name another file.
  return path.find('\0') == std::string::npos ? std::error_code() : errorOf(EINVAL);
}

std::error_code checkRegular(mode_t mode) {
  if (S_ISREG(mode)) return {};
  return errorOf(S_ISDIR(mode) ? EISDIR : EINVAL);
}

// With the slash; empty for a file in the working folder.
std::string folderPrefix(const std::string& path) { return path.substr(0, path.rfind('/') + 1); }

std::error_code openFolder(Descriptor& folder, const std::string& path) {
  const std::string prefix = folderPrefix(path);
  return folder.open(prefix.empty() ? "." : prefix, O_RDONLY | O_DIRECTORY);
}

std::error_code flushFolder(const Descriptor& folder, SystemCalls& calls) {
  const int result = retried([&] { return calls.fsync(folder.number()); });
  return result < 0 && errno != EINVAL ? lastError() : std::error_code();
}

// Where the symbolic links that start at a path end.
struct Target {
  std::string path;
  bool exists = false;
  struct stat status = {};
};

std::error_code followLink(std::string& path, SystemCalls& calls) {
  char link[PATH_MAX];
  const ssize_t length = retried([&] { return calls.readlink(path.c_str(), link, sizeof link); });
  if (length < 0) return lastError();
  if (static_cast<std::size_t>(length) == sizeof link) return errorOf(ENAMETOOLONG);
  const std::string_view text(link, static_cast<std::size_t>(length));
  path = (text.starts_with('/') ? std::string() : folderPrefix(path)).append(text);
  return {};
}

// By hand, because the system tells the last path of a chain only when there is something.
std::error_code findTarget(const std::string& path, Target& target, SystemCalls& calls) {
  if (const auto error = checkPath(path)) return error;
  target.path = path;
  for (int links = 0; links <= mostLinks; ++links) {
    if (retried([&] { return calls.lstat(target.path.c_str(), &target.status); }) < 0)
      return errno == ENOENT ? std::error_code() : lastError();
    target.exists = !S_ISLNK(target.status.st_mode);
    if (target.exists) return {};
    if (const auto error = followLink(target.path, calls)) return error;
  }
  return errorOf(ELOOP);
}

// A file of an unpredictable name that is removed unless it has been renamed.
class TemporaryFile {
 public:
  explicit TemporaryFile(SystemCalls& calls) : myCalls(calls), myFile(calls) {}
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;

  ~TemporaryFile() {
    myFile.close();
    if (!myPath.empty()) retried([this] { return myCalls.unlink(myPath.c_str()); });
  }

  std::error_code create(const std::string& prefix, mode_t mode);
  std::error_code becomeLike(const Target& target);
  std::error_code write(std::string_view bytes);
  std::error_code flush();
  std::error_code renameTo(const std::string& path);

 private:
  SystemCalls& myCalls;
  Descriptor myFile;
  std::string myPath;
};

// The name does not contain that of the file to be saved, which may be as long as names can be.
std::string temporaryName() {
  std::uint8_t random[8];
  fillWithRandomBytes(random);
  std::string name = ".kelvane-save-";
  for (const std::uint8_t byte : random) {
    name += "0123456789abcdef"[byte >> 4];
    name += "0123456789abcdef"[byte & 15];
  }
  return name;
}

std::error_code TemporaryFile::create(const std::string& prefix, mode_t mode) {
  std::error_code error;
  for (int i = 0; i < mostTemporaryNames; ++i) {
    std::string path = prefix + temporaryName();
    error = myFile.open(path, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_NOCTTY, mode);
    if (!error) myPath = std::move(path);
    if (error != std::errc::file_exists) return error;
  }
  return error;
}

std::error_code TemporaryFile::becomeLike(const Target& target) {
  struct stat mine = {};
  const auto give = [&](uid_t owner, gid_t group) {
    return retried([&] { return myCalls.fchown(myFile.number(), owner, group); });
  };
  if (retried([&] { return myCalls.fstat(myFile.number(), &mine); }) < 0) return lastError();
  mode_t mode = target.exists ? target.status.st_mode & 0777 : 0600;
  if (target.exists && (mine.st_uid != target.status.st_uid || mine.st_gid != target.status.st_gid)) {
    const bool groupKept = give(target.status.st_uid, target.status.st_gid) == 0 ||
                           give(static_cast<uid_t>(-1), target.status.st_gid) == 0 ||
                           mine.st_gid == target.status.st_gid;
    // What one group was allowed must not be allowed to another.
    if (!groupKept) mode &= ~mode_t{070} | (mode & 07) << 3;
  }
  // Where all files have the same permissions, setting them may be an error.
  if ((mine.st_mode & 0777) == mode) return {};
  return retried([&] { return myCalls.fchmod(myFile.number(), mode); }) < 0 ? lastError() : std::error_code();
}

std::error_code TemporaryFile::write(std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = retried([&] { return myCalls.write(myFile.number(), bytes.data(), bytes.size()); });
    if (written < 0) return lastError();
    // No call has a reason for this; asking again might never end.
    if (written == 0) return errorOf(EIO);
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
  return {};
}

std::error_code TemporaryFile::flush() {
  // Before the renaming: else the disk may learn of the new name first and have an empty file after a crash.
  if (retried([&] { return myCalls.fsync(myFile.number()); }) < 0) return lastError();
  // Network file systems tell only now that something did not get there.
  return myFile.close();
}

std::error_code TemporaryFile::renameTo(const std::string& path) {
  if (myCalls.rename(myPath.c_str(), path.c_str()) < 0) return lastError();
  myPath.clear();
  return {};
}

std::error_code readWhole(const Descriptor& file, std::size_t limit, std::string& bytes, SystemCalls& calls) {
  char chunk[16384];
  for (;;) {
    const ssize_t length = retried([&] { return calls.read(file.number(), chunk, sizeof chunk); });
    if (length < 0) return lastError();
    if (length == 0) return {};
    if (static_cast<std::size_t>(length) > limit - bytes.size()) return errorOf(EFBIG);
    bytes.append(chunk, static_cast<std::size_t>(length));
  }
}

std::error_code readInto(std::string& bytes, const std::string& path, std::size_t limit, SystemCalls& calls) {
  if (const auto error = checkPath(path)) return error;
  Descriptor file(calls);
  // Opening a pipe would wait for a writer, and a terminal could become ours.
  if (const auto error = file.open(path, O_RDONLY | O_NONBLOCK | O_NOCTTY)) return error;
  struct stat status = {};
  if (retried([&] { return calls.fstat(file.number(), &status); }) < 0) return lastError();
  if (const auto error = checkRegular(status.st_mode)) return error;
  limit = std::min(limit, bytes.max_size());
  const auto size = static_cast<std::uintmax_t>(status.st_size);
  if (size > limit) return errorOf(EFBIG);
  bytes.reserve(static_cast<std::size_t>(size));
  return readWhole(file, limit, bytes, calls);
}

// For file systems that cannot rename without replacing.
int moveByLink(const std::string& from, const std::string& to, SystemCalls& calls) {
  if (calls.link(from.c_str(), to.c_str()) < 0) return -1;
  if (calls.unlink(from.c_str()) == 0) return 0;
  const int reason = errno;
  calls.unlink(to.c_str());
  errno = reason;
  return -1;
}

std::error_code moveWithoutReplacing(const std::string& from, const std::string& to, SystemCalls& calls) {
  int result = calls.renameWithoutReplacing(from.c_str(), to.c_str());
  if (result < 0 && (errno == EINVAL || errno == ENOSYS)) result = moveByLink(from, to, calls);
  return result < 0 ? lastError() : std::error_code();
}

// Somebody may have removed the lock file while this one waited, and others lock a new one: `lost` is then true.
std::error_code checkStillThere(int descriptor, const std::string& path, bool& lost, SystemCalls& calls) {
  struct stat held = {};
  struct stat named = {};
  if (retried([&] { return calls.fstat(descriptor, &held); }) < 0) return lastError();
  const bool gone = retried([&] { return calls.lstat(path.c_str(), &named); }) < 0;
  if (gone && errno != ENOENT) return lastError();
  lost = gone || held.st_dev != named.st_dev || held.st_ino != named.st_ino;
  return {};
}

std::error_code lock(Descriptor& file, const std::string& path, bool& lost, SystemCalls& calls) {
  // Write access, because some network file systems demand it for an exclusive lock.
  if (const auto error = file.open(path, O_RDWR | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY, 0600)) return error;
  if (retried([&] { return calls.flock(file.number(), LOCK_EX); }) < 0) return lastError();
  return checkStillThere(file.number(), path, lost, calls);
}

}  // namespace

FileContents readFile(const std::string& path, std::size_t limit, SystemCalls& calls) {
  FileContents contents;
  contents.error = readInto(contents.bytes, path, limit, calls);
  if (contents.error) contents.bytes.clear();
  return contents;
}

struct AtomicFileWriter::Save {
  explicit Save(SystemCalls& systemCalls) : calls(systemCalls), folder(systemCalls), file(systemCalls) {}

  std::error_code begin(const std::string& path, NewFileAccess access) {
    if (const auto reason = findTarget(path, target, calls)) return reason;
    if (target.exists) {
      if (const auto reason = checkRegular(target.status.st_mode)) return reason;
    }
    // Opened first: a failure here is then one before anything has changed.
    if (const auto reason = openFolder(folder, target.path)) return reason;
    // What is to replace a file is nobody else's business until it has that one's permissions.
    const bool isCustomary = access == NewFileAccess::Customary && !target.exists;
    if (const auto reason = file.create(folderPrefix(target.path), isCustomary ? 0666 : 0600)) return reason;
    return isCustomary ? std::error_code() : file.becomeLike(target);
  }

  std::error_code finish() {
    if (const auto reason = file.flush()) return reason;
    if (const auto reason = file.renameTo(target.path)) return reason;
    return flushFolder(folder, calls);
  }

  SystemCalls& calls;
  Target target;
  Descriptor folder;
  TemporaryFile file;
  std::error_code error;
};

AtomicFileWriter::AtomicFileWriter(const std::string& path, SystemCalls& calls, NewFileAccess access)
    : mySave(std::make_unique<Save>(calls)) {
  mySave->error = mySave->begin(path, access);
}

AtomicFileWriter::~AtomicFileWriter() = default;

std::error_code AtomicFileWriter::append(std::string_view bytes) {
  if (!mySave->error) mySave->error = mySave->file.write(bytes);
  return mySave->error;
}

std::error_code AtomicFileWriter::commit() {
  if (!mySave->error) mySave->error = mySave->finish();
  return mySave->error;
}

std::error_code writeFileAtomically(const std::string& path, std::string_view bytes, SystemCalls& calls,
                                    NewFileAccess access) {
  AtomicFileWriter writer(path, calls, access);
  // An error stays until it is asked for.
  writer.append(bytes);
  return writer.commit();
}

std::error_code setAside(const std::string& path, std::string* newPath, SystemCalls& calls) {
  Target target;
  if (const auto error = findTarget(path, target, calls)) return error;
  if (!target.exists) return errorOf(ENOENT);
  std::error_code error;
  for (int i = 1; i <= mostDamagedFiles; ++i) {
    std::string aside = target.path + ".damaged-" + std::to_string(i);
    error = moveWithoutReplacing(target.path, aside, calls);
    if (!error && newPath) *newPath = std::move(aside);
    if (error != std::errc::file_exists) return error;
  }
  return error;
}

FileLock::FileLock(const std::string& path, SystemCalls& calls) : myCalls(calls) {
  myError = checkPath(path);
  if (myError) return;
  Descriptor file(calls);
  bool lost = true;
  while (lost && !myError) {
    lost = false;
    file.close();
    myError = lock(file, path, lost, calls);
  }
  if (!myError) myDescriptor = file.release();
}

FileLock::~FileLock() {
  if (myDescriptor >= 0) myCalls.close(myDescriptor);
}

}  // namespace kelvane
