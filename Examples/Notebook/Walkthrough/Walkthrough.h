#pragma once

#include <QElapsedTimer>
#include <QString>
#include <functional>
#include <memory>
#include <string>

#include "Application/WebSite.h"
#include "Platform/Foundation/Text.h"

class QWidget;

namespace notebook {

class MainWindow;

// A minute of use without a user: does with the window what one would, checks what comes of it, and takes pictures. It
// works on folders of its own, and prints a line for each step, with the time that it took. Main thread only.
class Walkthrough {
 public:
  // `sample` are the documents that a copy is made of; pictures go into `pictures`, which is made. `sinceStart` has run
  // since the program began.
  Walkthrough(QString sample, QString pictures, const QElapsedTimer& sinceStart);
  ~Walkthrough();
  Walkthrough(const Walkthrough&) = delete;
  Walkthrough& operator=(const Walkthrough&) = delete;

  // Whether all steps had the outcome that they should.
  bool run();

 private:
  // A step says what went otherwise; nothing when all went well.
  using Outcome = QString;

  void step(const char* name, const std::function<Outcome()>& work);
  void takePicture(QWidget& widget, const QString& name);
  void openWindow(const QString& folder);

  // What a user does: Walkthrough-Notes.cpp.
  void showOutline();
  void writeNote();
  void writeInOtherScripts();
  void readTable();
  void exchangeFormats();
  void zoom();
  void changeSizes();
  void search();
  void dragSeveral();
  void moveToTrash();
  void makePage();

  // What goes beyond one note: Walkthrough-Application.cpp.
  void followLinks();
  void sendFeedback();
  void changePreferences();
  void keepPlaces();
  void showFatalAlert();

  // What goes wrong: Walkthrough-Trouble.cpp.
  void meetAnotherProgram();
  void goOnBeside();
  void loseFile();
  void loseFolder();
  void stayUnsaved();
  void meetLink();
  void meetBrokenNote();

  // How long things take: Walkthrough-Figures.cpp.
  void openManyNotes();
  void typeInLargeNote();

  QString mySample;
  QString myPictures;
  QString myFolder;
  QElapsedTimer mySinceStart;
  std::unique_ptr<WebSite> mySite;
  std::unique_ptr<MainWindow> myWindow;
  int myFailures = 0;
};

// For steps: lets the application do all that is waiting to be done, and whatever comes within that time until
// `isDone`. Whether it was done.
bool waitUntil(const std::function<bool()>& isDone, int milliseconds = 10'000);
// Types the text into the widget, key by key.
void type(QWidget& widget, const QString& text);
// Has the item of the menu with that action do its work, as if it had been chosen.
void choose(MainWindow& window, kelvane::TextView action);
// Shows the note, or the table, of that file below the window's folder.
void openEntry(MainWindow& window, const QString& name);

}  // namespace notebook
