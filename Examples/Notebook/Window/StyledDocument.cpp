#include "Window/StyledDocument.h"

#include <QScopedValueRollback>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <algorithm>

#include "Extensions/NSTextStorage-QNExtensions.h"
#include "Window/QtText.h"
#include "Window/Styles.h"

namespace notebook {
namespace {

using kelvane::NSDictionary;
using kelvane::NSFont;
using kelvane::NSRange;
using kelvane::Ref;
using kelvane::TextView;

constexpr char16_t paragraphEnd = QChar::ParagraphSeparator;

// Without the separator behind the last paragraph, which is always there.
int lengthOf(const QTextDocument& document) { return document.characterCount() - 1; }

}  // namespace

StyledDocument::StyledDocument(QTextDocument& document) : myDocument(document) {
  connect(&document, &QTextDocument::contentsChange, this, &StyledDocument::follow);
}

void StyledDocument::setText(const Ref<kelvane::NSTextStorage>& text) {
  myText = text;
  show();
}

bool StyledDocument::isFaithful() const {
  if (!myText) return false;
  const QString raw = myDocument.toRawText();
  const auto isSame = [](char16_t inText, char16_t inDocument) {
    return inText == u'\n' ? inDocument == paragraphEnd : inText == inDocument && inText != paragraphEnd;
  };
  return std::ranges::equal(TextView(myText->string()), viewOf(raw), isSame);
}

void StyledDocument::setZoom(double zoom) {
  if (zoom == myZoom) return;
  myZoom = zoom;
  show();
}

void StyledDocument::show() {
  const QScopedValueRollback showing(myIsShowing, true);
  myDocument.setUndoRedoEnabled(false);
  myDocument.clear();
  myAttributes.clear();
  if (myText) {
    kelvane::NSTextStorage scaled(*myText);
    if (myZoom != 1) scaleAttributedStringUsingFactor(scaled, myZoom);
    const TextView text = myText->string();
    QTextCursor cursor(&myDocument);
    cursor.beginEditBlock();
    for (const kelvane::AttributeRun run : myText->runs()) {
      const auto font = kelvane::as<NSFont>(scaled.attribute(kelvane::NSFontAttributeName, run.range.location));
      cursor.insertText(toQt(text.substr(run.range.location, run.range.length)), formatOf(*run.attributes, font.get()));
    }
    cursor.endEditBlock();
  }
  // Nothing of this is to be undone.
  myDocument.setUndoRedoEnabled(true);
  myDocument.setModified(false);
}

void StyledDocument::follow(int position, int removed, int added) {
  if (myIsShowing || !myText) return;
  const auto length = static_cast<int>(myText->length());
  // Qt counts the separator at the end, too, where all of the document was replaced.
  const int from = std::min(position, length);
  const int taken = std::min(removed, length - from);
  const int given = lengthOf(myDocument) - (length - taken);
  if (given < 0 || from + given > lengthOf(myDocument) || given > added) {
    myText->setAttributedString(shown(0, lengthOf(myDocument)));
    Q_EMIT edited();
    return;
  }
  myText->replaceCharactersInRange({static_cast<std::size_t>(from), static_cast<std::size_t>(taken)},
                                   shown(from, given));
  Q_EMIT edited();
}

const Ref<NSDictionary>& StyledDocument::attributesOfFormat(int index) {
  Ref<NSDictionary>& attributes = myAttributes[index];
  if (!attributes) {
    const QTextFormat format = myDocument.allFormats().value(index);
    attributes = attributesOf(format.toCharFormat(), myZoom);
  }
  return attributes;
}

kelvane::NSAttributedString StyledDocument::shown(int from, int count) {
  kelvane::NSMutableAttributedString text;
  const int end = from + count;
  for (QTextBlock block = myDocument.findBlock(from); block.isValid() && block.position() < end; block = block.next()) {
    for (auto place = block.begin(); !place.atEnd(); ++place) {
      const QTextFragment fragment = place.fragment();
      const int first = std::max(fragment.position(), from);
      const int last = std::min(fragment.position() + fragment.length(), end);
      if (first >= last) continue;
      const QString whole = fragment.text();
      text.appendString(viewOf(whole).substr(static_cast<std::size_t>(first - fragment.position()),
                                             static_cast<std::size_t>(last - first)),
                        attributesOfFormat(fragment.charFormatIndex()));
    }
    const int separator = block.position() + block.length() - 1;
    // Qt keeps the format of a separator with the paragraph behind it.
    if (separator >= from && separator < end)
      text.appendString(u"\n", attributesOfFormat(block.next().charFormatIndex()));
  }
  return text;
}

}  // namespace notebook
