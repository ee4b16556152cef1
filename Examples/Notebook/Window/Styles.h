#pragma once

#include <QTextFormat>

#include "Platform/Foundation/NSDictionary.h"
#include "Platform/Foundation/NSFont.h"

// Styles as the library keeps them, attributes of a run, and as Qt's documents do, a format of characters.
namespace notebook {

// The size in points that text has whatever the zoom; Qt's own one is the size that it is shown in.
inline constexpr int unzoomedSize = QTextFormat::UserProperty + 1;

// The size that the text of the format has in the note.
double noteSize(const QTextCharFormat& format, double zoom);
// Gives the format a size in the note, and the one that it is shown in.
void setNoteSize(QTextCharFormat& format, double size, double zoom);

// `shownFont` is the one of the same run as it is shown at the zoom; null where the run has none.
QTextCharFormat formatOf(const kelvane::NSDictionary& attributes, const kelvane::NSFont* shownFont);
kelvane::Ref<kelvane::NSDictionary> attributesOf(const QTextCharFormat& format, double zoom);

}  // namespace notebook
