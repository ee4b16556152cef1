#include <QApplication>
#include <QDir>
#include <QFile>
#include <algorithm>
#include <fstream>
#include <string>

#include "Walkthrough/Walkthrough.h"
#include "Window/MainWindow.h"
#include "Window/NoteEditor.h"
#include "Window/NotePane.h"
#include "Window/Outline.h"

namespace notebook {
namespace {

constexpr int manyNotes = 10'000;

// How much memory the program has in use, in MiB.
long memoryInUse() {
  std::ifstream status("/proc/self/status");
  for (std::string word; status >> word;)
    if (word == "VmRSS:") {
      long kibibytes = 0;
      status >> kibibytes;
      return kibibytes / 1024;
    }
  return 0;
}

void makeNotes(const QString& folder) {
  for (int number = 0; number < manyNotes; ++number) {
    const QString inner = folder + QStringLiteral("/%1").arg(number / 100, 3, 10, QLatin1Char('0'));
    if (number % 100 == 0) QDir().mkpath(inner);
    QFile file(inner + QStringLiteral("/note %1.txt").arg(number));
    if (file.open(QFile::WriteOnly)) file.write("The note of that number.\n");
  }
}

}  // namespace

void Walkthrough::openManyNotes() {
  const QString folder = myPictures + QStringLiteral("/many");
  if (!QDir(folder).exists()) makeNotes(folder);
  step("opens a folder of 10,000 notes", [&]() -> Outcome {
    const long before = memoryInUse();
    QElapsedTimer clock;
    clock.start();
    openWindow(folder);
    myWindow->repaint();
    const qint64 shown = clock.elapsed();
    myWindow->outline().expandAll();
    QApplication::processEvents();
    const qint64 expanded = clock.restart();
    myWindow->notebooks().refresh();
    std::printf(
        "        first picture after %lld ms, all expanded after %lld ms, read again in %lld ms, %ld MiB more in use\n",
        shown, expanded, clock.elapsed(), memoryInUse() - before);
    takePicture(*myWindow, QStringLiteral("13-many"));
    const std::size_t notes = myWindow->notebooks().notes().size();
    return notes == manyNotes ? QString() : QStringLiteral("it has %1").arg(notes);
  });
}

void Walkthrough::typeInLargeNote() {
  step("types in a note of 1 MiB", [this]() -> Outcome {
    QFile file(myFolder + QStringLiteral("/large.txt"));
    if (file.open(QFile::WriteOnly))
      for (int line = 0; line < 16'384; ++line)
        file.write("All work and no play makes a long note, line by line, so long.\n");
    file.close();
    openWindow(myFolder);
    QElapsedTimer clock;
    clock.start();
    openEntry(*myWindow, QStringLiteral("large.txt"));
    const qint64 opened = clock.restart();
    NoteEditor& editor = myWindow->pane().editor();
    editor.moveCursor(QTextCursor::End);
    QApplication::processEvents();
    qint64 longest = 0;
    for (int key = 0; key < 100; ++key) {
      clock.restart();
      type(editor, QStringLiteral("x"));
      longest = std::max(longest, clock.elapsed());
    }
    clock.restart();
    choose(*myWindow, u"zoomIn:");
    std::printf("        opened in %lld ms, longest step of typing %lld ms, zoomed in %lld ms\n", opened, longest,
                clock.elapsed());
    const std::size_t length = myWindow->pane().text()->length();
    return length == 16'384 * 63 + 100 ? QString() : QStringLiteral("it has %1 characters").arg(length);
  });
}

}  // namespace notebook
