#include "Extensions/NSURL-QNExtensions.h"

#include "Extensions/NSBundle-QNExtensions.h"
#include "Extensions/NSFileManager-QNExtensions.h"
#include "Network/QNNetworkUtilities.h"
#include "Platform/Foundation/Format.h"
#include "Platform/Foundation/NSURLError.h"
#include "Platform/Foundation/TextEncoding.h"
#include "Platform/Foundation/URLContents.h"
#include "Utilities/QNLogger.h"

namespace kelvane {

namespace NSURLExtensions {

Ref<NSURL> fileURLForResource(std::optional<TextView> name, std::optional<TextView> ofType) {
  return fileURLForResource(name, ofType, &NSBundle::mainBundle());
}

Ref<NSURL> fileURLForResource(std::optional<TextView> name, std::optional<TextView> ofType, const NSBundle* inBundle) {
  return inBundle ? URLForResource(*inBundle, name, ofType) : nullptr;
}

}  // namespace NSURLExtensions

bool isReachable(const Ref<NSURL>& receiver) { return QNNetworkUtilities::isReachable(receiver); }

Ref<NSURL> qn_downloadContentsOfURLToTemporaryFolderUsingFileExtension(const Ref<NSURL>& receiver,
                                                                       std::optional<TextView> extension,
                                                                       const URLProgressCall& progress,
                                                                       const URLLimits& limits) {
  Ref<NSURL> target = NSFileManagerExtensions::temporaryFileURLWithExtension(extension);
  if (!target) return nullptr;
  const std::string path = fileSystemRepresentation(target->path().value_or(Text()));
  const Ref<NSError> error = saveContentsOfURL(receiver, path, limits, progress);
  if (!error) return target;
  const bool isWritten = error->code() != NSURLErrorCannotWriteToFile;
  QNLogger::sharedLogger().error(__LINE__, __FILE__,
                                 "-[NSURL(QNExtensions) qn_downloadContentsOfURLToTemporaryFolderUsingFileExtension:]",
                                 isWritten ? format(u"Can't download contents of URL: %@", receiver)
                                           : format(u"Can't write contents to URL: %@", target));
  return nullptr;
}

}  // namespace kelvane
