#pragma once

#include "Platform/Foundation/Geometry.h"
#include "Platform/Foundation/NSColor.h"
#include "Platform/Foundation/NSDictionary.h"
#include "Platform/Foundation/Text.h"

// How the gallery looks.
namespace gallery {

extern const kelvane::NSColor paper;
extern const kelvane::NSColor sheet;
extern const kelvane::NSColor ink;
extern const kelvane::NSColor quiet;
extern const kelvane::NSColor faint;
extern const kelvane::NSColor blue;
extern const kelvane::NSColor paleBlue;
extern const kelvane::NSColor sand;

// Attributes of text in the system font.
kelvane::Ref<kelvane::NSDictionary> plainText(double pointSize, const kelvane::NSColor& color);
kelvane::Ref<kelvane::NSDictionary> boldText(double pointSize, const kelvane::NSColor& color);

// Sets the colour of what is filled and stroked from now on.
void use(const kelvane::NSColor& color);
// A line of text with its middle, or its left end, at `x` and its lower edge at `y`.
void drawCentred(kelvane::TextView text, double x, double y, const kelvane::Ref<kelvane::NSDictionary>& attributes);
// A small caption below what stands at `x`.
void caption(kelvane::TextView text, double x, double y);
void fillRounded(const kelvane::CGRect& rect, double radius, const kelvane::NSColor& color);

}  // namespace gallery
