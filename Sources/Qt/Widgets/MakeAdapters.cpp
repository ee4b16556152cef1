#include "Qt/Widgets/Adapters.h"
#include "Qt/Widgets/QtViewOf.h"
#include "Qt/Widgets/QtWindow.h"

namespace kelvane {

Ref<NSView> makeView(QWidget& widget) { return std::make_shared<QtView>(widget); }

Ref<NSWindow> makeWindow(QWidget& window) { return std::make_shared<QtWindow>(window); }

}  // namespace kelvane
