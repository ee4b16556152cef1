#pragma once

#include <QPixmap>
#include <optional>

#include "Platform/Desktop/NSImage.h"
#include "Platform/Foundation/NSAttributedString.h"
#include "Platform/Foundation/Text.h"

class QImage;

// Between the library's pictures and Qt's. The pixels are shared and not copied.
namespace notebook {

kelvane::Ref<kelvane::NSImage> imageOf(const QImage& picture);
// Null for an image without pixels.
QPixmap pixmapOf(const kelvane::NSImage& image);

// The first page of the note, as it would be printed on A4 paper, at 144 dots per inch.
kelvane::Ref<kelvane::NSImage> firstPage(const kelvane::Ref<kelvane::NSTextStorage>& note);

}  // namespace notebook
