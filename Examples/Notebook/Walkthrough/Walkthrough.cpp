#include "Walkthrough/Walkthrough.h"

#include <QApplication>
#include <QDir>
#include <QDirIterator>
#include <QKeyEvent>
#include <QStandardPaths>
#include <QTimer>
#include <cstdio>

#include "Extensions/NSMenu-QNExtensions.h"
#include "Platform/Foundation/TextEncoding.h"
#include "Utilities/QNEnvironment.h"
#include "Window/MainWindow.h"
#include "Window/Outline.h"
#include "Window/QtText.h"

namespace notebook {
namespace {

void copyFolder(const QString& from, const QString& to) {
  QDirIterator files(from, QDir::Files, QDirIterator::Subdirectories);
  while (files.hasNext()) {
    const QString file = files.next();
    const QString copy = to + file.mid(from.size());
    QDir().mkpath(QFileInfo(copy).path());
    QFile::copy(file, copy);
    QFile::setPermissions(copy, QFile::ReadOwner | QFile::WriteOwner);
  }
}

}  // namespace

Walkthrough::Walkthrough(QString sample, QString pictures, const QElapsedTimer& sinceStart)
    : mySample(QDir(sample).absolutePath()),
      myPictures(QDir(pictures).absolutePath()),
      myFolder(myPictures + QStringLiteral("/folder")),
      mySinceStart(sinceStart),
      mySite(std::make_unique<WebSite>()) {
  QDir(myFolder).removeRecursively();
  QDir().mkpath(myPictures);
  copyFolder(mySample, myFolder);
  kelvane::QNEnvironment::sharedEnvironment().setSitemapServer(kelvane::textFromUTF8(mySite->host()));
}

Walkthrough::~Walkthrough() = default;

bool Walkthrough::run() {
  showOutline();
  writeNote();
  writeInOtherScripts();
  readTable();
  exchangeFormats();
  zoom();
  changeSizes();
  search();
  dragSeveral();
  makePage();
  moveToTrash();
  followLinks();
  sendFeedback();
  changePreferences();
  keepPlaces();
  showFatalAlert();
  meetAnotherProgram();
  goOnBeside();
  loseFile();
  meetLink();
  meetBrokenNote();
  loseFolder();
  stayUnsaved();
  openManyNotes();
  typeInLargeNote();
  myWindow.reset();
  std::printf("%s; the pictures are in %s\n", myFailures == 0 ? "All is well" : "Something is not as it should be",
              qUtf8Printable(myPictures));
  return myFailures == 0;
}

void Walkthrough::step(const char* name, const std::function<Outcome()>& work) {
  QElapsedTimer clock;
  clock.start();
  const Outcome outcome = work();
  std::printf("%-6s  %-52s %5lld ms\n", outcome.isEmpty() ? "ok" : "WRONG", name, clock.elapsed());
  if (!outcome.isEmpty()) {
    std::printf("        %s\n", qUtf8Printable(outcome));
    ++myFailures;
  }
  std::fflush(stdout);
}

void Walkthrough::takePicture(QWidget& widget, const QString& name) {
  waitUntil([] { return false; }, 50);
  widget.grab().save(myPictures + QLatin1Char('/') + name + QStringLiteral(".png"));
}

void Walkthrough::openWindow(const QString& folder) {
  myWindow.reset();
  myWindow = std::make_unique<MainWindow>(kelvane::textFromFileSystem(QFile::encodeName(folder).toStdString()));
  myWindow->load();
  myWindow->show();
  waitUntil([this] { return myWindow->isVisible(); });
}

bool waitUntil(const std::function<bool()>& isDone, int milliseconds) {
  QElapsedTimer clock;
  clock.start();
  while (!isDone()) {
    if (clock.elapsed() > milliseconds) return false;
    QApplication::processEvents(QEventLoop::AllEvents, 10);
  }
  return true;
}

void type(QWidget& widget, const QString& text) {
  for (const QChar unit : text) {
    const int key = unit == QLatin1Char('\n') ? int{Qt::Key_Return} : int{unit.toUpper().unicode()};
    const QString typed = unit == QLatin1Char('\n') ? QStringLiteral("\r") : QString(unit);
    QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier, typed);
    QKeyEvent release(QEvent::KeyRelease, key, Qt::NoModifier, typed);
    QApplication::sendEvent(&widget, &press);
    QApplication::sendEvent(&widget, &release);
  }
  QApplication::processEvents();
}

void choose(MainWindow& window, kelvane::TextView action) {
  const auto item = itemWithAction(window.menu(), kelvane::SEL(action));
  if (item) item->performAction();
  QApplication::processEvents();
}

void openEntry(MainWindow& window, const QString& name) {
  const kelvane::Text path = window.notebooks().folder() + u"/" + fromQt(name);
  window.outline().select(window.notebooks().entryAtPath(path));
  QApplication::processEvents();
}

}  // namespace notebook
