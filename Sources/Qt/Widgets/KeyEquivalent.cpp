#include "Qt/Widgets/KeyEquivalent.h"

#include <QChar>
#include <QList>
#include <utility>

#include "Qt/Widgets/QtText.h"

namespace kelvane {
namespace {

// What has a key and no character of its own.
constexpr std::pair<char32_t, Qt::Key> namedKeys[] = {
    {0x03, Qt::Key_Enter},    {0x08, Qt::Key_Backspace},  {0x09, Qt::Key_Tab},     {0x0A, Qt::Key_Return},
    {0x0D, Qt::Key_Return},   {0x19, Qt::Key_Backtab},    {0x1B, Qt::Key_Escape},  {0x7F, Qt::Key_Backspace},
    {0xF700, Qt::Key_Up},     {0xF701, Qt::Key_Down},     {0xF702, Qt::Key_Left},  {0xF703, Qt::Key_Right},
    {0xF727, Qt::Key_Insert}, {0xF728, Qt::Key_Delete},   {0xF729, Qt::Key_Home},  {0xF72B, Qt::Key_End},
    {0xF72C, Qt::Key_PageUp}, {0xF72D, Qt::Key_PageDown}, {0xF72E, Qt::Key_Print}, {0xF72F, Qt::Key_ScrollLock},
    {0xF730, Qt::Key_Pause},  {0xF735, Qt::Key_Menu},
};
constexpr char32_t firstFunctionKey = 0xF704;
constexpr char32_t lastFunctionKey = 0xF726;
constexpr char32_t helpKey = 0xF746;

}  // namespace

QKeySequence keySequenceFor(TextView keyEquivalent) {
  const QList<uint> characters = qString(keyEquivalent).toUcs4();
  if (characters.size() != 1) return {};
  const char32_t character = characters[0];
  if (character >= firstFunctionKey && character <= lastFunctionKey)
    return QKeySequence(static_cast<Qt::Key>(Qt::Key_F1 + static_cast<int>(character - firstFunctionKey)));
  if (character == helpKey) return QKeySequence(Qt::Key_Help);
  for (const auto& [known, key] : namedKeys)
    if (known == character) return QKeySequence(Qt::CTRL | key);
  const auto key = static_cast<Qt::Key>(QChar::toUpper(character));
  return QChar::isUpper(character) ? QKeySequence(Qt::CTRL | Qt::SHIFT | key) : QKeySequence(Qt::CTRL | key);
}

}  // namespace kelvane
