#pragma once

#include <QKeySequence>

#include "Platform/Foundation/Text.h"

namespace kelvane {

// The keys that choose a menu item with that key equivalent (QtMenus.h tells the rules); none for empty text and for
// what is more than one character.
QKeySequence keySequenceFor(TextView keyEquivalent);

}  // namespace kelvane
