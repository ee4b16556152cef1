#pragma once

#include <optional>
#include <vector>

#include "Platform/Foundation/Export.h"
#include "Platform/Foundation/NSFont.h"
#include "Platform/Foundation/Text.h"

// Looking fonts up by name (NSFont::fontWithName) in such a way that there is always one: nothing only on a machine
// without any fonts. Each step down is logged. Any thread.
//
// ```cpp
// const auto font = NSFontExtensions::fontWithNameAlternatives({u"Fira Code", u"DejaVu Sans Mono"}, 13);
// ```
namespace kelvane::NSFontExtensions {

// fontWithName:size:defaultFont:  The font of that name, else the default font as it is, in its own size, else the
// system font of the size.
KELVANE_EXPORT std::optional<NSFont> fontWithName(TextView name, double size, const std::optional<NSFont>& defaultFont);

// fontWithNameAlternatives:size:  The font of the first name that there is one of, else the system font.
KELVANE_EXPORT std::optional<NSFont> fontWithNameAlternatives(const std::vector<Text>& names, double size);

}  // namespace kelvane::NSFontExtensions
