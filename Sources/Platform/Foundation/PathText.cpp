#include "Platform/Foundation/PathText.h"

#include <algorithm>
#include <optional>
#include <vector>

#include "Platform/Foundation/HomeDirectory.h"
#include "Platform/Foundation/TextScan.h"

namespace kelvane {
namespace {

// The path without "/" at its end; the root stays.
TextView withoutTrailingSlashes(TextView path) {
  const std::size_t last = path.find_last_not_of(u'/');
  return path.substr(0, last == TextView::npos ? 1 : last + 1);
}

// Where the last component starts in a path without trailing slashes; 0 in the root.
std::size_t lastComponentStart(TextView path) { return path == u"/" ? 0 : path.rfind(u'/') + 1; }

// Where the "." stands that begins the extension; the path's length when there is none.
std::size_t extensionPoint(TextView path) {
  const std::size_t start = lastComponentStart(path);
  const std::size_t point = path.rfind(u'.');
  const bool isNone = point == TextView::npos || point <= start || point + 1 == path.size();
  return isNone ? path.size() : point;
}

}  // namespace

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

TextView lastPathComponent(TextView path) {
  path = withoutTrailingSlashes(path);
  return path.substr(lastComponentStart(path));
}

TextView stringByDeletingLastPathComponent(TextView path) {
  path = withoutTrailingSlashes(path);
  const std::size_t start = lastComponentStart(path);
  return path.starts_with(u'/') && start <= 1 ? path.substr(0, 1) : withoutTrailingSlashes(path.substr(0, start));
}

Text stringByAppendingPathComponent(TextView path, TextView component) {
  path = withoutTrailingSlashes(path);
  component.remove_prefix(std::min(component.find_first_not_of(u'/'), component.size()));
  component = withoutTrailingSlashes(component);
  const bool needsNone = path.empty() || path == u"/" || component.empty();
  Text joined;
  joined.reserve(path.size() + 1 + component.size());
  joined += path;
  if (!needsNone) joined += u'/';
  joined += component;
  return joined;
}

TextView pathExtension(TextView path) {
  path = withoutTrailingSlashes(path);
  const std::size_t point = extensionPoint(path);
  return point == path.size() ? TextView() : path.substr(point + 1);
}

TextView stringByDeletingPathExtension(TextView path) {
  path = withoutTrailingSlashes(path);
  return path.substr(0, extensionPoint(path));
}

Text stringByAppendingPathExtension(TextView path, TextView extension) {
  const TextView trimmed = withoutTrailingSlashes(path);
  if (trimmed.empty() || trimmed == u"/") return Text(path);
  Text extended;
  extended.reserve(trimmed.size() + 1 + extension.size());
  extended += trimmed;
  extended += u'.';
  extended += extension;
  return extended;
}

}  // namespace kelvane
