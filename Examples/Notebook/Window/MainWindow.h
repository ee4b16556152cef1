#pragma once

#include <QFileSystemWatcher>
#include <QMainWindow>
#include <QSet>
#include <QTimer>
#include <optional>

#include "Model/Notebooks.h"
#include "Window/MainMenu.h"
#include "Window/Preferences.h"

class QLabel;
class QLineEdit;
class QSplitter;
class QStackedWidget;

namespace notebook {

class NotePane;
class Outline;
class Search;

// The application's window: the outline of notes beside the one that is read and written. Main thread only.
class MainWindow : public QMainWindow {
  Q_OBJECT

 public:
  explicit MainWindow(kelvane::Text folder);
  ~MainWindow() override;

  // Reads the folder; nothing when all is well, else one sentence.
  std::optional<kelvane::Text> load();

  Notebooks& notebooks() { return myNotebooks; }
  Outline& outline() { return *myOutline; }
  Outline& results() { return *myResults; }
  NotePane& pane() { return *myPane; }
  Search& search() { return *mySearch; }
  QLineEdit& searchField() { return *mySearchField; }
  kelvane::NSMenu& menu() { return *myMenu; }
  QString told() const;

  // Writes the current note's first page as a JPEG file; one sentence when that is not possible.
  std::optional<kelvane::Text> writePage(const QString& path);
  // Moves the selected entries into the folder; nil is the outermost.
  void move(const kelvane::Ref<Entry>& folder);

 public Q_SLOTS:
  void tell(const QString& sentence);

 protected:
  void closeEvent(QCloseEvent* event) override;

 private:
  Commands commands();
  void addFileCommands(Commands& commands);
  void addEditCommands(Commands& commands);
  void addFormatCommands(Commands& commands);
  void addViewCommands(Commands& commands);
  void addHelpCommands(Commands& commands);
  void buildToolbar();
  void buildBody();
  void connectParts();
  void restorePlaces();
  void savePlaces();
  void applyPreferences();
  Outline& list();
  void showCurrent();
  void showTitle();
  void returnToShown();
  void showWords();
  void watchFolders();
  void followFolders();
  void tellFailure(const std::optional<kelvane::Text>& failure);

  void addNote();
  void addFolder();
  void importNote();
  void exportNote();
  void exportPage();
  void moveToFolder();
  void moveToTrash();
  void setLink();
  std::optional<kelvane::Text> linkFromSite(kelvane::TextView key);
  bool mayCloseWithoutSaving();
  void openPage(std::int64_t number);

  Notebooks myNotebooks;
  kelvane::Ref<kelvane::NSMenu> myMenu;
  QSplitter* mySplitter;
  QStackedWidget* myLists;
  Outline* myOutline;
  Search* mySearch;
  Outline* myResults;
  NotePane* myPane;
  QLineEdit* mySearchField;
  QLabel* myCounts;
  QFileSystemWatcher myWatcher;
  // Folders in which something has happened since the last time that they were read.
  QSet<QString> myChangedFolders;
  QTimer myFollowing;
  std::unique_ptr<PreferenceFollower> myPreferences;
};

}  // namespace notebook
