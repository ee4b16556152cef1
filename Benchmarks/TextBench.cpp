// Lines, trimming, quoting, replacing: 1 MiB of mixed text in UTF-16.

#include <algorithm>
#include <string>
#include <vector>

#include "Extensions/NSString-QNExtensions.h"
#include "Support/Inputs.h"
#include "Support/Limits.h"
#include "Support/Row.h"

#ifdef BENCH_QT
#include <QString>
#include <QStringList>
#include <QStringView>
#endif

namespace kelvane::bench {
namespace {

const auto scan = [] { return scanned(mixedText()); };
const auto copy = [] { return copied(mixedText()); };

#ifdef BENCH_QT
const QString& qtText() {
  static const QString text = QString::fromStdU16String(mixedText());
  return text;
}

// An owner for each line, as users of QString have them.
const QStringList& qtLines() {
  static const QStringList lines = qtText().split(u'\n');
  return lines;
}
#endif

// What trimming leaves of all lines together.
template <class Lines, class Trim>
std::size_t trimmedLength(const Lines& lines, Trim trim) {
  std::size_t length = 0;
  for (const auto& line : lines) length += static_cast<std::size_t>(trim(line).size());
  return length;
}

std::size_t trimmedLength() {
  return trimmedLength(mixedLines(), [](TextView line) { return trim(line); });
}

const Subject lines([] {
  Row("lines as views")
      .ours([] { return componentsSeparatedByLineSeparators(mixedText()); })
#ifdef BENCH_QT
      .peer("Qt", [] { return QStringView(mixedText()).split(u'\n'); })
#endif
      .limit("memchr", scan)
      .reach(4);

  Row("number of lines")
      .ours([] { return numberOfLines(mixedText()); })
#ifdef BENCH_QT
      .peer("Qt", [] { return QStringView(mixedText()).count(u'\n') + 1; })
#endif
      .peer("std", [] { return std::ranges::count(mixedText(), u'\n') + 1; })
      .limit("memchr", scan);

  Row("trim each line")
      .ours([] { return trimmedLength(); })
#ifdef BENCH_QT
      .peer("Qt view",
            [] { return trimmedLength(mixedLines(), [](TextView line) { return QStringView(line).trimmed(); }); })
#endif
      .per("line", mixedLines().size())
      .reach(1);

  Row("trim each line, against a copy")
      .ours([] { return trimmedLength(); })
#ifdef BENCH_QT
      .peer("Qt", [] { return trimmedLength(qtLines(), [](const QString& line) { return line.trimmed(); }); })
#endif
      .per("line", mixedLines().size())
      .reach(3);
});

const Subject rewriting([] {
  Row("escapeQuots")
      .ours([] { return escapeQuots(mixedText()); })
#ifdef BENCH_QT
      .peer(
          "Qt",
          [] { return QString(qtText()).replace(u'"', QStringLiteral("\\\"")).replace(u'\'', QStringLiteral("\\'")); })
#endif
      .limit("memcpy", copy)
      .reach(15)
      .withinLimit(3);

  Row("removeQuots")
      .ours([] { return removeQuots(mixedText()); })
#ifdef BENCH_QT
      .peer("Qt", [] { return QString(qtText()).remove(u'"').remove(u'\''); })
#endif
      .limit("memcpy", copy)
      .reach(15)
      .withinLimit(3);

  Row("replace all occurrences")
      .ours([] { return replaceAllOccurencesOfString(mixedText(), u"garden", u"allotment"); })
#ifdef BENCH_QT
      .peer("Qt", [] { return QString(qtText()).replace(QStringLiteral("garden"), QStringLiteral("allotment")); })
#endif
      .limit("memcpy", copy)
      .reach(10);
});

}  // namespace
}  // namespace kelvane::bench
