// Colours from HTML's notation and back: 1,000 in a row.

#include <cstdint>
#include <string>
#include <vector>

#include "Graphics/QNColorPalette.h"
#include "Support/Row.h"

#ifdef BENCH_QT
#include <QColor>
#include <QString>
#endif

namespace kelvane::bench {
namespace {

constexpr std::uint32_t count = 1000;

std::uint32_t steps(double component) { return static_cast<std::uint32_t>(component * 255 + 0.5); }

std::uint32_t sumOfColors(const std::vector<Text>& texts) {
  std::uint32_t sum = 0;
  for (const Text& text : texts) {
    const auto color = QNColorPalette::colorForString(text);
    sum += steps(color->redComponent()) << 16U | steps(color->greenComponent()) << 8U | steps(color->blueComponent());
  }
  return sum;
}

#ifdef BENCH_QT
std::vector<QString> qtTexts(const std::vector<Text>& texts) {
  std::vector<QString> copies;
  for (const Text& text : texts) copies.push_back(QString::fromStdU16String(text));
  return copies;
}

std::uint32_t sumOfQtColors(const std::vector<QString>& texts) {
  std::uint32_t sum = 0;
  for (const QString& text : texts) sum += QColor(text).rgb() & 0xFFFFFFU;
  return sum;
}
#endif

void addReading(const std::string& name, const std::vector<Text>& texts) {
  Row(name)
      .ours([texts] { return sumOfColors(texts); })
#ifdef BENCH_QT
      .peer("Qt", [texts = qtTexts(texts)] { return sumOfQtColors(texts); })
#endif
      .reach(4);
}

const Subject colours([] {
  std::vector<NSColor> colors;
  std::vector<Text> definitions;
  std::vector<Text> names;
  const TextView someNames[] = {u"red", u"Navy", u"lightgoldenrodyellow", u"PapayaWhip", u"teal", u"mediumseagreen"};
  for (std::uint32_t i = 0; i < count; ++i) {
    colors.push_back(NSColor::colorWithCalibratedRed(i % 256 / 255.0, i % 7 / 255.0, i % 101 / 255.0, 1));
    definitions.push_back(QNColorPalette::stringForColor(colors.back()));
    names.emplace_back(someNames[i % std::size(someNames)]);
  }
  addReading("colour from #rrggbb", definitions);
  addReading("colour from a name", names);

  Row("colour to #rrggbb")
      .ours([colors] {
        std::vector<Text> texts;
        for (const NSColor& color : colors) texts.push_back(QNColorPalette::stringForColor(color));
        return texts;
      })
#ifdef BENCH_QT
      .peer("Qt",
            [colors] {
              std::vector<QString> texts;
              for (const NSColor& color : colors)
                texts.push_back(QColor::fromRgbF(static_cast<float>(color.redComponent()),
                                                 static_cast<float>(color.greenComponent()),
                                                 static_cast<float>(color.blueComponent()))
                                    .name());
              return texts;
            })
#endif
      .reach(4);
});

}  // namespace
}  // namespace kelvane::bench
