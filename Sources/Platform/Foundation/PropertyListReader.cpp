#include <algorithm>
#include <charconv>
#include <cstdint>
#include <cstring>
#include <optional>
#include <pugixml.hpp>
#include <vector>

#include "Platform/Foundation/Format.h"
#include "Platform/Foundation/NSArray.h"
#include "Platform/Foundation/NSData.h"
#include "Platform/Foundation/NSDate.h"
#include "Platform/Foundation/NSDictionary.h"
#include "Platform/Foundation/NSNumber.h"
#include "Platform/Foundation/NSString.h"
#include "Platform/Foundation/Overwrite.h"
#include "Platform/Foundation/PropertyList.h"
#include "Platform/Foundation/PropertyListValues.h"
#include "Platform/Foundation/TextEncoding.h"

namespace kelvane {
namespace {

// Text is left as it stands, references and line ends included, so that offsets hold and nothing passes unseen.
// Fragments are let in for the sake of text beside the root, which is dropped otherwise.
constexpr unsigned int parsing = pugi::parse_cdata | pugi::parse_doctype | pugi::parse_fragment;

constexpr std::size_t longestQuotation = 40;

enum class Element { Unknown, Dictionary, Array, Key, String, Integer, Real, True, False, Date, Data };

constexpr std::pair<std::string_view, Element> elementNames[] = {
    {"key", Element::Key},   {"string", Element::String}, {"dict", Element::Dictionary}, {"array", Element::Array},
    {"true", Element::True}, {"false", Element::False},   {"integer", Element::Integer}, {"real", Element::Real},
    {"date", Element::Date}, {"data", Element::Data}};

Element elementNamed(std::string_view name) {
  const auto* found = std::ranges::find(elementNames, name, &std::pair<std::string_view, Element>::first);
  return found == std::end(elementNames) ? Element::Unknown : found->second;
}

// A piece of the input for a message.
Text quoted(std::string_view bytes) {
  return textFromUTF8(bytes.substr(0, longestQuotation)) + (bytes.size() > longestQuotation ? u"..." : u"");
}

// --- The bytes as UTF-8

// The encoding that the XML declaration names; empty when it names none.
std::string_view declaredEncoding(std::string_view bytes) {
  constexpr std::string_view start = "<?xml";
  constexpr std::string_view attribute = "encoding";
  if (!bytes.starts_with(start)) return {};
  bytes = bytes.substr(0, std::min(bytes.find("?>"), std::size_t{1024}));
  const std::size_t place = bytes.find(attribute);
  if (place == std::string_view::npos) return {};
  bytes = trimmedXML(bytes.substr(place + attribute.size()));
  if (!bytes.starts_with('=')) return {};
  bytes = trimmedXML(bytes.substr(1));
  if (!bytes.starts_with('"') && !bytes.starts_with('\'')) return {};
  return bytes.substr(1, bytes.find(bytes.front(), 1) - 1);
}

std::string utf8FromUTF16(std::string_view bytes, bool bigEndian) {
  const std::size_t units = bytes.size() / 2;
  Text text = overwritten<Text>(units + 1, [&](char16_t* out) {
    for (std::size_t i = 0; i < units; ++i) {
      const auto first = static_cast<unsigned char>(bytes[2 * i]);
      const auto second = static_cast<unsigned char>(bytes[2 * i + 1]);
      out[i] = static_cast<char16_t>(bigEndian ? first << 8U | second : second << 8U | first);
    }
    out[units] = u'\xFFFD';  // half a unit
    return units + bytes.size() % 2;
  });
  return utf8(text);
}

// `bytes` as UTF-8 without byte-order mark: a view into `bytes` or `storage`. Nothing when the encoding is not known.
std::optional<std::string_view> asUTF8(std::string_view bytes, std::string& storage) {
  constexpr std::string_view utf8Mark = "\xEF\xBB\xBF";
  if (bytes.starts_with(utf8Mark)) return bytes.substr(utf8Mark.size());
  const bool littleMark = bytes.starts_with("\xFF\xFE");
  const bool bigMark = bytes.starts_with("\xFE\xFF");
  const bool little = littleMark || bytes.starts_with(std::string_view("<\0", 2));
  const bool big = bigMark || bytes.starts_with(std::string_view("\0<", 2));
  if (little || big) {
    storage = utf8FromUTF16(bytes.substr(littleMark || bigMark ? 2 : 0), big);
    return storage;
  }
  const std::string_view encoding = declaredEncoding(bytes);
  for (const std::string_view known : {"", "UTF-8", "UTF8", "US-ASCII", "ASCII"})
    if (equalsIgnoringASCIICase(encoding, known)) return bytes;
  for (const std::string_view known : {"ISO-8859-1", "ISO_8859-1", "ISO8859-1", "LATIN1"}) {
    if (!equalsIgnoringASCIICase(encoding, known)) continue;
    storage = utf8(textFromISOLatin1(bytes));
    return storage;
  }
  return std::nullopt;
}

constexpr bool isForbiddenControl(char byte) {
  return static_cast<unsigned char>(byte) < 0x20 && byte != '\t' && byte != '\n' && byte != '\r';
}

// The first control that XML has not; npos when there is none.
std::size_t findForbiddenControl(std::string_view bytes) {
  constexpr std::size_t stretch = 4096;
  for (std::size_t start = 0; start < bytes.size(); start += stretch) {
    const std::string_view part = bytes.substr(start, stretch);
    int hasOne = 0;
    for (const char byte : part) {
      const auto value = static_cast<unsigned char>(byte);
      // Without shortcuts, so that many are looked at side by side.
      hasOne |= int{value < 0x20} & int{value != '\t'} & int{value != '\n'} & int{value != '\r'};
    }
    if (hasOne != 0)
      return start + static_cast<std::size_t>(std::ranges::find_if(part, isForbiddenControl) - part.begin());
  }
  return std::string_view::npos;
}

// Where `bytes` hold something that is no character of XML; npos when nowhere. Ill-formed sequences pass.
std::size_t findForbidden(std::string_view bytes) {
  std::size_t place = findForbiddenControl(bytes);
  constexpr std::string_view start = "\xEF\xBF";  // of U+FFFE and U+FFFF
  for (std::size_t i = bytes.find(start); i < place; i = bytes.find(start, i + 1))
    if (i + 2 < bytes.size() && (bytes[i + 2] == '\xBE' || bytes[i + 2] == '\xBF')) place = i;
  return place;
}

// Whether there may be comments, CDATA sections or processing instructions, which part the text that they stand in.
bool mayPartText(std::string_view bytes) {
  constexpr std::string_view doctype = "<!DOCTYPE";
  for (std::size_t i = bytes.find('!'); i != std::string_view::npos; i = bytes.find('!', i + 1))
    if (i > 0 && bytes[i - 1] == '<' && !bytes.substr(i - 1).starts_with(doctype)) return true;
  // The one at the start is the XML declaration.
  for (std::size_t i = bytes.find('?', 2); i != std::string_view::npos; i = bytes.find('?', i + 1))
    if (bytes[i - 1] == '<') return true;
  return false;
}

// The lines up to `offset`, however they end.
std::size_t lineOfOffset(std::string_view bytes, std::size_t offset) {
  std::size_t line = 1;
  for (std::size_t i = 0; i < std::min(offset, bytes.size()); ++i)
    if (bytes[i] == '\n' || (bytes[i] == '\r' && !bytes.substr(i + 1).starts_with('\n'))) ++line;
  return line;
}

// --- References

constexpr bool isXMLCharacter(std::uint32_t character) {
  if (character < 0x20) return character == '\t' || character == '\n' || character == '\r';
  return character < 0xD800 || (character > 0xDFFF && character < 0xFFFE) ||
         (character > 0xFFFF && character <= 0x10FFFF);
}

void appendUTF8(std::string& out, char32_t character) {
  const char16_t pair[] = {static_cast<char16_t>(0xD7C0U + (character >> 10U)),
                           static_cast<char16_t>(0xDC00U | (character & 0x3FFU))};
  const auto single = static_cast<char16_t>(character);
  out += utf8(character > 0xFFFF ? TextView(pair, 2) : TextView(&single, 1));
}

// What the reference without "&" and ";" stands for; nothing when XML has no such reference.
std::optional<char32_t> referent(std::string_view reference) {
  constexpr std::pair<std::string_view, char32_t> named[] = {
      {"amp", U'&'}, {"lt", U'<'}, {"gt", U'>'}, {"quot", U'"'}, {"apos", U'\''}};
  for (const auto& [name, character] : named)
    if (reference == name) return character;
  if (!reference.starts_with('#')) return std::nullopt;
  reference.remove_prefix(1);
  const bool hexadecimal = reference.starts_with('x');
  if (hexadecimal) reference.remove_prefix(1);
  std::uint32_t character = 0;
  const char* const end = reference.data() + reference.size();
  const auto [stop, error] = std::from_chars(reference.data(), end, character, hexadecimal ? 16 : 10);
  if (error != std::errc() || stop != end || !isXMLCharacter(character)) return std::nullopt;
  return character;
}

// --- The tree

TextView whatIsMalformed(pugi::xml_parse_status status) {
  switch (status) {
    case pugi::status_bad_start_element:
      return u"a start tag is broken";
    case pugi::status_bad_attribute:
      return u"an attribute is broken";
    case pugi::status_bad_end_element:
      return u"an end tag is broken";
    case pugi::status_end_element_mismatch:
      return u"start and end tags do not match";
    case pugi::status_bad_comment:
      return u"a comment does not end";
    case pugi::status_bad_cdata:
      return u"a CDATA section does not end";
    case pugi::status_bad_doctype:
      return u"a DOCTYPE is broken or misplaced";
    case pugi::status_bad_pi:
      return u"a processing instruction does not end";
    case pugi::status_out_of_memory:
      return u"it takes more memory than there is";
    default:
      return u"a tag is not recognised";
  }
}

// Whether a DOCTYPE has an internal subset: a bracket outside of its quoted identifiers.
bool hasInternalSubset(std::string_view doctype) {
  char quote = 0;
  for (const char character : doctype) {
    if (quote != 0) {
      if (character == quote) quote = 0;
    } else if (character == '"' || character == '\'') {
      quote = character;
    } else if (character == '[') {
      return true;
    }
  }
  return false;
}

bool isText(pugi::xml_node node) { return node.type() == pugi::node_pcdata || node.type() == pugi::node_cdata; }

// The text of a <string> of which `shown` is what XML can hold. What stands in the attribute counts as long as it still
// belongs to that, and nobody has changed it since.
Text wholeText(pugi::xml_node node, Text shown) {
  const pugi::xml_attribute attribute = node.attribute("utf16");
  if (!attribute) return shown;
  const auto bytes = bytesFromBase64(attribute.value());
  std::optional<Text> whole = bytes ? textFromUTF16Bytes(*bytes) : std::nullopt;
  return whole && replacingNonXML(*whole) == shown ? *std::move(whole) : shown;
}

class Reader {
 public:
  PropertyList read(std::string_view bytes);

