#pragma once

#include <string_view>

#include "Platform/Foundation/Export.h"
#include "Platform/Foundation/Text.h"

namespace kelvane {

// The text of a page, as a reader sees it. Any HTML gives something, however broken: it is read token by token as the
// HTML standard has them (13.2.5), without a tree and without recursion, in one walk; so a tag counts where it stands.
// Linear in time and memory. Pure functions, any thread.
//
// Blocks stand on lines of their own, and there are no empty lines between them; `br` always breaks the line.
//   u"<p>One<p>Two</p><div><div>Three</div></div>" => u"One\nTwo\nThree"
//   u"one<br>two<br><br>three"                     => u"one\ntwo\n\nthree"
// White space counts as one blank between words, and as none at either end of a line. A no-break space is no white
// space.
//   u" a \n <b> b</b> c&nbsp; "                    => u"a b c\xA0"
// Within `pre`, `listing`, `textarea`, `xmp` and `plaintext` it counts, except for a line break at the very start.
// CR and CR LF count as LF.
//   u"a<pre>\n  b\r\n  c\n</pre>d"                 => u"a\n  b\n  c\nd"
// Items have a bullet or, in numbered lists, their number, and stand two blanks deeper in inner lists, up to the ninth.
// `start` and `value` set the number.
//   u"<ul><li>a<li>b<ol start=3><li>c</ol></ul>"   => u"• a\n• b\n  3. c"
// A row is a line, and its cells are parted by tabs.
//   u"<tr><td>a<td>b<tr><td><td><p>c"              => u"a\tb\n\tc"
// References become their characters, and what only looks like one stays.
//   u"&lt;&eacute;&#8364;&copy2; a&b; &"           => u"<é€©2; a&b; &"
// Comments, declarations, scripts, styles, titles, templates and frames are left out; so is a tag that never ends. What
// is shown in place of what cannot be, such as the content of `noscript`, stays.
//   u"<title>T</title>a<!--b--><script>c</script>" => u"a"
//   u"1 < 2 <3 </ <b"                              => u"1 < 2 <3 </ "
// U+0000 vanishes. A lone surrogate stays as it is.
KELVANE_EXPORT Text plainTextOfHTML(TextView html);

// The same for a file's bytes, decoded by `textOfHTMLBytes` (HTMLBytes.h).
KELVANE_EXPORT Text plainTextOfHTML(std::string_view bytes);

}  // namespace kelvane
