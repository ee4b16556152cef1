#include <QApplication>
#include <QDesktopServices>
#include <QFileDialog>
#include <QInputDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QToolBar>
#include <QUrl>

#include "Extensions/NSImage-QNExtensions.h"
#include "Extensions/NSMenu-QNExtensions.h"
#include "Extensions/NSWindow-QNExtensions.h"
#include "Graphics/QNColorPalette.h"
#include "Model/NoteFile.h"
#include "Platform/Foundation/Boxing.h"
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
  commands[u"moveToTrash:"] = [this](NSMenuItem&) { moveToTrash(); };
  commands[u"showPreferences:"] = [this](NSMenuItem&) {
    PreferencesDialog dialog(this);
    showDialog(dialog);
  };
  commands[u"quit:"] = [this](NSMenuItem&) { close(); };
}

void MainWindow::addEditCommands(Commands& commands) {
  const auto forEditor = [this](void (QTextEdit::*operation)()) {
    return [this, operation](NSMenuItem&) { (myPane->editor().*operation)(); };
  };
  commands[u"undo:"] = forEditor(&QTextEdit::undo);
  commands[u"redo:"] = forEditor(&QTextEdit::redo);
  commands[u"cut:"] = forEditor(&QTextEdit::cut);
  commands[u"copy:"] = forEditor(&QTextEdit::copy);
  commands[u"paste:"] = forEditor(&QTextEdit::paste);
  commands[u"selectAll:"] = forEditor(&QTextEdit::selectAll);
  commands[u"renameEntry:"] = [this](NSMenuItem&) {
    if (myOutline->current()) myOutline->edit(myOutline->currentIndex());
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
    if (!environment.linkToFeedbackPage())
      environment.setLinkToFeedbackPage(environment.linkFromSitemapForKey(u"feedback"));
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
  const Ref<kelvane::NSImage> page = firstPage(*myPane->editor().document());
  writeJPGRepresentationToFile(*page, pathFrom(path));
  return QFile::exists(path) ? std::nullopt : std::optional<Text>(u"The picture can't be written.");
}

void MainWindow::exportPage() {
  const QString path =
      QFileDialog::getSaveFileName(this, tr("Page as JPEG"), QStringLiteral("page.jpg"), tr("JPEG pictures (*.jpg)"));
  if (!path.isEmpty()) tellFailure(writePage(path));
}

void MainWindow::moveToTrash() {
  const std::vector<Ref<Entry>> entries = myOutline->selected();
  if (entries.empty()) return;
  myPane->save();
  myPane->show(nullptr);
  tellFailure(myNotebooks.moveToTrash(entries));
  showCurrent();
}

void MainWindow::setLink() {
  bool isAccepted = false;
  const QString address =
      QInputDialog::getText(this, tr("Link"), tr("Address:"), QLineEdit::Normal, myPane->editor().link(), &isAccepted);
  if (isAccepted) myPane->editor().setLink(address.trimmed());
}

void MainWindow::openPage(std::int64_t number) {
  const PageLink page = pageLinks()[static_cast<std::size_t>(number)];
  const auto address = kelvane::QNEnvironment::sharedEnvironment().linkFromSitemapForKey(page.key);
  if (!address) return tell(tr("The web site has no page for that, or can't be reached."));
  tell(toQt(*address));
  QDesktopServices::openUrl(QUrl(toQt(*address)));
}

}  // namespace notebook
