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

  // Shows the entry; a folder, or nil, shows none. Saves the one before.
  void show(const kelvane::Ref<Entry>& entry);
  const kelvane::Ref<Entry>& entry() const { return myEntry; }
  // The note that is shown; nil when none is.
  const kelvane::Ref<kelvane::NSTextStorage>& text() const { return myDocument->text(); }
  NoteEditor& editor() { return *myEditor; }

  // Whether there are changes that no file has yet.
  bool isChanged() const { return myIsChanged; }
  // Writes the note, if it was changed. A file that somebody else has written meanwhile is left alone: the note goes
  // into a new one beside it. What goes wrong is told, and the changes stay.
  bool save();
  // Reads the note again when its file was changed and the note was not.
  void followFile();

  double zoom() const { return myDocument->zoom(); }
  void setZoom(double zoom) { myDocument->setZoom(zoom); }

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
  bool saveBeside();

  NoteEditor* myEditor;
  StyledDocument* myDocument;
  QTableView* myTable;
  QLabel* myHint;
  QTimer mySaving;
  kelvane::Ref<Entry> myEntry;
  kelvane::Text myLineEnd;
  QDateTime myFileTime;
  bool myIsChanged = false;
};

}  // namespace notebook
