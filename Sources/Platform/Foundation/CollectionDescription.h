#pragma once

#include <cstddef>

#include "Platform/Foundation/Export.h"
#include "Platform/Foundation/NSObject.h"
#include "Platform/Foundation/Text.h"

// How collections describe themselves: one element to a line, in nested brackets.
namespace kelvane {

// Appends `text` as it stands when it is nothing but ASCII letters, digits and "_", else in double quotes, with a
// backslash before double quotes and backslashes. Line ends stay. Any thread.
KELVANE_EXPORT void appendQuotedUnlessWord(Text& out, TextView text);

// Writes the brackets and the starts of lines of one collection's description:
//
// ```cpp
// void appendDescription(Text& out, const NSArray& array, const DescriptionNesting& within) {
//   CollectionDescription lines(out, array, within, u'(', u')');
//   for (const Ref<NSObject>& element : array) {
//     if (!lines.startLine()) break;
//     element->appendDescription(out, lines.nesting());
//   }
//   lines.end();
// }
// ```
//
// One thread, within one description.
class KELVANE_EXPORT CollectionDescription {
 public:
  // Appends the opening bracket. `out` and `within` must outlive it.
  CollectionDescription(Text& out, const NSObject& collection, const DescriptionNesting& within, char16_t opening,
                        char16_t closing);
  CollectionDescription(const CollectionDescription&) = delete;
  CollectionDescription& operator=(const CollectionDescription&) = delete;

  // Starts the next element's line. False, having written "...", when the collection stands within itself or within
  // more than 512 others, so that its elements are not to be shown.
  bool startLine();
  // Appends the closing bracket, on a line of its own when there are others.
  void end();
  // Where the elements stand.
  const DescriptionNesting& nesting() const { return myNesting; }

 private:
  void breakLine(std::size_t level);

  Text& myOut;
  DescriptionNesting myNesting;
  std::size_t myLevel = 0;
  char16_t myClosing;
  bool myShowsElements;
  bool myHasLines = false;
};

}  // namespace kelvane
