#include <algorithm>
#include <charconv>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <iterator>
#include <optional>
#include <span>
#include <typeinfo>
#include <vector>

#include "Platform/Foundation/Base64.h"
#include "Platform/Foundation/Format.h"
#include "Platform/Foundation/NSArray.h"
#include "Platform/Foundation/NSData.h"
#include "Platform/Foundation/NSDate.h"
#include "Platform/Foundation/NSDictionary.h"
#include "Platform/Foundation/NSNumber.h"
#include "Platform/Foundation/NSString.h"
#include "Platform/Foundation/PropertyList.h"
#include "Platform/Foundation/PropertyListValues.h"

namespace kelvane {
namespace {

constexpr std::string_view prologue =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<plist version=\"1.0\">\n";
constexpr std::string_view epilogue = "</plist>\n";

constexpr std::size_t longestPathInMessage = 200;
constexpr std::size_t bytesInDataLine = 57;  // 76 characters

// The first second of the year 1 and of the year 10000, from 1970 on.
constexpr double startOfYear1 = -62135596800.0;
constexpr double startOfYear10000 = 253402300800.0;

enum class Kind { Other, String, Number, Dictionary, Array, Data, Date };

// A look at the very class settles nearly all; only subclasses take the slow way.
Kind kindOf(const NSObject& object) {
  const std::type_info& type = typeid(object);
  if (type == typeid(NSString)) return Kind::String;
  if (type == typeid(NSNumber)) return Kind::Number;
  if (type == typeid(NSDictionary)) return Kind::Dictionary;
  if (type == typeid(NSArray)) return Kind::Array;
  if (as<NSString>(&object)) return Kind::String;
  if (as<NSDictionary>(&object)) return Kind::Dictionary;
  if (as<NSArray>(&object)) return Kind::Array;
  if (as<NSData>(&object)) return Kind::Data;
  if (as<NSDate>(&object)) return Kind::Date;
  return as<NSNumber>(&object) ? Kind::Number : Kind::Other;
}

// Bytes that grow at the end, in place of a string's own appending: whoever writes many short pieces asks for room
// once.
class Output {
 public:
  // Room for `count` bytes; those that are used are told to `used`.
  char* room(std::size_t count) {
    if (mySize + count > myBytes.size()) myBytes.resize(std::max(myBytes.size() * 2, mySize + count + 4096));
    return myBytes.data() + mySize;
  }
  void used(const char* end) { mySize = static_cast<std::size_t>(end - myBytes.data()); }

  void append(std::string_view bytes) {
    char* out = room(bytes.size());
    used(std::copy(bytes.begin(), bytes.end(), out));
  }
  void indent(std::size_t depth) {
    char* out = room(depth);
    used(std::fill_n(out, depth, '\t'));
  }

  std::size_t size() const { return mySize; }
  // Takes back what was written behind the first `size` bytes.
  void cutTo(std::size_t size) { mySize = size; }
  std::string take() {
    myBytes.resize(mySize);
    return std::move(myBytes);
  }

 private:
  std::string myBytes;
  std::size_t mySize = 0;
};

char* put(char* out, std::string_view bytes) { return std::copy(bytes.begin(), bytes.end(), out); }

char* putASCII(char* out, char16_t unit) {
  switch (unit) {
    case u'&':
      return put(out, "&amp;");
    case u'<':
      return put(out, "&lt;");
    case u'>':
      return put(out, "&gt;");
    case u'\r':
      return put(out, "&#13;");
    default:
      *out = static_cast<char>(unit);
      return out + 1;
  }
}

// The UTF-8 of a character above U+007F.
char* putCharacter(char* out, char32_t character) {
  const auto tail = [&](unsigned shift) { *out++ = static_cast<char>(0x80U | ((character >> shift) & 0x3FU)); };
  if (character < 0x800) {
    *out++ = static_cast<char>(0xC0U | (character >> 6U));
  } else if (character < 0x10000) {
    *out++ = static_cast<char>(0xE0U | (character >> 12U));
    tail(6);
  } else {
    *out++ = static_cast<char>(0xF0U | (character >> 18U));
    tail(12);
    tail(6);
  }
  tail(0);
  return out;
}

constexpr std::size_t eight = 8;

// Writes eight code units as they are, and tells whether that is how XML has them: a loop that the compiler turns into
// vectors.
bool putPlainEight(char* out, const char16_t* units) {
  unsigned others = 0;
  for (std::size_t i = 0; i < eight; ++i) {
    const char16_t unit = units[i];
    out[i] = static_cast<char>(unit);
    others += unit < 0x20 || unit >= 0x80 || unit == u'&' || unit == u'<' || unit == u'>';
  }
  return others == 0;
}

// Appends text with what XML needs escaped; gives the first unit that XML cannot hold, and then stops there.
std::optional<char16_t> appendEscaped(Output& output, TextView text) {
  constexpr std::size_t stretch = 4096;
  constexpr std::size_t longest = 5;  // "&#13;"
  for (std::size_t i = 0; i < text.size();) {
    const std::size_t end = std::min(text.size(), i + stretch);
    char* out = output.room((end - i) * longest);
    while (i < end) {
      if (end - i >= eight && putPlainEight(out, text.data() + i)) {
        out += eight;
        i += eight;
        continue;
      }
      const char16_t unit = text[i];
      const std::size_t length = xmlCharacterLength(text, i);
      if (length == 0) return unit;
      if (unit < 0x80)
        out = putASCII(out, unit);
      else if (length == 1)
        out = putCharacter(out, unit);
      else
        out = putCharacter(out, 0x10000U + ((unit & 0x3FFU) << 10U) + (text[i + 1] & 0x3FFU));
      i += length;
    }
    output.used(out);
  }
  return std::nullopt;
}

// `value` in decimal, with leading zeros up to `width`.
char* putPadded(char* out, unsigned value, unsigned width) {
  for (unsigned i = width; i-- > 0; value /= 10) out[i] = static_cast<char>('0' + value % 10);
  return out + width;
}

class Writer {
 public:
  PropertyListBytes write(const NSObject& root);

