#pragma once

#include <cstdint>
#include <vector>

#include "Platform/Foundation/Export.h"
#include "Platform/Foundation/NSAttributedString.h"
#include "Platform/Foundation/Text.h"

// Styled text from a small subset of HTML, and back; and as RTF. All pages and any tags are read by
// NSStringExtensions::stringWithHTMLString, which keeps no styles.
//
// ```cpp
// NSAttributedStringExtensions::didLoad();  // once, at the host's start
// const NSAttributedString styled = attributedStringWithHTML(u"Read <b>this</b>");
// const Text html = htmlString(styled);
// const std::vector<std::uint8_t> file = rtf(styled);
// ```
//
// The conversions share the state that the functions of NSAttributedStringExtensions set, without a lock: main thread
// only. The exception is `rtf`, which may run on any thread.
namespace kelvane {

namespace NSAttributedStringExtensions {

// didLoad  What a host calls once at its start, before the first conversion; later calls do nothing. Without it an "&"
// is read as it stands, and black is written as a colour.
KELVANE_EXPORT void didLoad();

// What the reader sets text in until a tag changes it. Every reading starts with `resetAttributes`; what is open at its
// end stays until then.

// resetAttributes  Neither bold, italic nor underlined; 12.0 points.
KELVANE_EXPORT void resetAttributes();
// setBold:
KELVANE_EXPORT void setBold(bool flag);
// setItalic:
KELVANE_EXPORT void setItalic(bool flag);
// setUnderline:
KELVANE_EXPORT void setUnderline(bool flag);
// setCurrentAttributes:  Adds the font (Helvetica with these traits in this size) and the underline style (a truth
// value, which is there either way) to the whole text.
KELVANE_EXPORT void setCurrentAttributes(NSMutableAttributedString& text);

// What the writer remembers from run to run.

// closeTags  The closing tags of all that is still open, innermost first; then nothing is.
KELVANE_EXPORT Text closeTags();
// resetAttributeTags  Forgets the last run's attributes and what is open.
KELVANE_EXPORT void resetAttributeTags();

}  // namespace NSAttributedStringExtensions

// initWithHTML:  The styled text that `html` holds in this subset; never fails.
//
//   <b> <i> <u>, </b> </i> </u>   bold, italic, underline on and off
//   <p>, <br>                     two LF, one LF, without any attributes
//   <font size=N>                 N + 9 points; sizes in quotes are none
//   <font size=+N>                N + 9 points more than before
//   </font>                       12 points again
//
// Tags are compared as they stand, with regard to case; any other is left out, comments too. A "<" without a ">" takes
// the rest of the text for its tag's name. White space of any kind is one blank, which is lost at the start and behind
// a tag, and the text ends with one. The characters behind an "&" do not make a reference: "&" becomes "&amp", ">"
// right behind it becomes "&gt", and an "&" with nothing but blanks between it and the one before repeats what stood
// before that. So n characters followed by m times "&" give n * m; else time and memory are linear.
//   u"Hello <b>bold</b> world" => u"Hello boldworld ", of which "bold" is bold
//   u"a&&b" => u"a&ampa&ampb "
KELVANE_EXPORT NSMutableAttributedString attributedStringWithHTML(TextView html);

// htmlString  The text in this subset, run by run: a link as <a href="...">, bold, italic, underline, a size other than
// 12.0 as <font size="N"> with N points less 9, cut to a whole number, and a colour as <font color="#rrggbb">, unless
// it is black. The text is escaped by htmlString of NSString-HTML.h; the link is not. Tags are always nested properly,
// as a QNTagStack does it; only that size and colour share one "</font>".
//
// Where a link starts or ends, no other change is written. Links and colours are compared by identity, and only where
// attributes differ at all. A style that ends without having been written, since it began with a link or is black text,
// raises std::invalid_argument where other tags are open.
//   "bold" in bold and " plain" => u"<b>bold</b> plain"
//   14 points, italic           => u"<font size=\"5\"><i>...</i></font>"
KELVANE_EXPORT Text htmlString(const NSAttributedString& text);

// rtf  The text as a document in RTF 1.9: fonts, sizes, bold, italic, underline, colours and links, text of any script;
// 12 points of Helvetica where there is no font. The rules stand in Platform/Foundation/RTFWriter.h.
KELVANE_EXPORT std::vector<std::uint8_t> rtf(const NSAttributedString& text);

}  // namespace kelvane
