#include "Window/Outline.h"

#include <QApplication>
#include <QDrag>
#include <QFile>
#include <QHeaderView>
#include <QMimeData>
#include <QMouseEvent>
#include <QPainter>
#include <QStyle>
#include <QStyledItemDelegate>
#include <QUrl>
#include <algorithm>
#include <utility>

#include "Extensions/NSTreeController-QNExtensions.h"
#include "Graphics/QNBadgeImage.h"
#include "Platform/Foundation/TextEncoding.h"
#include "Qt/QtDesktop.h"
#include "Qt/QtOutlineView.h"
#include "Window/Pictures.h"
#include "Window/QtText.h"

namespace notebook {
namespace {

using kelvane::Ref;

// Under which entries are dragged within the outline.
const QString entriesType = QStringLiteral("application/x-kelvane-entries");

constexpr int rowHeight = 26;

Ref<Entry> entryAt(const QModelIndex& index) { return kelvane::as<Entry>(kelvane::modelObjectAt(index)); }

// The rows to go down through, from the top.
std::vector<int> wayTo(QModelIndex index) {
  std::vector<int> way;
  for (; index.isValid(); index = index.parent()) way.push_back(index.row());
  std::ranges::reverse(way);
  return way;
}

// Gives rows air, and a picture of what they stand for.
class RowPainter : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;

  QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override {
    const QSize size = QStyledItemDelegate::sizeHint(option, index);
    return {size.width(), std::max(size.height(), rowHeight)};
  }

 protected:
  void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override {
    QStyledItemDelegate::initStyleOption(option, index);
    const Ref<Entry> entry = entryAt(index);
    if (!entry) return;
    const QStyle* style = option->widget ? option->widget->style() : QApplication::style();
    option->icon = style->standardIcon(entry->isLeaf() ? QStyle::SP_FileIcon : QStyle::SP_DirIcon);
    option->features |= QStyleOptionViewItem::HasDecoration;
    option->decorationSize = QSize(16, 16);
  }
};

}  // namespace

Outline::Outline(const Ref<kelvane::NSTreeController>& controller, QWidget* parent)
    : QTreeView(parent), myController(controller) {
  setAccessibleName(tr("Notes"));
  setSelectionMode(ExtendedSelection);
  setEditTriggers(EditKeyPressed | SelectedClicked);
  setUniformRowHeights(true);
  setAcceptDrops(true);
  header()->hide();
  setFrameShape(NoFrame);
  setItemDelegate(new RowPainter(this));
  kelvane::bindOutlineView(*this, controller, {{.title = u"Title", .keyPath = u"title", .isEditable = true}});
}

std::vector<Ref<Entry>> Outline::selected() const {
  std::vector<std::pair<std::vector<int>, Ref<Entry>>> places;
  for (const QModelIndex& row : selectionModel()->selectedRows()) places.emplace_back(wayTo(row), entryAt(row));
  std::ranges::sort(
      places, {}, [](const auto& place) -> const auto& { return place.first; });
  std::vector<Ref<Entry>> entries;
  for (auto& [way, entry] : places) entries.push_back(std::move(entry));
  return entries;
}

Ref<Entry> Outline::current() const { return entryAt(currentIndex()); }

void Outline::select(const Ref<Entry>& entry) {
  if (entry) select(std::vector{entry});
}

void Outline::select(const std::vector<Ref<Entry>>& entries) {
  setSelectedObjects(*myController, std::make_shared<kelvane::NSArray>(
                                        std::vector<Ref<kelvane::NSObject>>(entries.begin(), entries.end())));
  const QModelIndexList rows = selectionModel()->selectedRows();
  if (rows.isEmpty()) return;
  selectionModel()->setCurrentIndex(rows.front(), QItemSelectionModel::NoUpdate);
  scrollTo(rows.front());
}

void Outline::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
  QTreeView::currentChanged(current, previous);
  Q_EMIT currentEntryChanged();
}

void Outline::mousePressEvent(QMouseEvent* event) {
  myPressed = event->position().toPoint();
  QTreeView::mousePressEvent(event);
}

void Outline::mouseMoveEvent(QMouseEvent* event) {
  const bool isFar = (event->position().toPoint() - myPressed).manhattanLength() >= QApplication::startDragDistance();
  const bool isOnEntry = indexAt(myPressed).isValid() && selectionModel()->isSelected(indexAt(myPressed));
  if ((event->buttons() & Qt::LeftButton) && isFar && isOnEntry) return drag();
  QTreeView::mouseMoveEvent(event);
}

QPixmap Outline::dragPicture(const std::vector<Ref<Entry>>& entries) const {
  const QString title = toQt(entries.front()->title());
  const QSize size = fontMetrics().size(Qt::TextSingleLine, title) + QSize(16, 8);
  QImage picture(size * devicePixelRatioF(), QImage::Format_ARGB32_Premultiplied);
  picture.setDevicePixelRatio(devicePixelRatioF());
  picture.fill(palette().color(QPalette::Highlight));
  QPainter painter(&picture);
  painter.setFont(font());
  painter.setPen(palette().color(QPalette::HighlightedText));
  painter.drawText(QRect(QPoint(), size), Qt::AlignCenter, title);
  painter.end();
  const Ref<kelvane::NSImage> base = imageOf(picture);
  if (entries.size() == 1) return pixmapOf(*base);
  const auto badged =
      kelvane::QNBadgeImage::dragImageWithBaseImage(base, static_cast<std::int64_t>(entries.size()), nullptr, nullptr);
  return pixmapOf(*badged);
}

void Outline::drag() {
  const std::vector<Ref<Entry>> entries = selected();
  if (entries.empty()) return;
  auto* dragged = new QMimeData;
  QList<QUrl> urls;
  for (const Ref<Entry>& entry : entries)
    urls.push_back(QUrl::fromLocalFile(QFile::decodeName(kelvane::fileSystemRepresentation(entry->path()).c_str())));
  dragged->setUrls(urls);
  dragged->setData(entriesType, QByteArray::number(static_cast<qulonglong>(entries.size())));
  auto* const dragging = new QDrag(this);
  dragging->setMimeData(dragged);
  dragging->setPixmap(dragPicture(entries));
  dragging->exec(Qt::MoveAction | Qt::CopyAction, Qt::MoveAction);
}

// What is dropped are the entries selected here: those of another window would be others.
bool Outline::takes(const QDropEvent& event) const {
  return event.source() == this && event.mimeData()->hasFormat(entriesType);
}

void Outline::dragEnterEvent(QDragEnterEvent* event) {
  if (takes(*event)) event->acceptProposedAction();
}

void Outline::dragMoveEvent(QDragMoveEvent* event) {
  if (takes(*event)) event->acceptProposedAction();
}

void Outline::dropEvent(QDropEvent* event) {
  if (!takes(*event)) return;
  event->acceptProposedAction();
  QModelIndex index = indexAt(event->position().toPoint());
  while (index.isValid() && entryAt(index)->isLeaf()) index = index.parent();
  Q_EMIT dropped(entryAt(index));
}

}  // namespace notebook
