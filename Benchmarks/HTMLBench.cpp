// HTML: escaping text, the text of a page, styled text from HTML and back, 1 MiB each.

#include <algorithm>
#include <string>
#include <string_view>

#include "Extensions/NSAttributedString-QNExtensions.h"
#include "Extensions/NSString-HTML.h"
#include "Platform/Foundation/HTMLPlainText.h"
#include "Platform/Foundation/TextEncoding.h"
#include "Support/Inputs.h"
#include "Support/Limits.h"
#include "Support/Row.h"

#ifdef BENCH_QT
#include <QString>
#include <QTextDocument>

#include "Support/QtApplication.h"
#endif
#ifdef BENCH_GLIB
#include <glib.h>
#endif
#ifdef BENCH_LIBXML2
#include <libxml/HTMLparser.h>
#include <libxml/tree.h>
#endif

namespace kelvane::bench {
namespace {

constexpr bool isLetter(char16_t unit) { return (unit | 0x20) >= u'a' && (unit | 0x20) <= u'z'; }

// Blanks, list markers and the like differ from library to library; what is compared is how many letters come out.
struct Letters {
  std::size_t operator()(TextView text) const {
    return static_cast<std::size_t>(std::ranges::count_if(text, isLetter));
  }
  std::size_t operator()(const std::string& utf8) const { return (*this)(TextView(textFromUTF8(utf8))); }
  std::size_t operator()(const NSAttributedString& text) const { return (*this)(TextView(text.string())); }
#ifdef BENCH_QT
  std::size_t operator()(const QString& text) const { return (*this)(TextView(text.toStdU16String())); }
#endif
};

// Of HTML, those that are shown.
struct ShownLetters {
  std::size_t operator()(TextView html) const { return Letters()(TextView(plainTextOfHTML(html))); }
#ifdef BENCH_QT
  std::size_t operator()(const QString& html) const { return (*this)(TextView(html.toStdU16String())); }
#endif
};

// Of escaped text, those that escapes of the double quote leave.
struct EscapedQuotes {
  std::size_t operator()(TextView html) const {
    std::size_t count = 0;
    for (std::size_t at = html.find(u"&quot;"); at != html.npos; at = html.find(u"&quot;", at + 1)) ++count;
    return count;
  }
  std::size_t operator()(const std::string& utf8) const { return (*this)(TextView(textFromUTF8(utf8))); }
#ifdef BENCH_QT
  std::size_t operator()(const QString& html) const { return (*this)(TextView(html.toStdU16String())); }
#endif
};

// Words of prose, of which every few are styled.
const Text& subsetHTML() {
  static const Text& html = *[] {
    constexpr TextView openings[] = {u"<b>", u"<i>", u"<u>", u"<font size=5>", u"<b><i>"};
    constexpr TextView closings[] = {u"</b>", u"</i>", u"</u>", u"</font>", u"</i></b>"};
    auto* made = new Text();
    std::size_t count = 0;
    for (const TextView line : mixedLines()) {
      const std::size_t style = ++count % std::size(openings);
      const std::size_t half = line.find(u' ', line.size() / 2);
      if (half != line.npos) (*made) += line.substr(0, half);
      ((*made += u' ') += openings[style]) += line.substr(half == line.npos ? 0 : half);
      (*made += closings[style]) += count % 8 == 0 ? u"<p>\n" : u"<br>\n";
    }
    return made;
  }();
  return html;
}

const NSAttributedString& styledText() {
  static const auto& text = *new NSAttributedString(attributedStringWithHTML(subsetHTML()));
  return text;
}

// A page with what pages have: a head, navigation, prose with links and references, lists, tables, a script.
const Text& page() {
  static const Text& html = *[] {
    auto* made = new Text(
        u"<!DOCTYPE html>\n<html lang=\"en\"><head><meta charset=\"utf-8\"><title>A page</title>\n"
        u"<style>p { margin: 0 }</style></head>\n<body>\n");
    std::size_t count = 0;
    for (const TextView line : mixedLines()) {
      if (made->size() >= inputUnits) break;
      switch (++count % 6) {
        case 0:
          ((*made += u"    <ul class=\"menu\">\n      <li><a href=\"/a/b.html?c=1\">") += line) +=
              u"</a></li>\n      <li class=\"last\">one &amp; two</li>\n    </ul>\n";
          break;
        case 1:
          ((*made += u"    <table><tr><td class=\"n\">1</td><td>") += line) += u"</td></tr></table><!-- end -->\n";
          break;
        case 2:
          ((*made += u"    <h2 id=\"x\">") += line.substr(0, 20)) += u"</h2>\n<br>\n";
          break;
        default:
          ((*made += u"    <p>It&rsquo;s <b>bold</b> and <a href=\"https://example.org/\" title='t'>") += line) +=
              u"</a>,\n      caf&eacute;&nbsp;&#8211; <em>more</em>.</p>\n";
      }
    }
    *made += u"</body></html>\n";
    return made;
  }();
  return html;
}

#ifdef BENCH_LIBXML2
void appendText(const xmlNode* node, std::string& out) {
  for (; node; node = node->next) {
    const auto* name = reinterpret_cast<const char*>(node->name);
    if (node->type == XML_TEXT_NODE) out += reinterpret_cast<const char*>(node->content);
    if (node->type == XML_ELEMENT_NODE && std::string_view(name) != "style" && std::string_view(name) != "title")
      appendText(node->children, out);
  }
}

std::string textByLibxml2(const std::string& html) {
  const auto options = HTML_PARSE_NOERROR | HTML_PARSE_NOWARNING | HTML_PARSE_RECOVER | HTML_PARSE_NONET;
  htmlDocPtr document = htmlReadMemory(html.data(), static_cast<int>(html.size()), nullptr, "utf-8", options);
  std::string text;
  appendText(xmlDocGetRootElement(document), text);
  xmlFreeDoc(document);
  return text;
}
#endif

const Subject escaping([] {
  Row("htmlString")
      .ours([] { return htmlString(mixedText()); }, EscapedQuotes())
#ifdef BENCH_QT
      .peer(
          "Qt", [text = QString::fromStdU16String(mixedText())] { return text.toHtmlEscaped(); }, EscapedQuotes())
#endif
#ifdef BENCH_GLIB
      .peer(
          "GLib",
          [text = utf8(mixedText())] {
            char* escaped = g_markup_escape_text(text.data(), static_cast<gssize>(text.size()));
            std::string result(escaped);
            g_free(escaped);
            return result;
          },
          EscapedQuotes())
#endif
      .limit("memcpy", [] { return copied(mixedText()); })
      .reach(15)
      .withinLimit(4);
});

const Subject pages([] {
  Row("flattenHTML")
      .ours([] { return flattenHTML(page()); }, Letters())
#ifdef BENCH_LIBXML2
      .peer(
          "libxml2", [html = utf8(page())] { return textByLibxml2(html); }, Letters())
#endif
      .limit("memcpy", [] { return copied(page()); })
      .reach(10);

#ifdef BENCH_QT
  Row("flattenHTML, against a document")
      .ours([] { return flattenHTML(page()); }, Letters())
      .peer(
          "Qt",
          [html = QString::fromStdU16String(page())] {
            needApplication();
            QTextDocument document;
            document.setHtml(html);
            return document.toPlainText();
          },
          Letters())
      .reach(40);
#endif
});

const Subject styled([] {
  Row("styled text from HTML")
      .ours([] { return attributedStringWithHTML(subsetHTML()); }, Letters())
#ifdef BENCH_QT
      .peer(
          "Qt",
          [html = QString::fromStdU16String(subsetHTML())] {
            needApplication();
            auto document = std::make_shared<QTextDocument>();
            document->setHtml(html);
            return document;
          },
          [](const std::shared_ptr<QTextDocument>& document) { return Letters()(document->toPlainText()); })
#endif
      .reach(20);

  Row("styled text to HTML")
      .ours([] { return htmlString(styledText()); }, ShownLetters())
#ifdef BENCH_QT
      .peer(
          "Qt",
          [document = std::shared_ptr<QTextDocument>()]() mutable {
            if (!document) {
              needApplication();
              document = std::make_shared<QTextDocument>();
              document->setHtml(QString::fromStdU16String(subsetHTML()));
            }
            return document->toHtml();
          },
          ShownLetters())
#endif
      .reach(20);
});

}  // namespace
}  // namespace kelvane::bench
