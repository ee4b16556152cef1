#include <algorithm>
#include <optional>
#include <string_view>
#include <utility>

#include "Extensions/NSString-QNExtensions.h"
#include "Fuzz.h"
#include "Platform/Foundation/Boxing.h"
#include "Platform/Foundation/TextEncoding.h"
#include "Platform/Foundation/TextSearch.h"

namespace {

using namespace kelvane;
using kelvane::fuzz::expect;
using Replacements = NSDictionary::Entries;

std::size_t plainlyFound(TextView text, TextView needle, std::size_t from, std::size_t end, bool goesBackwards) {
  const TextView part = text.substr(0, std::min(end, text.size()));
  if (needle.empty()) return TextView::npos;
  if (!goesBackwards) return part.find(needle, from);
  const std::size_t place = part.rfind(needle);
  return place == TextView::npos || place < from ? TextView::npos : place;
}

// One finder serves many searches, as hosts use it.
void checkFinder(TextView text, TextView needle, NSStringCompareOptions options, std::size_t step) {
  const bool ignoresCase = (options & NSCaseInsensitiveSearch) != 0;
  const Text plainText = ignoresCase ? foldCase(text) : Text(text);
  const Text plainNeedle = ignoresCase ? foldCase(needle) : Text(needle);
  expect(plainText.size() == text.size(), "folding keeps the length");
  expect(foldCase(plainText) == foldCase(text), "folding twice is folding once");
  TextFinder finder(text, needle, options);
  for (std::size_t turn = 0; turn < 12; ++turn) {
    const std::size_t from = turn * step % (text.size() + 2);
    const std::size_t end = turn % 3 == 0 ? text.size() - std::min(text.size(), turn * 5) : text.size() + turn;
    const std::optional<NSRange> found = finder.find(from, end);
    const std::size_t wanted = plainlyFound(plainText, plainNeedle, from, end, (options & NSBackwardsSearch) != 0);
    expect(found.has_value() == (wanted != TextView::npos), "found when the plain way finds it");
    if (found) expect(*found == NSRange{wanted, needle.size()}, "found in the same place");
  }
}

void checkTokens(TextView text, TextView token) {
  const std::size_t place = plainlyFound(text, token, 0, text.size(), false);
  const bool isFound = place != TextView::npos;
  expect(containsString(text, token) == isFound, "contained when the plain way finds it");
  const std::optional<TextView> before = substringToToken(text, token);
  const std::optional<TextView> behind = substringFromToken(text, token);
  expect(before && *before == text.substr(0, place), "what stands before the token");
  fuzz::expectSlice(*before, text, "a slice before the token");
  expect(behind.has_value() == isFound, "something behind the token when there is one");
  if (!isFound) return;
  expect(*behind == text.substr(place + token.size()), "what stands behind the token");
  fuzz::expectSlice(*behind, text, "a slice behind the token");
}

Text plainlyReplaced(Text text, const Replacements& replacements, NSStringCompareOptions options) {
  const bool goesBackwards = (options & NSBackwardsSearch) != 0;
  for (const auto& [key, value] : replacements) {
    const bool ignoresCase = (options & NSCaseInsensitiveSearch) != 0;
    const Text folded = ignoresCase ? foldCase(text) : text;
    const Text needle = ignoresCase ? foldCase(key) : key;
    Text result;
    std::size_t copied = 0;
    for (std::size_t place = 0;;) {
      place = plainlyFound(folded, needle, place, folded.size(), goesBackwards);
      if (place == Text::npos) break;
      result.append(text, copied, place - copied).append(value->description());
      copied = place += needle.size();
      if (goesBackwards) break;
    }
    text = result.append(text, copied);
  }
  return text;
}

}  // namespace

// Lines: options and step, needle, text; all further ones are keys and what they are replaced by.
int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::string_view rest = fuzz::bytesOf(data, size);
  const std::string_view settings = fuzz::takeUntil(rest, '\n');
  const NSStringCompareOptions options = settings.empty() ? 0 : static_cast<unsigned char>(settings[0]);
  const std::size_t step = settings.size() < 2 ? 0 : static_cast<unsigned char>(settings[1]);
  // Stray bytes make unpaired surrogates.
  const fuzz::ExactText needle(textFromFileSystem(fuzz::takeUntil(rest, '\n')));
  const fuzz::ExactText text(textFromFileSystem(fuzz::takeUntil(rest, '\n')));
  checkFinder(text.view(), needle.view(), options, step);
  checkTokens(text.view(), needle.view());
  Replacements replacements;
  while (!rest.empty() && replacements.size() < 4) {
    const Text key = textFromUTF8(fuzz::takeUntil(rest, '\n'));
    // Short ones, or a few keys would make the text grow beyond bounds.
    replacements[key] = box(textFromUTF8(fuzz::takeUntil(rest, '\n').substr(0, 8)));
  }
  expect(replaceAllTextFromDictionary(text.view(), NSDictionary(replacements), options) ==
             plainlyReplaced(Text(text.view()), replacements, options),
         "replaced as in the plain way");
  return 0;
}
