#include "Window/NoteEditor.h"

#include <QMimeData>
#include <QTextBlock>
#include <QTextDocumentFragment>
#include <algorithm>
#include <span>
#include <utility>
#include <vector>

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

// Selected text of one format; a separator of paragraphs stands for itself.
struct Stretch {
  int from;
  int to;
  QTextCharFormat format;
  QString text;
};

std::vector<Stretch> stretchesOf(const QTextCursor& selection) {
  std::vector<Stretch> stretches;
  const QTextDocument& document = *selection.document();
  for (QTextBlock block = document.findBlock(selection.selectionStart());
       block.isValid() && block.position() < selection.selectionEnd(); block = block.next()) {
    for (auto place = block.begin(); !place.atEnd(); ++place) {
      const QTextFragment fragment = place.fragment();
      const int from = std::max(fragment.position(), selection.selectionStart());
      const int to = std::min(fragment.position() + fragment.length(), selection.selectionEnd());
      if (from >= to) continue;
      stretches.push_back(
          {from, to, fragment.charFormat(), fragment.text().mid(from - fragment.position(), to - from)});
    }
    const int separator = block.position() + block.length() - 1;
    // Qt keeps its format with the paragraph behind it.
    if (separator >= selection.selectionStart() && separator < selection.selectionEnd())
      stretches.push_back({separator, separator + 1, block.next().charFormat(), QStringLiteral("\n")});
  }
  return stretches;
}

// The selected text with the styles that notes have.
Ref<NSAttributedString> styledSelection(const QTextCursor& selection, double zoom) {
  kelvane::NSMutableAttributedString text;
  for (const Stretch& stretch : stretchesOf(selection))
    text.appendString(viewOf(stretch.text), attributesOf(stretch.format, zoom));
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
  setEditable(true);
}

void NoteEditor::setEditable(bool isEditable) {
  // What cannot be written can still be selected and copied, with the keyboard too. Qt's own switch leaves that out.
  const Qt::TextInteractionFlags reading = Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard;
  setTextInteractionFlags(isEditable ? Qt::TextEditorInteraction : reading);
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
  if (!myAreStylesKept || isReadOnly()) return;
  const auto formatFor = [&](const QTextCharFormat& now) {
    QTextCharFormat format;
    setNoteSize(format, std::clamp(noteSize(now, myZoom) + points, smallest, largest), myZoom);
    return format;
  };
  const QTextCursor selection = textCursor();
  if (!selection.hasSelection()) return merge(formatFor(currentCharFormat()));
  // Each stretch by itself, so that headings stay larger than what is below them.
  std::vector<std::pair<QTextCursor, QTextCharFormat>> changes;
  for (const Stretch& stretch : stretchesOf(selection)) {
    QTextCursor part(document());
    part.setPosition(stretch.from);
    part.setPosition(stretch.to, QTextCursor::KeepAnchor);
    changes.emplace_back(part, formatFor(stretch.format));
  }
  QTextCursor whole = selection;
  whole.beginEditBlock();
  for (auto& [part, format] : changes) part.mergeCharFormat(format);
  whole.endEditBlock();
}

void NoteEditor::setColor(const QColor& color) {
  QTextCharFormat format;
  // No colour is the one of text in the theme.
  format.setForeground(color == QColor(Qt::black) ? QBrush(Qt::NoBrush) : QBrush(color));
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
