#include <QDir>
#include <QLineEdit>
#include <QTableView>
#include <QTextBlock>

#include "Model/NoteFile.h"
#include "Platform/Foundation/NSFont.h"
#include "Walkthrough/Walkthrough.h"
#include "Window/MainWindow.h"
#include "Window/NoteEditor.h"
#include "Window/NotePane.h"
#include "Window/Outline.h"
#include "Window/QtText.h"
#include "Window/Search.h"

namespace notebook {
namespace {

using kelvane::NSFont;
using kelvane::Text;
using kelvane::TextView;

// The font at the place of the words in a note's file; nil when they are not in it.
std::shared_ptr<const NSFont> fontInFile(TextView path, TextView words) {
  const ReadNote note = readNote(path);
  const std::size_t place = note.text ? note.text->string().find(words) : Text::npos;
  return place == Text::npos ? nullptr : kelvane::as<NSFont>(note.text->attribute(kelvane::NSFontAttributeName, place));
}

}  // namespace

void Walkthrough::showOutline() {
  step("opens a window on a folder of notes", [this]() -> Outcome {
    openWindow(myFolder);
    takePicture(*myWindow, QStringLiteral("1-outline"));
    std::printf("        first picture %lld ms after the start\n", mySinceStart.elapsed());
    const std::size_t notes = myWindow->notebooks().notes().size();
    return notes == 7 ? QString() : QStringLiteral("there are %1 notes").arg(notes);
  });
  step("shows the note that is chosen", [this]() -> Outcome {
    openEntry(*myWindow, QStringLiteral("allotment-meeting.txt"));
    const auto& text = myWindow->pane().text();
    if (!text || text->length() < 100) return QStringLiteral("the note is not shown");
    takePicture(*myWindow, QStringLiteral("2-note"));
    return toQt(text->string()) == myWindow->pane().editor().toPlainText() ? QString() : QStringLiteral("other text");
  });
}

void Walkthrough::writeNote() {
  step("makes a note, types, sets words in bold and colour", [this]() -> Outcome {
    choose(*myWindow, u"newNote:");
    NoteEditor& editor = myWindow->pane().editor();
    type(editor, QStringLiteral("Seeds to buy\n"));
    choose(*myWindow, u"bold:");
    type(editor, QStringLiteral("broad beans"));
    choose(*myWindow, u"bold:");
    type(editor, QStringLiteral(", peas and "));
    editor.setColor(QColor(QStringLiteral("#2e8b57")));
    type(editor, QStringLiteral("chives"));
    if (!myWindow->pane().save()) return QStringLiteral("it is not saved");
    const Text& path = myWindow->pane().entry()->path();
    const auto bold = fontInFile(path, u"broad");
    const auto plain = fontInFile(path, u"peas");
    takePicture(*myWindow, QStringLiteral("3-written"));
    return bold && bold->isBold() && plain && !plain->isBold() ? QString()
                                                               : QStringLiteral("the file has other styles");
  });
  step("gives it another name, in the outline", [this]() -> Outcome {
    myWindow->pane().entry()->setValueForKey(std::make_shared<kelvane::NSString>(u"Seeds"), u"title");
    const bool isThere = QFile::exists(myFolder + QStringLiteral("/Seeds.note"));
    return isThere && myWindow->pane().entry()->title() == u"Seeds" ? QString()
                                                                    : QStringLiteral("the name is the old one");
  });
}

void Walkthrough::writeInOtherScripts() {
  step("takes Chinese, Arabic and Hebrew", [this]() -> Outcome {
    choose(*myWindow, u"newNote:");
    const QString text = QString::fromUtf8("菜园笔记:种豆得豆。\nملاحظات الحديقة\nגן ירק\n");
    type(myWindow->pane().editor(), text);
    if (!myWindow->pane().save()) return QStringLiteral("it is not saved");
    takePicture(*myWindow, QStringLiteral("4-scripts"));
    const ReadNote note = readNote(myWindow->pane().entry()->path());
    return note.text && toQt(note.text->string()) == text ? QString() : QStringLiteral("other text came back");
  });
}

void Walkthrough::readTable() {
  step("shows a table", [this]() -> Outcome {
    openEntry(*myWindow, QStringLiteral("garden-beds.tsv"));
    takePicture(*myWindow, QStringLiteral("5-table"));
    const auto* table = myWindow->pane().findChild<QTableView*>();
    const bool isFilled =
        table && table->model() && table->model()->rowCount() > 2 && table->model()->columnCount() > 1;
    return isFilled ? QString() : QStringLiteral("the table is empty");
  });
}

void Walkthrough::exchangeFormats() {
  step("reads HTML; writes HTML, RTF and text", [this]() -> Outcome {
    openEntry(*myWindow, QStringLiteral("letters/neighbours.html"));
    const auto& text = myWindow->pane().text();
    if (!text) return QStringLiteral("the page is not shown");
    for (const TextView extension : {u"html", u"rtf", u"txt"}) {
      const Text path = fromQt(myPictures) + u"/export." + Text(extension);
      if (const auto failure = notebook::writeNote(*text, path)) return toQt(*failure);
    }
    QFile rtf(myPictures + QStringLiteral("/export.rtf"));
    return rtf.open(QFile::ReadOnly) && rtf.read(5) == "{\\rtf" ? QString() : QStringLiteral("the RTF is none");
  });
}

void Walkthrough::zoom() {
  step("shows text larger, and keeps its sizes", [this]() -> Outcome {
    openEntry(*myWindow, QStringLiteral("Seeds.note"));
    const auto sizeInNote = [this] {
      return kelvane::as<NSFont>(myWindow->pane().text()->attribute(kelvane::NSFontAttributeName, 0))->pointSize();
    };
    const double before = sizeInNote();
    choose(*myWindow, u"actualSize:");
    NoteEditor& editor = myWindow->pane().editor();
    editor.moveCursor(QTextCursor::Start);
    const double shown = editor.document()->begin().begin().fragment().charFormat().fontPointSize();
    choose(*myWindow, u"zoomIn:");
    choose(*myWindow, u"zoomIn:");
    if (!editor.textCursor().atStart()) return QStringLiteral("the cursor is somewhere else");
    const double larger = editor.document()->begin().begin().fragment().charFormat().fontPointSize();
    if (!(larger > shown)) return QStringLiteral("%1 points became %2").arg(shown).arg(larger);
    return sizeInNote() == before && !myWindow->pane().isChanged() ? QString() : QStringLiteral("the note was changed");
  });
}

void Walkthrough::changeSizes() {
  step("makes all of a note larger, and headings stay larger", [this]() -> Outcome {
    NoteEditor& editor = myWindow->pane().editor();
    const auto sizeAt = [this](std::size_t place) {
      const auto& text = myWindow->pane().text();
      return kelvane::as<NSFont>(text->attribute(kelvane::NSFontAttributeName, place))->pointSize();
    };
    const std::size_t heading = 0;
    const std::size_t lineEnd = myWindow->pane().text()->string().find(u'\n');
    const double before = sizeAt(lineEnd + 1);
    editor.moveCursor(QTextCursor::Start);
    editor.moveCursor(QTextCursor::NextBlock, QTextCursor::KeepAnchor);
    editor.changeSize(6);
    choose(*myWindow, u"selectAll:");
    choose(*myWindow, u"bigger:");
    const bool isKept =
        sizeAt(heading) == before + 8 && sizeAt(lineEnd) == before + 8 && sizeAt(lineEnd + 1) == before + 2;
    editor.undo();
    editor.undo();
    if (sizeAt(heading) != before || sizeAt(lineEnd + 1) != before) return QStringLiteral("it is not undone");
    return isKept ? QString() : QStringLiteral("all has one size");
  });
}

void Walkthrough::search() {
  step("finds words in all notes", [this]() -> Outcome {
    type(myWindow->searchField(), QStringLiteral("BEANS"));
    if (!waitUntil([this] { return !myWindow->search().isRunning(); })) return QStringLiteral("it does not end");
    takePicture(*myWindow, QStringLiteral("6-search"));
    const std::size_t found = myWindow->search().results()->content()->count();
    // What is found can be opened, and is what the outline then shows.
    myWindow->results().selectAll();
    myWindow->results().setCurrentIndex(myWindow->results().model()->index(0, 0));
    const auto shown = myWindow->pane().entry();
    myWindow->searchField().clear();
    if (myWindow->outline().current() != shown) return QStringLiteral("the outline shows another note");
    return found >= 1 ? QString() : QStringLiteral("it finds nothing");
  });
}

void Walkthrough::dragSeveral() {
  step("drags several notes under a badge", [this]() -> Outcome {
    const auto entries = myWindow->notebooks().notes();
    const QPixmap picture = myWindow->outline().dragPicture({entries[0], entries[1], entries[2]});
    const QPixmap alone = myWindow->outline().dragPicture({entries[0]});
    picture.save(myPictures + QStringLiteral("/7-drag.png"));
    return picture.width() > alone.width() ? QString() : QStringLiteral("there is no badge");
  });
  step("moves notes into a folder", [this]() -> Outcome {
    choose(*myWindow, u"newFolder:");
    const auto folder = myWindow->outline().current();
    openEntry(*myWindow, QStringLiteral("Seeds.note"));
    myWindow->move(folder);
    if (myWindow->outline().current() != myWindow->pane().entry()) return QStringLiteral("it is not selected any more");
    return QFile::exists(myFolder + QStringLiteral("/New Folder/Seeds.note")) ? QString() : QStringLiteral("not there");
  });
}

void Walkthrough::moveToTrash() {
  step("moves a note to the trash", [this]() -> Outcome {
    openEntry(*myWindow, QStringLiteral("New Folder/Seeds.note"));
    choose(*myWindow, u"moveToTrash:");
    return QFile::exists(myFolder + QStringLiteral("/New Folder/Seeds.note")) ? myWindow->told() : QString();
  });
}

void Walkthrough::makePage() {
  step("makes a JPEG of a page", [this]() -> Outcome {
    openEntry(*myWindow, QStringLiteral("recipes/kaesespaetzle.txt"));
    const QString path = myPictures + QStringLiteral("/8-page.jpg");
    QFile::remove(path);
    if (const auto failure = myWindow->writePage(path)) return toQt(*failure);
    const QImage page(path);
    return page.width() == 1190 && page.height() == 1684 ? QString() : QStringLiteral("it is no A4 page");
  });
}

}  // namespace notebook
