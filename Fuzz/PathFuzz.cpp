#include <filesystem>
#include <optional>
#include <string>

#include "Extensions/NSString-QNExtensions.h"
#include "Fuzz.h"
#include "Platform/Foundation/NSURL.h"
#include "Platform/Foundation/PathText.h"
#include "Platform/Foundation/TextEncoding.h"

namespace {

using namespace kelvane;
using kelvane::fuzz::expect;

// The standard library's way of making a path normal.
std::string plainlyNormal(std::string_view bytes) {
  if (bytes.empty()) return {};
  std::string path = std::filesystem::path(bytes).lexically_normal().native();
  while (path.size() > 1 && path.ends_with('/')) path.pop_back();
  return path;
}

void checkPath(std::string_view bytes) {
  const Text path = textFromFileSystem(bytes);
  const Text standard = stringByStandardizingPath(path);
  expect(stringByStandardizingPath(standard) == standard, "a standard path stays");
  const std::optional<Text> normal = normalizePath(path);
  if (path.starts_with(u"file:")) {
    expect(!normal || normal->find(u"//") == Text::npos, "no doubled slash");
    return;
  }
  expect(normal == standard, "normalizePath standardises");
  // Whatever begins with "~" may name a user, or come out behind "./" so that it does not.
  if (!bytes.starts_with('~') && !plainlyNormal(bytes).starts_with('~'))
    expect(fileSystemRepresentation(standard) == plainlyNormal(bytes), "the path is normal");
}

void checkEscapes(std::string_view bytes) {
  Text escaped;
  for (const char byte : bytes) {
    constexpr TextView digits = u"0123456789abcdefABCDEF";
    const auto number = static_cast<unsigned char>(byte);
    escaped += u'%';
    escaped += digits[number >> 4U];
    escaped += digits[number % 16U];
  }
  expect(stringByRemovingPercentEncoding(escaped) == textFromFileSystem(bytes), "escapes give the bytes again");
}

void checkURL(TextView text) {
  const Ref<NSURL> url = NSURL::URLWithString(text);
  if (!url) return;
  expect(url->absoluteString() == text, "a URL keeps its text");
  // Taken off from both ends, the components leave the path.
  const auto fragment = url->fragment();
  const auto query = url->query();
  const auto scheme = url->scheme();
  const auto host = url->host();
  TextView rest = text;
  expect(!fragment || rest.ends_with(u'#' + *fragment), "the fragment ends the text");
  if (fragment) rest.remove_suffix(fragment->size() + 1);
  expect(fragment || !text.contains(u'#'), "what has # has a fragment");
  expect(!query || rest.ends_with(u'?' + *query), "the query ends the rest");
  if (query) rest.remove_suffix(query->size() + 1);
  expect(!rest.contains(u'?'), "what has ? has a query");
  expect(!scheme || rest.starts_with(*scheme + u':'), "the scheme begins the text");
  if (scheme) rest.remove_prefix(scheme->size() + 1);
  if (host) expect(rest.starts_with(u"//") && rest.contains(*host), "the host stands behind //");
  while (rest.size() > 1 && rest.ends_with(u'/')) rest.remove_suffix(1);
  if (!host) expect(url->path() == (rest.empty() ? std::nullopt : stringByRemovingPercentEncoding(rest)), "the path");
  if (url->isFileURL()) expect(scheme && foldCase(*scheme) == u"file", "files have the scheme file");
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view bytes = fuzz::bytesOf(data, size);
  checkPath(bytes);
  checkEscapes(bytes);
  checkURL(fuzz::ExactText(textFromUTF8(bytes)).view());
  return 0;
}
