#include "Platform/Foundation/RequestBody.h"

#include <errno.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <utility>

#include "Platform/Foundation/AtomicFile.h"

namespace kelvane {
namespace {

// Files that the system makes up when they are read tell no length (/proc), or that of a page of memory (/sys).
constexpr std::uint64_t largestPage = std::uint64_t{64} << 10U;
constexpr std::size_t mostMadeUp = std::size_t{64} << 20U;

std::error_code errorOf(int number) { return {number, std::generic_category()}; }

// The descriptor, or minus the error. Never waits: a pipe would, and is no file to be sent.
int openRegularFile(const std::string& path, struct stat& status) {
  const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
  if (file < 0) return -errno;
  int reason = 0;
  if (fstat(file, &status) < 0)
    reason = errno;
  else if (!S_ISREG(status.st_mode))
    reason = S_ISDIR(status.st_mode) ? EISDIR : EINVAL;
  if (reason == 0) return file;
  close(file);
  return -reason;
}

}  // namespace

void RequestBody::append(std::string_view bytes) {
  if (bytes.empty()) return;
  if (myPieces.empty() || !myPieces.back().path.empty()) myPieces.emplace_back();
  Piece& piece = myPieces.back();
  piece.bytes.append(bytes);
  piece.length += bytes.size();
  myLength += bytes.size();
}

std::error_code RequestBody::appendFile(const std::string& path) {
  if (path.empty() || path.find('\0') != std::string::npos) return errorOf(ENOENT);
  struct stat status = {};
  const int file = openRegularFile(path, status);
  if (file < 0) return errorOf(-file);
  close(file);
  const auto length = static_cast<std::uint64_t>(status.st_size);
  if (length <= largestPage) {
    const FileContents contents = readFile(path, mostMadeUp);
    if (contents.error) return contents.error;
    if (contents.bytes.size() != length) append(contents.bytes);
    if (contents.bytes.size() != length || length == 0) return {};
  }
  myPieces.push_back({{}, path, length});
  myLength += length;
  return {};
}

RequestBodyReader::~RequestBodyReader() { closeFile(); }

void RequestBodyReader::closeFile() {
  if (myFile >= 0) close(std::exchange(myFile, -1));
}

void RequestBodyReader::rewind() {
  closeFile();
  myPiece = 0;
  myPlace = 0;
}

void RequestBodyReader::skipPiece() {
  closeFile();
  ++myPiece;
  myPlace = 0;
}

std::error_code RequestBodyReader::read(char* buffer, std::size_t size, std::size_t& count) {
  count = 0;
  while (count < size && myPiece < myBody.myPieces.size()) {
    std::size_t more = 0;
    if (const auto error = readPiece(buffer + count, size - count, more)) return error;
    count += more;
    myPlace += more;
    if (myPlace == myBody.myPieces[myPiece].length) skipPiece();
  }
  return {};
}

std::error_code RequestBodyReader::readPiece(char* buffer, std::size_t size, std::size_t& count) {
  const RequestBody::Piece& piece = myBody.myPieces[myPiece];
  size = static_cast<std::size_t>(std::min<std::uint64_t>(size, piece.length - myPlace));
  if (piece.path.empty()) {
    std::memcpy(buffer, piece.bytes.data() + myPlace, size);
    count = size;
    return {};
  }
  if (myFile < 0) {
    struct stat status = {};
    myFile = openRegularFile(piece.path, status);
    if (myFile < 0) return errorOf(-myFile);
  }
  ssize_t result = 0;
  do result = ::read(myFile, buffer, size);
  while (result < 0 && errno == EINTR);
  if (result < 0) return errorOf(errno);
  if (result == 0) return errorOf(EIO);
  count = static_cast<std::size_t>(result);
  return {};
}

}  // namespace kelvane
