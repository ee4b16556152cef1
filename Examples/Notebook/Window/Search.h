#pragma once

#include <QObject>
#include <QTimer>
#include <unordered_map>
#include <vector>

#include "Model/Notebooks.h"

namespace notebook {

// Looks for words in the titles and texts of all notes, a little at a time, so that the window stays awake. What it
// finds is the content of a tree controller of its own. Main thread only.
class Search : public QObject {
  Q_OBJECT

 public:
  explicit Search(const Notebooks& notebooks, QObject* parent = nullptr);

  const kelvane::Ref<kelvane::NSTreeController>& results() const { return myResults; }
  // Begins anew with these words, whatever their case; empty ones find nothing.
  void start(const QString& words);
  // Forgets what is not in the notebooks any more.
  void leaveOutMissing();
  bool isRunning() const { return myTimer.isActive(); }

 Q_SIGNALS:
  void ended(int found);

 private:
  void goOn();
  bool contains(const Entry& entry);

  const Notebooks& myNotebooks;
  kelvane::Ref<kelvane::NSTreeController> myResults;
  QTimer myTimer;
  kelvane::Text myWords;
  std::vector<kelvane::Ref<Entry>> myEntries;
  std::size_t myNext = 0;
  std::vector<kelvane::Ref<kelvane::NSObject>> myFound;
};

}  // namespace notebook
