#pragma once

#include "Platform/Foundation/Export.h"
#include "Platform/Foundation/Text.h"

// Paths as text. The file system is not asked; only "~" asks for home folders. Any thread.
//
// What returns a TextView returns a slice of the path that it is given; given a temporary Text, a Text of its own. "/"
// at the end and doubled count for nothing, except that the root is "/". A "." and a ".." are names like any other, but
// for stringByStandardizingPath.
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

// isAbsolutePath  Whether the path begins with "/", or with "~", which stands for an absolute one.
inline bool isAbsolutePath(TextView path) { return path.starts_with(u'/') || path.starts_with(u'~'); }

// lastPathComponent  The name at the end.
//   u"/a/b.txt" => u"b.txt"      u"/a/b//" => u"b"      u"/" => u"/"      u"" => u""
KELVANE_EXPORT TextView lastPathComponent(TextView path);
template <TemporaryText T>
Text lastPathComponent(T&& temporary) {
  return Text(lastPathComponent(TextView(temporary)));
}

// stringByDeletingLastPathComponent  The path without the name at the end and the "/" before it; empty when that was
// all.
//   u"/a/b.txt" => u"/a"      u"/a/b//" => u"/a"      u"/a" => u"/"      u"/" => u"/"      u"a" => u""
KELVANE_EXPORT TextView stringByDeletingLastPathComponent(TextView path);
template <TemporaryText T>
Text stringByDeletingLastPathComponent(T&& temporary) {
  return Text(stringByDeletingLastPathComponent(TextView(temporary)));
}

// stringByAppendingPathComponent:  The two with one "/" between them: those at the end of `path` and at the start of
// `component` are dropped, and `component` follows as it stands otherwise, without those at its end.
//   u"/a", u"b" => u"/a/b"      u"/a/", u"/b/" => u"/a/b"      u"/", u"b" => u"/b"      u"", u"b" => u"b"
KELVANE_EXPORT Text stringByAppendingPathComponent(TextView path, TextView component);

// pathExtension  What follows the last "." of the last name; empty when there is none, and for a name that begins with
// its only "." or ends with one.
//   u"/a/b.tar.gz" => u"gz"      u"b.d/" => u"d"      u"/a.b/c" => u""      u".profile" => u""      u"b." => u""
KELVANE_EXPORT TextView pathExtension(TextView path);
template <TemporaryText T>
Text pathExtension(T&& temporary) {
  return Text(pathExtension(TextView(temporary)));
}

// stringByDeletingPathExtension  The path without the extension and the "." before it, and without "/" at its end.
//   u"/a/b.tar.gz" => u"/a/b.tar"      u"b.d/" => u"b"      u".profile" => u".profile"      u"b." => u"b."
KELVANE_EXPORT TextView stringByDeletingPathExtension(TextView path);
template <TemporaryText T>
Text stringByDeletingPathExtension(T&& temporary) {
  return Text(stringByDeletingPathExtension(TextView(temporary)));
}

// stringByAppendingPathExtension:  The path, without "/" at its end, "." and the extension. The path as it stands when
// it is empty or the root, since there is no name to extend.
//   u"/a/b", u"txt" => u"/a/b.txt"      u"b/", u"d" => u"b.d"
KELVANE_EXPORT Text stringByAppendingPathExtension(TextView path, TextView extension);

}  // namespace kelvane
