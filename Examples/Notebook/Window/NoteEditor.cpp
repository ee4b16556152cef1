#include "Window/NoteEditor.h"

#include <QMimeData>
#include <QTextBlock>
#include <QTextDocumentFragment>
#include <algorithm>

#include "Extensions/NSAttributedString-QNExtensions.h"
#include "Platform/Foundation/NSArchiver.h"
#include "Platform/Foundation/NSAttributedString.h"
#include "Platform/Foundation/TextEncoding.h"
#include "Window/QtText.h"
#include "Window/Styles.h"

namespace notebook {
namespace {

using kelvane::NSAttributedString;
using kelvane::Ref;

const QString noteType = QStringLiteral("application/x-kelvane-note");

// The selected text with the styles that notes have.
Ref<NSAttributedString> styledSelection(const QTextCursor& selection, double zoom) {
  kelvane::NSMutableAttributedString text;
  const QTextDocument& document = *selection.document();
  for (QTextBlock block = document.findBlock(selection.selectionStart());
       block.isValid() && block.position() < selection.selectionEnd(); block = block.next()) {
    if (text.length() > 0) text.appendString(u"\n", nullptr);
    for (auto place = block.begin(); !place.atEnd(); ++place) {
      const QTextFragment fragment = place.fragment();
      const int from = std::max(fragment.position(), selection.selectionStart());
      const int to = std::min(fragment.position() + fragment.length(), selection.selectionEnd());
      if (from >= to) continue;
      const QString part = fragment.text().mid(from - fragment.position(), to - from);
      text.appendString(viewOf(part), attributesOf(fragment.charFormat(), zoom));
    }
  }
  return std::make_shared<NSAttributedString>(text);
}

QByteArray bytesOf(const kelvane::NSData& data) {
  const auto bytes = data.bytes();
  return QByteArray(reinterpret_cast<const char*>(bytes.data()), static_cast<qsizetype>(bytes.size()));
}

// The styled text that another note's window has copied; nil for anything else.
Ref<NSAttributedString> noteIn(const QMimeData& source) {
  const QByteArray bytes = source.data(noteType);
  if (bytes.isEmpty()) return nullptr;
  const std::span data(reinterpret_cast<const std::uint8_t*>(bytes.data()), static_cast<std::size_t>(bytes.size()));
  return kelvane::as<NSAttributedString>(kelvane::NSUnarchiver::unarchiveObjectWithData(data).object);
}

}  // namespace

NoteEditor::NoteEditor(QWidget* parent) : QTextEdit(parent) {
  setAccessibleName(tr("Note"));
  setTabChangesFocus(false);
  setFrameShape(NoFrame);
  document()->setDocumentMargin(28);
  // Links are written, not followed; a reading window is another thing.
  setTextInteractionFlags(Qt::TextEditorInteraction | Qt::LinksAccessibleByMouse);
}

void NoteEditor::setStylesKept(bool areKept) { myAreStylesKept = areKept; }

void NoteEditor::merge(const QTextCharFormat& format) {
  if (myAreStylesKept && !isReadOnly()) mergeCurrentCharFormat(format);
}

void NoteEditor::setBold(bool isBold) {
  QTextCharFormat format;
  format.setFontWeight(isBold ? QFont::Bold : QFont::Normal);
  merge(format);
}

void NoteEditor::setItalic(bool isItalic) {
  QTextCharFormat format;
  format.setFontItalic(isItalic);
  merge(format);
}

void NoteEditor::setUnderlined(bool isUnderlined) {
  QTextCharFormat format;
  format.setFontUnderline(isUnderlined);
  merge(format);
}

void NoteEditor::changeSize(double points) {
  constexpr double smallest = 4;
  constexpr double largest = 288;
  QTextCharFormat format;
  const double size = noteSize(currentCharFormat(), myZoom) + points;
  setNoteSize(format, std::clamp(size, smallest, largest), myZoom);
  merge(format);
}

void NoteEditor::setColor(const QColor& color) {
  QTextCharFormat format;
  format.setForeground(color);
  merge(format);
}

void NoteEditor::setLink(const QString& address) {
  QTextCharFormat format;
  format.setAnchor(!address.isEmpty());
  format.setAnchorHref(address);
  if (!address.isEmpty() && !textCursor().hasSelection()) {
    QTextCharFormat whole = currentCharFormat();
    whole.merge(format);
    if (myAreStylesKept && !isReadOnly()) textCursor().insertText(address, whole);
    return;
  }
  merge(format);
}

bool NoteEditor::findWords(const QString& words) {
  if (words.isEmpty()) return false;
  if (find(words)) return true;
  const QTextCursor before = textCursor();
  moveCursor(QTextCursor::Start);
  if (find(words)) return true;
  setTextCursor(before);
  return false;
}

QMimeData* NoteEditor::createMimeDataFromSelection() const {
  const Ref<NSAttributedString> text = styledSelection(textCursor(), myZoom);
  auto* copied = new QMimeData;
  copied->setText(toQt(text->string()));
  copied->setHtml(toQt(htmlString(*text)));
  const std::vector<std::uint8_t> document = rtf(*text);
  copied->setData(QStringLiteral("text/rtf"),
                  QByteArray(reinterpret_cast<const char*>(document.data()), static_cast<qsizetype>(document.size())));
  if (const auto archived = kelvane::NSArchiver::archivedDataWithRootObject(text); archived.data)
    copied->setData(noteType, bytesOf(*archived.data));
  return copied;
}

bool NoteEditor::canInsertFromMimeData(const QMimeData* source) const {
  return source->hasFormat(noteType) || source->hasText();
}

void NoteEditor::insertFromMimeData(const QMimeData* source) {
  QTextCursor cursor = textCursor();
  const Ref<NSAttributedString> note = myAreStylesKept ? noteIn(*source) : nullptr;
  cursor.beginEditBlock();
  if (note) {
    for (const kelvane::AttributeRun run : note->runs()) {
      QTextCharFormat format = formatOf(*run.attributes, nullptr);
      setNoteSize(format, noteSize(format, 1), myZoom);
      cursor.insertText(toQt(kelvane::TextView(note->string()).substr(run.range.location, run.range.length)), format);
    }
  } else {
    cursor.insertText(source->text(), currentCharFormat());
  }
  cursor.endEditBlock();
  setTextCursor(cursor);
  ensureCursorVisible();
}

}  // namespace notebook