 private:
  // A container whose elements are being read.
  struct Container {
    pugi::xml_node next;
    bool isDictionary = false;
    std::size_t keyOffset = 0;
    std::optional<Text> key;  // without value so far
    NSDictionary::Entries entries;
    std::vector<Ref<NSObject>> elements;
  };

  bool parse(pugi::xml_document& document);
  bool findPropertyList(pugi::xml_node document, pugi::xml_node& plist);
  bool findValue(pugi::xml_node plist, pugi::xml_node& value);
  bool readTree(pugi::xml_node root);
  bool readNext();
  bool readElement(pugi::xml_node node);
  bool readScalar(pugi::xml_node node, Element element);
  bool readKey(pugi::xml_node node);
  bool closeContainer();
  void deliver(Ref<NSObject> object);

  bool checkAttributes(pugi::xml_node node);
  bool onlyWhiteSpace(pugi::xml_node text);
  bool content(pugi::xml_node node, std::string_view& text);
  bool decode(std::string_view raw, std::size_t offset, bool references);

  static std::size_t offsetOf(pugi::xml_node node) {
    return static_cast<std::size_t>(std::max<std::ptrdiff_t>(node.offset_debug(), 0));
  }
  bool fail(std::size_t offset, Text message);
  bool fail(pugi::xml_node node, Text message) { return fail(offsetOf(node), std::move(message)); }
  bool failKey(const Container& container);
  bool failValue(pugi::xml_node node, std::string_view text, TextView wanted);

