#pragma once

#include <QHash>
#include <QObject>

#include "Platform/Foundation/NSAttributedString.h"

class QTextDocument;

namespace notebook {

// Shows styled text in a document of Qt's, to be edited there. What the user changes is changed in the text at once, at
// a price that goes with the change and not with the text. Main thread only.
class StyledDocument : public QObject {
  Q_OBJECT

 public:
  // The document belongs to its owner and outlives this.
  explicit StyledDocument(QTextDocument& document);

  // Shows the text from now on; nil shows nothing.
  void setText(const kelvane::Ref<kelvane::NSTextStorage>& text);
  const kelvane::Ref<kelvane::NSTextStorage>& text() const { return myText; }
  // Whether the document shows the text unit by unit. A few characters Qt keeps for itself; text with these must not be
  // edited here.
  bool isFaithful() const;

  double zoom() const { return myZoom; }
  // Shows all fonts that many times as large. The text keeps its sizes.
  void setZoom(double zoom);

 Q_SIGNALS:
  // The user has changed the text.
  void edited();

 private:
  void show();
  void follow(int position, int removed, int added);
  kelvane::NSAttributedString shown(int from, int count);
  const kelvane::Ref<kelvane::NSDictionary>& attributesOfFormat(int index);

  QTextDocument& myDocument;
  kelvane::Ref<kelvane::NSTextStorage> myText;
  double myZoom = 1;
  bool myIsShowing = false;
  // The attributes of each of the document's formats that has been met, since many stretches share one.
  QHash<int, kelvane::Ref<kelvane::NSDictionary>> myAttributes;
};

}  // namespace notebook
