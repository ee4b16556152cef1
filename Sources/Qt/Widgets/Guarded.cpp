#include "Qt/Widgets/Guarded.h"

#include "Platform/Foundation/Format.h"
#include "Platform/Foundation/TextEncoding.h"
#include "Utilities/QNLogger.h"

namespace kelvane {

void reportThrown(const char* where, const std::exception_ptr& thrown) {
  Text reason = u"unknown";
  try {
    std::rethrow_exception(thrown);
  } catch (const std::exception& exception) {
    reason = textFromUTF8(exception.what());
  } catch (...) {
  }
  QNLogger::sharedLogger().error(__LINE__, __FILE__, where, format(u"Exception occurred: %@", reason));
}

}  // namespace kelvane
