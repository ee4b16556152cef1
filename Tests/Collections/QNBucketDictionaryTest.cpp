#include "Collections/QNBucketDictionary.h"
#include "Platform/Foundation/Boxing.h"
#include "Support/Testing.h"

namespace kelvane {
namespace {

TEST(QNBucketDictionary, GroupsByKey) {
  QNBucketDictionary<Text, int> byTown;
  EXPECT_THAT(byTown.objectsFromsBucketWithKey(u"Ulm"), IsEmpty());
  EXPECT_EQ(byTown.count(), 0) << "asking makes no bucket";
  byTown.putObject(3, u"Ulm");
  const std::vector<int>& ulm = byTown.objectsFromsBucketWithKey(u"Ulm");
  byTown.putObject(3, u"Ulm");
  byTown.putObject(1, u"Ulm");
  EXPECT_THAT(ulm, ElementsAre(3, 3, 1)) << "the bucket itself";
  EXPECT_EQ(byTown.keys().size(), 1U);
}

TEST(QNBucketDictionary, NilAndObjectsAsKeys) {
  QNBucketDictionary<> dictionary;
  dictionary.putObject(box(1), nullptr);
  EXPECT_THAT(dictionary.keys(), IsEmpty());
  EXPECT_EQ(dictionary.countOfObjectsInBucketWithKey(nullptr), 0);
  EXPECT_THROW(dictionary.putObject(nullptr, box(7)), std::invalid_argument);
  EXPECT_EQ(dictionary.count(), 1) << "the empty bucket stays";
  QNBucketDictionary<std::optional<Text>, int> byTown;
  byTown.putObject(1, std::nullopt);
  byTown.putObject(2, u"Ulm");
  EXPECT_THAT(byTown.keys(), ElementsAre(Text(u"Ulm")));

  const auto key = std::make_shared<NSMutableString>(u"key");
  dictionary.putObject(box(1), key);
  key->mutableText() = u"changed";
  EXPECT_EQ(dictionary.countOfObjectsInBucketWithKey(box(u"key")), 1) << "the key was copied";
  EXPECT_EQ(dictionary.countOfObjectsInBucketWithKey(key), 0);
  EXPECT_THROW(dictionary.putObject(box(1), std::make_shared<NSObject>()), std::invalid_argument);
}

}  // namespace
}  // namespace kelvane
