#include "Window/NotePane.h"

#include <QFileInfo>
#include <QHeaderView>
#include <QLabel>
#include <QScrollBar>
#include <QTableView>
#include <algorithm>

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

// In milliseconds.
constexpr int savingDelay = 1500;
constexpr int retryDelay = 20'000;

constexpr int widestColumn = 480;

QDateTime timeOfFile(const Text& path) {
  return QFileInfo(QFile::decodeName(kelvane::fileSystemRepresentation(path).c_str())).lastModified();
}

// Files are replaced when they are saved, which their folder has to allow.
bool canBeSaved(const Text& path) {
  const kelvane::NSFileManager& files = kelvane::NSFileManagerExtensions::threadSafeManager();
  return files.isDeletableFileAtPath(resolveAliasAndLinkAtPath(files, path).value_or(path));
}

}  // namespace

NotePane::NotePane(QWidget* parent)
    : QStackedWidget(parent),
      myEditor(new NoteEditor(this)),
      myDocument(new StyledDocument(*myEditor->document())),
      myTable(new QTableView(this)),
      myHint(new QLabel(this)) {
  myDocument->setParent(this);
  myHint->setAlignment(Qt::AlignCenter);
  myHint->setEnabled(false);
  myHint->setWordWrap(true);
  myHint->setTextFormat(Qt::PlainText);
  myHint->setMargin(28);
  myTable->setAccessibleName(tr("Table"));
  myTable->setAlternatingRowColors(true);
  myTable->setTabKeyNavigation(false);
  myTable->verticalHeader()->hide();
  myTable->horizontalHeader()->setMaximumSectionSize(widestColumn);
  myTable->horizontalHeader()->setDefaultAlignment(Qt::AlignLeading | Qt::AlignVCenter);
  myTable->setFrameShape(QFrame::NoFrame);
  addWidget(myHint);
  addWidget(myEditor);
  addWidget(myTable);
  open(nullptr);
  mySaving.setSingleShot(true);
  connect(&mySaving, &QTimer::timeout, this, &NotePane::save);
  connect(myDocument, &StyledDocument::edited, this, [this] {
    myIsChanged = true;
    mySaving.start(savingDelay);
    Q_EMIT changed();
  });
}

NotePane::~NotePane() = default;

bool NotePane::show(const Ref<Entry>& entry) {
  if (entry == myEntry) return true;
  if (!save()) return false;
  open(entry);
  return true;
}

void NotePane::revert() { open(Ref<Entry>(myEntry)); }

void NotePane::open(const Ref<Entry>& entry) {
  mySaving.stop();
  myIsChanged = false;
  myEntry = entry;
  myDocument->setText(nullptr);
  if (entry) myFileTime = timeOfFile(entry->path());
  if (!entry || entry->kind() == EntryKind::Folder)
    showHint(tr("Choose a note, or make a new one."));
  else if (entry->kind() == EntryKind::Table)
    openTable();
  else
    openNote();
  Q_EMIT changed();
}

void NotePane::showHint(const QString& sentence) {
  myHint->setText(sentence);
  setCurrentWidget(myHint);
}

void NotePane::openTable() {
  const kelvane::FileContents file = readTableFile(myEntry->path());
  if (file.error) {
    const QString sentence = toQt(format(u"\"%@\" can't be read: %s", myEntry->title(), file.error.message()));
    Q_EMIT told(sentence);
    return showHint(sentence);
  }
  delete myTable->model();
  myTable->setModel(new TableModel(decodedText(file.bytes), myTable));
  myTable->resizeColumnsToContents();
  setCurrentWidget(myTable);
}

void NotePane::openNote() {
  ReadNote note = readNote(myEntry->path());
  if (!note.text) {
    const Text sentence = format(u"\"%@\" can't be read: %@", myEntry->title(), note.error);
    kelvane::QNLogger::sharedLogger().warn(__LINE__, __FILE__, __func__, sentence);
    Q_EMIT told(toQt(sentence));
    return showHint(toQt(sentence));
  }
  myLineEnd = std::move(note.lineEnd);
  myIsWhole = note.isWhole;
  myDocument->setText(note.text);
  const bool isWritable = canBeSaved(myEntry->path());
  myEditor->setEditable(isWritable && myDocument->isFaithful());
  myEditor->setStylesKept(keepsStyles(formatOfFile(myEntry->path())));
  if (!isWritable)
    Q_EMIT told(tr("This note can only be read: nothing can be written in its folder."));
  else if (myEditor->isReadOnly())
    Q_EMIT told(tr("This note has characters that can't be edited here."));
  myEditor->moveCursor(QTextCursor::Start);
  // What is typed into an empty note has a size, too.
  if (text()->length() == 0) myEditor->changeSize(0);
  setCurrentWidget(myEditor);
}

