#include "Extensions/NSPopUpButton-QNExtensions.h"

#include "Platform/Foundation/TextCase.h"

namespace kelvane {

void selectItemWithTitleIgnoreCase(NSPopUpButton& receiver, TextView title) {
  // Selecting may change the list, so it is asked for its length each time.
  for (std::size_t i = 0; i < receiver.numberOfItems(); ++i)
    if (isEqualIgnoringCase(receiver.itemTitleAtIndex(i), title)) receiver.selectItemAtIndex(i);
}

}  // namespace kelvane
