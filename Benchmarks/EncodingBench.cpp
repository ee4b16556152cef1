// UTF-16 to UTF-8 and back: 1 MiB in UTF-16 of each kind of text.

#include <unicode/unistr.h>

#include <string>
#include <string_view>

#include "Platform/Foundation/TextEncoding.h"
#include "Support/Inputs.h"
#include "Support/Limits.h"
#include "Support/Row.h"

#ifdef BENCH_QT
#include <QByteArray>
#include <QString>
#endif

namespace kelvane::bench {
namespace {

std::string fromICU(TextView text) {
  std::string bytes;
  icu::UnicodeString(false, text.data(), static_cast<std::int32_t>(text.size())).toUTF8String(bytes);
  return bytes;
}

icu::UnicodeString toICU(std::string_view bytes) {
  return icu::UnicodeString::fromUTF8({bytes.data(), static_cast<std::int32_t>(bytes.size())});
}

void addRows(const std::string& kind, const Text& text) {
  Row("to UTF-8, " + kind)
      .ours([&] { return utf8(text); })
#ifdef BENCH_QT
      .peer("Qt", [text = QString::fromStdU16String(text)] { return text.toUtf8(); })
#endif
      .peer("ICU", [&] { return fromICU(text); })
      .limit("memcpy", [&] { return copied(text); })
      .reach(1);

  Row("from UTF-8, " + kind)
      .ours([bytes = utf8(text)] { return textFromUTF8(bytes); })
#ifdef BENCH_QT
      .peer("Qt", [bytes = QByteArray::fromStdString(utf8(text))] { return QString::fromUtf8(bytes); })
#endif
      .peer("ICU", [bytes = utf8(text)] { return toICU(bytes); })
      .limit("memcpy", [&] { return copied(text); })
      .reach(1);
}

const Subject encoding([] {
  addRows("ASCII", asciiText());
  addRows("mixed", mixedText());
  addRows("Chinese", chineseText());
});

}  // namespace
}  // namespace kelvane::bench
