#pragma once

#include <QComboBox>

#include "Platform/Desktop/NSPopUpButton.h"
#include "Qt/Widgets/QtViewOf.h"

namespace kelvane {

// A QComboBox. Its items have their text as title.
class QtPopUpButton final : public QtViewOf<NSPopUpButton, QComboBox> {
 public:
  using QtViewOf::QtViewOf;

  std::size_t numberOfItems() const override { return widget() ? static_cast<std::size_t>(widget()->count()) : 0; }
  Text itemTitleAtIndex(std::size_t index) const override;
  void selectItemAtIndex(std::size_t index) override;
  std::size_t indexOfSelectedItem() const override;
};

}  // namespace kelvane
