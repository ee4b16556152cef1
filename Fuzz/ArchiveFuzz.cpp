#include <string>

#include "Fuzz.h"
#include "Platform/Foundation/NSArchiver.h"

namespace {

using namespace kelvane;

// The input with the signature and the checksum that it should have, since no mutation would find them.
std::string archiveOf(std::string_view body) {
  std::string bytes = "KelvArc\1";
  bytes += body;
  std::uint64_t hash = 0xCBF29CE484222325;
  for (const char byte : bytes) hash = (hash ^ static_cast<unsigned char>(byte)) * 0x100000001B3;
  for (unsigned shift = 0; shift < 64; shift += 8) bytes += static_cast<char>(hash >> shift);
  return bytes;
}

UnarchivedObject read(std::string_view bytes) {
  const UnarchivedObject result =
      NSUnarchiver::unarchiveObjectWithData({reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()});
  fuzz::expect(!result.object == !result.error.empty(), "either an object or an error");
  return result;
}

}  // namespace

// What can be read can be written, and is then read and written as the same bytes again.
int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using kelvane::fuzz::expect;
  read(fuzz::bytesOf(data, size));
  const UnarchivedObject first = read(archiveOf(fuzz::bytesOf(data, size)));
  if (!first.object) return 0;
  const ArchivedData written = NSArchiver::archivedDataWithRootObject(first.object);
  expect(written.data != nullptr, "what was read can be written");
  const UnarchivedObject again = NSUnarchiver::unarchiveObjectWithData(*written.data);
  expect(again.object != nullptr, "what was written can be read");
  const ArchivedData rewritten = NSArchiver::archivedDataWithRootObject(again.object);
  expect(rewritten.data && rewritten.data->isEqual(*written.data), "written the same again");
  first.object->hash();
  first.object->description();
  return 0;
}
