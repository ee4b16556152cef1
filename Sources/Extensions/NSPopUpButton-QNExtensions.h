#pragma once

#include "Platform/Desktop/NSPopUpButton.h"
#include "Platform/Foundation/Export.h"
#include "Platform/Foundation/Text.h"

namespace kelvane {

// selectItemWithTitleIgnoreCase:  Selects the item that has the title, whatever the case of either (Unicode case
// folding). Each one that has it is selected in its turn, so that the last of several stays selected; when none has it,
// the selection stays. Main thread only.
//   items Open, Save, OPEN; u"open" => the third
KELVANE_EXPORT void selectItemWithTitleIgnoreCase(NSPopUpButton& receiver, TextView title);

}  // namespace kelvane
