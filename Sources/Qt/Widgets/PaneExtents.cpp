#include "Qt/Widgets/PaneExtents.h"

#include <QEvent>
#include <algorithm>
#include <utility>

namespace kelvane {

PaneExtents::PaneExtents(QSplitter& splitter) : QObject(&splitter), mySplitter(splitter) {
  splitter.installEventFilter(this);
  connect(&splitter, &QSplitter::splitterMoved, this, [this] { forgetWanted(); });
  watchPanes();
}

void PaneExtents::watchPanes() {
  const auto isGone = [this](const auto& entry) { return mySplitter.indexOf(const_cast<QWidget*>(entry.first)) < 0; };
  std::erase_if(myWanted, isGone);
  std::erase_if(myKept, isGone);
  for (int i = 0; i < mySplitter.count(); ++i) {
    // Installing twice is installing once.
    mySplitter.widget(i)->installEventFilter(this);
    keep(*mySplitter.widget(i));
  }
}

int PaneExtents::extentOf(QWidget& pane) const {
  const int size = mySplitter.sizes().value(mySplitter.indexOf(&pane));
  const bool isOpen = size > 0 && !pane.isHidden();
  if (const auto wanted = extentIn(myWanted, &pane); wanted && !(isOpen && mySplitter.isVisible())) return *wanted;
  return isOpen ? size : extentIn(myKept, &pane).value_or(size);
}

void PaneExtents::want(QWidget& pane, int extent) {
  // What was wanted before the host or the user had panes laid out otherwise counts no more.
  if (mySplitter.isVisible() && mySplitter.sizes() != myApplied) forgetWanted();
  watchPanes();
  myWanted[&pane] = extent;
  apply();
}

bool PaneExtents::eventFilter(QObject* watched, QEvent* event) {
  const bool isPane = watched != &mySplitter;
  switch (event->type()) {
    case QEvent::Resize:
      if (isPane)
        keep(*static_cast<QWidget*>(watched));
      else if (myHasRoom)
        forgetWanted();
      else
        applySoon();
      break;
    case QEvent::Show:
      applySoon();
      break;
    case QEvent::ChildAdded:
    case QEvent::ChildRemoved:
      // The splitter has yet to hear of it.
      if (!isPane) QMetaObject::invokeMethod(this, &PaneExtents::watchPanes, Qt::QueuedConnection);
      break;
    default:
      break;
  }
  return false;
}

void PaneExtents::keep(const QWidget& pane) {
  const int size = mySplitter.sizes().value(mySplitter.indexOf(const_cast<QWidget*>(&pane)));
  if (size > 0 && !pane.isHidden()) myKept[&pane] = size;
}

// At once, so that nothing is seen of it; and once more when the splitter has done its own part.
void PaneExtents::applySoon() {
  if (myWanted.empty()) return;
  apply();
  if (std::exchange(myIsToApply, true)) return;
  QMetaObject::invokeMethod(
      this,
      [this] {
        myIsToApply = false;
        apply();
      },
      Qt::QueuedConnection);
}

void PaneExtents::apply() {
  if (myWanted.empty()) return;
  mySplitter.setSizes(sizesToSet());
  myApplied = mySplitter.sizes();
  myHasRoom = mySplitter.isVisible();
  for (int i = 0; i < mySplitter.count(); ++i) {
    QWidget* const pane = mySplitter.widget(i);
    const auto wanted = extentIn(myWanted, pane);
    if (wanted && (pane->isHidden() || myApplied[i] != *wanted)) myHasRoom = false;
  }
}

void PaneExtents::forgetWanted() {
  myWanted.clear();
  myHasRoom = false;
}

// The wanted ones, and the rest of the room for the others, in proportion to what they have.
QList<int> PaneExtents::sizesToSet() const {
  QList<int> current = mySplitter.sizes();
  QList<int> sizes = current;
  // Panes without an extent are collapsed, unless none has been laid out yet.
  if (std::ranges::all_of(current, [](int size) { return size == 0; })) current.fill(1);
  int rest = room();
  int others = 0;
  for (int i = 0; i < sizes.size(); ++i) {
    QWidget* const pane = mySplitter.widget(i);
    const auto wanted = extentIn(myWanted, pane);
    if (wanted) sizes[i] = *wanted;
    if (!wanted && pane->isHidden()) sizes[i] = extentIn(myKept, pane).value_or(0);
    if (wanted && !pane->isHidden()) rest -= *wanted;
    if (!wanted && !pane->isHidden()) others += current[i];
  }
  for (int i = 0; i < sizes.size(); ++i) {
    QWidget* const pane = mySplitter.widget(i);
    if (extentIn(myWanted, pane) || pane->isHidden() || current[i] == 0) continue;
    // The last one takes what the division leaves.
    sizes[i] = std::max(1, others == current[i] ? rest : static_cast<int>(qint64(rest) * current[i] / others));
    rest -= sizes[i];
    others -= current[i];
  }
  return sizes;
}

int PaneExtents::room() const {
  const QSize size = mySplitter.contentsRect().size();
  int room = mySplitter.orientation() == Qt::Horizontal ? size.width() : size.height();
  bool isFirst = true;
  for (int i = 0; i < mySplitter.count(); ++i) {
    if (mySplitter.widget(i)->isHidden()) continue;
    if (!std::exchange(isFirst, false)) room -= mySplitter.handleWidth();
  }
  return room;
}

std::optional<int> PaneExtents::extentIn(const Extents& extents, const QWidget* pane) {
  const auto found = extents.find(pane);
  return found != extents.end() ? std::optional(found->second) : std::nullopt;
}

}  // namespace kelvane
