#include "Extensions/NSFont-QNExtensions.h"

#include "Platform/Foundation/Format.h"
#include "Utilities/QNLogger.h"

namespace kelvane {
namespace {

std::optional<NSFont> systemFont(double size, const char* method) {
  auto font = NSFont::systemFontOfSize(size);
  if (!font) QNLogger::sharedLogger().fatal(__LINE__, __FILE__, method, u"Can't find system font.", false);
  return font;
}

}  // namespace

std::optional<NSFont> NSFontExtensions::fontWithName(TextView name, double size,
                                                     const std::optional<NSFont>& defaultFont) {
  constexpr const char* method = "+[NSFont(QNExtensions) fontWithName:size:defaultFont:]";
  if (auto font = NSFont::fontWithName(name, size)) return font;
  QNLogger::sharedLogger().warn(__LINE__, __FILE__, method,
                                format(u"Can't find font '%@'. Fallback to default font.", name));
  if (defaultFont) return defaultFont;
  QNLogger::sharedLogger().error(__LINE__, __FILE__, method, u"Can't find default font. Fallback to system font.");
  return systemFont(size, method);
}

std::optional<NSFont> NSFontExtensions::fontWithNameAlternatives(const std::vector<Text>& names, double size) {
  constexpr const char* method = "+[NSFont(QNExtensions) fontWithNameAlternatives:size:]";
  for (const Text& name : names) {
    if (auto font = NSFont::fontWithName(name, size)) return font;
    QNLogger::sharedLogger().error(__LINE__, __FILE__, method,
                                   format(u"Can't find font '%@'. Will try next alternative", name));
  }
  QNLogger::sharedLogger().error(__LINE__, __FILE__, method,
                                 u"Can't find font from alternatives. Will fallback to system font.");
  return systemFont(size, method);
}

}  // namespace kelvane
