#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QKeyEvent>

#include "Extensions/NSEvent-QNExtensions.h"
#include "Qt/QtEvents.h"

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
}

}  // namespace
}  // namespace kelvane
