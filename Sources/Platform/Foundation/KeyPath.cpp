#include "Platform/Foundation/KeyPath.h"

#include <utility>

namespace kelvane {

KeyPath::KeyPath(TextView text, Split) {
  auto parts = std::make_shared<Parts>();
  parts->text = text;
  TextView rest = parts->text;
  for (std::size_t point = rest.find(u'.'); point != TextView::npos; point = rest.find(u'.')) {
    parts->keys.push_back(rest.substr(0, point));
    rest.remove_prefix(point + 1);
  }
  parts->keys.push_back(rest);
  myParts = std::move(parts);
}

}  // namespace kelvane
