#include "Platform/Foundation/PathText.h"

#include <optional>
#include <vector>

#include "Platform/Foundation/HomeDirectory.h"
#include "Platform/Foundation/TextScan.h"

namespace kelvane {

Text stringByExpandingTildeInPath(TextView path) {
  if (!path.starts_with(u'~')) return Text(path);
  const std::size_t nameEnd = findUnit(path, u'/');
  const std::optional<Text> home =
      nameEnd == 1 ? NSHomeDirectory() : NSHomeDirectoryForUser(path.substr(1, nameEnd - 1));
  if (!home) return Text(path);
  const bool bringsSlash = home->ends_with(u'/') && nameEnd < path.size();
  return *home + Text(path.substr(nameEnd + (bringsSlash ? 1 : 0)));
}

Text stringByStandardizingPath(TextView path) {
  if (path.empty()) return {};
  const Text expanded = stringByExpandingTildeInPath(path);
  const TextView rest(expanded);
  const bool isAbsolute = rest.starts_with(u'/');
  // Where the components that ".." may take back begin in `result`, one place for each.
  std::vector<std::size_t> starts;
  Text result;
  result.reserve(rest.size());
  std::size_t place = 0;
  while (place < rest.size()) {
    const std::size_t end = findUnit(rest, u'/', place);
    const TextView component = rest.substr(place, end - place);
    place = end + 1;
    if (component.empty() || component == u".") continue;
    if (component == u".." && !starts.empty()) {
      result.resize(starts.back());
      starts.pop_back();
      continue;
    }
    if (component == u".." && isAbsolute) continue;
    if (component != u"..") starts.push_back(result.size());
    if (isAbsolute || !result.empty()) result += u'/';
    result += component;
  }
  if (result.empty()) return isAbsolute ? u"/" : u".";
  // A "~" that came to the front is a name like any other, and is to stay one.
  const auto firstComponent = [](TextView whole) { return whole.substr(0, findUnit(whole, u'/')); };
  if (result.front() == u'~' && firstComponent(result) != firstComponent(rest)) result.insert(0, u"./");
  return result;
}

}  // namespace kelvane
