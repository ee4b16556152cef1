#include <QAbstractButton>
#include <QApplication>
#include <QDir>
#include <QFile>
#include <QMessageBox>
#include <QTimer>

#include "Walkthrough/Walkthrough.h"
#include "Window/MainWindow.h"
#include "Window/NoteEditor.h"
#include "Window/NotePane.h"
#include "Window/Outline.h"
#include "Window/QtText.h"

namespace notebook {
namespace {

void writeFile(const QString& path, const QByteArray& bytes) {
  QFile file(path);
  if (file.open(QFile::WriteOnly)) file.write(bytes);
}

QByteArray readFile(const QString& path) {
  QFile file(path);
  return file.open(QFile::ReadOnly) ? file.readAll() : QByteArray();
}

}  // namespace

void Walkthrough::meetAnotherProgram() {
  const QString file = myFolder + QStringLiteral("/shared.txt");
  step("takes up what another program writes", [&]() -> Outcome {
    writeFile(file, "first\n");
    const auto isListed = [this] {
      return myWindow->notebooks().entryAtPath(myWindow->notebooks().folder() + u"/shared.txt") != nullptr;
    };
    if (!waitUntil(isListed)) return QStringLiteral("the outline does not show it");
    openEntry(*myWindow, QStringLiteral("shared.txt"));
    return myWindow->pane().editor().toPlainText() == QStringLiteral("first\n") ? QString()
                                                                                : QStringLiteral("other text");
  });
  step("overwrites nothing that another program has written", [&]() -> Outcome {
    type(myWindow->pane().editor(), QStringLiteral("mine, "));
    // So that its time is another one, whatever the file system keeps of it.
    waitUntil([] { return false; }, 20);
    writeFile(file, "theirs\n");
    myWindow->pane().save();
    if (readFile(file) != "theirs\n") return QStringLiteral("it is gone");
    const QByteArray beside = readFile(myFolder + QStringLiteral("/shared-1.txt"));
    return beside == "mine, first\n" ? QString() : QString::fromUtf8(beside);
  });
}

void Walkthrough::goOnBeside() {
  step("lets the writer go on in the new file", [this]() -> Outcome {
    type(myWindow->pane().editor(), QStringLiteral("and "));
    if (!myWindow->pane().save()) return myWindow->told();
    if (readFile(myFolder + QStringLiteral("/shared.txt")) != "theirs\n") return QStringLiteral("theirs is gone");
    const QByteArray beside = readFile(myFolder + QStringLiteral("/shared-1.txt"));
    return beside == "mine, and first\n" ? QString() : QString::fromUtf8(beside);
  });
  step("leaves a page alone that has more than a note keeps", [this]() -> Outcome {
    const QString page = myFolder + QStringLiteral("/letters/neighbours.html");
    const QByteArray before = readFile(page);
    openEntry(*myWindow, QStringLiteral("letters/neighbours.html"));
    type(myWindow->pane().editor(), QStringLiteral("Hello! "));
    openEntry(*myWindow, QStringLiteral("shared.txt"));
    if (readFile(page) != before) return QStringLiteral("it is another one");
    if (myWindow->outline().current() != myWindow->pane().entry()) return QStringLiteral("another note is selected");
    openEntry(*myWindow, QStringLiteral("letters/neighbours.note"));
    return myWindow->pane().editor().toPlainText().startsWith(QStringLiteral("Hello! ")) ? QString() : myWindow->told();
  });
}

void Walkthrough::loseFile() {
  step("shows nothing any more when a note vanishes", [this]() -> Outcome {
    openEntry(*myWindow, QStringLiteral("shared-1.txt"));
    QFile::remove(myFolder + QStringLiteral("/shared-1.txt"));
    if (!waitUntil([this] { return !myWindow->pane().entry(); })) return QStringLiteral("it is still shown");
    return myWindow->told().contains(QStringLiteral("not there")) ? QString() : myWindow->told();
  });
}

void Walkthrough::stayUnsaved() {
  step("goes on showing what can't be saved", [this]() -> Outcome {
    const QString letters = myFolder + QStringLiteral("/letters");
    const QString away = myPictures + QStringLiteral("/away");
    openEntry(*myWindow, QStringLiteral("letters/landlord.txt"));
    type(myWindow->pane().editor(), QStringLiteral("kept "));
    QDir(away).removeRecursively();
    QDir().rename(letters, away);
    openEntry(*myWindow, QStringLiteral("shared.txt"));
    waitUntil([] { return false; }, 20);
    const bool isShown = myWindow->pane().editor().toPlainText().startsWith(QStringLiteral("kept "));
    const bool isSelected = myWindow->outline().current() == myWindow->pane().entry();
    bool wasAsked = false;
    QTimer answering;
    QObject::connect(&answering, &QTimer::timeout, [&] {
      auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
      if (!box) return;
      wasAsked = true;
      box->button(QMessageBox::Cancel)->click();
    });
    answering.start(10);
    const bool isClosed = myWindow->close();
    QDir(letters).removeRecursively();
    QDir().rename(away, letters);
    if (isClosed || !wasAsked) return QStringLiteral("the window closes");
    if (!isShown || !isSelected) return QStringLiteral("another note is shown: ") + myWindow->told();
    choose(*myWindow, u"revertNote:");
    if (myWindow->pane().isChanged()) return QStringLiteral("it does not go back to the file");
    openEntry(*myWindow, QStringLiteral("shared.txt"));
    return myWindow->pane().editor().toPlainText().endsWith(QStringLiteral("theirs\n")) ? QString() : myWindow->told();
  });
}

void Walkthrough::meetLink() {
  step("leaves out links to folders", [this]() -> Outcome {
    QFile::link(myFolder + QStringLiteral("/letters"), myFolder + QStringLiteral("/linked"));
    myWindow->notebooks().refresh();
    const bool isShown = myWindow->notebooks().entryAtPath(myWindow->notebooks().folder() + u"/linked") != nullptr;
    QFile::remove(myFolder + QStringLiteral("/linked"));
    return isShown ? QStringLiteral("it is shown, with nothing in it") : QString();
  });
}

void Walkthrough::meetBrokenNote() {
  step("names a broken note, and goes on", [this]() -> Outcome {
    writeFile(myFolder + QStringLiteral("/broken.note"), "KelvArc\x01 and then nonsense");
    myWindow->notebooks().refresh();
    openEntry(*myWindow, QStringLiteral("broken.note"));
    if (myWindow->pane().text() || !myWindow->told().contains(QStringLiteral("broken"))) return myWindow->told();
    openEntry(*myWindow, QStringLiteral("letters/landlord.txt"));
    return myWindow->pane().text() ? QString() : QStringLiteral("the next note is not shown");
  });
}

void Walkthrough::loseFolder() {
  step("keeps what was written when the folder vanishes", [this]() -> Outcome {
    openEntry(*myWindow, QStringLiteral("shared.txt"));
    type(myWindow->pane().editor(), QStringLiteral("kept "));
    const QString away = myPictures + QStringLiteral("/away");
    QDir(away).removeRecursively();
    QDir().rename(myFolder, away);
    const bool wasSaved = myWindow->pane().save();
    const QString told = myWindow->told();
    QDir(myFolder).removeRecursively();
    QDir().rename(away, myFolder);
    if (wasSaved || !told.contains(QStringLiteral("kept here"))) return QStringLiteral("it says \"%1\"").arg(told);
    return myWindow->pane().save() ? QString() : QStringLiteral("it is not saved afterwards: ") + myWindow->told();
  });
}

}  // namespace notebook
