#pragma once

#include <QTreeView>
#include <functional>
#include <vector>

#include "Model/Entry.h"
#include "Platform/Desktop/NSTreeController.h"

namespace notebook {

// The tree of notes. Notes are dragged within it, several at a time, with a badge that says how many, and out of it as
// files. Main thread only.
class Outline : public QTreeView {
  Q_OBJECT

 public:
  // Shows the controller's content; titles can be edited.
  explicit Outline(const kelvane::Ref<kelvane::NSTreeController>& controller, QWidget* parent = nullptr);

  // Those that are selected, in the order of the outline; the current one is the last that was clicked or reached.
  std::vector<kelvane::Ref<Entry>> selected() const;
  kelvane::Ref<Entry> current() const;
  // Selects the entry, or several, and shows the first. Nil changes nothing.
  void select(const kelvane::Ref<Entry>& entry);
  void select(const std::vector<kelvane::Ref<Entry>>& entries);
  // The picture that goes along with what is dragged.
  QPixmap dragPicture(const std::vector<kelvane::Ref<Entry>>& entries) const;

 Q_SIGNALS:
  void currentEntryChanged();
  // The selected entries are to go into the folder; nil is the outermost.
  void dropped(const kelvane::Ref<Entry>& folder);

 protected:
  void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dragMoveEvent(QDragMoveEvent* event) override;
  void dropEvent(QDropEvent* event) override;

 private:
  void drag();
  bool takes(const QDropEvent& event) const;

  kelvane::Ref<kelvane::NSTreeController> myController;
  QPoint myPressed;
};

}  // namespace notebook
