#include "Platform/Foundation/NSURL.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <functional>
#include <string>

#include "Platform/Foundation/Overwrite.h"
#include "Platform/Foundation/PathText.h"
#include "Platform/Foundation/TextEncoding.h"

namespace kelvane {
namespace {

constexpr bool isLetter(char16_t unit) { return (unit | 0x20) >= u'a' && (unit | 0x20) <= u'z' && unit < 0x80; }
constexpr bool isDigit(char16_t unit) { return unit >= u'0' && unit <= u'9'; }

constexpr int hexadecimalValue(char unit) {
  if (unit >= '0' && unit <= '9') return unit - '0';
  if (unit >= 'a' && unit <= 'f') return unit - 'a' + 10;
  if (unit >= 'A' && unit <= 'F') return unit - 'A' + 10;
  return -1;
}

// RFC 3986, 3.1.
bool isScheme(TextView text) {
  return !text.empty() && isLetter(text.front()) && std::all_of(text.begin(), text.end(), [](char16_t unit) {
    return isLetter(unit) || isDigit(unit) || unit == u'+' || unit == u'-' || unit == u'.';
  });
}

// The length of what stands before the ":" that ends a scheme; nothing for a relative reference.
std::optional<std::size_t> schemeLength(TextView text) {
  const std::size_t end = text.find_first_of(u":/?#");
  if (end == TextView::npos || text[end] != u':') return std::nullopt;
  return end;
}

std::optional<std::string> decodePercents(std::string_view bytes) {
  std::string decoded;
  decoded.reserve(bytes.size());
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    if (bytes[i] != '%') {
      decoded += bytes[i];
      continue;
    }
    const int high = i + 2 < bytes.size() ? hexadecimalValue(bytes[i + 1]) : -1;
    const int low = high >= 0 ? hexadecimalValue(bytes[i + 2]) : -1;
    if (low < 0) return std::nullopt;
    decoded += static_cast<char>(static_cast<unsigned char>(high * 16 + low));
    i += 2;
  }
  return decoded;
}

// Whether a byte stands for itself in a path: RFC 3986's pchar and "/".
constexpr auto standsForItself = [] {
  std::array<bool, 256> table{};
  for (int byte = 'a'; byte <= 'z'; ++byte) table[static_cast<unsigned>(byte)] = true;
  for (int byte = 'A'; byte <= 'Z'; ++byte) table[static_cast<unsigned>(byte)] = true;
  for (int byte = '0'; byte <= '9'; ++byte) table[static_cast<unsigned>(byte)] = true;
  for (const char byte : std::string_view("-._~!$&'()*+,;=:@/")) table[static_cast<unsigned char>(byte)] = true;
  return table;
}();

char16_t* encodeByte(char16_t* out, unsigned char byte) {
  constexpr TextView digits = u"0123456789ABCDEF";
  *out++ = u'%';
  *out++ = digits[byte >> 4];
  *out++ = digits[byte & 15];
  return out;
}

// `prefix`, `separator`, `bytes` as they stand in a path, and "/" where `isFolder`.
Text encodedBehind(TextView prefix, TextView separator, std::string_view bytes, bool isFolder) {
  const auto isPlain = [](char byte) { return standsForItself[static_cast<unsigned char>(byte)]; };
  const auto others = bytes.size() - static_cast<std::size_t>(std::ranges::count_if(bytes, isPlain));
  return overwritten<Text>(prefix.size() + separator.size() + bytes.size() + 2 * others + 1, [&](char16_t* begin) {
    char16_t* out = std::ranges::copy(separator, std::ranges::copy(prefix, begin).out).out;
    for (const char byte : bytes) {
      if (isPlain(byte))
        *out++ = static_cast<unsigned char>(byte);
      else
        out = encodeByte(out, static_cast<unsigned char>(byte));
    }
    if (isFolder && (out == begin || out[-1] != u'/')) *out++ = u'/';
    return out - begin;
  });
}

}  // namespace

Ref<NSURL> NSURL::fileURLWithPath(TextView path, bool isDirectory) {
  if (path.empty()) return nullptr;
  std::string bytes = fileSystemRepresentation(path);
  if (bytes.front() != '/') {
    std::error_code error;
    const std::string folder = std::filesystem::current_path(error).native();
    if (error) return nullptr;
    bytes = folder + "/" + bytes;
  }
  return Ref<NSURL>(new NSURL(encodedBehind(u"file:", u"//", bytes, isDirectory)));
}

