#include "Platform/Foundation/ABAddressBook.h"

#include <algorithm>
#include <string>

#include "Platform/Foundation/AtomicFile.h"
#include "Platform/Foundation/PathText.h"
#include "Platform/Foundation/StandardFolders.h"
#include "Platform/Foundation/TextEncoding.h"

namespace kelvane {
namespace {

// Cards may have pictures in them.
constexpr std::size_t largestCard = std::size_t{16} << 20;

char upper(char byte) { return byte >= 'a' && byte <= 'z' ? static_cast<char>(byte - 'a' + 'A') : byte; }

bool isSame(std::string_view a, std::string_view upperCase) {
  return std::ranges::equal(a, upperCase, [](char x, char y) { return upper(x) == y; });
}

bool contains(std::string_view text, std::string_view upperCase) {
  const auto isSameUnit = [](char x, char y) { return upper(x) == y; };
  return std::search(text.begin(), text.end(), upperCase.begin(), upperCase.end(), isSameUnit) != text.end();
}

int hexadecimalValue(char digit) {
  if (digit >= '0' && digit <= '9') return digit - '0';
  const char letter = upper(digit);
  return letter >= 'A' && letter <= 'F' ? letter - 'A' + 10 : -1;
}

// "NAME;PARAMETERS:VALUE" (RFC 6350, 3.3), the name without its group.
struct PropertyLine {
  std::string_view name;
  std::string_view parameters;
  std::string_view value;

  explicit PropertyLine(std::string_view line) {
    const std::size_t nameEnd = std::min(line.find_first_of(";:"), line.size());
    name = line.substr(0, nameEnd);
    name.remove_prefix(name.rfind('.') + 1);
    std::size_t colon = nameEnd;
    // One between quotes belongs to a parameter.
    for (bool isQuoted = false; colon < line.size() && (isQuoted || line[colon] != ':'); ++colon)
      if (line[colon] == '"') isQuoted = !isQuoted;
    parameters = line.substr(nameEnd, colon - nameEnd);
    value = line.substr(std::min(colon + 1, line.size()));
  }

  bool isQuotedPrintable() const { return contains(parameters, "QUOTED-PRINTABLE"); }
};

// Takes the next line off `rest`, without its end.
std::string_view takeLine(std::string_view& rest) {
  const std::size_t end = std::min(rest.find('\n'), rest.size());
  std::string_view line = rest.substr(0, end);
  rest.remove_prefix(std::min(end + 1, rest.size()));
  if (line.ends_with('\r')) line.remove_suffix(1);
  return line;
}

// The next line with those that continue it: they begin with a blank, or follow a "=" at the end of quoted-printable.
std::string takeUnfolded(std::string_view& rest) {
  std::string line(takeLine(rest));
  const bool isSoft = PropertyLine(line).isQuotedPrintable();
  while (!rest.empty()) {
    if (rest.front() == ' ' || rest.front() == '\t') {
      line += takeLine(rest).substr(1);
    } else if (isSoft && line.ends_with('=')) {
      line.pop_back();
      line += takeLine(rest);
    } else {
      break;
    }
  }
  return line;
}

std::string withoutQuotedPrintable(std::string_view value) {
  std::string bytes;
  for (std::size_t i = 0; i < value.size(); ++i) {
    const int high = value[i] == '=' && i + 2 < value.size() ? hexadecimalValue(value[i + 1]) : -1;
    const int low = high >= 0 ? hexadecimalValue(value[i + 2]) : -1;
    bytes += low < 0 ? value[i] : static_cast<char>(high * 16 + low);
    if (low >= 0) i += 2;
  }
  return bytes;
}

// RFC 6350, 3.4.
std::string withoutEscapes(std::string_view value) {
  std::string bytes;
  for (std::size_t i = 0; i < value.size(); ++i) {
    const bool isEscape = value[i] == '\\' && i + 1 < value.size();
    if (isEscape) ++i;
    bytes += isEscape && upper(value[i]) == 'N' ? '\n' : value[i];
  }
  return bytes;
}

Text textOf(const PropertyLine& property) {
  const bool isQuoted = property.isQuotedPrintable();
  std::string bytes = isQuoted ? withoutQuotedPrintable(property.value) : withoutEscapes(property.value);
  constexpr const char* blanks = " \t\r\n";
  bytes.erase(bytes.find_last_not_of(blanks) + 1);
  bytes.erase(0, std::min(bytes.find_first_not_of(blanks), bytes.size()));
  return textFromUTF8(bytes);
}

}  // namespace

std::optional<ABPerson> readVCard(std::string_view bytes) {
  if (bytes.starts_with("\xEF\xBB\xBF")) bytes.remove_prefix(3);
  std::optional<ABPerson> person;
  // Cards can hold other cards.
  int depth = 0;
  while (!bytes.empty()) {
    const std::string line = takeUnfolded(bytes);
    const PropertyLine property(line);
    if (isSame(property.name, "BEGIN") && isSame(property.value, "VCARD") && depth++ == 0) person.emplace();
    if (depth > 0 && isSame(property.name, "END") && isSame(property.value, "VCARD") && --depth == 0) break;
    if (depth != 1 || !isSame(property.name, "EMAIL")) continue;
    Text address = textOf(property);
    if (!address.empty()) person->emailAddresses.push_back(std::move(address));
  }
  return person;
}

const ABAddressBook& ABAddressBook::sharedAddressBook() {
  static const auto& book = *new ABAddressBook();
  return book;
}

std::optional<ABPerson> ABAddressBook::me() const {
  const Text path = stringByAppendingPathComponent(dataFolderPath(), u"contacts/me.vcf");
  const FileContents card = readFile(fileSystemRepresentation(path), largestCard);
  if (card.error) return std::nullopt;
  return readVCard(card.bytes);
}

}  // namespace kelvane
