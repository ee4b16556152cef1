#pragma once

#include <optional>
#include <utility>

#include "Platform/Foundation/NSObject.h"

namespace kelvane {

// An exception as the logger takes it: a name and, unless nobody gave one, a reason. Immutable.
class KELVANE_EXPORT NSException : public NSObject {
 public:
  explicit NSException(Text name, std::optional<Text> reason = std::nullopt)
      : myName(std::move(name)), myReason(std::move(reason)) {}

  const Text& name() const { return myName; }
  const std::optional<Text>& reason() const { return myReason; }

  // The reason; where there is none, the name.
  Text description() const override { return myReason.value_or(myName); }

 private:
  Text myName;
  std::optional<Text> myReason;
};

}  // namespace kelvane