Ref<NSURL> NSURL::URLByAppendingFileName(std::string_view name, bool isDirectory) const {
  TextView folder = TextView(myText).substr(0, myPath.end());
  while (folder.ends_with(u'/') && folder.size() > myPath.location) folder.remove_suffix(1);
  return std::make_shared<NSURL>(Private(), *this, encodedBehind(folder, u"/", name, isDirectory));
}

NSURL::NSURL(Private, const NSURL& folder, Text text)
    : myText(std::move(text)),
      myScheme(folder.myScheme),
      myHost(folder.myHost),
      myPath{folder.myPath.location, myText.size() - folder.myPath.location} {}

Ref<NSURL> NSURL::URLWithString(TextView text) {
  const bool hasBlank =
      std::any_of(text.begin(), text.end(), [](char16_t unit) { return unit <= u' ' || unit == 0x7F; });
  if (hasBlank || !stringByRemovingPercentEncoding(text)) return nullptr;
  const auto scheme = schemeLength(text);
  if (scheme && !isScheme(text.substr(0, *scheme))) return nullptr;
  return Ref<NSURL>(new NSURL(text));
}

// RFC 3986, appendix B, from left to right.
NSURL::NSURL(TextView text) : myText(text) {
  std::size_t place = 0;
  if (const auto length = schemeLength(text)) {
    myScheme = NSRange{0, *length};
    place = *length + 1;
  }
  const std::size_t hash = std::min(text.find(u'#', place), text.size());
  if (hash < text.size()) myFragment = NSRange{hash + 1, text.size() - hash - 1};
  const std::size_t question = std::min(text.find(u'?', place), hash);
  if (question < hash) myQuery = NSRange{question + 1, hash - question - 1};
  if (text.substr(place, question - place).starts_with(u"//")) {
    const std::size_t start = place + 2;
    place = std::min(text.find(u'/', start), question);
    TextView authority = text.substr(start, place - start);
    const std::size_t user = authority.rfind(u'@');
    const std::size_t hostStart = user == TextView::npos ? start : start + user + 1;
    authority = text.substr(hostStart, place - hostStart);
    // A colon within the brackets of an IPv6 address begins no port.
    const std::size_t port =
        authority.find(u':', authority.starts_with(u'[') ? std::min(authority.find(u']'), authority.size()) : 0);
    myHost = NSRange{hostStart, std::min(port, authority.size())};
  }
  myPath = NSRange{place, question - place};
}

std::optional<Text> NSURL::slice(const std::optional<NSRange>& range) const {
  if (!range) return std::nullopt;
  return myText.substr(range->location, range->length);
}

std::optional<Text> NSURL::path() const {
  if (myPath.length == 0) return std::nullopt;
  TextView encoded = TextView(myText).substr(myPath.location, myPath.length);
  while (encoded.size() > 1 && encoded.ends_with(u'/')) encoded.remove_suffix(1);
  return stringByRemovingPercentEncoding(encoded);
}

bool NSURL::isFileURL() const {
  const std::string name = utf8(scheme().value_or(Text()));
  constexpr std::string_view file = "file";
  return std::ranges::equal(name, file, [](char a, char b) { return (a | 0x20) == b; });
}

// Encoded as it stands: a "/" that is encoded separates no components.
TextView NSURL::encodedLastComponent() const {
  return kelvane::lastPathComponent(TextView(myText).substr(myPath.location, myPath.length));
}

Text NSURL::lastPathComponent() const {
  const TextView last = encodedLastComponent();
  return last.find(u'%') == TextView::npos ? Text(last) : stringByRemovingPercentEncoding(last).value_or(Text());
}

Text NSURL::pathExtension() const {
  // A point may be encoded too.
  const TextView last = encodedLastComponent();
  if (last.find(u'%') == TextView::npos) return Text(kelvane::pathExtension(last));
  const Text decoded = lastPathComponent();
  return Text(kelvane::pathExtension(decoded));
}

bool NSURL::isEqual(const NSObject& other) const {
  const NSURL* url = as<NSURL>(&other);
  return url && url->myText == myText;
}

std::size_t NSURL::hash() const { return std::hash<Text>()(myText); }

Ref<NSObject> NSURL::copy() const {
  return selfOr([this] { return Ref<NSURL>(new NSURL(myText)); });
}

std::optional<Text> stringByRemovingPercentEncoding(TextView text) {
  const auto decoded = decodePercents(fileSystemRepresentation(text));
  if (!decoded) return std::nullopt;
  return textFromFileSystem(*decoded);
}

}  // namespace kelvane
