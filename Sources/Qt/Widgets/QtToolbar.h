#pragma once

#include <QAction>
#include <QToolBar>

#include "Platform/Desktop/NSToolbar.h"
#include "Platform/Foundation/Ref.h"

namespace kelvane {

// The toolbar's adapter, always the same one; nil for null.
Ref<NSToolbar> toolbarOf(QToolBar* toolBar);
// The action behind an item; null when it has gone, and for items that are none of Qt's.
QAction* actionOf(const NSToolbarItem* item);

}  // namespace kelvane
