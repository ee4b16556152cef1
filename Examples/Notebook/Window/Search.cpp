#include "Window/Search.h"

#include <QElapsedTimer>

#include "Model/NoteFile.h"
#include "Platform/Foundation/TextEncoding.h"
#include "Platform/Foundation/TextSearch.h"
#include "Window/QtText.h"
#include "Window/TableModel.h"

namespace notebook {
namespace {

using kelvane::Text;
using kelvane::TextView;

constexpr qint64 stretch = 10;  // milliseconds

Text textOf(const Entry& entry) {
  if (entry.kind() == EntryKind::Table) return decodedText(readTableFile(entry.path()).bytes);
  const ReadNote note = readNote(entry.path());
  return note.text ? note.text->string() : Text();
}

}  // namespace

Search::Search(const Notebooks& notebooks, QObject* parent)
    : QObject(parent),
      myNotebooks(notebooks),
      myResults(std::make_shared<kelvane::NSTreeController>(u"children", std::nullopt, u"isLeaf")) {
  myTimer.setInterval(0);
  connect(&myTimer, &QTimer::timeout, this, &Search::goOn);
}

void Search::start(const QString& words) {
  myTimer.stop();
  myWords = fromQt(words.trimmed());
  myFound.clear();
  myNext = 0;
  myResults->setContent(nullptr);
  if (myWords.empty()) return;
  myEntries = myNotebooks.notes();
  myTimer.start();
}

void Search::leaveOutMissing() {
  const auto isMissing = [this](const kelvane::Ref<kelvane::NSObject>& found) {
    return myNotebooks.entryAtPath(kelvane::as<Entry>(found)->path()) != found;
  };
  if (std::erase_if(myFound, isMissing) > 0) myResults->setContent(std::make_shared<kelvane::NSArray>(myFound));
}

bool Search::contains(const Entry& entry) {
  const auto isThere = [this](TextView text) {
    return kelvane::rangeOfString(text, myWords, kelvane::NSCaseInsensitiveSearch).has_value();
  };
  return isThere(entry.title()) || isThere(textOf(entry));
}

void Search::goOn() {
  QElapsedTimer clock;
  clock.start();
  const std::size_t before = myFound.size();
  for (; myNext < myEntries.size() && clock.elapsed() < stretch; ++myNext)
    if (contains(*myEntries[myNext])) myFound.push_back(myEntries[myNext]);
  if (myFound.size() > before) myResults->setContent(std::make_shared<kelvane::NSArray>(myFound));
  if (myNext < myEntries.size()) return;
  myTimer.stop();
  Q_EMIT ended(static_cast<int>(myFound.size()));
}

}  // namespace notebook
