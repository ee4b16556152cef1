#include "Qt/Painting/TextLayout.h"

#include <QFontDatabase>
#include <QImage>
#include <QPainter>
#include <QTextOption>
#include <algorithm>
#include <cmath>
#include <optional>
#include <unordered_map>

#include "Platform/Foundation/Boxing.h"
#include "Platform/Foundation/NSAttributedString.h"
#include "Platform/Foundation/TextLines.h"
#include "Qt/Painting/Conversions.h"
#include "Qt/Widgets/QtText.h"

namespace kelvane {
namespace {

// Beyond these, Qt's fixed-point numbers end.
constexpr double widestLine = 16'000'000;
constexpr double largestPointSize = 10'000;

// A device with as many dots to the inch as there are points.
QPaintDevice& pointDevice() {
  static auto& device = *[] {
    auto* const image = new QImage(1, 1, QImage::Format_RGB32);
    image->setDotsPerMeterX(2835);
    image->setDotsPerMeterY(2835);
    return image;
  }();
  return device;
}

// From the platform's numbers (5 is regular, 9 bold) to Qt's.
QFont::Weight qtWeight(int weight) {
  constexpr QFont::Weight weights[] = {QFont::Thin,     QFont::Thin,   QFont::ExtraLight, QFont::Light,
                                       QFont::Light,    QFont::Normal, QFont::Medium,     QFont::DemiBold,
                                       QFont::DemiBold, QFont::Bold,   QFont::ExtraBold,  QFont::ExtraBold,
                                       QFont::Black};
  return weights[std::clamp(weight, 0, static_cast<int>(std::size(weights)) - 1)];
}

// The style that makes the full name together with the family, "Condensed Bold" say; none where Qt knows none, and
// weight and slant have to do. Asking Qt takes long, so the answers are kept.
const QString& styleNameOf(const FontFace& face) {
  static auto& known = *new std::unordered_map<Text, QString>();
  const auto [entry, isNew] = known.try_emplace(face.fullName + u'\n' + face.family);
  if (isNew) {
    const QString family = qString(face.family);
    const QString fullName = qString(face.fullName);
    for (const QString& style : QFontDatabase::styles(family))
      if (fullName.compare(family + u' ' + style, Qt::CaseInsensitive) == 0) entry->second = style;
  }
  return entry->second;
}

std::optional<NSFont> fontIn(const NSDictionary& attributes) {
  if (const auto font = as<NSFont>(attributes.objectForKey(NSFontAttributeName))) return *font;
  return NSFont::systemFontOfSize(NSFont::systemFontSize());
}

QColor colorIn(const NSDictionary& attributes) {
  const auto color = as<NSColor>(attributes.objectForKey(NSForegroundColorAttributeName));
  return color ? qtColor(*color) : QColor(Qt::black);
}

bool isUnderlined(const NSDictionary& attributes) {
  const auto style = as<NSNumber>(attributes.objectForKey(NSUnderlineStyleAttributeName));
  return style && unbox<int>(style) != 0;
}

QFont fontFor(const NSDictionary& attributes) {
  const auto told = fontIn(attributes);
  QFont font = told ? qtFont(*told) : QFont();
  if (!told) font.setPointSizeF(NSFont::systemFontSize());
  font.setUnderline(isUnderlined(attributes));
  font.setHintingPreference(QFont::PreferNoHinting);
  return font;
}

}  // namespace

QFont qtFont(const NSFont& font) {
  const double size = font.pointSize() > 0 ? font.pointSize() : NSFont::systemFontSize();
  QFont made(qString(font.familyName()));
  made.setPointSizeF(std::min(size, largestPointSize));
  made.setWeight(qtWeight(font.weight()));
  made.setItalic(font.isItalic());
  if (const QString& style = styleNameOf(font.face()); !style.isEmpty()) made.setStyleName(style);
  return made;
}

TextLayout::TextLayout(TextView text, const NSDictionary& attributes, double width, double height)
    : myFont(fontFor(attributes)), myColor(colorIn(attributes)) {
  if (text.empty()) add(text, width, height);
  for (const TextView line : Lines(text)) {
    if (mySize.height >= height) return;
    add(line, width, height);
  }
}

void TextLayout::add(TextView line, double width, double height) {
  auto paragraph = std::make_unique<QTextLayout>(qString(line), myFont, &pointDevice());
  // Without a width there is no right edge to align to.
  const bool isLimited = width < widestLine;
  QTextOption option(isLimited ? Qt::Alignment() : Qt::AlignLeft | Qt::AlignAbsolute);
  option.setWrapMode(isLimited ? QTextOption::WrapAtWordBoundaryOrAnywhere : QTextOption::NoWrap);
  option.setFlags(QTextOption::IncludeTrailingSpaces);
  paragraph->setTextOption(option);
  paragraph->beginLayout();
  for (QTextLine row = paragraph->createLine(); row.isValid(); row = paragraph->createLine()) {
    row.setLeadingIncluded(true);
    row.setLineWidth(isLimited ? width : widestLine);
    row.setPosition({0, mySize.height});
    mySize.width = std::max(mySize.width, row.naturalTextWidth());
    mySize.height += row.height();
    if (mySize.height >= height) break;
  }
  paragraph->endLayout();
  myParagraphs.push_back(std::move(paragraph));
}

double TextLayout::ascent() const {
  if (myParagraphs.empty() || myParagraphs.front()->lineCount() == 0) return 0;
  return myParagraphs.front()->lineAt(0).ascent();
}

void TextLayout::draw(QPainter& painter) const {
  painter.setPen(myColor);
  for (const auto& paragraph : myParagraphs) paragraph->draw(&painter, {0, 0});
}

}  // namespace kelvane
