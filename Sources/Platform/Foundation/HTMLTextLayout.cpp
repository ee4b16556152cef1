#include "Platform/Foundation/HTMLTextLayout.h"

#include <algorithm>

#include "Platform/Foundation/TextRewrite.h"

namespace kelvane {
namespace {

// Copies may write that much beyond their end.
constexpr std::size_t slack = rewriting::step;
// Deeper lists are not indented further, so that the result stays linear.
constexpr std::size_t deepestIndentation = 8;
constexpr TextView indentation = u"                ";
static_assert(indentation.size() == 2 * deepestIndentation);

}  // namespace

HTMLTextLayout::HTMLTextLayout(std::size_t expected)
    : myUnits(std::make_unique_for_overwrite<char16_t[]>(expected + 2 * slack)), myCapacity(expected + 2 * slack) {}

void HTMLTextLayout::grow(std::size_t length) {
  const std::size_t capacity = std::max(2 * myCapacity, mySize + length + slack);
  auto units = std::make_unique_for_overwrite<char16_t[]>(capacity);
  std::copy_n(myUnits.get(), mySize, units.get());
  myUnits = std::move(units);
  myCapacity = capacity;
}

void HTMLTextLayout::put(TextView text, std::size_t readable) {
  if (mySize + text.size() + slack > myCapacity) grow(text.size());
  rewriting::copyRun(myUnits.get() + mySize, text.data(), text.size(), readable);
  mySize += text.size();
}

void HTMLTextLayout::put(char16_t unit) {
  if (mySize + 1 + slack > myCapacity) grow(1);
  myUnits[mySize++] = unit;
}

// Writes what is owed.
void HTMLTextLayout::settle() {
  if (myOwesBreak) {
    if (myLine != Line::Empty) put(u'\n');
    myLine = Line::Empty;
    myOwesBlank = false;
    myOwesBreak = false;
    myBreakIsRows = false;
  }
  if (myOwesTabs > 0) {
    for (; myOwesTabs > 0; --myOwesTabs) put(u'\t');
    myOwesBlank = false;
  }
  if (myLine == Line::OnlyMarker || (myOwesBlank && myLine == Line::Filled)) put(u' ');
  myOwesBlank = false;
}

void HTMLTextLayout::run(TextView text, std::size_t readable) {
  if (text.front() == u' ') {
    myOwesBlank = true;
    text.remove_prefix(1);
    if (text.empty()) return;
    --readable;
  }
  settle();
  const bool endsWithBlank = text.back() == u' ';
  if (endsWithBlank) text.remove_suffix(1);
  put(text, readable);
  myOwesBlank = endsWithBlank;
  myLine = Line::Filled;
}

void HTMLTextLayout::preformatted(TextView text, std::size_t readable) {
  settle();
  put(text, readable);
  myLine = text.back() == u'\n' ? Line::Empty : Line::Filled;
}

void HTMLTextLayout::lineBreak() {
  if (myLine == Line::OnlyMarker) myLine = Line::Filled;
  myOwesBlank = false;
  settle();
  put(u'\n');
  myLine = Line::Empty;
}

void HTMLTextLayout::block() {
  myOwesBlank = false;
  // A block at the start of a cell stands in the row's line.
  if (myLine == Line::Filled && myOwesTabs == 0) myOwesBreak = true;
}

void HTMLTextLayout::endOfItems() {
  myOwesBlank = false;
  if (myLine != Line::Empty) myOwesBreak = true;
}

void HTMLTextLayout::item(TextView marker, std::size_t level) {
  myOwesBlank = false;
  if (myLine != Line::Empty && myOwesTabs == 0) myOwesBreak = true;
  if (myLine == Line::OnlyMarker) myLine = Line::Filled;
  settle();
  const TextView indent = indentation.substr(0, 2 * std::min(level, deepestIndentation));
  put(indent, indent.size());
  put(marker, marker.size());
  myLine = Line::OnlyMarker;
}

void HTMLTextLayout::row() {
  endOfItems();
  myBreakIsRows = myOwesBreak;
  myOwesTabs = 0;
  myIsFirstCell = true;
}

void HTMLTextLayout::cell() {
  myOwesBlank = false;
  if (myIsFirstCell) {
    myIsFirstCell = false;
    return;
  }
  if (!myBreakIsRows) myOwesBreak = false;
  ++myOwesTabs;
}

}  // namespace kelvane
