#include <QApplication>
#include <QDesktopServices>
#include <QFileDialog>
#include <QInputDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QStatusBar>
#include <QToolBar>
#include <QUrl>

#include "Extensions/NSImage-QNExtensions.h"
#include "Extensions/NSMenu-QNExtensions.h"
#include "Extensions/NSWindow-QNExtensions.h"
#include "Graphics/QNColorPalette.h"
#include "Model/NoteFile.h"
#include "Platform/Foundation/AtomicFile.h"
#include "Platform/Foundation/Boxing.h"
#include "Platform/Foundation/Format.h"
#include "Platform/Foundation/NSData.h"
#include "Platform/Foundation/PathText.h"
#include "Platform/Foundation/TextEncoding.h"
#include "Qt/QtDesktop.h"
#include "Utilities/QNEnvironment.h"
#include "Window/FeedbackDialog.h"
#include "Window/MainWindow.h"
#include "Window/NoteEditor.h"
#include "Window/NotePane.h"
#include "Window/Outline.h"
#include "Window/Pictures.h"
#include "Window/PreferencesDialog.h"
#include "Window/QtText.h"
#include "Window/Search.h"

namespace notebook {
namespace {

using kelvane::NSMenuItem;
using kelvane::Ref;
using kelvane::Text;
using kelvane::TextView;

constexpr double zoomStep = 1.25;
constexpr double sizeStep = 2;  // points
constexpr double pageQuality = 0.8;

Text pathFrom(const QString& path) { return kelvane::textFromFileSystem(QFile::encodeName(path).toStdString()); }

// Shows a dialog at the place where it was last, and waits for its end.
void showDialog(QDialog& dialog) {
  const Text key = fromQt(dialog.objectName());
  const Ref<kelvane::NSWindow> window = kelvane::windowFor(dialog);
  loadFrameFromUserDefaultsForKey(*window, key, true, kelvane::NSWindowExtensions::goldenMiddle);
  dialog.exec();
  saveFrameToUserDefaultsForKey(*window, key, true);
}

}  // namespace

Commands MainWindow::commands() {
  Commands commands;
  addFileCommands(commands);
  addEditCommands(commands);
  addFormatCommands(commands);
  addViewCommands(commands);
  addHelpCommands(commands);
  return commands;
}

void MainWindow::addFileCommands(Commands& commands) {
  commands[u"newNote:"] = [this](NSMenuItem&) { addNote(); };
  commands[u"newFolder:"] = [this](NSMenuItem&) { addFolder(); };
  commands[u"importNote:"] = [this](NSMenuItem&) { importNote(); };
  commands[u"exportNote:"] = [this](NSMenuItem&) { exportNote(); };
  commands[u"exportPage:"] = [this](NSMenuItem&) { exportPage(); };
  commands[u"save:"] = [this](NSMenuItem&) {
    if (myPane->save()) tell(tr("All is saved."));
  };
  commands[u"revertNote:"] = [this](NSMenuItem&) { myPane->revert(); };
  commands[u"moveToFolder:"] = [this](NSMenuItem&) { moveToFolder(); };
  commands[u"moveToTrash:"] = [this](NSMenuItem&) { moveToTrash(); };
  commands[u"showPreferences:"] = [this](NSMenuItem&) {
    PreferencesDialog dialog(this);
    showDialog(dialog);
  };
  commands[u"quit:"] = [this](NSMenuItem&) { close(); };
}

void MainWindow::addEditCommands(Commands& commands) {
  // They are about the field that has the focus, and else about the note.
  const auto forText = [this](void (QTextEdit::*inNote)(), auto inField) {
    return [this, inNote, inField](NSMenuItem&) {
      if (auto* field = qobject_cast<QLineEdit*>(QApplication::focusWidget())) return (field->*inField)();
      (myPane->editor().*inNote)();
    };
  };
  commands[u"undo:"] = forText(&QTextEdit::undo, &QLineEdit::undo);
  commands[u"redo:"] = forText(&QTextEdit::redo, &QLineEdit::redo);
  commands[u"cut:"] = forText(&QTextEdit::cut, &QLineEdit::cut);
  commands[u"copy:"] = forText(&QTextEdit::copy, &QLineEdit::copy);
  commands[u"paste:"] = forText(&QTextEdit::paste, &QLineEdit::paste);
  commands[u"selectAll:"] = [this, inText = forText(&QTextEdit::selectAll, &QLineEdit::selectAll)](NSMenuItem& item) {
    if (list().hasFocus()) return list().selectAll();
    inText(item);
  };
  commands[u"renameEntry:"] = [this](NSMenuItem&) {
    if (list().current()) list().edit(list().currentIndex());
  };
  commands[u"searchNotes:"] = [this](NSMenuItem&) { mySearchField->setFocus(Qt::ShortcutFocusReason); };
  commands[u"findInNote:"] = [this](NSMenuItem&) {
    bool isAccepted = false;
    const QString words = QInputDialog::getText(this, tr("Find in Note"), tr("Find:"), QLineEdit::Normal,
                                                myPane->editor().textCursor().selectedText(), &isAccepted);
    if (isAccepted && !myPane->editor().findWords(words)) tell(tr("\"%1\" is not in this note.").arg(words));
  };
}

void MainWindow::addFormatCommands(Commands& commands) {
  const auto styled = [this](auto change) {
    return [this, change](NSMenuItem& item) {
      if (!myPane->editor().areStylesKept()) return tell(tr("A plain text file keeps no styles. Export it as a note."));
      change(myPane->editor(), item);
    };
  };
  commands[u"bold:"] =
      styled([](NoteEditor& editor, NSMenuItem&) { editor.setBold(editor.fontWeight() <= QFont::Medium); });
  commands[u"italic:"] = styled([](NoteEditor& editor, NSMenuItem&) { editor.setItalic(!editor.fontItalic()); });
  commands[u"underline:"] =
      styled([](NoteEditor& editor, NSMenuItem&) { editor.setUnderlined(!editor.fontUnderline()); });
  commands[u"bigger:"] = styled([](NoteEditor& editor, NSMenuItem&) { editor.changeSize(sizeStep); });
  commands[u"smaller:"] = styled([](NoteEditor& editor, NSMenuItem&) { editor.changeSize(-sizeStep); });
  commands[u"color:"] = styled([](NoteEditor& editor, NSMenuItem& item) {
    const auto color = kelvane::QNColorPalette::colorForString(item.title());
    if (color) editor.setColor(QColor(toQt(kelvane::QNColorPalette::stringForColor(*color))));
  });
  commands[u"setLink:"] = styled([this](NoteEditor&, NSMenuItem&) { setLink(); });
}

void MainWindow::addViewCommands(Commands& commands) {
  commands[u"zoomIn:"] = [](NSMenuItem&) { setPreferredZoom(preferredZoom() * zoomStep); };
  commands[u"zoomOut:"] = [](NSMenuItem&) { setPreferredZoom(preferredZoom() / zoomStep); };
  commands[u"actualSize:"] = [](NSMenuItem&) { setPreferredZoom(1); };
  commands[u"toggleTheme:"] = [](NSMenuItem&) { setPrefersDarkTheme(!prefersDarkTheme()); };
  commands[u"goToOutline:"] = [this](NSMenuItem&) { list().setFocus(Qt::ShortcutFocusReason); };
  commands[u"goToNote:"] = [this](NSMenuItem&) {
    if (myPane->currentWidget()) myPane->currentWidget()->setFocus(Qt::ShortcutFocusReason);
  };
  commands[u"toggleToolbar:"] = [this](NSMenuItem& item) {
    auto* bar = findChild<QToolBar*>(QStringLiteral("tools"));
    bar->setVisible(!bar->isVisible());
    item.setTitle(bar->isVisible() ? u"Hide Toolbar" : u"Show Toolbar");
  };
}

void MainWindow::addHelpCommands(Commands& commands) {
  commands[u"openPage:"] = [this](NSMenuItem& item) { openPage(item.tag()); };
  commands[u"sendFeedback:"] = [this](NSMenuItem&) {
    auto& environment = kelvane::QNEnvironment::sharedEnvironment();
    if (!environment.linkToFeedbackPage()) environment.setLinkToFeedbackPage(linkFromSite(u"feedback"));
    if (!environment.linkToFeedbackPage()) return tell(tr("The web site can't be reached, or takes no feedback."));
    FeedbackDialog dialog(*environment.linkToFeedbackPage(), this);
    showDialog(dialog);
  };
  commands[u"showAbout:"] = [this](NSMenuItem&) {
    const QString summary = toQt(kelvane::QNEnvironment::sharedEnvironment().summary());
    QMessageBox::about(this, tr("About Notebook"), tr("A notebook for a folder of notes.\n\n%1").arg(summary));
  };
}

void MainWindow::addNote() {
  Text error;
  const Ref<Entry> entry = myNotebooks.addNote(myOutline->current().get(), u"New Note", error);
  if (!entry) return tellFailure(error);
  mySearchField->clear();
  myOutline->select(entry);
  myPane->editor().setFocus(Qt::OtherFocusReason);
}

void MainWindow::addFolder() {
  Text error;
  const Ref<Entry> entry = myNotebooks.addFolder(myOutline->current().get(), u"New Folder", error);
  if (!entry) return tellFailure(error);
  mySearchField->clear();
  myOutline->select(entry);
  watchFolders();
}

void MainWindow::importNote() {
  const QString path = QFileDialog::getOpenFileName(this, tr("Import"), {}, tr("Notes (*.note *.html *.htm *.txt)"));
  if (path.isEmpty()) return;
  const ReadNote note = readNote(pathFrom(path));
  if (!note.text) return tellFailure(note.error);
  Text error;
  const Text title = kelvane::stringByDeletingPathExtension(kelvane::lastPathComponent(pathFrom(path)));
  const Ref<Entry> entry = myNotebooks.addNote(myOutline->current().get(), title, error);
  if (!entry) return tellFailure(error);
  tellFailure(writeNote(*note.text, entry->path()));
  mySearchField->clear();
  myOutline->select(entry);
}

void MainWindow::exportNote() {
  if (!myPane->text()) return tell(tr("There is no note to be exported."));
  const QString path =
      QFileDialog::getSaveFileName(this, tr("Export"), toQt(myPane->entry()->title()) + ".rtf",
                                   tr("Rich text (*.rtf);;Web page (*.html);;Text (*.txt);;Note (*.note)"));
  if (!path.isEmpty()) tellFailure(writeNote(*myPane->text(), pathFrom(path)));
}

std::optional<Text> MainWindow::writePage(const QString& path) {
  if (!myPane->text()) return Text(u"There is no note to be shown.");
  const auto picture = JPGRepresentationWithCompression(*firstPage(myPane->text()), pageQuality);
  if (!picture) return Text(u"There is no JPEG form of the page.");
  const auto bytes = picture->bytes();
  const std::error_code failure = kelvane::writeFileAtomically(
      QFile::encodeName(path).toStdString(), {reinterpret_cast<const char*>(bytes.data()), bytes.size()});
  if (!failure) return std::nullopt;
  return kelvane::format(u"The picture can't be written: %s", failure.message());
}

void MainWindow::exportPage() {
  const QString path =
      QFileDialog::getSaveFileName(this, tr("Page as JPEG"), QStringLiteral("page.jpg"), tr("JPEG pictures (*.jpg)"));
  if (!path.isEmpty()) tellFailure(writePage(path));
}

void MainWindow::moveToTrash() {
  const std::vector<Ref<Entry>> entries = list().selected();
  if (entries.empty() || !myPane->save()) return;
  const auto failure = myNotebooks.moveToTrash(entries);
  mySearch->leaveOutMissing();
  const Ref<Entry> shown = myPane->entry();
  if (shown && myNotebooks.entryAtPath(shown->path()) != shown) myPane->show(nullptr);
  showTitle();
  tellFailure(failure);
}

// For those who do not drag.
void MainWindow::moveToFolder() {
  if (list().selected().empty()) return;
  const Text& top = myNotebooks.folder();
  QStringList names{tr("(outermost)")};
  const std::vector<Text> folders = myNotebooks.folders();
  for (std::size_t i = 1; i < folders.size(); ++i) names.push_back(toQt(TextView(folders[i]).substr(top.size() + 1)));
  bool isAccepted = false;
  const QString name = QInputDialog::getItem(this, tr("Move to Folder"), tr("Folder:"), names, 0, false, &isAccepted);
  const auto place = static_cast<std::size_t>(names.indexOf(name));
  if (isAccepted && place < folders.size()) move(place == 0 ? nullptr : myNotebooks.entryAtPath(folders[place]));
}

bool MainWindow::mayCloseWithoutSaving() {
  return QMessageBox::warning(this, tr("Notebook"), tr("%1\n\nClose and lose them?").arg(told()),
                              QMessageBox::Discard | QMessageBox::Cancel, QMessageBox::Cancel) == QMessageBox::Discard;
}

void MainWindow::setLink() {
  bool isAccepted = false;
  const QString address =
      QInputDialog::getText(this, tr("Link"), tr("Address:"), QLineEdit::Normal, myPane->editor().link(), &isAccepted);
  if (isAccepted) myPane->editor().setLink(address.trimmed());
}

// The first time this waits for the web site, at most for a few seconds.
std::optional<Text> MainWindow::linkFromSite(TextView key) {
  tell(tr("Asking the web site…"));
  statusBar()->repaint();
  QApplication::setOverrideCursor(Qt::WaitCursor);
  auto address = kelvane::QNEnvironment::sharedEnvironment().linkFromSitemapForKey(key);
  QApplication::restoreOverrideCursor();
  tell({});
  return address;
}

void MainWindow::openPage(std::int64_t number) {
  const PageLink page = pageLinks()[static_cast<std::size_t>(number)];
  const auto address = linkFromSite(page.key);
  if (!address) return tell(tr("The web site has no page for that, or can't be reached."));
  tell(toQt(*address));
  QDesktopServices::openUrl(QUrl(toQt(*address)));
}

}  // namespace notebook
