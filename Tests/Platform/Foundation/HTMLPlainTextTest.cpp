#include "Platform/Foundation/HTMLBytes.h"
#include "Platform/Foundation/HTMLPlainText.h"
#include "Support/Testing.h"

namespace {

using namespace std::literals;

// Tags, comments and references are read as HTMLJudge has them.
TEST(HTMLPlainText, Renders) {
  const std::pair<TextView, TextView> rows[] = {
      // Blocks and line breaks.
      {u"<p>One<p>Two</p><div><div>Three</div></div>", u"One\nTwo\nThree"},
      {u"one<br>two<br/><BR >three</br>four", u"one\ntwo\n\nthree\nfour"},
      {u"<p>a<br></p><p>b</p>c<hr>d", u"a\nb\nc\nd"},
      {u"a<b>b</b><x>c</x><p></p>", u"abc"},
      // White space.
      {u" a \n\t <b> b</b>\f c&nbsp; &#32;&#10;", u"a b c\xA0"},
      {u"a <i> b </i> c", u"a b c"},
      {u"a<pre>\n  b\r\n\rc\n</pre>d  e", u"a\n  b\n\nc\nd e"},
      {u"<textarea>\n a&amp;<b>\0</textarea> x"sv, u" a&<b>\xFFFD\nx"},
      {u"<xmp>&amp;<b></xmp>a<plaintext></plaintext>", u"&amp;<b>\na\n</plaintext>"},
      // Lists.
      {u"<ul><li>a<li>b<ol start=3><li>c<li value='-7'>d<li>e</ol></ul>f",
       u"\x2022 a\n\x2022 b\n  3. c\n  -7. d\n  -6. e\nf"},
      {u"x<ul><li><p>a</p><li><li><ul><li>b</ul></ul></ol>y", u"x\n\x2022 a\n\x2022\n\x2022\n  \x2022 b\ny"},
      {u"<ol start=x><li>a<ul></ol><li>b", u"1. a\n\x2022 b"},
      // Tables.
      {u"<table><tr><th>a<th>b</tr><tr><td>\n<td><p>c</p>\n<td>\n<td>d</table>e", u"a\tb\n\tc\t\td\ne"},
      {u"<tr><td><p>a</p><p>b</p></td><td>c<tr><td></td></tr>d", u"a\nb\tc\nd"},
      // What is not shown.
      {u"<title>a<b></title>b<style>c</style><!--d--><!DOCTYPE e><?f?></ g><script>h</script>", u"b"},
      {u"a<template><p>b<template>c</template>d</template>e<iframe>f</iframe><noscript>g</noscript>", u"aeg"},
      {u"<svg><title/><script/>a<![CDATA[<b>]]></svg><![CDATA[c]]>d", u"a<b>d"},
      // Where tokens end.
      {u"1 < 2 <3 <<a b='>' c=\">\" d=> e</a/ ='>'>", u"1 < 2 <3 < e'>"},
      {u"a</><", u"a<"},
      {u"a<title>b", u"a"},
      {u"&#4294967361;", u"\xFFFD"},
      {u"a\0b<\0c"sv, u"ab<c"},
      {u"\xD800<b>\xDC00", u"\xD800\xDC00"},
  };
  for (const auto& [html, text] : rows) EXPECT_EQ(plainTextOfHTML(html), text) << testing::PrintToString(html);
}

TEST(HTMLPlainText, ReadsBytesInTheEncodingThatTheySay) {
  const std::pair<std::string_view, TextView> rows[] = {
      {"\xE9\x80", u"\xE9\x20AC"},
      {"\xEF\xBB\xBF\xC3\xA9", u"\xE9"},
      {std::string_view("\xFE\xFF\0a\0", 5), u"a\xFFFD"},
      {std::string_view("\xFF\xFE\xE9\0", 4), u"\xE9"},
      {"<meta charset=utf-8>\xC3\xA9", u"\xE9"},
      {"<META CharSet='UTF-16'>\xC3\xA9", u"\xE9"},
      {"<!-- <meta charset=utf-8> --><meta http-equiv=x content='text/html; charset = \"KOI8-R\"'>\xC1", u"\x430"},
      {"<meta name=charset><meta charset=iso-8859-1>\x80", u"\x20AC"},
      {"<meta charset=utf-7>+AGE-", u"+AGE-"},
      {"<meta charset=nobody-knows>\x80", u"\x20AC"},
      {"<meta charset=shift_jis>\x93\x8C", u"\x6771"},
  };
  for (const auto& [bytes, text] : rows) EXPECT_EQ(plainTextOfHTML(bytes), text) << bytes;
}

}  // namespace
