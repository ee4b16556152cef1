#include "Extensions/NSBundle-QNExtensions.h"

#include "Platform/Foundation/Format.h"
#include "Utilities/QNLogger.h"

namespace kelvane {

Ref<NSURL> URLForResource(const NSBundle& receiver, std::optional<TextView> name, std::optional<TextView> ofType) {
  if (const auto path = receiver.pathForResource(name.value_or(TextView()), ofType.value_or(TextView())))
    return NSURL::fileURLWithPath(*path);
  QNLogger::sharedLogger().error(__LINE__, __FILE__, "-[NSBundle(QNExtensions) URLForResource:ofType:]",
                                 format(u"Can't locate resource '%@' of type '%@'.", name, ofType));
  return nullptr;
}

}  // namespace kelvane
