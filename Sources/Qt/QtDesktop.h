#pragma once

#include "Platform/Foundation/Export.h"

// The desktop on Qt 6 Widgets. A host that has a QApplication installs it once; from then on all that the library asks
// of a desktop is answered by Qt:
//
//   int main(int argc, char* argv[]) {
//     QApplication application(argc, argv);
//     kelvane::installQtDesktop();
//     ...
//     return QApplication::exec();
//   }
//
// All of it is for the main thread, the one of the QApplication.
namespace kelvane {

// Makes Qt the current desktop. The QApplication must be there, and be destroyed after the last use of the desktop; at
// its end the headless desktop is installed again. Calling it twice is calling it once. Without a QApplication it
// raises std::invalid_argument.
KELVANE_EXPORT void installQtDesktop();

}  // namespace kelvane
