#pragma once

#include "Platform/Desktop/Desktop.h"

namespace kelvane {

// Desktop::popUpMenu  A menu that pulls down opens below the frame, any other one over it, at its upper left corner; at
// least as wide as the frame, as far as the screen allows. Nothing when there is no item to show. Main thread only.
void popUp(const MenuPopUp& popUp);

}  // namespace kelvane
