#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "Extensions/NSString-HTML.h"
#include "Extensions/TSVTable.h"
#include "Platform/Foundation/Export.h"
#include "Platform/Foundation/Geometry.h"
#include "Platform/Foundation/NSCharacterSet.h"
#include "Platform/Foundation/NSDictionary.h"
#include "Platform/Foundation/Text.h"
#include "Platform/Foundation/TextLines.h"
#include "Platform/Foundation/TextSearch.h"

// Operations on text: lines, tokens, trimming, quoting, tables, paths, replacement, and (NSString-HTML.h) HTML. The
// receiver is the first parameter.
//
// ```cpp
// const Text settings = removeCommentedLines(u"# The title\ncolour = \"navy\"\n");
// for (const TextView line : componentsSeparatedByLineSeparators(settings))
//   if (const auto value = substringFromToken(line, u"="))
//     std::cout << utf8(removeQuots(trim(*value))) << '\n';  // navy
// ```
//
// Where nothing else is said, they take time proportional to their input (and to their result, where replacing makes
// that longer), may run on any thread, and never fail; a result longer than a text can be is std::length_error. Texts
// may hold anything, unpaired surrogates and NUL included. What returns a TextView returns a slice of its receiver:
// given a temporary Text, trimming gives a Text of its own, and the others refuse to compile.
namespace kelvane {

namespace NSStringExtensions {

// stringWithSequenz:repeated:  `sequence` written `repeated` times; std::length_error for more than a text can hold.
//   u"ab", 3 => u"ababab"      u"ab", 0 => u""
KELVANE_EXPORT Text stringWithSequenz(TextView sequence, std::uint64_t repeated);

// stringWithWhiteSpace:  `count` spaces; none for a count below 1; the same error.
KELVANE_EXPORT Text stringWithWhiteSpace(std::int64_t count);

// uniqueString  A new random UUID (RFC 4122, version 4) in its canonical form with upper-case digits: 36 code units,
// such as u"0E9C5A43-7F0B-4A2D-9C34-6B1D5E8F7A20". Unlike any other in all likelihood.
KELVANE_EXPORT Text uniqueString();

}  // namespace NSStringExtensions

// Lines. They end at LF, CR, CR LF, NEL, U+2028 and U+2029; a text that ends with one of these has an empty last line,
// the empty text has none. Platform/Foundation/TextLines.h walks lines without collecting them.

// componentsSeparatedByLineSeparators  The lines in order, without their terminators.
//   u"a\r\nb" => "a", "b"      u"a\n" => "a", ""      u"" => (none)
KELVANE_EXPORT std::vector<TextView> componentsSeparatedByLineSeparators(TextView text);
template <TemporaryText T>
std::vector<TextView> componentsSeparatedByLineSeparators(T&& temporary) = delete;

// numberOfLines  How many lines `componentsSeparatedByLineSeparators` gives.
KELVANE_EXPORT std::int64_t numberOfLines(TextView text);

// firstLine  The first line; empty for the empty text.
KELVANE_EXPORT TextView firstLine(TextView text);
template <TemporaryText T>
TextView firstLine(T&& temporary) = delete;

// containsString:  Whether `needle` stands in the text, code unit by code unit. An empty needle and nil never do.
KELVANE_EXPORT bool containsString(TextView text, std::optional<TextView> needle);
// Nil is std::nullopt; a null pointer is no text.
bool containsString(TextView text, std::nullptr_t) = delete;

// isEmpty  Whether the length is 0; a text of blanks is not empty.
inline bool isEmpty(TextView text) { return text.empty(); }

// substringToToken:  What stands before the first `token`; the text itself when there is none or it is empty; nil for
// nil.
//   u"key=value", u"=" => u"key"      u"key", u"=" => u"key"
KELVANE_EXPORT std::optional<TextView> substringToToken(TextView text, std::optional<TextView> token);
template <TemporaryText T>
std::optional<TextView> substringToToken(T&& temporary, std::optional<TextView> token) = delete;

// substringFromToken:  What stands behind the first `token`; nil when there is none, it is empty, or nil.
//   u"key=value", u"=" => u"value"      u"key", u"=" => nil
KELVANE_EXPORT std::optional<TextView> substringFromToken(TextView text, std::optional<TextView> token);
template <TemporaryText T>
std::optional<TextView> substringFromToken(T&& temporary, std::optional<TextView> token) = delete;

// stringByRemovingSurroundingWhitespace  The text without the spaces, tabs, CR and LF at its ends. Other blanks, such
// as a no-break space, stay.
KELVANE_EXPORT TextView stringByRemovingSurroundingWhitespace(TextView text);
template <TemporaryText T>
Text stringByRemovingSurroundingWhitespace(T&& temporary) {
  return Text(stringByRemovingSurroundingWhitespace(TextView(temporary)));
}

// trim  The same under a shorter name.
inline TextView trim(TextView text) { return stringByRemovingSurroundingWhitespace(text); }
template <TemporaryText T>
Text trim(T&& temporary) {
  return Text(stringByRemovingSurroundingWhitespace(TextView(temporary)));
}

// stringByRemovingWhitespace  The text without any white space or line end, wherever it stands
// (NSCharacterSet::whitespaceAndNewlineCharacterSet).
KELVANE_EXPORT Text stringByRemovingWhitespace(TextView text);

// stringByRemovingCharactersInCharacterSet:  The text without the code units that are members of `set`.
KELVANE_EXPORT Text stringByRemovingCharactersInCharacterSet(TextView text, const NSCharacterSet& set);

// digitsOnly  The decimal digits of the text, of every script, in order.
//   u"+49 (30) 1-2" => u"493012"
KELVANE_EXPORT Text digitsOnly(TextView text);

// stringByRemovingLinebreaks  Each LF replaced by a space; CR and the other line ends stay.
KELVANE_EXPORT Text stringByRemovingLinebreaks(TextView text);

// normalizeTrailing0  "0" taken from both ends, and "0" put behind a "." that then ends the text. For decimals with a
// point: a whole number loses its zeros too.
//   u"2.50" => u"2.5"      u"3.000" => u"3.0"      u"0.25" => u".25"      u"100" => u"1"      u"0" => u""
KELVANE_EXPORT Text normalizeTrailing0(TextView text);

// arrayFromTSV  The table of tab-separated values that the text holds. Lines that are empty or begin with "#" do not
// count. The first line that counts names the columns, each later one is a row: its cells stand under the names in
// order, as they are, with quotes and blanks. Empty cells are absent, cells beyond the last name are dropped, a row
// without any cell is no row. Of columns with the same name the last cell that is not empty counts.
//
// Takes a Text over without copying it; a view is copied once. The table takes 8 bytes per cell and row besides.
KELVANE_EXPORT TSVTable arrayFromTSV(Text&& text);
KELVANE_EXPORT TSVTable arrayFromTSV(TextView text);
inline TSVTable arrayFromTSV(const Text& text) { return arrayFromTSV(TextView(text)); }
inline TSVTable arrayFromTSV(const char16_t* text) { return arrayFromTSV(TextView(text)); }

// removeCommentedLines  The lines that do not begin with "#" behind spaces and tabs, joined with LF. A line end at the
// end of the text stays, as LF.
//   u"a\r\n  # b\r\nc\r\n" => u"a\nc\n"
KELVANE_EXPORT Text removeCommentedLines(TextView text);

// escapeFilesystemCharacters  Each "/" replaced by ":".
KELVANE_EXPORT Text escapeFilesystemCharacters(TextView text);

// escapeQuots  A backslash put before each double quote and apostrophe; backslashes are not doubled.
//   u"\"x'" => u"\\\"x\\'"
KELVANE_EXPORT Text escapeQuots(TextView text);

// removeQuots  The text without its double quotes and apostrophes, wherever they stand.
KELVANE_EXPORT Text removeQuots(TextView text);

// normalizePath  The path in its standard form (stringByStandardizingPath in Platform/Foundation/PathText.h). A text
// that begins with "file:" is read as a URL, whose path is taken, with its escapes decoded; nil when it has no path, a
// bad escape or a blank.
//   u"file:///tmp/a%20b/" => u"/tmp/a b"      u"file:" => nil      u"/a/../b/" => u"/b"
KELVANE_EXPORT std::optional<Text> normalizePath(TextView text);

// replaceAllTextFromDictionary:options:range:  The text with each key of `replacements` replaced by its value's
// description within `range`. The keys are taken one after another, in ascending order: what one puts in, a later one
// may find. Matches do not overlap, and an empty key never matches. What stands outside `range` stays; for a later key
// the range is as much longer or shorter as the text has become.
//
// `options` are those of TextSearch.h; searching backwards, only the last match of each key is replaced. A range beyond
// the text raises std::out_of_range, unless there is nothing to replace.
KELVANE_EXPORT Text replaceAllTextFromDictionary(TextView text, const NSDictionary& replacements,
                                                 NSStringCompareOptions options, NSRange range);
// replaceAllTextFromDictionary:options:  The same in the whole text.
KELVANE_EXPORT Text replaceAllTextFromDictionary(TextView text, const NSDictionary& replacements,
                                                 NSStringCompareOptions options);
// replaceAllTextFromDictionary:  The same with regard to case.
KELVANE_EXPORT Text replaceAllTextFromDictionary(TextView text, const NSDictionary& replacements);

// replaceAllOccurencesOfString:withString:  Each `target` replaced by `replacement`, with regard to case.
//   u"aaa", u"aa", u"b" => u"ba"      u"aaa", u"a", u"aa" => u"aaaaaa"
KELVANE_EXPORT Text replaceAllOccurencesOfString(TextView text, TextView target, TextView withString);

// Measuring and drawing, with the text attributes of Platform/Desktop/NSStringDrawing.h, on the main thread. Nil stands
// for no attributes.

// fitTextInRect:withAttributes:  The text when it is no wider than the rectangle; else as much of its beginning as fits
// together with the "..." behind it; empty when not even "..." fits, and when width or height is 0 or less. How high
// the text is does not count. Without a desktop that measures text, all of it fits.
//
// The cut is made between any two code units, also those of a pair. Cuts are tried one by one from the end, since a
// shorter text may be the wider one: each code unit that goes takes as long as measuring what is left.
KELVANE_EXPORT Text fitTextInRect(TextView text, const CGRect& rect, const Ref<NSDictionary>& withAttributes);

// These draw the text twice in the current context (nothing where there is none), in black of alpha 0.9 one unit above
// and then as it is, so that it looks cut into its background.

// drawChiseledInRect:withAttributes:
KELVANE_EXPORT void drawChiseledInRect(TextView text, const CGRect& rect, const Ref<NSDictionary>& withAttributes);
// drawChiseledWithRect:options:attributes:
KELVANE_EXPORT void drawChiseledWithRect(TextView text, const CGRect& rect, std::int64_t options,
                                         const Ref<NSDictionary>& attributes);

// blockFormatString  Always nil.
KELVANE_EXPORT std::optional<Text> blockFormatString(TextView text);

// appendStringLn:  Appends `text` and LF to the receiver.
KELVANE_EXPORT void appendStringLn(Text& receiver, TextView text);

}  // namespace kelvane
