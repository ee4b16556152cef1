#include "Qt/QtEvents.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QKeyEvent>
#include <QTest>
#include <QWidget>

#include "Extensions/NSEvent-QNExtensions.h"

namespace kelvane {
namespace {

TEST(QtEvents, ModifierKeysAreToldByWhatTheyAreFor) {
  struct Row {
    Qt::KeyboardModifiers held;
    std::uint64_t flags;
    bool isCommand;
  };
  for (const Row& row : {Row{Qt::NoModifier, 0, false}, Row{Qt::ControlModifier, NSCommandKeyMask, true},
                         Row{Qt::MetaModifier | Qt::ShiftModifier, NSControlKeyMask | NSShiftKeyMask, true},
                         Row{Qt::AltModifier | Qt::KeypadModifier, NSAlternateKeyMask | NSNumericPadKeyMask, true},
                         Row{Qt::KeypadModifier, NSNumericPadKeyMask, false}}) {
    const Ref<NSEvent> event = eventFrom(QKeyEvent(QEvent::KeyPress, Qt::Key_A, row.held));
    EXPECT_EQ(event->modifierFlags(), row.flags);
    EXPECT_EQ(isAnyCommandModificationKeyPressed(*event), row.isCommand);
  }
  QWidget window;
  window.show();
  QTest::keyPress(&window, Qt::Key_Control, Qt::ControlModifier);
  EXPECT_EQ(currentEvent()->modifierFlags(), NSCommandKeyMask);
  QTest::keyRelease(&window, Qt::Key_Control);
  EXPECT_EQ(currentEvent()->modifierFlags(), 0U);
}

}  // namespace
}  // namespace kelvane
