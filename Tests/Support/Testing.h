#pragma once

// What every test begins with: GoogleTest, texts that it prints for people, and the matchers that many tests use.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

#include "Support/TextPrinting.h"

namespace kelvane {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::ThrowsMessage;
using testing::UnorderedElementsAre;

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double nan = std::numeric_limits<double>::quiet_NaN();

}  // namespace kelvane
