#pragma once

#include <compare>

#include "Platform/Foundation/Export.h"
#include "Platform/Foundation/Text.h"

// Upper and lower case, the same in every locale (Unicode Standard, 3.13). Pure functions in one pass, any thread;
// unpaired surrogates stay. A text of 2^31 code units or more raises std::invalid_argument unless it is all ASCII.
namespace kelvane {

// lowercaseString  Each character in lower case, with regard to its place: u"\x3A3" at the end of a word gives
// u"\x3C2". The result may be longer than the text.
//   u"STRASSE" => u"strasse"      u"ΟΔΟΣ" => u"οδος"      u"İ" => u"i\x307"
KELVANE_EXPORT Text lowercaseString(TextView text);

// uppercaseString  Each character in upper case. The result may be longer than the text.
//   u"straße" => u"STRASSE"      u"ﬁ" => u"FI"      u"ŉ" => u"\x2BCN"
KELVANE_EXPORT Text uppercaseString(TextView text);

// caseInsensitiveCompare:  The order of two texts by the code units of their full case foldings. Not the order of a
// dictionary: accents and scripts count by their code units.
//   u"Straße", u"STRASSE" => equivalent      u"a", u"B" => less      u"é", u"e\x301" => greater
KELVANE_EXPORT std::weak_ordering caseInsensitiveCompare(TextView a, TextView b);

// Whether the two are the same but for case.
inline bool isEqualIgnoringCase(TextView a, TextView b) { return caseInsensitiveCompare(a, b) == 0; }

}  // namespace kelvane
