#include <ctime>
#include <limits>
#include <memory>
#include <vector>

#include "Platform/Foundation/NSData.h"
#include "Platform/Foundation/NSDate.h"
#include "Platform/Foundation/NSValue.h"
#include "Support/Testing.h"

namespace kelvane {
namespace {

TEST(NSDate, DescriptionIsUTCCutTowardThePast) {
  const struct {
    double seconds;
    TextView text;
  } rows[] = {
      {0, u"2001-01-01 00:00:00 +0000"},
      {-0.25, u"2000-12-31 23:59:59 +0000"},
      {-1e-12, u"2000-12-31 23:59:59 +0000"},
      {-26438401, u"2000-02-29 23:59:59 +0000"},
      {-63113904000, u"0001-01-01 00:00:00 +0000"},
      {-63113904001, u"-63113904001"},
      {252423993599.5, u"9999-12-31 23:59:59 +0000"},
      {252423993600, u"252423993600"},
      {std::numeric_limits<double>::quiet_NaN(), u"nan"},
  };
  for (const auto& row : rows)
    EXPECT_EQ(NSDate::dateWithTimeIntervalSinceReferenceDate(row.seconds).description(), row.text) << row.seconds;
}

TEST(NSData, BytesAsAnObject) {
  using Bytes = std::vector<std::uint8_t>;
  EXPECT_EQ(NSData().description(), u"<>");
  EXPECT_EQ(NSData(Bytes{0, 1, 2, 3, 0x4F, 5}).description(), u"<00010203 4f05>");
  const Text most = NSData(Bytes(1024)).description();
  EXPECT_EQ(most.size(), 2048U + 255 + 2);
  EXPECT_EQ(NSData(Bytes(1025)).description(), most.substr(0, most.size() - 1) + u"...>");
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
  EXPECT_EQ(values[5].pointerValue(), &place);
}

}  // namespace
}  // namespace kelvane
