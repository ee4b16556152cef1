#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <system_error>

#include "Platform/Foundation/Export.h"
#include "Platform/Foundation/SystemCalls.h"

// Files that cannot be lost: whatever fails, and whenever the process or the machine dies, a file is there whole.
//
// Paths are bytes as the system takes them, relative ones are relative to the working folder. An empty path is
// std::errc::no_such_file_or_directory, one with a NUL byte std::errc::invalid_argument. Failures come back as the
// system's errors; nothing is thrown but std::bad_alloc, and that too leaves the old file and no other. Any thread, as
// long as `calls` may be used there.
namespace kelvane {

// What a file holds. With an error, `bytes` are empty.
struct FileContents {
  std::string bytes;
  std::error_code error;
};

// The bytes of the file at `path`; symbolic links are followed. Never waits for a writer: what is not a regular file is
// an error, std::errc::is_a_directory for a folder, std::errc::invalid_argument for a pipe, a socket or a device. A
// file of more than `limit` bytes, also one that grows beyond that while it is read, is std::errc::file_too_large, and
// not much more than `limit` of it is read.
KELVANE_EXPORT FileContents readFile(const std::string& path, std::size_t limit,
                                     SystemCalls& calls = SystemCalls::system());

// Who may do what with a file that was not there before.
enum class NewFileAccess {
  // Nobody but the user may read and write it (0600): for what an application keeps for itself.
  Private,
  // What the user's umask leaves of reading and writing for all (0666): for documents, as any program makes them.
  Customary
};

// Makes `bytes` the contents of the file at `path`, in whose folder there must be the right to read and to write:
// writes a temporary file beside it, flushes that to the disk, renames it to `path` and flushes the folder.
//
// A crash at any moment, also a loss of power, leaves the old file or the new one, whole, and possibly an orphaned
// temporary file in the same folder: ".kelvane-save-" and 16 hexadecimal digits. An error means the same, except that
// the temporary file is removed (unless that fails too):
//  - before and at the renaming: the old file is untouched, or there is still none;
//  - in flushing the folder: the new file is there whole, but a loss of power may bring the old one back.
//
// Saving again is the remedy for both. File systems that cannot flush a folder (EINVAL) are no failure.
//
// A symbolic link at `path` stays, and its target is replaced, or created if there is none. As for the system, 40 links
// in a row are followed and more are std::errc::too_many_symbolic_link_levels. What is neither a regular file nor
// nothing stays as it is: errors as for `readFile`.
//
// The file keeps its permissions (a new one gets those of `access`; an existing one is replaced even if it is
// read-only) and, as far as the process may give files away, owner and group. If the group cannot be kept, the new
// group is allowed no more than everybody is. Set-id bits, access lists, extended attributes and other hard links do
// not come along.
//
// Of several that save at a time, the last one wins; hold a `FileLock` to read, change and save.
KELVANE_EXPORT std::error_code writeFileAtomically(const std::string& path, std::string_view bytes,
                                                   SystemCalls& calls = SystemCalls::system(),
                                                   NewFileAccess access = NewFileAccess::Private);
inline std::error_code writeFileAtomically(const std::string& path, std::string_view bytes, NewFileAccess access) {
  return writeFileAtomically(path, bytes, SystemCalls::system(), access);
}

// The same for bytes that come little by little:
//
// ```cpp
// AtomicFileWriter writer("/tmp/numbers");
// for (int i = 0; i < 1'000'000; ++i) writer.append(std::to_string(i) + "\n");
// if (const std::error_code error = writer.commit()) std::cerr << error.message() << '\n';
// ```
//
// Until `commit` the file is as it was; without it, nothing is left behind. After an error nothing more is written, and
// every call gives that error again. One thread at a time.
class KELVANE_EXPORT AtomicFileWriter {
 public:
  // `calls` must outlive the writer.
  explicit AtomicFileWriter(const std::string& path, SystemCalls& calls = SystemCalls::system(),
                            NewFileAccess access = NewFileAccess::Private);
  ~AtomicFileWriter();
  AtomicFileWriter(const AtomicFileWriter&) = delete;
  AtomicFileWriter& operator=(const AtomicFileWriter&) = delete;

  std::error_code append(std::string_view bytes);
  // Once, at the end.
  std::error_code commit();

 private:
  struct Save;
  std::unique_ptr<Save> mySave;
};

// Renames what is at `path`, presumably a file that makes no sense, to the first free one of "NAME.damaged-1",
// "NAME.damaged-2", ... beside it, and tells that in `newPath` unless it is null. Never replaces anything. Of a
// symbolic link, the target is set aside: the next save creates it anew. Hold a `FileLock`, or it may be another's
// fresh file that is set aside.
//
// A crash leaves the file under its old name or its new one; where the file system cannot rename without replacing,
// maybe under both. With an error everything is as before and `newPath` untouched: std::errc::file_exists when 1000
// names are taken, std::errc::filename_too_long when the name cannot get longer, or what the system says.
KELVANE_EXPORT std::error_code setAside(const std::string& path, std::string* newPath,
                                        SystemCalls& calls = SystemCalls::system());

// Keeps all others out, other processes and other FileLocks of this one, from construction to destruction. For one
// thread at a time.
//
// The lock is on a file of its own, by custom "NAME.lock" beside the file that it guards. It must not be that file
// itself: who waits would get the lock on the file that has been replaced meanwhile. The lock file is created (0600)
// when there is none, stays empty, and is left behind. A process that is forked meanwhile shares the lock until it ends
// or starts another program.
class KELVANE_EXPORT FileLock {
 public:
  // Waits until nobody else has the lock. `path` must not be a symbolic link. `calls` must outlive the lock.
  [[nodiscard]] explicit FileLock(const std::string& path, SystemCalls& calls = SystemCalls::system());
  ~FileLock();
  FileLock(const FileLock&) = delete;
  FileLock& operator=(const FileLock&) = delete;

  // Why there is no lock; false when there is.
  std::error_code error() const noexcept { return myError; }

 private:
  SystemCalls& myCalls;
  int myDescriptor = -1;
  std::error_code myError;
};

}  // namespace kelvane
