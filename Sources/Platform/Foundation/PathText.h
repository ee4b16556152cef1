#pragma once

#include "Platform/Foundation/Export.h"
#include "Platform/Foundation/Text.h"

// Paths as text. The file system is not asked; only "~" asks for home folders. Any thread.
namespace kelvane {

// stringByExpandingTildeInPath  "~" and "~name" at the start, up to the first "/", replaced by the home folder of the
// user, or of the user of that name; a path that begins otherwise, or names nobody, as it is.
KELVANE_EXPORT Text stringByExpandingTildeInPath(TextView path);

// stringByStandardizingPath  The path with "~" expanded, without ".", doubled or trailing "/", and with ".." taken back
// where it has something to take back: at the start of a relative path it stays, at the root it is dropped.
//
//   u"/a//b/./c/"  => u"/a/b/c"        u"/../a" => u"/a"        u"./a" => u"a"
//   u"a/../../b"   => u"../b"          u"/"     => u"/"         u"a/.." => u"."
//   u"~/x/./y"     => u"/home/ann/x/y" u"."     => u"."         u""    => u""
//   u"./~ann"      => u"./~ann"
KELVANE_EXPORT Text stringByStandardizingPath(TextView path);

}  // namespace kelvane
