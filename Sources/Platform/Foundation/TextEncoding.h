#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "Platform/Foundation/Export.h"
#include "Platform/Foundation/Text.h"

// Text to bytes and back. All of these are pure functions that run in one pass and may be called on any thread.
//
// ```cpp
// const Text name = textFromUTF8(bytes);  // at the door
// std::cout << utf8(name) << '\n';
// ```
namespace kelvane {

// The UTF-8 form of `text`. An unpaired surrogate becomes U+FFFD (EF BF BD).
//
//   u"é"      => C3 A9
//   u"\xD800" => EF BF BD
KELVANE_EXPORT std::string utf8(TextView text);

// The text that `bytes` hold as UTF-8. Each maximal ill-formed part becomes one U+FFFD, the way that the Unicode
// Standard recommends (chapter 3.9, "U+FFFD Substitution of Maximal Subparts"). A byte-order mark is kept as U+FEFF.
// The result reserves as many code units as there are bytes.
//
//   C3 A9       => u"é"
//   E2 82 41    => u"\xFFFD" u"A"       (one part: a sequence cut short)
//   ED A0 80    => three times u"\xFFFD" (surrogates have no UTF-8 form)
KELVANE_EXPORT Text textFromUTF8(std::string_view bytes);

// The ISO Latin-1 form of `text`, a byte for each code unit; nothing when a code unit is above U+00FF.
KELVANE_EXPORT std::optional<std::string> isoLatin1(TextView text);

// The same into `out`, which has room for as many bytes. Whether all code units have one: if not, what stands in `out`
// means nothing.
KELVANE_EXPORT bool narrowISOLatin1(TextView text, char* out);

// The text that `bytes` hold as ISO Latin-1: every byte is the code unit of the same number.
KELVANE_EXPORT Text textFromISOLatin1(std::string_view bytes);

// A file name or path as text, such that `fileSystemRepresentation` gives the same bytes again, whatever they are: read
// as UTF-8, except that a byte which belongs to no well-formed sequence becomes U+DC00 plus its value
// (U+DC80...U+DCFF).
KELVANE_EXPORT Text textFromFileSystem(std::string_view bytes);

// The bytes of a file name or path. U+DC80...U+DCFF, where they are unpaired, stand for a stray byte; any other
// unpaired surrogate becomes U+FFFD.
KELVANE_EXPORT std::string fileSystemRepresentation(TextView path);

}  // namespace kelvane
