#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include "Platform/Foundation/Export.h"

namespace kelvane {

// What a request sends: bytes, and files that are read only while they are sent. How long it is stands fast when it is
// built. One thread at a time; once it is built, several may read it.
class KELVANE_EXPORT RequestBody {
 public:
  void append(std::string_view bytes);
  // Adds as many bytes as the file has now. What is not a regular file that can be read adds nothing: that is an error.
  // What the system makes up for the reader, as in /proc, is read at once; more than 64 MB of it are an error.
  std::error_code appendFile(const std::string& path);

  std::uint64_t length() const { return myLength; }
  // Whether it consists of bytes alone, which `bytes` gives.
  bool isInMemory() const { return myPieces.empty() || (myPieces.size() == 1 && myPieces.front().path.empty()); }
  std::string_view bytes() const { return myPieces.empty() ? std::string_view() : myPieces.front().bytes; }

 private:
  friend class RequestBodyReader;
  // Bytes, or where there is a path a file.
  struct Piece {
    std::string bytes;
    std::string path;
    std::uint64_t length = 0;
  };

  std::vector<Piece> myPieces;
  std::uint64_t myLength = 0;
};

// Reads a body from its start to its end, one file open at a time. Files are opened when their turn comes. One thread
// at a time.
class KELVANE_EXPORT RequestBodyReader {
 public:
  // `body` must outlive the reader and stay as it is.
  explicit RequestBodyReader(const RequestBody& body) : myBody(body) {}
  ~RequestBodyReader();
  RequestBodyReader(const RequestBodyReader&) = delete;
  RequestBodyReader& operator=(const RequestBodyReader&) = delete;

  // Puts the next bytes into `buffer` and tells in `count` how many: `size`, unless the body ends; 0 at the end. A file
  // that cannot be opened any more is an error, behind the `count` bytes before it; one that has become shorter is
  // std::errc::io_error; what a file has grown by is not read.
  std::error_code read(char* buffer, std::size_t size, std::size_t& count);
  bool isAtEnd() const { return myPiece == myBody.myPieces.size(); }
  // Starts again from the beginning.
  void rewind();
  // Goes on behind the file that is being read, such as one that gave an error.
  void skipPiece();

 private:
  std::error_code readPiece(char* buffer, std::size_t size, std::size_t& count);
  void closeFile();

  const RequestBody& myBody;
  std::size_t myPiece = 0;
  // In the piece.
  std::uint64_t myPlace = 0;
  int myFile = -1;
};

}  // namespace kelvane
