// Tells what a colour's name stands for: Colour navy
#include <iostream>

#include "Graphics/QNColorPalette.h"
#include "Platform/Foundation/TextEncoding.h"

int main(int argc, char* argv[]) {
  const kelvane::Text name = kelvane::textFromUTF8(argc > 1 ? argv[1] : "navy");
  const auto colour = kelvane::QNColorPalette::colorForString(name);
  if (!colour) return 1;
  std::cout << kelvane::utf8(name) << ' ' << kelvane::utf8(kelvane::QNColorPalette::stringForColor(*colour)) << '\n';
}
