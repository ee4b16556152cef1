#pragma once

// What the examples in the documentation take as given: things that any host has.

#include <algorithm>
#include <iostream>
#include <string>

#include "Network/QNHTTPPost.h"
#include "Platform/Desktop/NSMenu.h"
#include "Platform/Desktop/NSSplitView.h"
#include "Platform/Desktop/NSWindow.h"
#include "Platform/Foundation/Properties.h"

#if __has_include(<QApplication>)
#include <QApplication>
#include <QMainWindow>
#include <QMenuBar>
#include <QMouseEvent>
#include <QPushButton>
#include <QTextEdit>
#include <QTreeView>
#endif

namespace examples {

using namespace kelvane;

class Person : public NSObject {
 public:
  std::uint64_t number() const { return myNumber; }

 private:
  std::uint64_t myNumber = 0;
};

extern const Text text, path, folder, name;
extern const std::string bytes;
extern const Ref<NSDictionary> form;
extern const Ref<NSArray> folders;
extern const Ref<NSObject> document, notebook, note;
extern NSObject* const observer;
extern const Ref<Person> ann;
extern const Ref<NSMenu> mainMenu;
extern const Ref<NSWindow> window;
extern const Ref<NSSplitView> splitView;
extern QNHTTPPost post;

}  // namespace examples
