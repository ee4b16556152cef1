#include "Platform/Foundation/TextJoin.h"

namespace kelvane {
namespace {

template <class Parts>
Text joined(const Parts& parts, TextView separator) {
  std::size_t length = 0;
  for (const TextView part : parts) length += part.size() + separator.size();
  Text text;
  text.reserve(length);
  bool isFirst = true;
  for (const TextView part : parts) {
    if (!isFirst) text += separator;
    isFirst = false;
    text += part;
  }
  return text;
}

}  // namespace

Text concatenate(std::initializer_list<TextView> parts) { return joined(parts, {}); }

Text componentsJoinedByString(std::span<const TextView> components, TextView separator) {
  return joined(components, separator);
}

Text componentsJoinedByString(std::span<const Text> components, TextView separator) {
  return joined(components, separator);
}

}  // namespace kelvane
