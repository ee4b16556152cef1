#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "Platform/Foundation/Export.h"
#include "Platform/Foundation/Text.h"

namespace kelvane {

// The markup tags that are open, for whoever writes markup: it gives the text that opens a tag, that closes one even
// when others were opened within it, and that closes all. What is written in this way is always properly nested.
//
// ```cpp
// QNTagStack tags;
// Text html = tags.openTag(u"<b>") + u"bold " + tags.openTag(u"<i>") + u"both ";
// html += tags.closeTag(u"<b>") + u"italic" + tags.flushTags();
// // "<b>bold <i>both </i></b><i>italic</i>"
// ```
//
// An entry is an opening tag without attributes, such as "<font>"; entries are compared as text and never parsed. The
// closing form of an entry has "/" behind its first code unit: "</font>".
//
// A nil tag raises std::invalid_argument everywhere, and an empty one where its closing form is needed. One thread at
// a time.
class KELVANE_EXPORT QNTagStack {
 public:
  // init  With room for 20 entries.
  QNTagStack() : QNTagStack(20) {}
  // initStackWithCapacity:  The capacity is a hint: there may be more entries, and below 0 it counts as 0.
  explicit QNTagStack(std::int64_t capacity);

  // clear  Removes all entries.
  void clear() { myStack.clear(); }
  // count
  std::int64_t count() const { return static_cast<std::int64_t>(myStack.size()); }
  // peek  The top entry; nil when there is none.
  std::optional<Text> peek() const;
  // stack  A copy of the entries, bottom first.
  std::vector<Text> stack() const { return myStack; }

  // push:  Puts the tag on top, whether or not there is an equal one.
  void push(std::optional<TextView> tag);
  // pushUnique:  The same, but only where no entry is equal.
  void pushUnique(std::optional<TextView> tag);
  // pop  Removes the top entry and returns it; nil when there is none.
  std::optional<Text> pop();
  // popUntil:  Removes entries from the top down to the first that equals the tag, and returns them, top first; none
  // when the stack is empty. Where no entry is equal the stack ends up empty and std::invalid_argument is raised.
  std::vector<Text> popUntil(std::optional<TextView> tag);

  // openTag:  The tag itself, which is now open; empty where it is open already, and then nothing happens.
  Text openTag(std::optional<TextView> tag);
  // closeTag:  The markup that closes the tag: closing forms from the top down to it, then what lay above it opened
  // again, in the order that it had. Empty for an empty stack; otherwise a tag that is not open raises as `popUntil`.
  //   <a> <b> <i>, closing u"<a>" => u"</i></b></a><b><i>", and <b> <i> are open
  Text closeTag(std::optional<TextView> tag);
  // flushTags  The closing forms of all entries, top first; then the stack is empty.
  Text flushTags();

 private:
  bool isOpen(TextView tag) const;

  std::vector<Text> myStack;
};

}  // namespace kelvane
