#pragma once

// What every test begins with: GoogleTest, texts that it prints for people, the matchers that many tests use, the
// ordinary headers of the standard library, what makes boxes, arrays and dictionaries, folders and captured messages.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <functional>
#include <limits>
#include <map>
#include <memory>
#include <optional>
#include <random>
#include <set>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

#include "Platform/Foundation/Boxing.h"
#include "Platform/Foundation/NSArray.h"
#include "Platform/Foundation/NSDictionary.h"
#include "Support/CapturedSystemLog.h"
#include "Support/TemporaryFolder.h"
#include "Support/TextPrinting.h"

namespace kelvane {

using testing::AllOf;
using testing::Each;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::MatchesRegex;
using testing::Not;
using testing::StartsWith;
using testing::ThrowsMessage;
using testing::UnorderedElementsAre;

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double NaN = std::numeric_limits<double>::quiet_NaN();

inline Ref<NSArray> arrayOf(std::vector<Ref<NSObject>> elements) {
  return std::make_shared<NSArray>(std::move(elements));
}
inline Ref<NSDictionary> dictionaryOf(NSDictionary::Entries entries) {
  return std::make_shared<NSDictionary>(std::move(entries));
}

// Matchers of what raises for a wrong argument or an index that is none, with the texts in its message.
auto refuses(const auto&... texts) { return ThrowsMessage<std::invalid_argument>(AllOf(HasSubstr(texts)...)); }
auto isBeyond(const auto&... texts) { return ThrowsMessage<std::out_of_range>(AllOf(HasSubstr(texts)...)); }

}  // namespace kelvane

// Tests are hosts: they use the library from without.
using namespace kelvane;
