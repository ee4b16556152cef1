#include "Qt/QtEvents.h"

#include <QGuiApplication>
#include <QInputEvent>
#include <utility>

namespace kelvane {
namespace {

std::uint64_t modifierFlags(Qt::KeyboardModifiers modifiers) {
  constexpr std::pair<Qt::KeyboardModifier, std::uint64_t> masks[] = {{Qt::ShiftModifier, NSShiftKeyMask},
                                                                      {Qt::ControlModifier, NSCommandKeyMask},
                                                                      {Qt::AltModifier, NSAlternateKeyMask},
                                                                      {Qt::MetaModifier, NSControlKeyMask},
                                                                      {Qt::KeypadModifier, NSNumericPadKeyMask}};
  std::uint64_t flags = 0;
  for (const auto& [modifier, mask] : masks)
    if (modifiers.testFlag(modifier)) flags |= mask;
  return flags;
}

}  // namespace

Ref<NSEvent> eventFrom(const QInputEvent& event) { return std::make_shared<NSEvent>(modifierFlags(event.modifiers())); }

Ref<NSEvent> currentEvent() {
  return std::make_shared<NSEvent>(modifierFlags(QGuiApplication::queryKeyboardModifiers()));
}

}  // namespace kelvane
