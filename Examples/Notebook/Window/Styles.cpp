#include "Window/Styles.h"

#include <QBrush>
#include <QColor>
#include <QFont>
#include <QString>
#include <QStringList>
#include <algorithm>
#include <cmath>
#include <memory>

#include "Graphics/QNColorPalette.h"
#include "Model/NoteFile.h"
#include "Platform/Foundation/Boxing.h"
#include "Platform/Foundation/NSAttributedString.h"
#include "Platform/Foundation/NSColor.h"
#include "Window/QtText.h"

namespace notebook {
namespace {

using kelvane::NSColor;
using kelvane::NSDictionary;
using kelvane::NSFont;
using kelvane::Ref;
using kelvane::Text;

constexpr double largestShown = 1000;  // points

QColor toQt(const NSColor& color) {
  const auto component = [](double value) { return static_cast<float>(std::clamp(value, 0.0, 1.0)); };
  return QColor::fromRgbF(component(color.redComponent()), component(color.greenComponent()),
                          component(color.blueComponent()), component(color.alphaComponent()));
}

Ref<NSColor> fromQt(const QColor& color) {
  return std::make_shared<NSColor>(
      NSColor::colorWithCalibratedRed(color.redF(), color.greenF(), color.blueF(), color.alphaF()));
}

// A file may ask for any size; Qt has to lay it out.
double sizeToShow(double size) { return size >= 1 ? std::min(size, largestShown) : 1; }

Ref<NSFont> fontOf(const QTextCharFormat& format, double zoom) {
  const QStringList families = format.fontFamilies().toStringList();
  const Text family = families.isEmpty() ? plainFont().familyName() : notebook::fromQt(families.front());
  const bool isBold = format.fontWeight() > QFont::Medium;
  const kelvane::NSFontTraitMask traits =
      (isBold ? kelvane::NSBoldFontMask : 0) | (format.fontItalic() ? kelvane::NSItalicFontMask : 0);
  constexpr int regular = 5;
  constexpr int bold = 9;
  return std::make_shared<NSFont>(
      NSFont::fontWithFamily(family, traits, isBold ? bold : regular, noteSize(format, zoom)));
}

}  // namespace

double noteSize(const QTextCharFormat& format, double zoom) {
  if (format.hasProperty(unzoomedSize)) return format.doubleProperty(unzoomedSize);
  return format.fontPointSize() > 0 ? std::round(format.fontPointSize() / zoom) : plainFont().pointSize();
}

void setNoteSize(QTextCharFormat& format, double size, double zoom) {
  format.setProperty(unzoomedSize, size);
  // As the library scales fonts: down to whole points, unless nothing would be left.
  const double shown = std::floor(size * zoom);
  format.setFontPointSize(sizeToShow(shown > 0 ? shown : size));
}

QTextCharFormat formatOf(const NSDictionary& attributes, const NSFont* shownFont) {
  QTextCharFormat format;
  if (const auto font = kelvane::as<NSFont>(attributes.objectForKey(kelvane::NSFontAttributeName))) {
    format.setFontFamilies({notebook::toQt(font->familyName())});
    format.setFontWeight(font->isBold() ? QFont::Bold : QFont::Normal);
    format.setFontItalic(font->isItalic());
    format.setProperty(unzoomedSize, font->pointSize());
    format.setFontPointSize(sizeToShow(shownFont ? shownFont->pointSize() : font->pointSize()));
  }
  const auto underline =
      kelvane::as<kelvane::NSNumber>(attributes.objectForKey(kelvane::NSUnderlineStyleAttributeName));
  format.setFontUnderline(underline && underline->intValue() != 0);
  // Black is what text has anyway, and is shown in the theme's own colour: it could not be read on a dark ground.
  if (const auto color = kelvane::as<NSColor>(attributes.objectForKey(kelvane::NSForegroundColorAttributeName));
      color && toQt(*color) != QColor(Qt::black))
    format.setForeground(toQt(*color));
  if (const auto link = attributes.objectForKey(kelvane::NSLinkAttributeName)) {
    format.setAnchor(true);
    format.setAnchorHref(notebook::toQt(link->description()));
  }
  return format;
}

Ref<NSDictionary> attributesOf(const QTextCharFormat& format, double zoom) {
  NSDictionary::Entries entries;
  entries.emplace(kelvane::NSFontAttributeName, fontOf(format, zoom));
  if (format.fontUnderline()) entries.emplace(kelvane::NSUnderlineStyleAttributeName, kelvane::box(1));
  if (format.foreground().style() != Qt::NoBrush)
    entries.emplace(kelvane::NSForegroundColorAttributeName, fromQt(format.foreground().color()));
  if (format.isAnchor() && !format.anchorHref().isEmpty())
    entries.emplace(kelvane::NSLinkAttributeName, kelvane::box(notebook::fromQt(format.anchorHref())));
  return std::make_shared<NSDictionary>(std::move(entries));
}

}  // namespace notebook
