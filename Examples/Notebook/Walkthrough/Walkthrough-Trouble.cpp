#include <QDir>
#include <QFile>

#include "Walkthrough/Walkthrough.h"
#include "Window/MainWindow.h"
#include "Window/NoteEditor.h"
#include "Window/NotePane.h"
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
