#pragma once

#include <QDateTime>
#include <QStackedWidget>
#include <QTimer>

#include "Model/Entry.h"
#include "Window/StyledDocument.h"

class QLabel;
class QTableView;

namespace notebook {

class NoteEditor;

// Shows one entry of the notebook: a note to be edited, a table to be read, or a word of what to do. Notes are saved a
// moment after the last change, when another one is shown, and by `save`. Main thread only.
class NotePane : public QStackedWidget {
  Q_OBJECT

 public:
  explicit NotePane(QWidget* parent = nullptr);
  ~NotePane() override;

  // Shows the entry; a folder, or nil, shows none. Saves the one before; where that fails it goes on being shown, and
  // the answer is false.
  bool show(const kelvane::Ref<Entry>& entry);
  const kelvane::Ref<Entry>& entry() const { return myEntry; }
  // The note that is shown; nil when none is.
  const kelvane::Ref<kelvane::NSTextStorage>& text() const { return myDocument->text(); }
  NoteEditor& editor() { return *myEditor; }

  // Whether there are changes that no file has yet.
  bool isChanged() const { return myIsChanged; }
  // Writes the note, if it was changed. A file that somebody else has written meanwhile is left alone: the note goes
  // into a new one beside it. So does a page that has more than a note keeps. What goes wrong is told, the changes
  // stay, and another attempt is made after a while.
  bool save();
  // Gives up the changes that no file has, and reads the file again.
  void revert();
  // The folder was read again, and this is the entry of the file now; nil when there is none. Reads the file again when
  // it was changed and the note was not; a note that was changed stays.
  void follow(const kelvane::Ref<Entry>& entry);
  // What is shown is kept in the file of that entry from now on.
  void adopt(const kelvane::Ref<Entry>& entry);

  double zoom() const { return myDocument->zoom(); }
  void setZoom(double zoom);

 Q_SIGNALS:
  // One sentence for the user.
  void told(const QString& sentence);
  void changed();
  // A note was saved under another name.
  void savedBeside(const QString& path);

 private:
  void open(const kelvane::Ref<Entry>& entry);
  void openTable();
  void openNote();
  void showHint(const QString& sentence);
  bool failToSave(kelvane::TextView reason);
  bool saveBeside(kelvane::TextView extension, kelvane::TextView why);
  template <class Work>
  void keepPlace(Work work);

  NoteEditor* myEditor;
  StyledDocument* myDocument;
  QTableView* myTable;
  QLabel* myHint;
  QTimer mySaving;
  kelvane::Ref<Entry> myEntry;
  kelvane::Text myLineEnd;
  // Whether the file can be written without loss.
  bool myIsWhole = true;
  QDateTime myFileTime;
  bool myIsChanged = false;
};

}  // namespace notebook
