#pragma once

#include <cstdio>
#include <memory>
#include <span>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "Platform/Desktop/Desktop.h"
#include "Platform/Desktop/ImageCodec.h"
#include "Platform/Desktop/NSBezierPath.h"
#include "Platform/Desktop/NSGraphicsContext.h"
#include "Platform/Desktop/OffscreenImage.h"
#include "Platform/Foundation/Boxing.h"
#include "Platform/Foundation/NSAttributedString.h"
#include "Platform/Foundation/NSFont.h"
#include "Platform/Foundation/TextEncoding.h"
#include "Platform/Foundation/TextNumbers.h"

namespace kelvane {

inline std::string shown(double number) { return utf8(shortestDecimal(number)); }
inline std::string shown(const CGPoint& point) { return shown(point.x) + "," + shown(point.y); }
inline std::string shown(const CGRect& rect) { return utf8(NSStringFromRect(rect)); }

// "M10,20 L0,20 A10,10r10:90-270 C0,0>40,0r5 Z": moves, lines, arcs, corners, closes; curves are "B".
inline std::string shown(std::span<const PathElement> elements) {
  struct Writer {
    std::string operator()(const PathMove& move) const { return "M" + shown(move.point); }
    std::string operator()(const PathLine& line) const { return "L" + shown(line.point); }
    std::string operator()(const PathCurve& curve) const { return "B" + shown(curve.point); }
    std::string operator()(const PathArc& arc) const {
      return "A" + shown(arc.center) + "r" + shown(arc.radius) + ":" + shown(arc.startAngle) + "-" +
             shown(arc.endAngle);
    }
    std::string operator()(const PathCorner& corner) const {
      return "C" + shown(corner.fromPoint) + ">" + shown(corner.toPoint) + "r" + shown(corner.radius);
    }
    std::string operator()(const PathClose&) const { return "Z"; }
  };
  std::string text;
  for (const PathElement& element : elements) text += (text.empty() ? "" : " ") + std::visit(Writer(), element);
  return text;
}

// Writes down, one line each, what it is told.
class RecordingContext : public NSGraphicsContext {
 public:
  explicit RecordingContext(bool isFlipped = false) : myIsFlipped(isFlipped) {}

  std::vector<std::string> take() { return std::exchange(myCalls, {}); }
  void setTransform(const NSAffineTransform& transform) { myTransform = transform; }

  void saveGraphicsState() override { note("save"); }
  void restoreGraphicsState() override { note("restore"); }
  bool isFlipped() const override { return myIsFlipped; }
  NSAffineTransform userSpaceToDeviceSpaceTransform() const override { return myTransform; }
  void concatTransform(const NSAffineTransform& transform) override { note("concat " + utf8(transform.description())); }
  void clipToPath(const NSBezierPath& path) override { note("clip " + shown(path.elements())); }
  void clipToRect(const CGRect& rect) override { note("clip " + shown(rect)); }
  void setFillColor(const NSColor& color) override { note("fill colour " + utf8(color.description())); }
  void setStrokeColor(const NSColor& color) override { note("stroke colour " + utf8(color.description())); }
  void setAlpha(double alpha) override { note("alpha " + shown(alpha)); }
  void fillPath(const NSBezierPath& path) override { note("fill " + shown(path.elements())); }
  void strokePath(const NSBezierPath& path) override {
    note("stroke " + shown(path.lineWidth()) + " " + shown(path.elements()));
  }
  void clearRect(const CGRect& rect) override { note("clear " + shown(rect)); }
  void drawRepresentation(const NSImageRep& representation, const CGRect& inRect, const CGRect& fromRect,
                          NSCompositingOperation operation, double fraction) override {
    const NSBitmapImageRep* bitmap = as<NSBitmapImageRep>(&representation);
    note((bitmap ? "bitmap " + std::to_string(bitmap->pixelsWide()) : "drawing") + " to " + shown(inRect) + " from " +
         shown(fromRect) + " by " + std::to_string(static_cast<int>(operation)) + " at " + shown(fraction));
  }
  void drawText(TextView text, const CGPoint& atPoint, const NSDictionary& attributes) override {
    note(utf8(text) + " at " + shown(atPoint) + described(attributes));
  }
  void drawText(TextView text, const CGRect& inRect, std::int64_t options, const NSDictionary& attributes) override {
    note(utf8(text) + " in " + shown(inRect) + " options " + std::to_string(options) + described(attributes));
  }

 private:
  static std::string described(const NSDictionary& attributes) {
    std::string text;
    for (const auto& [name, value] : attributes) text += " " + utf8(name) + ":" + utf8(value->description());
    return text;
  }
  void note(std::string call) { myCalls.push_back(std::move(call)); }

  bool myIsFlipped;
  NSAffineTransform myTransform;
  std::vector<std::string> myCalls;
};

inline Ref<NSBitmapImageRep> bitmapOf(std::int64_t width, std::int64_t height) {
  return std::make_shared<NSBitmapImageRep>(
      BitmapPixels{std::make_shared<const std::uint32_t>(0), width, height, width});
}

// A desktop where each code unit is 10 points wide and 12 high, or what `measure` says, an image file is the text
// "WIDTHxHEIGHT", and what is drawn offscreen is written down.
class RecordingDesktop : public Desktop, public ImageCodec {
 public:
  double (*measure)(TextView text) = [](TextView text) { return 10.0 * static_cast<double>(text.size()); };
  // What was drawn offscreen last.
  std::vector<std::string> drawn;
  std::string encoded;

  static std::shared_ptr<RecordingDesktop> installed() {
    auto desktop = std::make_shared<RecordingDesktop>();
    Desktop::install(desktop);
    return desktop;
  }

  void runModalAlert(const ModalAlert&) override {}
  CGSize sizeOfText(TextView text, const NSDictionary&) override { return {measure(text), 12}; }
  std::unique_ptr<OffscreenImage> makeOffscreenImage(const CGSize& size) override {
    return std::make_unique<Offscreen>(*this, size);
  }
  ImageCodec* imageCodec() override { return this; }
  std::vector<Ref<NSImageRep>> decode(std::span<const std::uint8_t> bytes) override {
    long width = 0;
    long height = 0;
    const std::string text(bytes.begin(), bytes.end());
    if (std::sscanf(text.c_str(), "%ldx%ld", &width, &height) != 2) return {};
    return {bitmapOf(width, height)};
  }
  Ref<NSData> encode(const NSBitmapImageRep& image, NSBitmapImageFileType type, const NSDictionary& told) override {
    encoded = std::to_string(image.pixelsWide()) + " type " + std::to_string(static_cast<int>(type));
    for (const auto& [name, value] : told) encoded += " " + utf8(name) + ":" + shown(unbox<double>(value));
    return std::make_shared<NSData>(std::vector<std::uint8_t>{'J', 'P', 'G'});
  }

 private:
  struct Offscreen : OffscreenImage {
    Offscreen(RecordingDesktop& desktop, const CGSize& theSize) : myDesktop(desktop), size(theSize) {}
    NSGraphicsContext& context() override { return recorder; }
    Ref<NSBitmapImageRep> takeBitmap() override {
      myDesktop.drawn = recorder.take();
      return bitmapOf(static_cast<std::int64_t>(size.width), static_cast<std::int64_t>(size.height));
    }
    RecordingDesktop& myDesktop;
    CGSize size;
    RecordingContext recorder;
  };
};

}  // namespace kelvane
