#pragma once

#include <cstdint>
#include <vector>

#include "Platform/Foundation/Export.h"
#include "Platform/Foundation/Text.h"

// Where the standard folders are. Any thread, as long as none changes the environment.
namespace kelvane {

enum class NSSearchPathDirectory {
  NSLibraryDirectory,
  NSApplicationSupportDirectory,
  NSCachesDirectory,
  NSDocumentDirectory,
  NSDesktopDirectory,
  NSDownloadsDirectory,
  NSMoviesDirectory,
  NSMusicDirectory,
  NSPicturesDirectory,
};
using enum NSSearchPathDirectory;

// Domains, one bit each: of the user, of this machine, of the network (which has no folders here), and of what the
// system came with.
using NSSearchPathDomainMask = std::uint32_t;
inline constexpr NSSearchPathDomainMask NSUserDomainMask = 1;
inline constexpr NSSearchPathDomainMask NSLocalDomainMask = 2;
inline constexpr NSSearchPathDomainMask NSNetworkDomainMask = 4;
inline constexpr NSSearchPathDomainMask NSSystemDomainMask = 8;
inline constexpr NSSearchPathDomainMask NSAllDomainsMask = 0xFFFF;

// NSSearchPathForDirectoriesInDomains(directory, domains, expandTilde)  The paths of a standard folder in each of the
// domains that have one, in the order user, local, system; whether they are there is not asked. Without `expandTilde`
// those in the home folder begin with "~".
//
// - Library and Application Support: XDG_DATA_HOME, else ~/.local/share; /usr/local/share; /usr/share.
// - Caches: XDG_CACHE_HOME, else ~/.cache; /var/cache.
// - Documents, Desktop and so on, only of the user: as "user-dirs.dirs" in the configuration folder says, else
//   ~/Documents, ~/Desktop and so on; movies are in ~/Videos.
//
// Relative values of the variables and in the file count as unset.
KELVANE_EXPORT std::vector<Text> NSSearchPathForDirectoriesInDomains(NSSearchPathDirectory directory,
                                                                     NSSearchPathDomainMask domains, bool expandTilde);

// NSTemporaryDirectory  The user's own folder for temporary files: what TMPDIR names when that is an absolute path,
// else "/tmp"; where others can write there too, the folder "kelvane-UID" in it, which is made when it is missing
// (0700). If somebody else has taken that name, or it is a link, a folder with a name that is new with each process.
KELVANE_EXPORT Text NSTemporaryDirectory();

}  // namespace kelvane
