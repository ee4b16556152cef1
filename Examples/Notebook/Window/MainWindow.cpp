#include "Window/MainWindow.h"

#include <QApplication>
#include <QCloseEvent>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QSplitter>
#include <QStackedWidget>
#include <QStatusBar>
#include <QToolBar>
#include <algorithm>
#include <cmath>

#include "Extensions/NSMenu-QNExtensions.h"
#include "Extensions/NSSplitView-QNExtensions.h"
#include "Extensions/NSString-QNExtensions.h"
#include "Extensions/NSUserDefaultsController-OSCompatibility.h"
#include "Extensions/NSWindow-QNExtensions.h"
#include "Platform/Foundation/Format.h"
#include "Platform/Foundation/TextEncoding.h"
#include "Qt/QtDesktop.h"
#include "Qt/QtMenus.h"
#include "Utilities/QNEnvironment.h"
#include "Utilities/QNLogger.h"
#include "Window/NoteEditor.h"
#include "Window/NotePane.h"
#include "Window/Outline.h"
#include "Window/QtText.h"
#include "Window/Search.h"
#include "Window/Theme.h"

namespace notebook {
namespace {

using kelvane::Ref;
using kelvane::Text;
using kelvane::TextView;

constexpr TextView frameKey = u"mainWindow";
constexpr TextView dividerKey = u"mainDivider";
// In milliseconds: after a change of a folder, and while the outermost is away.
constexpr int followingDelay = 300;
constexpr int absentDelay = 3000;

constexpr int mostFoldersWatched = 512;
constexpr kelvane::CGSize usualSize{980, 640};

Text pathFrom(const QString& path) { return kelvane::textFromFileSystem(QFile::encodeName(path).toStdString()); }
QString pathOf(const Text& path) { return QFile::decodeName(kelvane::fileSystemRepresentation(path).c_str()); }

}  // namespace

MainWindow::MainWindow(Text folder)
    : myNotebooks(std::move(folder)),
      mySplitter(new QSplitter(this)),
      myLists(new QStackedWidget(this)),
      myOutline(new Outline(myNotebooks.controller(), myLists)),
      mySearch(new Search(myNotebooks, this)),
      myResults(new Outline(mySearch->results(), myLists)),
      myPane(new NotePane(this)),
      mySearchField(new QLineEdit(this)),
      myCounts(new QLabel(this)) {
  setWindowTitle(tr("Notebook"));
  setObjectName(QStringLiteral("main"));
  myMenu = mainMenu(commands());
  kelvane::attachMenu(*menuBar(), myMenu);
  buildToolbar();
  buildBody();
  connectParts();
  restorePlaces();
  applyPreferences();
  myPreferences = std::make_unique<PreferenceFollower>([this] { applyPreferences(); });
}

MainWindow::~MainWindow() = default;

void MainWindow::buildToolbar() {
  auto* bar = addToolBar(tr("Tools"));
  bar->setObjectName(QStringLiteral("tools"));
  bar->setMovable(false);
  bar->setToolButtonStyle(Qt::ToolButtonTextOnly);
  for (const TextView action : {u"newNote:", u"moveToTrash:", u"", u"bold:", u"italic:", u"underline:", u"",
                                u"smaller:", u"bigger:", u"", u"zoomOut:", u"zoomIn:"}) {
    const auto item = itemWithAction(*myMenu, kelvane::SEL(action));
    if (action.empty() || !item)
      bar->addSeparator();
    else
      bar->addAction(kelvane::actionFor(*item));
  }
  auto* space = new QWidget(bar);
  space->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
  bar->addWidget(space);
  mySearchField->setPlaceholderText(tr("Search notes"));
  mySearchField->setAccessibleName(tr("Search notes"));
  mySearchField->setClearButtonEnabled(true);
  mySearchField->setMaximumWidth(240);
  bar->addWidget(mySearchField);
}

void MainWindow::buildBody() {
  myLists->addWidget(myOutline);
  myLists->addWidget(myResults);
  myResults->setAccessibleName(tr("Notes found"));
  myLists->setMinimumWidth(120);
  mySplitter->addWidget(myLists);
  mySplitter->addWidget(myPane);
  mySplitter->setStretchFactor(1, 1);
  mySplitter->setChildrenCollapsible(false);
  mySplitter->setSizes({260, 720});
  setCentralWidget(mySplitter);
  statusBar()->addPermanentWidget(myCounts);
}

void MainWindow::connectParts() {
  connect(myOutline, &Outline::currentEntryChanged, this, &MainWindow::showCurrent);
  connect(myResults, &Outline::currentEntryChanged, this, &MainWindow::showCurrent);
  connect(myOutline, &Outline::dropped, this, &MainWindow::move);
  connect(myPane, &NotePane::told, this, &MainWindow::tell);
  connect(myPane, &NotePane::changed, this, [this] {
    setWindowModified(myPane->isChanged());
    showWords();
  });
  connect(myPane, &NotePane::savedBeside, this, [this](const QString& path) {
    tellFailure(myNotebooks.refresh());
    const Ref<Entry> entry = myNotebooks.entryAtPath(fromQt(path));
    if (!entry) return;
    // The writer goes on in the new file, unless another one has just been chosen.
    const bool isCurrent = list().current() == myPane->entry();
    myPane->adopt(entry);
    if (isCurrent) myOutline->select(entry);
    showTitle();
  });
  connect(mySearchField, &QLineEdit::textChanged, this, [this](const QString& words) {
    mySearch->start(words);
    myLists->setCurrentWidget(words.trimmed().isEmpty() ? myOutline : myResults);
    returnToShown();
  });
  for (const Outline* outline : {myOutline, myResults})
    connect(outline->model(), &QAbstractItemModel::dataChanged, this, &MainWindow::showTitle);
  connect(mySearch, &Search::ended, this,
          [this](int found) { tell(found == 1 ? tr("1 note found") : tr("%L1 notes found").arg(found)); });
  myNotebooks.setTelling([this](const Text& sentence) { tell(toQt(sentence)); });
  myFollowing.setSingleShot(true);
  connect(&myWatcher, &QFileSystemWatcher::directoryChanged, this, [this](const QString& folder) {
    myChangedFolders.insert(folder);
    myFollowing.start(followingDelay);
  });
  connect(&myFollowing, &QTimer::timeout, this, &MainWindow::followFolders);
}

std::optional<Text> MainWindow::load() {
  auto failure = myNotebooks.refresh();
  if (failure) return failure;
  watchFolders();
  myOutline->expandToDepth(0);
  showWords();
  return std::nullopt;
}

void MainWindow::watchFolders() {
  QStringList folders;
  for (const Text& path : myNotebooks.folders()) folders.push_back(pathOf(path));
  // The system has only so many watches to give away.
  if (folders.size() > mostFoldersWatched) folders.resize(mostFoldersWatched);
  // Only what has changed: nothing is heard of a folder between an end and a new beginning.
  const QStringList watched = myWatcher.directories();
  const QSet<QString> before(watched.begin(), watched.end());
  const QSet<QString> now(folders.begin(), folders.end());
  const QStringList gone = (before - now).values();
  const QStringList added = (now - before).values();
  if (!gone.isEmpty()) myWatcher.removePaths(gone);
  if (!added.isEmpty()) myWatcher.addPaths(added);
}

void MainWindow::followFolders() {
  // Saving a note changes its folder, and nothing that the outline shows.
  const bool isOutdated = std::ranges::any_of(
      myChangedFolders, [this](const QString& folder) { return myNotebooks.isOutdated(pathFrom(folder)); });
  if (const auto failure = isOutdated ? myNotebooks.refresh() : std::nullopt) {
    // Nobody tells when the folder is back.
    myFollowing.start(absentDelay);
    if (told() != toQt(*failure)) tellFailure(failure);
    return;
  }
  myChangedFolders.clear();
  if (isOutdated) {
    watchFolders();
    mySearch->leaveOutMissing();
  }
  if (const Ref<Entry> shown = myPane->entry()) myPane->follow(myNotebooks.entryAtPath(shown->path()));
  showTitle();
  showWords();
}

void MainWindow::restorePlaces() {
  loadFrameFromUserDefaultsForKey(*kelvane::windowFor(*this), frameKey, true, kelvane::NSWindowExtensions::goldenMiddle,
                                  true, usualSize, false);
  loadDividerPosition(*kelvane::splitViewFor(*mySplitter), dividerKey);
}

void MainWindow::savePlaces() {
  saveFrameToUserDefaultsForKey(*kelvane::windowFor(*this), frameKey, true);
  saveDividerPosition(*kelvane::splitViewFor(*mySplitter), dividerKey);
  auto& preferences = kelvane::NSUserDefaultsControllerExtensions::standardUserDefaults();
  Ref<kelvane::NSError> error;
  if (!preferences.save(nullptr, &error))
    kelvane::QNLogger::sharedLogger().error(
        __LINE__, __FILE__, __func__,
        kelvane::format(u"Can't save the preferences: %@", error->localizedDescription()));
}

void MainWindow::closeEvent(QCloseEvent* event) {
  if (!myPane->save() && !mayCloseWithoutSaving()) {
    event->ignore();
    return;
  }
  savePlaces();
  event->accept();
}

void MainWindow::applyPreferences() {
  setTheme(*qApp, prefersDarkTheme());
  myPane->setZoom(preferredZoom());
  myPane->editor().setZoomOfTyping(preferredZoom());
  const TextView title = prefersDarkTheme() ? TextView(u"Use Light Theme") : TextView(u"Use Dark Theme");
  changeItemTitle(*myMenu, title, kelvane::SEL(u"toggleTheme:"));
  if (const auto site = preferredSite()) kelvane::QNEnvironment::sharedEnvironment().setSitemapServer(*site);
  kelvane::QNLogger::sharedLogger().setLogLevel(static_cast<std::uint32_t>(
      integerForKey(kelvane::NSUserDefaultsControllerExtensions::standardUserDefaults(), logLevelKey)));
}

Outline& MainWindow::list() { return *static_cast<Outline*>(myLists->currentWidget()); }

void MainWindow::showCurrent() {
  // What cannot be saved goes on being shown; the list is told when it has done with choosing another.
  if (!myPane->show(list().current())) QTimer::singleShot(0, this, &MainWindow::returnToShown);
  showTitle();
  showWords();
}

// So that what is selected is what is shown, and commands are about that.
void MainWindow::returnToShown() {
  const Ref<Entry> shown = myPane->entry();
  if (shown && list().current() != shown) list().select(shown);
}

void MainWindow::showTitle() {
  setWindowTitle(myPane->entry() ? tr("%1[*] – Notebook").arg(toQt(myPane->entry()->title())) : tr("Notebook"));
}

void MainWindow::showWords() {
  const auto& text = myPane->text();
  const QString note = text ? tr("%L1 characters").arg(text->length()) : QString();
  myCounts->setText(note);
}

QString MainWindow::told() const { return statusBar()->currentMessage(); }

void MainWindow::tell(const QString& sentence) { statusBar()->showMessage(sentence); }

void MainWindow::tellFailure(const std::optional<Text>& failure) {
  if (!failure) return;
  kelvane::QNLogger::sharedLogger().warn(__LINE__, __FILE__, __func__, *failure);
  tell(toQt(*failure));
}

void MainWindow::move(const Ref<Entry>& folder) {
  if (!myPane->save()) return;
  const std::vector<Ref<Entry>> entries = list().selected();
  const auto failure = myNotebooks.move(entries, folder.get());
  list().select(entries);
  tellFailure(failure);
}

}  // namespace notebook
