#include "Window/NotePane.h"

#include <QFileInfo>
#include <QHeaderView>
#include <QLabel>
#include <QTableView>

#include "Extensions/NSFileManager-QNExtensions.h"
#include "Extensions/NSFileManager-ThreadSafeManager.h"
#include "Model/NoteFile.h"
#include "Platform/Foundation/Format.h"
#include "Platform/Foundation/NSFileManager.h"
#include "Platform/Foundation/PathText.h"
#include "Platform/Foundation/TextEncoding.h"
#include "Utilities/QNLogger.h"
#include "Window/NoteEditor.h"
#include "Window/QtText.h"
#include "Window/TableModel.h"

namespace notebook {
namespace {

using kelvane::format;
using kelvane::Ref;
using kelvane::Text;

constexpr int savingDelay = 1500;  // milliseconds

QDateTime timeOfFile(const Text& path) {
  return QFileInfo(QFile::decodeName(kelvane::fileSystemRepresentation(path).c_str())).lastModified();
}

}  // namespace

NotePane::NotePane(QWidget* parent)
    : QStackedWidget(parent),
      myEditor(new NoteEditor(this)),
      myDocument(new StyledDocument(*myEditor->document())),
      myTable(new QTableView(this)),
      myHint(new QLabel(tr("Choose a note, or make a new one."), this)) {
  myDocument->setParent(this);
  myHint->setAlignment(Qt::AlignCenter);
  myHint->setEnabled(false);
  myTable->setAccessibleName(tr("Table"));
  myTable->setAlternatingRowColors(true);
  myTable->verticalHeader()->hide();
  myTable->setFrameShape(QFrame::NoFrame);
  addWidget(myHint);
  addWidget(myEditor);
  addWidget(myTable);
  mySaving.setSingleShot(true);
  mySaving.setInterval(savingDelay);
  connect(&mySaving, &QTimer::timeout, this, &NotePane::save);
  connect(myDocument, &StyledDocument::edited, this, [this] {
    myIsChanged = true;
    mySaving.start();
    Q_EMIT changed();
  });
}

NotePane::~NotePane() = default;

void NotePane::show(const Ref<Entry>& entry) {
  if (entry == myEntry) return;
  save();
  open(entry);
}

void NotePane::open(const Ref<Entry>& entry) {
  mySaving.stop();
  myIsChanged = false;
  myEntry = entry;
  myDocument->setText(nullptr);
  if (!entry || entry->kind() == EntryKind::Folder)
    setCurrentWidget(myHint);
  else if (entry->kind() == EntryKind::Table)
    openTable();
  else
    openNote();
}

void NotePane::openTable() {
  const kelvane::FileContents file = readTableFile(myEntry->path());
  if (file.error) Q_EMIT told(toQt(format(u"\"%@\" can't be read: %s", myEntry->title(), file.error.message())));
  delete myTable->model();
  myTable->setModel(new TableModel(decodedText(file.bytes), myTable));
  myTable->resizeColumnsToContents();
  setCurrentWidget(myTable);
}

void NotePane::openNote() {
  myFileTime = timeOfFile(myEntry->path());
  ReadNote note = readNote(myEntry->path());
  if (!note.text) {
    const Text sentence = format(u"\"%@\" can't be read: %@", myEntry->title(), note.error);
    kelvane::QNLogger::sharedLogger().warn(__LINE__, __FILE__, __func__, sentence);
    Q_EMIT told(toQt(sentence));
    myHint->setText(toQt(sentence));
    setCurrentWidget(myHint);
    return;
  }
  myLineEnd = std::move(note.lineEnd);
  myDocument->setText(note.text);
  myEditor->setReadOnly(!myDocument->isFaithful());
  myEditor->setStylesKept(keepsStyles(formatOfFile(myEntry->path())));
  if (myEditor->isReadOnly()) Q_EMIT told(tr("This note has characters that can't be edited here."));
  myEditor->moveCursor(QTextCursor::Start);
  // What is typed into an empty note has a size, too.
  if (text()->length() == 0) myEditor->changeSize(0);
  setCurrentWidget(myEditor);
}

bool NotePane::save() {
  mySaving.stop();
  if (!myIsChanged || !myEntry || !text()) return true;
  const QDateTime now = timeOfFile(myEntry->path());
  if (now.isValid() && now != myFileTime) return saveBeside();
  if (const auto failure = writeNote(*text(), myEntry->path(), myLineEnd)) {
    const Text sentence = format(u"\"%@\" can't be saved: %@. Your changes are kept here.", myEntry->title(), *failure);
    kelvane::QNLogger::sharedLogger().error(__LINE__, __FILE__, __func__, sentence);
    Q_EMIT told(toQt(sentence));
    return false;
  }
  myIsChanged = false;
  myFileTime = timeOfFile(myEntry->path());
  Q_EMIT changed();
  return true;
}

bool NotePane::saveBeside() {
  const kelvane::TextView folder = kelvane::stringByDeletingLastPathComponent(myEntry->path());
  const kelvane::TextView extension = kelvane::pathExtension(myEntry->path());
  const auto name = createUniqueFileAtPath(kelvane::NSFileManagerExtensions::threadSafeManager(), folder,
                                           myEntry->title(), extension);
  const Text path = kelvane::stringByAppendingPathComponent(folder, name.value_or(Text()));
  if (!name || writeNote(*text(), path, myLineEnd)) {
    Q_EMIT told(tr("The note was changed by another program, and can't be saved beside that."));
    return false;
  }
  myIsChanged = false;
  Q_EMIT told(
      toQt(format(u"Another program has changed \"%@\". Your changes are in \"%@\".", myEntry->title(), *name)));
  Q_EMIT savedBeside(toQt(path));
  return true;
}

void NotePane::followFile() {
  if (!myEntry || myIsChanged || !text()) return;
  const QDateTime now = timeOfFile(myEntry->path());
  if (now.isValid() && now != myFileTime) open(Ref<Entry>(myEntry));
}

}  // namespace notebook
