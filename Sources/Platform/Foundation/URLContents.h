#pragma once

#include <string>

#include "Platform/Foundation/Export.h"
#include "Platform/Foundation/NSData.h"
#include "Platform/Foundation/NSDictionary.h"
#include "Platform/Foundation/NSError.h"
#include "Platform/Foundation/NSURLRequest.h"

// What is behind a URL, read whole while the caller waits: http, https and file. Only regular files are read, and of
// answers of servers only those whose status is below 400. Any thread; each keeps its connections for its next
// requests.
namespace kelvane {

// dataWithContentsOfURL:options:error:  Nil for nil and after a failure, about which `error`, which may be null, tells.
KELVANE_EXPORT Ref<NSData> dataWithContentsOfURL(const Ref<NSURL>& url, Ref<NSError>* error = nullptr,
                                                 const URLLimits& limits = {});

// dictionaryWithContentsOfURL:  The dictionary that an XML property list there (PropertyList.h) has at its root; nil
// where there is none.
KELVANE_EXPORT Ref<NSDictionary> dictionaryWithContentsOfURL(const Ref<NSURL>& url, const URLLimits& limits = {});

// Makes the contents of `url` those of the file at `path`, little by little but at once in the end (AtomicFileWriter,
// with NewFileAccess::Customary): after a failure the file is as it was, or absent. Nil, or what went wrong;
// NSURLErrorCannotWriteToFile when it was the writing. `progress` may be empty.
KELVANE_EXPORT Ref<NSError> saveContentsOfURL(const Ref<NSURL>& url, const std::string& path,
                                              const URLLimits& limits = {}, const URLProgressCall& progress = nullptr);

}  // namespace kelvane
