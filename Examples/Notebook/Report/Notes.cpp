#include "Report/Notes.h"

#include <utility>

#include "Platform/Foundation/Format.h"
#include "Platform/Foundation/Properties.h"

namespace notebook {
namespace {

using kelvane::format;
using kelvane::NSObject;
using kelvane::PropertyTable;
using kelvane::Text;
using kelvane::TextView;

constexpr std::size_t mostLines = 20;

// Under which changes of the list and of titles arrive.
char listContext, titleContext;

}  // namespace

const PropertyTable& Note::propertyTable() const {
  static const PropertyTable table(NSObject::propertyTable(), {kelvane::property(u"title", &Note::myTitle),
                                                               kelvane::property(u"isEmpty", &Note::isEmpty)});
  return table;
}

const PropertyTable& NoteList::propertyTable() const {
  static const PropertyTable table(NSObject::propertyTable(), {kelvane::property(u"notes", &NoteList::myNotes)});
  return table;
}

void NoteList::add(TextView fileName, TextView firstLine) {
  const auto note = std::make_shared<Note>(Text(fileName), firstLine.empty());
  mutableArrayValueForKey(u"notes").addObject(note);
  if (!firstLine.empty()) note->setTitle(Text(firstLine));
}

void NoteList::removeEmpty() {
  kelvane::NSMutableIndexSet indexes;
  for (std::size_t index = 0; index < myNotes->count(); ++index)
    if (kelvane::as<Note>(myNotes->objectAtIndex(index))->isEmpty()) indexes.addIndex(index);
  mutableArrayValueForKey(u"notes").removeObjectsAtIndexes(indexes);
}

Notices::Notices(const kelvane::Ref<NoteList>& list) : myList(list) {
  myHandler.setTarget(this);
  myHandler.setSubject(list.get(), u"notes", &listContext);
  myHandler.setPropertyKeyPath(u"title", kelvane::NSKeyValueObservingOptionNew | kelvane::NSKeyValueObservingOptionOld,
                               &titleContext);
  myObserver.setDelegate(myCounter);
  myObserver.observerObject(list, u"notes", u"title");
}

void Notices::observeValueForKeyPath(TextView keyPath, NSObject& ofObject, const kelvane::NSKeyValueChange& change,
                                     void* context) {
  if (context == &titleContext)
    return put(format(u"\"%@\" is now \"%@\"", change.oldValueAs<Text>(), change.newValueAs<Text>()));
  if (context != &listContext) return NSObject::observeValueForKeyPath(keyPath, ofObject, change, context);
  const bool isRemoval = change.kind() == kelvane::NSKeyValueChangeKind::Removal;
  const auto notes = kelvane::as<kelvane::NSArray>(isRemoval ? change.oldValue() : change.newValue());
  for (const auto& note : *notes)
    put(format(u"%@ \"%@\"", isRemoval ? TextView(u"removed") : TextView(u"added"), kelvane::as<Note>(note)->title()));
}

void Notices::put(Text line) {
  ++myCount;
  if (myLines.size() < mostLines) myLines.push_back(std::move(line));
}

}  // namespace notebook
