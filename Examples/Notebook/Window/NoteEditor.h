#pragma once

#include <QColor>
#include <QTextEdit>

namespace notebook {

// The widget in which a note is written. Its styles are those that a note's files keep: bold, italic, underline, size,
// colour and links; whatever is pasted comes as these. Main thread only.
class NoteEditor : public QTextEdit {
  Q_OBJECT

 public:
  explicit NoteEditor(QWidget* parent = nullptr);

  // Whether the note's file keeps styles. Where it does not, none can be given.
  bool areStylesKept() const { return myAreStylesKept; }
  void setStylesKept(bool areKept);

  // Whether the note can be changed; otherwise it can be read and copied.
  void setEditable(bool isEditable);

  // For the selection, or for what is typed next.
  void setBold(bool isBold);
  void setItalic(bool isItalic);
  void setUnderlined(bool isUnderlined);
  // By so many points, each stretch of the selection by itself.
  void changeSize(double points);
  void setColor(const QColor& color);
  // A link to the address on the selection, or on the address itself where nothing is selected; an empty one takes the
  // link away.
  void setLink(const QString& address);
  QString link() const { return currentCharFormat().anchorHref(); }

  // Selects the next place, behind the cursor and then from the start, where the words are; false when there is none.
  bool findWords(const QString& words);

  // How many times as large as in the note the text is shown.
  void setZoomOfTyping(double zoom) { myZoom = zoom; }

 protected:
  QMimeData* createMimeDataFromSelection() const override;
  bool canInsertFromMimeData(const QMimeData* source) const override;
  void insertFromMimeData(const QMimeData* source) override;

 private:
  void merge(const QTextCharFormat& format);

  bool myAreStylesKept = true;
  double myZoom = 1;
};

}  // namespace notebook
