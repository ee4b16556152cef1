#pragma once

#include <QList>
#include <QObject>
#include <QSplitter>
#include <optional>
#include <unordered_map>

namespace kelvane {

// How far each pane of a splitter reaches along it, and is to reach. A splitter lays all of its panes out again
// whenever one of them changes, or the window does; so what is wanted of panes is kept and applied together, again and
// again until there is room for it: when the splitter is shown, and when it is resized. It is forgotten as soon as the
// user moves a divider, or resizes what had come to its wanted extents.
//
// A hidden or collapsed pane keeps the extent that it had. Owned by the splitter.
class PaneExtents final : public QObject {
 public:
  explicit PaneExtents(QSplitter& splitter);

  // Of a pane of the splitter: its extent in whole units; in a splitter that is not shown yet the wanted one.
  int extentOf(QWidget& pane) const;
  // Opens a collapsed pane. A hidden one has the extent when it is shown.
  void want(QWidget& pane, int extent);

 private:
  using Extents = std::unordered_map<const QWidget*, int>;

  bool eventFilter(QObject* watched, QEvent* event) override;
  void watchPanes();
  void keep(const QWidget& pane);
  void applySoon();
  void apply();
  void forgetWanted();
  int room() const;
  QList<int> sizesToSet() const;
  static std::optional<int> extentIn(const Extents& extents, const QWidget* pane);

  QSplitter& mySplitter;
  Extents myWanted;
  // The latest of panes that were open.
  Extents myKept;
  // What came of the wanted ones.
  QList<int> myApplied;
  bool myHasRoom = false;
  bool myIsToApply = false;
};

}  // namespace kelvane
