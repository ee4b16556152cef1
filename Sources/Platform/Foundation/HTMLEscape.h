#pragma once

#include "Platform/Foundation/Export.h"
#include "Platform/Foundation/Text.h"

// Text made safe to stand in HTML, in plain ASCII. Pure functions, any thread.
namespace kelvane {

//   double quote => &quot;      & => &amp;      < => &lt;      > => &gt;      LF => <br/>
//
// Every code unit from 128 on becomes a decimal reference to its number, so that a character beyond U+FFFF is written
// as its two surrogates. All else stays, CR, tab and the apostrophe too. Linear, one walk besides one that counts.
//   u"é" => u"&#233;"      u"\xD83D\xDE00" => u"&#55357;&#56832;"      u"it's\r\n" => u"it's\r<br/>"
KELVANE_EXPORT Text escapedForHTML(TextView text);

// The same put at the end of `out`.
KELVANE_EXPORT void appendEscapedForHTML(Text& out, TextView text);

}  // namespace kelvane
