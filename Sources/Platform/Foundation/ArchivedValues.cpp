#include "Platform/Foundation/ArchivedValues.h"

#include <memory>
#include <type_traits>
#include <typeinfo>
#include <utility>
#include <vector>

#include "Platform/Foundation/ArchivedClass.h"
#include "Platform/Foundation/NSArray.h"
#include "Platform/Foundation/NSAttributedString.h"
#include "Platform/Foundation/NSCalendarDate.h"
#include "Platform/Foundation/NSColor.h"
#include "Platform/Foundation/NSData.h"
#include "Platform/Foundation/NSDate.h"
#include "Platform/Foundation/NSDictionary.h"
#include "Platform/Foundation/NSError.h"
#include "Platform/Foundation/NSFont.h"
#include "Platform/Foundation/NSIndexSet.h"
#include "Platform/Foundation/NSNull.h"
#include "Platform/Foundation/NSNumber.h"
#include "Platform/Foundation/NSString.h"
#include "Platform/Foundation/NSURL.h"
#include "Platform/Foundation/NSValue.h"

namespace kelvane {
namespace {

// Registers T with functions that know its type. `decode` gives a Ref, nil where it has failed.
template <class T, class Encode, class Decode>
void add(TextView name, Encode encode, Decode decode) {
  registerArchivedClass(typeid(T), {Text(name), 0,
                                    [encode](const NSObject& object, ArchiveEncoder& encoder) {
                                      encode(static_cast<const T&>(object), encoder);
                                    },
                                    [decode](ArchiveDecoder& decoder) -> Ref<NSObject> { return decode(decoder); }});
}

template <class T>
void addString(TextView name) {
  add<T>(
      name, [](const T& string, ArchiveEncoder& encoder) { encoder.encodeText(string.text()); },
      [](ArchiveDecoder& decoder) { return std::make_shared<T>(decoder.decodeText()); });
}

template <class T>
void addData(TextView name) {
  add<T>(
      name, [](const T& data, ArchiveEncoder& encoder) { encoder.encodeBytes(data.bytes()); },
      [](ArchiveDecoder& decoder) {
        const auto bytes = decoder.decodeBytes();
        return std::make_shared<T>(std::vector<std::uint8_t>(bytes.begin(), bytes.end()));
      });
}

template <class T>
void addArray(TextView name) {
  add<T>(
      name,
      [](const T& array, ArchiveEncoder& encoder) {
        encoder.encodeUnsigned(array.count());
        for (const Ref<NSObject>& element : array) encoder.encodeObject(element);
      },
      [](ArchiveDecoder& decoder) -> Ref<NSObject> {
        std::vector<Ref<NSObject>> elements(decoder.decodeCount());
        for (Ref<NSObject>& element : elements) {
          element = decoder.decodeObjectOf<NSObject>();
          if (!element) return nullptr;
        }
        return std::make_shared<T>(std::move(elements));
      });
}

template <class T>
void addIndexSet(TextView name) {
  add<T>(
      name,
      [](const T& set, ArchiveEncoder& encoder) {
        encoder.encodeUnsigned(set.ranges().size());
        for (const NSRange& range : set.ranges()) {
          encoder.encodeUnsigned(range.location);
          encoder.encodeUnsigned(range.length);
        }
      },
      [](ArchiveDecoder& decoder) -> Ref<NSObject> {
        NSMutableIndexSet set;
        // One behind the other, as they stand in a set: that is quick, and nothing else was written.
        std::size_t end = 0;
        for (std::size_t count = decoder.decodeCount(2); count > 0; --count) {
          const NSRange range{decoder.decodeUnsigned(), decoder.decodeUnsigned()};
          if (range.location < end || range.length == 0) decoder.fail(u"its ranges are not in order");
          if (decoder.hasFailed()) return nullptr;
          set.addIndexesInRange(range);
          end = range.end();
        }
        return std::is_same_v<T, NSMutableIndexSet> ? set.mutableCopy() : set.copy();
      });
}

// Keys stand in ascending order, so that none can stand twice.
template <class T>
void addDictionary(TextView name) {
  add<T>(
      name,
      [](const T& dictionary, ArchiveEncoder& encoder) {
        encoder.encodeUnsigned(dictionary.count());
        for (const auto& [key, value] : dictionary) {
          encoder.encodeText(key);
          encoder.encodeObject(value);
        }
      },
      [](ArchiveDecoder& decoder) -> Ref<NSObject> {
        NSDictionary::Entries entries;
        for (std::size_t count = decoder.decodeCount(2); count > 0; --count) {
          Text key = decoder.decodeText();
          Ref<NSObject> value = decoder.decodeObjectOf<NSObject>();
          if (!value) return nullptr;
          if (!entries.empty() && key <= entries.rbegin()->first) {
            decoder.fail(u"its keys are not in order");
            return nullptr;
          }
          entries.emplace_hint(entries.end(), std::move(key), std::move(value));
        }
        return std::make_shared<T>(std::move(entries));
      });
}

void encodeNumber(const NSNumber& number, ArchiveEncoder& encoder) {
  encoder.encodeUnsigned(static_cast<std::uint64_t>(number.kind()));
  switch (number.kind()) {
    case NSNumber::Kind::Boolean:
      return encoder.encodeBool(number.boolValue());
    case NSNumber::Kind::Integer:
      return encoder.encodeInteger(number.integerValue());
    case NSNumber::Kind::Unsigned:
      return encoder.encodeUnsigned(number.unsignedIntegerValue());
    case NSNumber::Kind::Single:
    case NSNumber::Kind::Double:
      return encoder.encodeDouble(number.doubleValue());
  }
}

Ref<NSObject> decodeNumber(ArchiveDecoder& decoder) {
  switch (decoder.decodeUnsigned()) {
    case 0:
      return std::make_shared<NSNumber>(decoder.decodeBool());
    case 1:
      return std::make_shared<NSNumber>(decoder.decodeInteger());
    case 2:
      return std::make_shared<NSNumber>(decoder.decodeUnsigned());
    case 3:
      return std::make_shared<NSNumber>(static_cast<float>(decoder.decodeDouble()));
    case 4:
      return std::make_shared<NSNumber>(decoder.decodeDouble());
    default:
      decoder.fail(u"it is of no known kind");
      return nullptr;
  }
}

void encodeValue(const NSValue& value, ArchiveEncoder& encoder) {
  const auto encode = [&](std::uint64_t kind, std::initializer_list<double> numbers) {
    encoder.encodeUnsigned(kind);
    for (const double number : numbers) encoder.encodeDouble(number);
  };
  if (const auto* point = value.get<CGPoint>()) return encode(0, {point->x, point->y});
  if (const auto* size = value.get<CGSize>()) return encode(1, {size->width, size->height});
  if (const auto* rect = value.get<CGRect>())
    return encode(2, {rect->origin.x, rect->origin.y, rect->size.width, rect->size.height});
  if (const auto* range = value.get<NSRange>()) {
    encoder.encodeUnsigned(3);
    encoder.encodeUnsigned(range->location);
    return encoder.encodeUnsigned(range->length);
  }
  encoder.fail(u"An address cannot be archived: it means nothing in another process.");
}

Ref<NSObject> decodeValue(ArchiveDecoder& decoder) {
  // Braces see to the order of reading.
  switch (decoder.decodeUnsigned()) {
    case 0:
      return std::make_shared<NSValue>(CGPoint{decoder.decodeDouble(), decoder.decodeDouble()});
    case 1:
      return std::make_shared<NSValue>(CGSize{decoder.decodeDouble(), decoder.decodeDouble()});
    case 2:
      return std::make_shared<NSValue>(
          CGRect{{decoder.decodeDouble(), decoder.decodeDouble()}, {decoder.decodeDouble(), decoder.decodeDouble()}});
    case 3:
      return std::make_shared<NSValue>(NSRange{decoder.decodeUnsigned(), decoder.decodeUnsigned()});
    default:
      decoder.fail(u"it is of no known kind");
      return nullptr;
  }
}

Ref<NSObject> decodeURL(ArchiveDecoder& decoder) {
  auto url = NSURL::URLWithString(decoder.decodeText());
  if (!url) decoder.fail(u"it is no URL");
  return url;
}

void encodeError(const NSError& error, ArchiveEncoder& encoder) {
  encoder.encodeText(error.domain());
  encoder.encodeInteger(error.code());
  encoder.encodeObject(error.userInfo());
}

Ref<NSObject> decodeError(ArchiveDecoder& decoder) {
  const Text domain = decoder.decodeText();
  const std::int64_t code = decoder.decodeInteger();
  const Ref<NSObject> userInfo = decoder.decodeObject();
  auto dictionary = as<NSDictionary>(userInfo);
  if (userInfo && !dictionary) decoder.fail(u"its user information is no dictionary");
  return std::make_shared<NSError>(domain, code, std::move(dictionary));
}

void encodeColor(const NSColor& color, ArchiveEncoder& encoder) {
  encoder.encodeUnsigned(static_cast<std::uint64_t>(color.space()));
  for (const double component : color.components()) encoder.encodeDouble(component);
}

Ref<NSObject> decodeColor(ArchiveDecoder& decoder) {
  const std::uint64_t space = decoder.decodeUnsigned();
  const auto rgb = [&](auto make) {
    const double red = decoder.decodeDouble();
    const double green = decoder.decodeDouble();
    const double blue = decoder.decodeDouble();
    return std::make_shared<NSColor>(make(red, green, blue, decoder.decodeDouble()));
  };
  const auto white = [&](auto make) {
    const double component = decoder.decodeDouble();
    return std::make_shared<NSColor>(make(component, decoder.decodeDouble()));
  };
  switch (space) {
    case 0:
      return rgb(NSColor::colorWithCalibratedRed);
    case 1:
      return rgb(NSColor::colorWithDeviceRed);
    case 2:
      return white(NSColor::colorWithCalibratedWhite);
    case 3:
      return white(NSColor::colorWithDeviceWhite);
    default:
      decoder.fail(u"it is in no known colour space");
      return nullptr;
  }
}

constexpr int largestWeight = 15;

void encodeFont(const NSFont& font, ArchiveEncoder& encoder) {
  if (font.weight() < 0 || font.weight() > largestWeight)
    encoder.fail(u"A font whose weight is beyond 15 cannot be archived.");
  encoder.encodeText(font.fontName());
  encoder.encodeText(font.familyName());
  encoder.encodeUnsigned(font.traits());
  encoder.encodeInteger(font.weight());
  encoder.encodeDouble(font.pointSize());
}

Ref<NSObject> decodeFont(ArchiveDecoder& decoder) {
  FontFace face;
  face.fullName = decoder.decodeText();
  face.family = decoder.decodeText();
  face.traits = decoder.decodeUnsigned();
  const std::int64_t weight = decoder.decodeInteger();
  if (weight < 0 || weight > largestWeight) decoder.fail(u"its weight is beyond 15");
  face.weight = static_cast<int>(weight);
  return std::make_shared<NSFont>(std::move(face), decoder.decodeDouble());
}

template <class T>
void addStyledText(TextView name) {
  add<T>(
      name,
      [](const T& text, ArchiveEncoder& encoder) {
        encoder.encodeText(text.string());
        encoder.encodeUnsigned(text.runs().count());
        for (const AttributeRun run : text.runs()) {
          encoder.encodeUnsigned(run.range.length);
          encoder.encodeObject(run.attributes);
        }
      },
      [](ArchiveDecoder& decoder) -> Ref<NSObject> {
        const Text string = decoder.decodeText();
        NSMutableAttributedString text;
        for (std::size_t count = decoder.decodeCount(2); count > 0; --count) {
          const std::uint64_t length = decoder.decodeUnsigned();
          const auto attributes = decoder.decodeObjectOf<NSDictionary>();
          if (length > string.size() - text.length()) decoder.fail(u"its runs are longer than its text");
          if (decoder.hasFailed()) return nullptr;
          text.appendString(TextView(string).substr(text.length(), length), attributes);
        }
        if (text.length() != string.size()) decoder.fail(u"its runs are shorter than its text");
        return std::make_shared<T>(text);
      });
}

// By name, and by its distance from UTC for where nobody knows that name.
void encodeTimeZone(const NSTimeZone& zone, ArchiveEncoder& encoder) {
  encoder.encodeText(zone.name());
  encoder.encodeInteger(zone.secondsFromGMTForDate(NSDate::dateWithTimeIntervalSinceReferenceDate(0)));
}

Ref<NSObject> decodeTimeZone(ArchiveDecoder& decoder) {
  constexpr std::int64_t day = 24 * 60 * 60;
  const Text name = decoder.decodeText();
  const std::int64_t seconds = decoder.decodeInteger();
  if (seconds <= -day || seconds >= day) {
    decoder.fail(u"it is further from UTC than a day");
    return nullptr;
  }
  if (auto zone = NSTimeZone::timeZoneWithName(name)) return zone;
  return NSTimeZone::timeZoneForSecondsFromGMT(static_cast<std::int32_t>(seconds));
}

void encodeCalendarDate(const NSCalendarDate& date, ArchiveEncoder& encoder) {
  encoder.encodeDouble(date.timeIntervalSinceReferenceDate());
  encoder.encodeObject(date.timeZone());
  encoder.encodeText(date.calendarFormat());
}

Ref<NSObject> decodeCalendarDate(ArchiveDecoder& decoder) {
  const NSDate instant = NSDate::dateWithTimeIntervalSinceReferenceDate(decoder.decodeDouble());
  auto zone = decoder.decodeObjectOf<NSTimeZone>();
  if (!zone) return nullptr;
  return std::make_shared<NSCalendarDate>(instant, std::move(zone), decoder.decodeText());
}

void addAll() {
  addString<NSString>(u"NSString");
  addString<NSMutableString>(u"NSMutableString");
  addData<NSData>(u"NSData");
  addData<NSMutableData>(u"NSMutableData");
  addArray<NSArray>(u"NSArray");
  addArray<NSMutableArray>(u"NSMutableArray");
  addDictionary<NSDictionary>(u"NSDictionary");
  addDictionary<NSMutableDictionary>(u"NSMutableDictionary");
  addIndexSet<NSIndexSet>(u"NSIndexSet");
  addIndexSet<NSMutableIndexSet>(u"NSMutableIndexSet");
  add<NSNumber>(u"NSNumber", encodeNumber, decodeNumber);
  add<NSDate>(
      u"NSDate",
      [](const NSDate& date, ArchiveEncoder& encoder) { encoder.encodeDouble(date.timeIntervalSinceReferenceDate()); },
      [](ArchiveDecoder& decoder) {
        return std::make_shared<NSDate>(NSDate::dateWithTimeIntervalSinceReferenceDate(decoder.decodeDouble()));
      });
  add<NSTimeZone>(u"NSTimeZone", encodeTimeZone, decodeTimeZone);
  add<NSCalendarDate>(u"NSCalendarDate", encodeCalendarDate, decodeCalendarDate);
  add<NSNull>(
      u"NSNull", [](const NSNull&, ArchiveEncoder&) {}, [](ArchiveDecoder&) { return NSNull::null(); });
  add<NSURL>(
      u"NSURL", [](const NSURL& url, ArchiveEncoder& encoder) { encoder.encodeText(url.absoluteString()); }, decodeURL);
  add<NSValue>(u"NSValue", encodeValue, decodeValue);
  add<NSError>(u"NSError", encodeError, decodeError);
  add<NSColor>(u"NSColor", encodeColor, decodeColor);
  add<NSFont>(u"NSFont", encodeFont, decodeFont);
  addStyledText<NSAttributedString>(u"NSAttributedString");
  addStyledText<NSMutableAttributedString>(u"NSMutableAttributedString");
  addStyledText<NSTextStorage>(u"NSTextStorage");
}

}  // namespace

void registerArchivedValues() {
  static const bool areRegistered = (addAll(), true);
  static_cast<void>(areRegistered);
}

}  // namespace kelvane
