#pragma once

#include <optional>

#include "Platform/Foundation/Export.h"
#include "Platform/Foundation/Text.h"

// Text and HTML: escaping, the text of a page, addresses. The receiver is the first parameter. Linear; any thread, but
// for `hyperlink`, which asks for a font.
//
// ```cpp
// const Text paragraph = u"<p>" + htmlString(u"1 < 2 & so on") + u"</p>";
// const std::optional<Text> plain = NSStringExtensions::stringWithHTMLString(paragraph);  // "1 < 2 & so on"
// ```
namespace kelvane {

class NSAttributedString;

// htmlString  The text escaped for HTML, in ASCII; the rules stand in Platform/Foundation/HTMLEscape.h.
//   u"a < \"é\"\n" => u"a &lt; &quot;&#233;&quot;<br/>"
KELVANE_EXPORT Text htmlString(TextView text);

namespace NSStringExtensions {

// stringWithHTMLString:  The text of a page, as plainTextOfHTML in Platform/Foundation/HTMLPlainText.h gives it. Nil
// for nil.
//   u"<p>Caf&eacute;<p>open" => u"Café\nopen"
KELVANE_EXPORT std::optional<Text> stringWithHTMLString(std::optional<TextView> html);

}  // namespace NSStringExtensions

// flattenHTML  The text of the page that the text is. One to three units are read through bytes of Mac OS Roman, which
// carry no mark and so are taken for windows-1252; where Mac OS Roman has no such character the text itself is
// returned.
//   u"a<b>b</b>" => u"ab"      u"é" => u"Ž"      u"東" => u"東"      u"" => u""
KELVANE_EXPORT Text flattenHTML(TextView text);

// encodeLegally  The text with the UTF-8 bytes of each character that no URL may hold as it is (RFC 2396, 2.4.3)
// written as "%" and two upper-case digits: white space, control characters, all beyond ASCII, the double quote, the
// backslash, the grave accent and < > { } | ^ [ ]. "%", "+" and "#" stay, so that nothing is escaped twice. A lone
// surrogate counts as U+FFFD.
//   u"a b/é?q=1#x" => u"a%20b/%C3%A9?q=1#x"      u"%20" => u"%20"
KELVANE_EXPORT Text encodeLegally(TextView text);

// hyperlink  The text as the label of a link to itself: underlined, blue (calibrated RGB 0.1, 0.1, 1.0) and in the
// system font at the small size; without a font on a machine that has none. Main thread only.
KELVANE_EXPORT NSAttributedString hyperlink(TextView text);

}  // namespace kelvane
