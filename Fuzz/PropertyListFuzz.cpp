#include "Fuzz.h"
#include "Platform/Foundation/PropertyList.h"

// What can be read can be written, reads back as an equal object, and is then written as the same bytes.
int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace kelvane;
  using kelvane::fuzz::expect;
  const PropertyList list = readPropertyList(fuzz::bytesOf(data, size));
  expect(!list.root == !list.error.empty(), "either a root or an error");
  expect(!list.root || list.line == 0, "no line without an error");
  if (!list.root) return 0;
  const PropertyListBytes written = writePropertyList(*list.root);
  expect(written.error.empty(), "what was read can be written");
  const PropertyList again = readPropertyList(written.bytes);
  expect(again.root && isEqual(list.root, again.root), "what was written reads back equal");
  expect(list.root->hash() == again.root->hash(), "equal objects have equal hashes");
  expect(writePropertyList(*again.root).bytes == written.bytes, "written the same again");
  return 0;
}
