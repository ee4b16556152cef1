// Styled text of 100,000 runs of ten units: building it, looking attributes up, going through it, editing it.

#include <cstdint>
#include <memory>
#include <random>
#include <vector>

#include "Platform/Foundation/Boxing.h"
#include "Platform/Foundation/NSAttributedString.h"
#include "Support/Row.h"

#ifdef BENCH_QT
#include <QTextBlock>
#include <QTextCharFormat>
#include <QTextCursor>
#include <QTextDocument>

#include "Support/QtApplication.h"
#endif

namespace kelvane::bench {
namespace {

constexpr std::size_t runCount = 100000;
constexpr std::size_t lookUps = 1000;
constexpr std::size_t pieceLength = 10;

// Ten to a paragraph.
TextView piece(std::size_t i) { return i % 10 == 9 ? u"ten units\n" : u"ten units."; }

// Where to look and edit.
const std::vector<std::size_t>& places() {
  static const auto& all = *[] {
    auto* made = new std::vector<std::size_t>();
    std::mt19937 random(1);
    while (made->size() < lookUps)
      // Paragraph ends have a format of their own in some libraries.
      if (const std::size_t place = random() % (runCount * pieceLength); place % 100 != 99) made->push_back(place);
    return made;
  }();
  return all;
}

const std::vector<Ref<NSDictionary>>& styles() {
  static const auto& all = *new std::vector<Ref<NSDictionary>>{
      NSDictionary::dictionaryWithEntries({{NSUnderlineStyleAttributeName, box(0)}}),
      NSDictionary::dictionaryWithEntries({{NSUnderlineStyleAttributeName, box(1)}}),
      NSDictionary::dictionaryWithEntries({{u"size", box(20)}})};
  return all;
}

NSMutableAttributedString built() {
  NSMutableAttributedString text;
  for (std::size_t i = 0; i < runCount; ++i) text.appendString(piece(i), styles()[i % styles().size()]);
  return text;
}

// Made when they are first worked on: one to look at, and one to edit, which has about as many runs all the time.
const NSMutableAttributedString& sample() {
  static const auto& text = *new NSMutableAttributedString(built());
  return text;
}
NSMutableAttributedString& edited() {
  static auto& text = *new NSMutableAttributedString(built());
  return text;
}

std::size_t lengthOf(const NSMutableAttributedString& text) { return text.length(); }

#ifdef BENCH_QT
const std::vector<QTextCharFormat>& qtStyles() {
  static const auto& all = *[] {
    auto* formats = new std::vector<QTextCharFormat>(3);
    (*formats)[0].setFontUnderline(false);
    (*formats)[1].setFontUnderline(true);
    (*formats)[2].setFontPointSize(20);
    return formats;
  }();
  return all;
}

std::shared_ptr<QTextDocument> qtBuilt() {
  needApplication();
  auto document = std::make_shared<QTextDocument>();
  document->setUndoRedoEnabled(false);
  QTextCursor cursor(document.get());
  const QString strings[] = {QStringLiteral("ten units."), QStringLiteral("ten units\n")};
  cursor.beginEditBlock();
  for (std::size_t i = 0; i < runCount; ++i)
    cursor.insertText(strings[i % 10 == 9 ? 1 : 0], qtStyles()[i % styles().size()]);
  cursor.endEditBlock();
  return document;
}

std::size_t qtLength(const std::shared_ptr<QTextDocument>& document) {
  return static_cast<std::size_t>(document->characterCount() - 1);
}

const std::shared_ptr<QTextDocument>& qtSample() {
  static const auto& document = *new std::shared_ptr<QTextDocument>(qtBuilt());
  return document;
}
const std::shared_ptr<QTextDocument>& qtEdited() {
  static const auto& document = *new std::shared_ptr<QTextDocument>(qtBuilt());
  return document;
}

// A cursor has the format of what stands before it.
bool qtIsUnderlined(QTextCursor& cursor, std::size_t place) {
  cursor.setPosition(static_cast<int>(place) + 1);
  return cursor.charFormat().fontUnderline();
}
#endif

const Subject styledText([] {
  Row("styled text: append 100,000 runs")
      .ours([] { return built(); }, lengthOf)
#ifdef BENCH_QT
      .peer(
          "QTextDocument", [] { return qtBuilt(); }, qtLength)
#endif
      .reach(4);

  Row("styled text: 1,000 look-ups among 100,000 runs")
      .ours([] {
        std::size_t underlined = 0;
        for (const std::size_t place : places()) {
          const auto value = as<NSNumber>(sample().attribute(NSUnderlineStyleAttributeName, place).get());
          underlined += value && value->boolValue() ? 1 : 0;
        }
        return underlined;
      })
#ifdef BENCH_QT
      .peer("QTextDocument",
            [] {
              QTextCursor cursor(qtSample().get());
              std::size_t underlined = 0;
              for (const std::size_t place : places()) underlined += qtIsUnderlined(cursor, place) ? 1 : 0;
              return underlined;
            })
#endif
      .reach(4);

  Row("styled text: go through 100,000 runs")
      .ours([] {
        std::size_t runs = 0;
        for (const AttributeRun run : sample().runs())
          runs += run.attributes->count() > 0 && run.range.length > 0 ? 1 : 0;
        return runs;
      })
#ifdef BENCH_QT
      .peer("QTextDocument",
            [] {
              std::size_t runs = 0;
              for (QTextBlock block = qtSample()->begin(); block.isValid(); block = block.next())
                for (auto fragment = block.begin(); !fragment.atEnd(); ++fragment)
                  runs += fragment.fragment().charFormatIndex() >= 0 && fragment.fragment().length() > 0 ? 1 : 0;
              return runs;
            })
#endif
      .reach(4);

  Row("styled text: 1,000 replacements among 100,000 runs")
      .ours([] {
        for (const std::size_t place : places()) edited().replaceCharactersInRange({place, 1}, u"x");
        return edited().length();
      })
#ifdef BENCH_QT
      .peer("QTextDocument",
            [] {
              QTextCursor cursor(qtEdited().get());
              cursor.beginEditBlock();
              for (const std::size_t place : places()) {
                cursor.setPosition(static_cast<int>(place));
                cursor.setPosition(static_cast<int>(place) + 1, QTextCursor::KeepAnchor);
                cursor.insertText(QStringLiteral("x"));
              }
              cursor.endEditBlock();
              return qtLength(qtEdited());
            })
#endif
      .reach(2);

  Row("styled text: 1,000 changes of attributes among 100,000 runs")
      .ours([] {
        for (const std::size_t place : places()) edited().setAttributes(styles()[place % 3], {place, 1});
        return edited().length();
      })
#ifdef BENCH_QT
      .peer("QTextDocument",
            [] {
              QTextCursor cursor(qtEdited().get());
              cursor.beginEditBlock();
              for (const std::size_t place : places()) {
                cursor.setPosition(static_cast<int>(place));
                cursor.setPosition(static_cast<int>(place) + 1, QTextCursor::KeepAnchor);
                cursor.setCharFormat(qtStyles()[place % 3]);
              }
              cursor.endEditBlock();
              return qtLength(qtEdited());
            })
#endif
      .reach(2);
});

}  // namespace
}  // namespace kelvane::bench
