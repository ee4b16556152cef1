// The text of pages against that which another parser's tree holds.

#include <gumbo.h>

#include "Platform/Foundation/HTMLPlainText.h"
#include "Platform/Foundation/HTMLReferences.h"
#include "Support/Testing.h"

namespace {

bool isHidden(const GumboElement& element) {
  constexpr GumboTag hidden[] = {GUMBO_TAG_SCRIPT, GUMBO_TAG_STYLE,   GUMBO_TAG_TITLE,   GUMBO_TAG_TEMPLATE,
                                 GUMBO_TAG_IFRAME, GUMBO_TAG_NOEMBED, GUMBO_TAG_NOFRAMES};
  return std::ranges::count(hidden, element.tag) > 0;
}

// The text of a tree with markers of list items.
class JudgedText {
 public:
  explicit JudgedText(const GumboNode* root) { visit(root); }
  const std::string& text() const { return myText; }

 private:
  void visit(const GumboNode* node) {
    if (node->type == GUMBO_NODE_TEXT || node->type == GUMBO_NODE_WHITESPACE || node->type == GUMBO_NODE_CDATA) {
      myText += node->v.text.text;
      return;
    }
    if (node->type != GUMBO_NODE_ELEMENT || isHidden(node->v.element)) return;
    const GumboElement& element = node->v.element;
    if (element.tag == GUMBO_TAG_LI) putMarker(node);
    for (unsigned i = 0; i < element.children.length; ++i)
      visit(static_cast<const GumboNode*>(element.children.data[i]));
  }

  static int number(const GumboElement& element, const char* name, int otherwise) {
    const GumboAttribute* attribute = gumbo_get_attribute(&element.attributes, name);
    return attribute ? std::atoi(attribute->value) : otherwise;
  }

  void putMarker(const GumboNode* item) {
    const GumboNode* list = item->parent;
    while (list && list->type == GUMBO_NODE_ELEMENT && list->v.element.tag != GUMBO_TAG_OL &&
           list->v.element.tag != GUMBO_TAG_UL)
      list = list->parent;
    if (!list || list->type != GUMBO_NODE_ELEMENT || list->v.element.tag != GUMBO_TAG_OL) {
      myText += "\u2022";
      return;
    }
    auto [next, isNew] = myNumbers.try_emplace(list, number(list->v.element, "start", 1));
    next->second = number(item->v.element, "value", next->second);
    myText += std::to_string(next->second++) + '.';
  }

  std::string myText;
  std::map<const GumboNode*, int> myNumbers;
};

// Line breaks, tabs and blanks are ours to set.
std::string withoutSpace(std::string text) {
  std::erase_if(text, [](unsigned char byte) { return std::isspace(byte); });
  return text;
}

std::string ours(const std::string& html) { return withoutSpace(utf8(plainTextOfHTML(textFromUTF8(html)))); }

std::string judges(const std::string& html) {
  GumboOptions options = kGumboDefaultOptions;
  options.max_errors = 0;
  GumboOutput* output = gumbo_parse_with_options(&options, html.data(), html.size());
  const std::string text = JudgedText(output->root).text();
  gumbo_destroy_output(&options, output);
  return withoutSpace(text);
}

TEST(HTMLJudge, AgreesAboutEveryReference) {
  for (const HTMLReferenceName& row : htmlReferenceNames) {
    const std::string name = utf8(row.name);
    for (const std::string& html :
         {"&" + name, "&" + name + "x", "&" + name.substr(0, name.size() - 1), "&" + name + "=;"})
      ASSERT_EQ(ours(html), judges(html)) << html;
  }
  for (unsigned number = 0; number < 0x110010; number += number < 0x300 ? 1 : 77) {
    const std::string html = "&#" + std::to_string(number) + "a";
    ASSERT_EQ(ours(html), judges(html)) << html;
  }
}

// Left out is what a tree moves to another place (stray content in tables), drops (in selections and frame sets) or
// reads by the rules of another language (raw text in drawings). Which list an item belongs to depends on the tree,
// too.
TEST(HTMLJudge, AgreesAboutTagSoup) {
  const char* const pieces[] = {
      "<b>",       "</b>",     "<p>",       "</p>",    "</div>",   "<br>",  "</br>",    "</i/>", "<a b=c/>", "text ",
      " ",         "\n",       "&amp;",     "&notit;", "&#x41",    "&lt",   "&",        "&;",    "<!-->",    "<!--->",
      "<!--x--!>", "<!x>",     "<?y>",      "</ z>",   "<",        "<3",    "</",       "<ul>",  "<li>",     "</li>",
      "</ul>",     "</style>", "<pre>\n\n", "</pre>",  "<h1>",     "</h1>", "\xC3\xA9", "=",     "'",        "\"",
      "/>",        "-->",      "&copy2;",   "&#x80;",  "&#x1F600", "&#;",   "&#x;",     "<a =>", "<!--<!-->"};
  const char* const wholes[] = {"<div class='x>y'>",
                                "<a b = '>'c>&#99999999999;",
                                "<i a=\"<\">",
                                "<!-- c -->",
                                "<script>a<b&amp;</script>",
                                "<script><!--<script></script>--></script>",
                                "<script><!--></script>",
                                "<style></p></styles></style x>",
                                "<textarea>\n&lt;<b></textarea>",
                                "<svg><g/>x<![CDATA[<b>&amp;]]></svg>",
                                "<![CDATA[y]]>",
                                "<xmp><b></xmp>",
                                "\xF0\x9F\x98\x80",
                                "<noscript>",
                                "</noscript>",
                                "<template>x</template>",
                                "<iframe><b></iframe>",
                                "<table><tr><td>",
                                "</td></tr></table>"};
  std::mt19937 random(5);
  for (int round = 0; round < 5'000; ++round) {
    std::string html = "<body>";
    for (std::size_t length = random() % 12; length > 0; --length)
      html += random() % 4 > 0 ? pieces[random() % std::size(pieces)] : wholes[random() % std::size(wholes)];
    ASSERT_EQ(ours(html), judges(html)) << html;
  }
}

TEST(HTMLJudge, AgreesAboutRealPages) {
  constexpr int most = 40;
  int count = 0;
  const char* const folder = std::getenv("KELVANE_PAGES");
  std::error_code error;
  for (const auto& entry : fs::recursive_directory_iterator(folder ? folder : "/usr/share/doc", error)) {
    if (entry.path().extension() != ".html" || !entry.is_regular_file(error)) continue;
    const std::string html = bytesOfFile(entry.path());
    EXPECT_EQ(ours(html), judges(html)) << entry.path();
    if (!folder && ++count == most) break;
  }
}

}  // namespace
