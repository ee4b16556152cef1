#include "Report/DocumentReader.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <memory>
#include <new>
#include <optional>
#include <stdexcept>
#include <string_view>
#include <system_error>

#include "Platform/Foundation/TextEncoding.h"
#include "Platform/Foundation/TextScan.h"

namespace notebook {
namespace {

using kelvane::Text;

constexpr std::size_t bytesToJudgeBy = 8192;

[[noreturn]] void fail(int error) { throw std::system_error(error, std::generic_category()); }

class OpenFile {
 public:
  // Not blocking: between the look at a folder and this, a file may have been replaced by a pipe that nobody writes to.
  explicit OpenFile(const std::string& path) : myDescriptor(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC)) {
    if (myDescriptor < 0) fail(errno);
  }
  OpenFile(const OpenFile&) = delete;
  OpenFile& operator=(const OpenFile&) = delete;
  ~OpenFile() { ::close(myDescriptor); }

  // Nothing when it is no regular file.
  std::optional<std::size_t> size() const {
    const struct stat now = status();
    if (!S_ISREG(now.st_mode)) return std::nullopt;
    return static_cast<std::size_t>(now.st_size);
  }

  double changed() const {
    constexpr double nanoseconds = 1e-9;
    const struct stat now = status();
    return static_cast<double>(now.st_mtim.tv_sec) + static_cast<double>(now.st_mtim.tv_nsec) * nanoseconds;
  }

  // Reads until `length` bytes are there or the file ends; returns how many there are.
  std::size_t read(char* bytes, std::size_t length) const {
    std::size_t done = 0;
    while (done < length) {
      const ssize_t count = ::read(myDescriptor, bytes + done, length - done);
      if (count == 0) break;
      if (count < 0 && errno == EINTR) continue;
      if (count < 0) fail(errno);
      done += static_cast<std::size_t>(count);
    }
    return done;
  }

 private:
  struct stat status() const {
    struct stat now {};
    if (::fstat(myDescriptor, &now) != 0) fail(errno);
    return now;
  }

  int myDescriptor;
};

// The bytes of a file: a buffer that is not filled with zeros first, unlike a string.
struct Bytes {
  std::unique_ptr<char[]> storage;
  std::size_t length = 0;

  std::string_view view() const { return {storage.get(), length}; }
};

Bytes withCapacity(std::size_t capacity, std::string_view start) {
  Bytes bytes{std::make_unique_for_overwrite<char[]>(capacity), start.size()};
  std::copy(start.begin(), start.end(), bytes.storage.get());
  return bytes;
}

// Files of some file systems say that they have no bytes, and have.
Bytes readUntilEnd(const OpenFile& file, std::string_view start) {
  std::size_t capacity = std::max(4 * start.size(), bytesToJudgeBy);
  Bytes bytes = withCapacity(capacity, start);
  for (;;) {
    bytes.length += file.read(bytes.storage.get() + bytes.length, capacity - bytes.length);
    if (bytes.length < capacity) return bytes;
    capacity *= 2;
    bytes = withCapacity(capacity, bytes.view());
  }
}

std::string_view withoutByteOrderMark(std::string_view bytes) {
  if (bytes.starts_with("\xEF\xBB\xBF")) bytes.remove_prefix(3);
  return bytes;
}

// Whether some U+FFFD in `text` does not come from one in the bytes. Ill-formed parts never take the bytes of a U+FFFD
// with them, so counting is enough.
bool hasLostBytes(std::string_view bytes, kelvane::TextView text) {
  constexpr std::string_view replacementCharacter = "\xEF\xBF\xBD";
  std::size_t replacements = kelvane::countUnit(text, u'\xFFFD');
  if (replacements == 0) return false;
  for (std::size_t place = bytes.find(replacementCharacter); place != std::string_view::npos;
       place = bytes.find(replacementCharacter, place + replacementCharacter.size()))
    --replacements;
  return replacements != 0;
}

Document decode(std::string_view bytes) {
  Document document{Document::Kind::UTF8, kelvane::textFromUTF8(withoutByteOrderMark(bytes)), bytes.size(), 0, {}, {}};
  if (!hasLostBytes(bytes, document.text)) return document;
  document.kind = Document::Kind::ISOLatin1;
  // The first attempt goes before the second comes: both are twice as large as the file.
  document.text = Text();
  document.text = kelvane::textFromISOLatin1(bytes);
  return document;
}

Document unreadable(std::string reason) { return {Document::Kind::Unreadable, {}, 0, 0, {}, std::move(reason)}; }

Document readOpened(const OpenFile& file) {
  const std::optional<std::size_t> size = file.size();
  if (!size) return unreadable("Not a regular file");
  char beginning[bytesToJudgeBy];
  const std::string_view start(beginning,
                               file.read(beginning, *size == 0 ? bytesToJudgeBy : std::min(*size, bytesToJudgeBy)));
  if (start.find('\0') != std::string_view::npos)
    return {Document::Kind::Binary, {}, std::max(*size, start.size()), 0, std::string(start), {}};
  if (*size == 0) return decode(start.size() < bytesToJudgeBy ? start : readUntilEnd(file, start).view());
  if (*size <= start.size()) return decode(start);
  Bytes bytes = withCapacity(*size, start);
  bytes.length += file.read(bytes.storage.get() + bytes.length, *size - bytes.length);
  // Fewer bytes than announced are no fault by themselves: some file systems only know an upper bound.
  if (bytes.length < *size && file.size().value_or(0) < *size) return unreadable("Became shorter while it was read");
  return decode(bytes.view());
}

}  // namespace

Document readDocument(const std::string& path) {
  try {
    const OpenFile file(path);
    Document document = readOpened(file);
    document.changed = file.changed();
    return document;
  } catch (const std::system_error& error) {
    return unreadable(error.code().message());
  } catch (const std::bad_alloc&) {
    return unreadable("Too large for the memory there is");
  } catch (const std::length_error&) {
    return unreadable("Too large for the memory there is");
  }
}

}  // namespace notebook
