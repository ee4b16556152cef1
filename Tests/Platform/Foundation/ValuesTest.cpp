#include <gtest/gtest.h>

#include <ctime>
#include <limits>
#include <memory>
#include <vector>

#include "Platform/Foundation/NSData.h"
#include "Platform/Foundation/NSDate.h"
#include "Platform/Foundation/NSNull.h"
#include "Platform/Foundation/NSValue.h"
#include "Support/TextPrinting.h"

namespace kelvane {
namespace {

TEST(NSDate, DescriptionIsUTCCutTowardThePast) {
  const struct {
    double seconds;
    TextView text;
  } rows[] = {
      {0, u"2001-01-01 00:00:00 +0000"},
      {0.999, u"2001-01-01 00:00:00 +0000"},
      {-0.25, u"2000-12-31 23:59:59 +0000"},
      {-1e-12, u"2000-12-31 23:59:59 +0000"},
      {-978307200.5, u"1969-12-31 23:59:59 +0000"},
      {-26006400, u"2000-03-06 00:00:00 +0000"},
      {-26438401, u"2000-02-29 23:59:59 +0000"},
      {-63113904000, u"0001-01-01 00:00:00 +0000"},
      {-63113904001, u"-63113904001"},
      {252423993599.5, u"9999-12-31 23:59:59 +0000"},
      {252423993600, u"252423993600"},
      {1e300, u"1e+300"},
      {-std::numeric_limits<double>::infinity(), u"-inf"},
      {std::numeric_limits<double>::quiet_NaN(), u"nan"},
  };
  for (const auto& row : rows)
    EXPECT_EQ(NSDate::dateWithTimeIntervalSinceReferenceDate(row.seconds).description(), row.text) << row.seconds;
}

TEST(NSDate, EpochsAndEquality) {
  const double now = NSDate().timeIntervalSince1970();
  EXPECT_NEAR(now, static_cast<double>(std::time(nullptr)), 5);
  const NSDate unix = NSDate::dateWithTimeIntervalSince1970(0);
  EXPECT_EQ(unix.timeIntervalSinceReferenceDate(), -978307200);
  EXPECT_EQ(unix.description(), u"1970-01-01 00:00:00 +0000");
  const NSDate zero = NSDate::dateWithTimeIntervalSinceReferenceDate(0);
  const NSDate minusZero = NSDate::dateWithTimeIntervalSinceReferenceDate(-0.0);
  EXPECT_TRUE(zero.isEqual(minusZero) && zero.hash() == minusZero.hash() && !zero.isEqual(unix));
  EXPECT_TRUE(zero.copy()->isEqual(zero));
}

TEST(NSData, BytesAsAnObject) {
  using Bytes = std::vector<std::uint8_t>;
  EXPECT_EQ(NSData().description(), u"<>");
  EXPECT_EQ(NSData(Bytes{0, 1, 2, 0xF3}).description(), u"<000102f3>");
  EXPECT_EQ(NSData(Bytes{0, 1, 2, 3, 0x4F, 5}).description(), u"<00010203 4f05>");
  const Text most = NSData(Bytes(1024)).description();
  EXPECT_EQ(most.size(), 2048U + 255 + 2);
  EXPECT_EQ(NSData(Bytes(1025)).description(), most.substr(0, most.size() - 1) + u"...>");

  const auto data = std::make_shared<NSData>(Bytes{1, 2});
  EXPECT_EQ(data->copy(), data);
  EXPECT_EQ(description(data->valueForKey(u"length")), u"2");
  const auto changed = as<NSMutableData>(data->mutableCopy());
  const auto snapshot = changed->copy();
  EXPECT_TRUE(data->isEqual(*changed) && changed->hash() == data->hash());
  changed->mutableBytes().push_back(3);
  EXPECT_FALSE(data->isEqual(*changed));
  EXPECT_TRUE(data->isEqual(*snapshot));
  EXPECT_EQ(snapshot->copy(), snapshot);
  EXPECT_EQ(changed->length(), 3U);
}

TEST(NSValue, KindAndValueMakeEquality) {
  int place = 0;
  const NSValue values[] = {
      NSValue(CGPoint{1, 2}),         NSValue(CGSize{1, 2}),
      NSValue(NSRange{1, 2}),         NSValue(CGPoint{2, 1}),
      NSValue(CGRect{0.5, -2, 3, 4}), NSValue::valueWithPointer(&place),
      NSValue(CGPoint{0, 0}),         NSValue::valueWithPointer(nullptr),
  };
  const Text texts[] = {u"{1, 2}", u"{1, 2}", u"{1, 2}", u"{2, 1}", u"{{0.5, -2}, {3, 4}}", u"0x", u"{0, 0}", u"0x0"};
  for (std::size_t i = 0; i < std::size(values); ++i) {
    EXPECT_TRUE(values[i].description().starts_with(texts[i])) << testing::PrintToString(values[i].description());
    EXPECT_EQ(values[i].copy()->hash(), values[i].hash());
    for (std::size_t k = 0; k < std::size(values); ++k)
      EXPECT_EQ(values[i].isEqual(*values[k].copy()), i == k) << i << k;
  }
  const NSValue minusZero(CGPoint{-0.0, 0});
  EXPECT_TRUE(minusZero.isEqual(values[6]) && minusZero.hash() == values[6].hash());
  EXPECT_EQ(values[0].get<CGSize>(), nullptr);
  EXPECT_EQ(*values[1].get<CGSize>(), (CGSize{1, 2}));
  EXPECT_EQ(values[0].pointerValue(), nullptr);
  EXPECT_EQ(values[5].pointerValue(), &place);
}

TEST(NSNull, ThereIsOne) {
  EXPECT_EQ(NSNull::null(), NSNull::null()->copy());
  EXPECT_TRUE(isEqual(NSNull::null(), NSNull::null()) && !isEqual(NSNull::null(), Ref<NSObject>()));
  EXPECT_EQ(description(NSNull::null()), u"<null>");
}

}  // namespace
}  // namespace kelvane
