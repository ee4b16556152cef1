// Tells which desktop the library asks once Qt's is installed.
#include <QApplication>
#include <iostream>

#include "Platform/Desktop/Desktop.h"
#include "Qt/QtDesktop.h"

int main(int argc, char* argv[]) {
  QApplication application(argc, argv);
  kelvane::installQtDesktop();
  const bool isQt = kelvane::Desktop::current().userInterfaceVersionNumber() >= 6;
  std::cout << (isQt ? "Qt 6" : "no Qt") << '\n';
}
