#include "Platform/Foundation/FontCatalogue.h"

#include <fontconfig/fontconfig.h>

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "Platform/Foundation/TextEncoding.h"

namespace kelvane {
namespace {

using Face = std::shared_ptr<const FontFace>;

struct PatternDeleter {
  void operator()(FcPattern* pattern) const { FcPatternDestroy(pattern); }
};
struct FontSetDeleter {
  void operator()(FcFontSet* fonts) const { FcFontSetDestroy(fonts); }
};
struct ObjectSetDeleter {
  void operator()(FcObjectSet* objects) const { FcObjectSetDestroy(objects); }
};
using Pattern = std::unique_ptr<FcPattern, PatternDeleter>;
using FontSet = std::unique_ptr<FcFontSet, FontSetDeleter>;

// A face as the catalogue lists it.
struct ListedFace {
  Face face;
  // How far the width is from normal.
  int widthDistance = 0;
};

// Everything of fontconfig is touched under this lock.
struct Catalogue {
  std::mutex lock;
  std::map<Text, std::vector<ListedFace>, std::less<>> families;
  std::map<Text, Face, std::less<>> names;
  std::optional<Face> system;
};

Catalogue& catalogue() {
  static auto& theCatalogue = *new Catalogue();
  return theCatalogue;
}

// Names come from documents too, and are not to fill the memory.
constexpr std::size_t mostNames = 1024;

template <class Map>
typename Map::mapped_type& remembered(Map& map, TextView name) {
  if (map.size() >= mostNames) map.clear();
  return map[Text(name)];
}

int weightFromFontconfig(int weight) {
  constexpr std::pair<int, int> steps[] = {
      {FC_WEIGHT_THIN, 2},   {FC_WEIGHT_EXTRALIGHT, 3}, {FC_WEIGHT_DEMILIGHT, 4}, {FC_WEIGHT_REGULAR, 5},
      {FC_WEIGHT_MEDIUM, 6}, {FC_WEIGHT_DEMIBOLD, 8},   {FC_WEIGHT_BOLD, 9},      {FC_WEIGHT_EXTRABOLD, 10},
      {FC_WEIGHT_BLACK, 11}, {FC_WEIGHT_EXTRABLACK, 12}};
  const auto nearest = std::ranges::min_element(
      steps, {}, [weight](const std::pair<int, int>& step) { return std::abs(step.first - weight); });
  return nearest->second;
}

int integerIn(FcPattern* pattern, const char* object, int fallback) {
  int value = fallback;
  return FcPatternGetInteger(pattern, object, 0, &value) == FcResultMatch ? value : fallback;
}

// The English value where there are several, else the first.
std::string nameIn(FcPattern* pattern, const char* object, const char* languages) {
  FcChar8* name = nullptr;
  FcChar8* language = nullptr;
  int index = 0;
  for (int i = 0; FcPatternGetString(pattern, languages, i, &language) == FcResultMatch; ++i) {
    if (std::string_view(reinterpret_cast<const char*>(language)) != "en") continue;
    index = i;
    break;
  }
  if (FcPatternGetString(pattern, object, index, &name) != FcResultMatch) return {};
  return reinterpret_cast<const char*>(name);
}

ListedFace faceFrom(FcPattern* pattern) {
  auto face = std::make_shared<FontFace>();
  const std::string family = nameIn(pattern, FC_FAMILY, FC_FAMILYLANG);
  std::string fullName = nameIn(pattern, FC_FULLNAME, FC_FULLNAMELANG);
  if (fullName.empty()) fullName = family + " " + nameIn(pattern, FC_STYLE, FC_STYLELANG);
  face->family = textFromUTF8(family);
  face->fullName = textFromUTF8(fullName);
  face->weight = weightFromFontconfig(integerIn(pattern, FC_WEIGHT, FC_WEIGHT_REGULAR));
  if (integerIn(pattern, FC_SLANT, FC_SLANT_ROMAN) != FC_SLANT_ROMAN) face->traits |= NSItalicFontMask;
  if (face->weight >= 9) face->traits |= NSBoldFontMask;
  return {std::move(face), std::abs(integerIn(pattern, FC_WIDTH, FC_WIDTH_NORMAL) - FC_WIDTH_NORMAL)};
}

// All faces for which `object` is `name`. Fonts that can take any weight are listed by their named forms.
std::vector<ListedFace> list(const char* object, TextView name) {
  // A name with NUL would be cut there, and found.
  if (name.find(u'\0') != TextView::npos) return {};
  const Pattern pattern(FcPatternCreate());
  FcPatternAddString(pattern.get(), object, reinterpret_cast<const FcChar8*>(utf8(name).c_str()));
  const std::unique_ptr<FcObjectSet, ObjectSetDeleter> objects(
      FcObjectSetBuild(FC_FAMILY, FC_FAMILYLANG, FC_FULLNAME, FC_FULLNAMELANG, FC_STYLE, FC_STYLELANG, FC_WEIGHT,
                       FC_SLANT, FC_WIDTH, FC_VARIABLE, static_cast<char*>(nullptr)));
  const FontSet fonts(FcFontList(nullptr, pattern.get(), objects.get()));
  std::vector<ListedFace> faces;
  if (!fonts) return faces;
  for (int i = 0; i < fonts->nfont; ++i) {
    FcBool isVariable = FcFalse;
    FcPatternGetBool(fonts->fonts[i], FC_VARIABLE, 0, &isVariable);
    if (!isVariable) faces.push_back(faceFrom(fonts->fonts[i]));
  }
  // The order in which folders are read must not decide which one is chosen.
  std::ranges::sort(faces, {}, [](const ListedFace& listed) -> const Text& { return listed.face->fullName; });
  return faces;
}

// With the lock held.
Face faceOfFamilyLocked(TextView family, NSFontTraitMask traits, int weight) {
  auto& families = catalogue().families;
  auto place = families.find(family);
  const auto& faces =
      place != families.end() ? place->second : (remembered(families, family) = list(FC_FAMILY, family));
  if (traits & NSBoldFontMask) weight = std::max(weight, 9);
  const ListedFace* best = nullptr;
  const auto distance = [weight](const ListedFace& listed) {
    return std::pair(listed.widthDistance, std::abs(listed.face->weight - weight));
  };
  for (const ListedFace& listed : faces)
    if (listed.face->traits == (traits & (NSItalicFontMask | NSBoldFontMask)) &&
        (!best || distance(listed) < distance(*best)))
      best = &listed;
  return best ? best->face : nullptr;
}

Face findFaceNamed(TextView name) {
  for (const char* object : {FC_FULLNAME, FC_POSTSCRIPT_NAME})
    if (std::vector<ListedFace> faces = list(object, name); !faces.empty()) return faces.front().face;
  if (Face plain = faceOfFamilyLocked(name, 0, 5)) return plain;
  const auto& faces = catalogue().families.find(name)->second;
  return faces.empty() ? nullptr : faces.front().face;
}

Face findSystemFace() {
  const Pattern wanted(FcPatternCreate());
  FcPatternAddString(wanted.get(), FC_FAMILY, reinterpret_cast<const FcChar8*>("sans-serif"));
  FcConfigSubstitute(nullptr, wanted.get(), FcMatchPattern);
  FcDefaultSubstitute(wanted.get());
  FcResult result = FcResultNoMatch;
  const Pattern found(FcFontMatch(nullptr, wanted.get(), &result));
  if (!found || result != FcResultMatch) return nullptr;
  return faceFrom(found.get()).face;
}

}  // namespace

std::shared_ptr<const FontFace> FontCatalogue::faceNamed(TextView name) {
  const std::scoped_lock guard(catalogue().lock);
  auto& names = catalogue().names;
  if (const auto place = names.find(name); place != names.end()) return place->second;
  return remembered(names, name) = findFaceNamed(name);
}

std::shared_ptr<const FontFace> FontCatalogue::faceOfFamily(TextView family, NSFontTraitMask traits, int weight) {
  const std::scoped_lock guard(catalogue().lock);
  return faceOfFamilyLocked(family, traits, weight);
}

std::shared_ptr<const FontFace> FontCatalogue::systemFace() {
  const std::scoped_lock guard(catalogue().lock);
  auto& system = catalogue().system;
  if (!system) system = findSystemFace();
  return *system;
}

}  // namespace kelvane
