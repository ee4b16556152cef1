#include "Platform/Foundation/Boxing.h"

#include <string>

#include "Platform/Foundation/Raise.h"

namespace kelvane::detail {

void raiseWrongKind(const NSObject* object, std::string_view wanted) {
  const std::string reason = std::string(wanted) + " is wanted, not";
  raiseInvalidArgument("unbox", reason, description(object));
}

}  // namespace kelvane::detail