  std::string_view myBytes;
  std::vector<Container> myContainers;
  std::string myScratch;
  PropertyList myResult;
};

bool Reader::fail(std::size_t offset, Text message) {
  myResult = {nullptr, std::move(message), lineOfOffset(myBytes, offset)};
  return false;
}

bool Reader::failValue(pugi::xml_node node, std::string_view text, TextView wanted) {
  Text message = u"<" + quoted(node.name()) + u"> holds \"" + quoted(text) + u"\", which is no ";
  return fail(node, message.append(wanted).append(u"."));
}

bool Reader::failKey(const Container& container) {
  return fail(container.keyOffset, u"The key \"" + container.key->substr(0, longestQuotation) + u"\" has no value.");
}

PropertyList Reader::read(std::string_view bytes) {
  if (bytes.size() > maximumPropertyListSize)
    return {nullptr, format(u"The property list is larger than %lu bytes.", maximumPropertyListSize), 0};
  std::string storage;
  const std::optional<std::string_view> converted = asUTF8(bytes, storage);
  if (!converted) return {nullptr, u"The encoding " + quoted(declaredEncoding(bytes)) + u" is not supported.", 1};
  myBytes = *converted;
  pugi::xml_document document;
  pugi::xml_node plist;
  pugi::xml_node value;
  if (parse(document) && findPropertyList(document, plist) && findValue(plist, value)) readTree(value);
  return std::move(myResult);
}

bool Reader::parse(pugi::xml_document& document) {
  if (const std::size_t place = findForbidden(myBytes); place != std::string_view::npos) {
    const auto byte = static_cast<unsigned char>(myBytes[place]);
    const unsigned character = byte < 0x20 ? byte : 0xFF40U + static_cast<unsigned char>(myBytes[place + 2]);
    return fail(place, format(u"There is a U+%04X, which XML cannot hold.", character));
  }
  // White space between elements means nothing, and is half of all nodes; where a text may come in parts, it is needed.
  const unsigned int whiteSpace = mayPartText(myBytes) ? pugi::parse_ws_pcdata : pugi::parse_ws_pcdata_single;
  const pugi::xml_parse_result result =
      document.load_buffer(myBytes.data(), myBytes.size(), parsing | whiteSpace, pugi::encoding_utf8);
  if (result) return true;
  Text message = u"The XML is malformed: ";
  return fail(static_cast<std::size_t>(result.offset), message.append(whatIsMalformed(result.status)).append(u"."));
}

bool Reader::findPropertyList(pugi::xml_node document, pugi::xml_node& plist) {
  bool hasDoctype = false;
  for (const pugi::xml_node node : document) {
    if (isText(node)) {
      if (!onlyWhiteSpace(node)) return false;
    } else if (node.type() == pugi::node_doctype) {
      if (hasDoctype || plist) return fail(node, u"The XML is malformed: a DOCTYPE is broken or misplaced.");
      if (hasInternalSubset(node.value()))
        return fail(node, u"The DOCTYPE has an internal subset, which is not allowed.");
      hasDoctype = true;
    } else if (plist) {
      return fail(node, u"There is more than one root element.");
    } else if (std::string_view(node.name()) != "plist") {
      return fail(node, u"The root element is <" + quoted(node.name()) + u"> and not <plist>.");
    } else {
      plist = node;
    }
  }
  return plist || fail(myBytes.size(), u"There is no <plist> element.");
}

bool Reader::findValue(pugi::xml_node plist, pugi::xml_node& value) {
  if (!checkAttributes(plist)) return false;
  for (const pugi::xml_node node : plist) {
    if (isText(node)) {
      if (!onlyWhiteSpace(node)) return false;
    } else if (value) {
      return fail(node, u"The <plist> has more than one value.");
    } else {
      value = node;
    }
  }
  return value || fail(plist, u"The <plist> has no value.");
}

// The tree is walked with a stack of our own, so that no input can exhaust the thread's.
bool Reader::readTree(pugi::xml_node root) {
  bool good = readElement(root);
  while (good && !myContainers.empty()) good = readNext();
  return good;
}

// Reads the next child of the innermost container, or ends it.
bool Reader::readNext() {
  Container& container = myContainers.back();
  const pugi::xml_node node = container.next;
  if (!node) return closeContainer();
  container.next = node.next_sibling();
  if (isText(node)) return onlyWhiteSpace(node);
  if (!container.isDictionary) return readElement(node);
  if (elementNamed(node.name()) == Element::Key) return readKey(node);
  if (!container.key) return fail(node, u"<" + quoted(node.name()) + u"> stands in a <dict> without a <key>.");
  return readElement(node);
}

bool Reader::readElement(pugi::xml_node node) {
  const Element element = elementNamed(node.name());
  if (!checkAttributes(node)) return false;
  if (element != Element::Dictionary && element != Element::Array) return readScalar(node, element);
  if (myContainers.size() == maximumPropertyListDepth)
    return fail(node, format(u"The property list is nested deeper than %lu levels.", maximumPropertyListDepth));
  Container& container = myContainers.emplace_back();
  container.next = node.first_child();
  container.isDictionary = element == Element::Dictionary;
  return true;
}

bool Reader::readKey(pugi::xml_node node) {
  Container& container = myContainers.back();
  if (container.key) return failKey(container);
  std::string_view text;
  if (!checkAttributes(node) || !content(node, text)) return false;
  container.key = textFromUTF8(text);
  container.keyOffset = offsetOf(node);
  return true;
}

bool Reader::closeContainer() {
  Container& container = myContainers.back();
  if (container.key) return failKey(container);
  Ref<NSObject> object;
  if (container.isDictionary)
    object = std::make_shared<NSDictionary>(std::move(container.entries));
  else
    object = std::make_shared<NSArray>(std::move(container.elements));
  myContainers.pop_back();
  deliver(std::move(object));
  return true;
}

// Puts an object that is complete where it belongs.
void Reader::deliver(Ref<NSObject> object) {
  if (myContainers.empty()) {
    myResult.root = std::move(object);
    return;
  }
  Container& container = myContainers.back();
  if (!container.isDictionary) {
    container.elements.push_back(std::move(object));
    return;
  }
  // Keys mostly come in order, and then the end is where they go.
  container.entries.insert_or_assign(container.entries.end(), *std::move(container.key), std::move(object));
  container.key.reset();
}

bool Reader::readScalar(pugi::xml_node node, Element element) {
  if (element == Element::Key) return fail(node, u"<key> stands outside of a <dict>.");
  if (element == Element::Unknown)
    return fail(node, u"<" + quoted(node.name()) + u"> is no element of a property list.");
  std::string_view text;
  if (!content(node, text)) return false;
  if (element == Element::String) {
    deliver(std::make_shared<NSString>(wholeText(node, textFromUTF8(text))));
  } else if (element == Element::Integer) {
    const std::optional<NSNumber> number = integerFrom(text);
    if (!number) return failValue(node, text, u"integer of 64 bits");
    deliver(std::make_shared<NSNumber>(*number));
  } else if (element == Element::Real) {
    const std::optional<double> number = realFrom(text);
    if (!number) return failValue(node, text, u"number that a double can hold");
    deliver(std::make_shared<NSNumber>(*number));
  } else if (element == Element::Date) {
    const std::optional<double> seconds = secondsSince1970From(text);
    if (!seconds) return failValue(node, text, u"date of the form YYYY-MM-DDTHH:MM:SSZ");
    deliver(std::make_shared<NSDate>(NSDate::dateWithTimeIntervalSince1970(*seconds)));
  } else if (element == Element::Data) {
    std::optional<std::vector<std::uint8_t>> bytes = bytesFromBase64(text);
    if (!bytes) return failValue(node, trimmedXML(text), u"base64");
    deliver(std::make_shared<NSData>(*std::move(bytes)));
  } else {
    if (!trimmedXML(text).empty()) return fail(node, u"<" + quoted(node.name()) + u"> is not empty.");
    deliver(std::make_shared<NSNumber>(element == Element::True));
  }
  return true;
}

// Attributes mean nothing, but no reference in them goes unseen either.
bool Reader::checkAttributes(pugi::xml_node node) {
  for (auto attribute = node.first_attribute(); attribute; attribute = attribute.next_attribute())
    if (!decode(attribute.value(), offsetOf(node), true)) return false;
  return true;
}

bool Reader::onlyWhiteSpace(pugi::xml_node text) {
  const std::string_view value = text.value();
  const auto* stray = std::ranges::find_if_not(value, isXMLSpace);
  if (stray == value.end()) return true;
  const auto skipped = static_cast<std::size_t>(stray - value.begin());
  return fail(offsetOf(text) + skipped,
              u"The text \"" + quoted(trimmedXML(value)) + u"\" stands outside of an element for text.");
}

// The text of an element: a view into the document, or into myScratch where it had to be put together.
bool Reader::content(pugi::xml_node node, std::string_view& text) {
  const pugi::xml_node child = node.first_child();
  if (!child) return true;
  if (child.type() == pugi::node_pcdata && !child.next_sibling()) {
    const std::size_t plain = std::strcspn(child.value(), "&\r");
    text = {child.value(), plain};
    if (child.value()[plain] == '\0') return true;
  }
  std::string assembled;
  for (const pugi::xml_node part : node) {
    if (!isText(part))
      return fail(part, u"<" + quoted(part.name()) + u"> stands within <" + quoted(node.name()) + u">.");
    if (!decode(part.value(), offsetOf(part), part.type() == pugi::node_pcdata)) return false;
    assembled += myScratch;
  }
  myScratch = std::move(assembled);
  text = myScratch;
  return true;
}

// Puts `raw`, which stands at `offset`, into myScratch with its references resolved and LF at the ends of its lines.
bool Reader::decode(std::string_view raw, std::size_t offset, bool references) {
  myScratch.clear();
  for (std::size_t i = 0; i < raw.size();) {
    const std::size_t next = std::min(raw.find_first_of(references ? "&\r" : "\r", i), raw.size());
    myScratch.append(raw, i, next - i);
    if (next == raw.size()) break;
    i = next + 1;
    if (raw[next] == '\r') {
      myScratch += '\n';
      if (raw.substr(i).starts_with('\n')) ++i;
      continue;
    }
    const std::size_t end = raw.find_first_of(";&< \t\r\n", i);
    if (end == std::string_view::npos || raw[end] != ';')
      return fail(offset + next, u"There is an \"&\" that begins no reference.");
    const std::string_view reference = raw.substr(i, end - i);
    const std::optional<char32_t> character = referent(reference);
    if (!character)
      return fail(offset + next, u"The reference &" + quoted(reference) + u"; is none of XML's own and no character.");
    appendUTF8(myScratch, *character);
    i = end + 1;
  }
  return true;
}

}  // namespace

PropertyList readPropertyList(std::string_view bytes) { return Reader().read(bytes); }

}  // namespace kelvane
