#pragma once

#include <QColor>
#include <QFont>
#include <QTextLayout>
#include <limits>
#include <memory>
#include <vector>

#include "Platform/Foundation/Geometry.h"
#include "Platform/Foundation/NSDictionary.h"
#include "Platform/Foundation/NSFont.h"
#include "Platform/Foundation/Text.h"

class QPainter;

namespace kelvane {

// Text in the font, colour and underline of its attributes, laid out in lines from the top, with y downwards and a
// point a unit, whatever the device is: not hinted, so that it takes the same room at every scale. Main thread only.
class TextLayout {
 public:
  static constexpr double unlimited = std::numeric_limits<double>::infinity();

  // Lines end where the text says, and where they exceed `width`. Lines that begin below `height` are left out.
  TextLayout(TextView text, const NSDictionary& attributes, double width = unlimited, double height = unlimited);

  // What the lines take, blanks at their ends too. The empty text takes the height of a line.
  CGSize size() const { return mySize; }
  // From the top to the base line of the first line.
  double ascent() const;
  // With the upper left corner at (0, 0) of the painter.
  void draw(QPainter& painter) const;

 private:
  void add(TextView line, double width, double height);

  QFont myFont;
  QColor myColor;
  CGSize mySize;
  std::vector<std::unique_ptr<QTextLayout>> myParagraphs;
};

// The font for drawing: of that full name where Qt has it, else what comes nearest by family, weight and slant. Sizes
// that are none stand for the system's.
QFont qtFont(const NSFont& font);

}  // namespace kelvane
