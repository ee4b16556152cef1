#include "Qt/Widgets/QtPopUpButton.h"

#include "Qt/Widgets/QtText.h"

namespace kelvane {

Text QtPopUpButton::itemTitleAtIndex(std::size_t index) const {
  return index < numberOfItems() ? textOf(widget()->itemText(static_cast<int>(index))) : Text();
}

void QtPopUpButton::selectItemAtIndex(std::size_t index) {
  if (index < numberOfItems()) widget()->setCurrentIndex(static_cast<int>(index));
}

std::size_t QtPopUpButton::indexOfSelectedItem() const {
  const int index = widget() ? widget()->currentIndex() : -1;
  return index < 0 ? NSNotFound : static_cast<std::size_t>(index);
}

}  // namespace kelvane
