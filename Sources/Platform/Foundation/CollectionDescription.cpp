#include "Platform/Foundation/CollectionDescription.h"

#include <algorithm>

namespace kelvane {
namespace {

constexpr std::size_t blanksPerLevel = 4;
constexpr std::size_t mostLevels = 512;

constexpr bool isWordUnit(char16_t unit) {
  return (unit >= u'a' && unit <= u'z') || (unit >= u'A' && unit <= u'Z') || (unit >= u'0' && unit <= u'9') ||
         unit == u'_';
}

}  // namespace

void appendQuotedUnlessWord(Text& out, TextView text) {
  if (!text.empty() && std::all_of(text.begin(), text.end(), isWordUnit)) {
    out += text;
    return;
  }
  out += u'"';
  for (const char16_t unit : text) {
    if (unit == u'"' || unit == u'\\') out += u'\\';
    out += unit;
  }
  out += u'"';
}

CollectionDescription::CollectionDescription(Text& out, const NSObject& collection, const DescriptionNesting& within,
                                             char16_t opening, char16_t closing)
    : myOut(out), myNesting{&collection, &within}, myClosing(closing) {
  bool isWithinItself = false;
  for (const DescriptionNesting* outer = &within; outer && outer->object; outer = outer->outer) {
    isWithinItself |= outer->object == &collection;
    ++myLevel;
  }
  myShowsElements = !isWithinItself && myLevel <= mostLevels;
  myOut += opening;
}

bool CollectionDescription::startLine() {
  if (!myShowsElements) {
    myOut += u"...";
    return false;
  }
  myHasLines = true;
  breakLine(myLevel + 1);
  return true;
}

void CollectionDescription::end() {
  if (myHasLines) breakLine(myLevel);
  myOut += myClosing;
}

void CollectionDescription::breakLine(std::size_t level) {
  myOut += u'\n';
  myOut.append(level * blanksPerLevel, u' ');
}

}  // namespace kelvane
