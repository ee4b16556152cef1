#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "Platform/Foundation/NSKeyValueMutableArray.h"
#include "Platform/Foundation/NSObject.h"
#include "Platform/Foundation/Text.h"
#include "Utilities/QNObjectArrayPropertyObserver.h"
#include "Utilities/QNObservationHandler.h"

namespace notebook {

// A text document by its title. Its properties are "title" and "isEmpty".
class Note : public kelvane::NSObject {
 public:
  Note(kelvane::Text title, bool isEmpty) : myTitle(std::move(title)), myIsEmpty(isEmpty) {}

  const kelvane::Text& title() const { return myTitle; }
  void setTitle(kelvane::Text title) { setField(myTitle, std::move(title)); }
  bool isEmpty() const { return myIsEmpty; }

  const kelvane::PropertyTable& propertyTable() const override;

 private:
  kelvane::Text myTitle;
  bool myIsEmpty;
};

// The notes of a report, under "notes", to be observed.
class NoteList : public kelvane::NSObject {
 public:
  // Adds a note that is named like its file until its first line, if it has any, gives it a better title.
  void add(kelvane::TextView fileName, kelvane::TextView firstLine);
  // Removes the notes that have no lines.
  void removeEmpty();

  const kelvane::PropertyTable& propertyTable() const override;

 private:
  kelvane::Ref<kelvane::NSMutableArray> myNotes = std::make_shared<kelvane::NSMutableArray>();
};

// Follows a list of notes and their titles, and puts down what happens.
class Notices : public kelvane::NSObject {
 public:
  explicit Notices(const kelvane::Ref<NoteList>& list);

  // The first ones, how many there are in all, and how many changes these tell of.
  const std::vector<kelvane::Text>& lines() const { return myLines; }
  std::size_t count() const { return myCount; }
  std::size_t changes() const { return myCounter->count; }

  void observeValueForKeyPath(kelvane::TextView keyPath, kelvane::NSObject& ofObject,
                              const kelvane::NSKeyValueChange& change, void* context) override;

 private:
  // What changed does not matter to it, so the simpler observer will do.
  struct Counter : kelvane::QNObjectArrayPropertyObserverDelegate {
    void objectArrayPropertyObserverPropertyChanged(kelvane::QNObjectArrayPropertyObserver&) override { ++count; }
    std::size_t count = 0;
  };

  void put(kelvane::Text line);

  std::vector<kelvane::Text> myLines;
  std::size_t myCount = 0;
  // In this order, so that both observers end before the list does.
  kelvane::Ref<NoteList> myList;
  std::shared_ptr<Counter> myCounter = std::make_shared<Counter>();
  kelvane::QNObservationHandler myHandler;
  kelvane::QNObjectArrayPropertyObserver myObserver;
};

}  // namespace notebook