bool NotePane::save() {
  mySaving.stop();
  if (!myIsChanged || !myEntry || !text()) return true;
  const QDateTime now = timeOfFile(myEntry->path());
  if (now.isValid() && now != myFileTime)
    return saveBeside(kelvane::pathExtension(myEntry->path()),
                      format(u"Another program has changed \"%@\".", myEntry->title()));
  if (!myIsWhole)
    return saveBeside(u"note",
                      format(u"The page \"%@\" has more than a note keeps, and stays as it is.", myEntry->title()));
  if (const auto failure = writeNote(*text(), myEntry->path(), myLineEnd)) return failToSave(*failure);
  myIsChanged = false;
  myFileTime = timeOfFile(myEntry->path());
  Q_EMIT changed();
  return true;
}

bool NotePane::failToSave(kelvane::TextView reason) {
  const Text sentence = format(u"\"%@\" can't be saved: %@. Your changes are kept here.", myEntry->title(), reason);
  kelvane::QNLogger::sharedLogger().error(__LINE__, __FILE__, __func__, sentence);
  mySaving.start(retryDelay);
  Q_EMIT told(toQt(sentence));
  return false;
}

// `why` is a sentence.
bool NotePane::saveBeside(kelvane::TextView extension, kelvane::TextView why) {
  const kelvane::NSFileManager& files = kelvane::NSFileManagerExtensions::threadSafeManager();
  const kelvane::TextView folder = kelvane::stringByDeletingLastPathComponent(myEntry->path());
  Ref<kelvane::NSError> error;
  const auto name = createUniqueFileAtPath(files, folder, myEntry->title(), extension, &error);
  if (!name) return failToSave(error ? error->localizedDescription() : Text(u"there is no name for it"));
  const Text path = kelvane::stringByAppendingPathComponent(folder, *name);
  if (const auto failure = writeNote(*text(), path, myLineEnd)) {
    files.removeItemAtPath(path, nullptr);
    return failToSave(*failure);
  }
  myIsChanged = false;
  const Text sentence = format(u"%@ Your changes are in \"%@\".", why, *name);
  Q_EMIT savedBeside(toQt(path));
  Q_EMIT changed();
  Q_EMIT told(toQt(sentence));
  return true;
}

void NotePane::adopt(const Ref<Entry>& entry) {
  myEntry = entry;
  myIsWhole = true;
  myFileTime = timeOfFile(entry->path());
  myEditor->setStylesKept(keepsStyles(formatOfFile(entry->path())));
}

void NotePane::follow(const Ref<Entry>& entry) {
  if (!myEntry) return;
  if (!entry) {
    if (myIsChanged) return;
    Q_EMIT told(toQt(format(u"\"%@\" is not there any more.", myEntry->title())));
    return open(nullptr);
  }
  myEntry = entry;
  if (myIsChanged || !entry->isLeaf() || timeOfFile(entry->path()) == myFileTime) return;
  keepPlace([this] { revert(); });
}

void NotePane::setZoom(double zoom) {
  if (zoom != myDocument->zoom()) keepPlace([&] { myDocument->setZoom(zoom); });
}

// Showing a text anew takes the cursor to an end of it, where nobody has left it.
template <class Work>
void NotePane::keepPlace(Work work) {
  const QTextCursor before = myEditor->textCursor();
  QScrollBar& bar = *myEditor->verticalScrollBar();
  const double scrolled = bar.maximum() > 0 ? static_cast<double>(bar.value()) / bar.maximum() : 0;
  const int anchor = before.anchor();
  const int position = before.position();
  work();
  const int end = myEditor->document()->characterCount() - 1;
  QTextCursor after(myEditor->document());
  after.setPosition(std::min(anchor, end));
  after.setPosition(std::min(position, end), QTextCursor::KeepAnchor);
  myEditor->setTextCursor(after);
  bar.setValue(static_cast<int>(scrolled * bar.maximum()));
}

}  // namespace notebook