 private:
  // A container that is being written. What it stands at is the element before `next`.
  struct Container {
    const NSDictionary* dictionary = nullptr;
    const NSArray* array = nullptr;
    NSDictionary::Entries::const_iterator nextEntry;
    std::size_t nextIndex = 0;
  };

  bool fits();
  bool writeObject(const NSObject* object);
  bool writeNext();
  bool writeKey(TextView key);
  void writeText(TextView text);
  bool writeNumber(const NSNumber& number);
  bool writeDate(const NSDate& date);
  void writeData(const NSData& data);
  bool open(Container container, std::string_view emptyTag, std::string_view tag, bool empty);
  void close();

  bool fail(Text message) {
    myError = std::move(message);
    return false;
  }
  Text place(TextView what) const;
  Text path() const;

  Output myOutput;
  std::vector<Container> myContainers;
  Text myError;
};

PropertyListBytes Writer::write(const NSObject& root) {
  myOutput.append(prologue);
  bool good = writeObject(&root);
  while (good && !myContainers.empty()) good = writeNext();
  if (!good || !fits()) return {{}, std::move(myError)};
  myOutput.append(epilogue);
  return {myOutput.take(), {}};
}

bool Writer::fits() {
  if (myOutput.size() + epilogue.size() <= maximumPropertyListSize) return true;
  return fail(format(u"The property list is larger than %lu bytes.", maximumPropertyListSize));
}

// Writes the next element of the innermost container, or ends it.
bool Writer::writeNext() {
  if (!fits()) return false;
  Container& container = myContainers.back();
  if (container.array) {
    if (container.nextIndex < container.array->count())
      return writeObject(container.array->objectAtIndex(container.nextIndex++).get());
    close();
    return true;
  }
  if (container.nextEntry == container.dictionary->end()) {
    close();
    return true;
  }
  const auto& [key, value] = *container.nextEntry++;
  myOutput.indent(myContainers.size());
  return writeKey(key) && writeObject(value.get());
}

bool Writer::writeObject(const NSObject* object) {
  if (!object) return fail(place(u"object") + u" is nil, which a property list cannot hold.");
  myOutput.indent(myContainers.size());
  switch (kindOf(*object)) {
    case Kind::String:
      writeText(static_cast<const NSString*>(object)->text());
      return true;
    case Kind::Number:
      return writeNumber(*static_cast<const NSNumber*>(object));
    case Kind::Date:
      return writeDate(*static_cast<const NSDate*>(object));
    case Kind::Data:
      writeData(*static_cast<const NSData*>(object));
      return true;
    case Kind::Dictionary: {
      const auto* dictionary = static_cast<const NSDictionary*>(object);
      return open({dictionary, nullptr, dictionary->begin(), 0}, "<dict/>\n", "<dict>\n", dictionary->count() == 0);
    }
    case Kind::Array: {
      const auto* array = static_cast<const NSArray*>(object);
      return open({nullptr, array, {}, 0}, "<array/>\n", "<array>\n", array->count() == 0);
    }
    case Kind::Other:
      break;
  }
  return fail(place(u"object") + u" is of class " + object->className() + u", which a property list cannot hold.");
}

bool Writer::open(Container container, std::string_view emptyTag, std::string_view tag, bool empty) {
  if (myContainers.size() == maximumPropertyListDepth)
    return fail(place(u"object") + format(u" is nested deeper than %lu levels.", maximumPropertyListDepth));
  myOutput.append(empty ? emptyTag : tag);
  if (!empty) myContainers.push_back(container);
  return true;
}

void Writer::close() {
  const bool isArray = myContainers.back().array != nullptr;
  myContainers.pop_back();
  myOutput.indent(myContainers.size());
  myOutput.append(isArray ? "</array>\n" : "</dict>\n");
}

bool Writer::writeKey(TextView key) {
  myOutput.append("<key>");
  if (const std::optional<char16_t> unit = appendEscaped(myOutput, key))
    return fail(place(u"key") + format(u" holds U+%04X, which XML cannot hold.", static_cast<unsigned>(*unit)));
  myOutput.append("</key>\n");
  return true;
}

// Text that XML cannot hold is written twice: as far as it can, for everybody, and whole, for our own reader.
void Writer::writeText(TextView text) {
  const std::size_t start = myOutput.size();
  myOutput.append("<string>");
  if (appendEscaped(myOutput, text)) {
    myOutput.cutTo(start);
    myOutput.append("<string utf16=\"");
    const std::vector<std::uint8_t> bytes = utf16Bytes(text);
    myOutput.used(encodeBase64(bytes, myOutput.room(base64Length(bytes.size()))));
    myOutput.append("\">");
    appendEscaped(myOutput, replacingNonXML(text));
  }
  myOutput.append("</string>\n");
}

bool Writer::writeNumber(const NSNumber& number) {
  constexpr std::size_t enough = 64;
  if (number.isBoolean()) {
    myOutput.append(number.boolValue() ? "<true/>\n" : "<false/>\n");
    return true;
  }
  char* out = myOutput.room(enough);
  char* const end = out + enough;
  if (!number.isFloating()) {
    out = put(out, "<integer>");
    out = number.kind() == NSNumber::Kind::Integer ? std::to_chars(out, end, number.integerValue()).ptr
                                                   : std::to_chars(out, end, number.unsignedIntegerValue()).ptr;
    myOutput.used(put(out, "</integer>\n"));
    return true;
  }
  const double value = number.doubleValue();
  out = put(out, "<real>");
  if (std::isfinite(value))
    out = std::to_chars(out, end, value).ptr;
  else
    out = put(out, std::isnan(value) ? "nan" : value > 0 ? "+infinity" : "-infinity");
  myOutput.used(put(out, "</real>\n"));
  return true;
}

bool Writer::writeDate(const NSDate& date) {
  const double seconds = std::floor(date.timeIntervalSince1970());
  if (!(seconds >= startOfYear1 && seconds < startOfYear10000))
    return fail(place(u"date") + u" is outside the years 1 to 9999.");
  const std::chrono::sys_seconds instant{std::chrono::seconds(static_cast<std::int64_t>(seconds))};
  const auto day = std::chrono::floor<std::chrono::days>(instant);
  const std::chrono::year_month_day ymd(day);
  const std::chrono::hh_mm_ss time(instant - day);
  const struct {
    unsigned value;
    unsigned width;
    char separator;
  } parts[] = {{static_cast<unsigned>(static_cast<int>(ymd.year())), 4, '-'},
               {static_cast<unsigned>(ymd.month()), 2, '-'},
               {static_cast<unsigned>(ymd.day()), 2, 'T'},
               {static_cast<unsigned>(time.hours().count()), 2, ':'},
               {static_cast<unsigned>(time.minutes().count()), 2, ':'},
               {static_cast<unsigned>(time.seconds().count()), 2, 'Z'}};
  char* out = put(myOutput.room(64), "<date>");
  for (const auto& part : parts) {
    out = putPadded(out, part.value, part.width);
    *out++ = part.separator;
  }
  myOutput.used(put(out, "</date>\n"));
  return true;
}

void Writer::writeData(const NSData& data) {
  std::span<const std::uint8_t> rest = data.bytes();
  const bool lines = !rest.empty();
  myOutput.append(lines ? "<data>\n" : "<data>");
  while (!rest.empty()) {
    const std::span<const std::uint8_t> line = rest.first(std::min(rest.size(), bytesInDataLine));
    rest = rest.subspan(line.size());
    myOutput.indent(myContainers.size());
    char* out = encodeBase64(line, myOutput.room(bytesInDataLine * 2));
    *out++ = '\n';
    myOutput.used(out);
    if (myOutput.size() > maximumPropertyListSize) return;  // refused after this object; deep tabs make lines long
  }
  if (lines) myOutput.indent(myContainers.size());
  myOutput.append("</data>\n");
}

// "The text at people[3].name", or "The text at the root".
Text Writer::place(TextView what) const {
  Text text = u"The ";
  return text.append(what).append(u" at ").append(path());
}

Text Writer::path() const {
  if (myContainers.empty()) return u"the root";
  Text text;
  for (const Container& container : myContainers) {
    if (container.array) {
      text += format(u"[%lu]", container.nextIndex - 1);
    } else {
      if (!text.empty()) text += u'.';
      text += TextView(std::prev(container.nextEntry)->first).substr(0, longestPathInMessage + 1);
    }
    if (text.size() > longestPathInMessage) {
      text.resize(longestPathInMessage);
      text += u"...";
      break;
    }
  }
  // What cannot be written cannot be shown either.
  return replacingNonXML(text);
}

}  // namespace

PropertyListBytes writePropertyList(const NSObject& root) { return Writer().write(root); }

}  // namespace kelvane
