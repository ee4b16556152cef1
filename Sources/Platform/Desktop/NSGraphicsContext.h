#pragma once

#include <cstdint>

#include "Platform/Desktop/NSAffineTransform.h"
#include "Platform/Foundation/Export.h"
#include "Platform/Foundation/Geometry.h"
#include "Platform/Foundation/NSColor.h"
#include "Platform/Foundation/NSDictionary.h"
#include "Platform/Foundation/Text.h"

namespace kelvane {

class NSBezierPath;
class NSImageRep;

// How what is drawn (S, of alpha s) is put together with what is there (D, of alpha d), in components that alpha is
// multiplied into already.
enum class NSCompositingOperation : std::uint64_t {
  Clear = 0,            // 0
  Copy = 1,             // S
  SourceOver = 2,       // S + D (1 - s)
  SourceIn = 3,         // S d
  SourceOut = 4,        // S (1 - d)
  SourceAtop = 5,       // S d + D (1 - s)
  DestinationOver = 6,  // S (1 - d) + D
  DestinationIn = 7,    // D s
  DestinationOut = 8,   // D (1 - s)
  DestinationAtop = 9,  // S (1 - d) + D s
  XOR = 10,             // S (1 - d) + D (1 - s)
  PlusDarker = 11,      // max(0, 1 - ((1 - D) + (1 - S)))
  PlusLighter = 13,     // min(1, S + D)
};

// What paints on one surface: a view, an image, a page. User space, in which everything is told, has its y upwards,
// unless the context is flipped; texts and images stand upright in both. Colours are black, and nothing is clipped,
// until that is set.
//
// A desktop derives its own from this and makes it the current one while somebody draws. Numbers that are infinite or
// none draw nothing. A context is used by one thread at a time.
class KELVANE_EXPORT NSGraphicsContext {
 public:
  // currentContext  The context that this thread draws in; null when it draws in none, and always without a desktop.
  static NSGraphicsContext* currentContext();
  // setCurrentContext:  It is not owned: it may go at any time, and then there is none. Null is none.
  static void setCurrentContext(NSGraphicsContext* context);

  NSGraphicsContext() = default;
  NSGraphicsContext(const NSGraphicsContext&) = delete;
  NSGraphicsContext& operator=(const NSGraphicsContext&) = delete;
  virtual ~NSGraphicsContext();

  // saveGraphicsState  Puts transform, clip, colours and alpha on a stack.
  virtual void saveGraphicsState() = 0;
  // restoreGraphicsState  Takes the topmost state from the stack; nothing when the stack is empty.
  virtual void restoreGraphicsState() = 0;

  // isFlipped  Whether y grows downwards.
  virtual bool isFlipped() const = 0;
  // From user space to device pixels.
  virtual NSAffineTransform userSpaceToDeviceSpaceTransform() const = 0;
  // From now on, coordinates go through `transform` first.
  virtual void concatTransform(const NSAffineTransform& transform) = 0;

  // Limits all that is drawn from now on to the inside of the path, or of the rectangle, as well.
  virtual void clipToPath(const NSBezierPath& path) = 0;
  virtual void clipToRect(const CGRect& rect) = 0;

  virtual void setFillColor(const NSColor& color) = 0;
  virtual void setStrokeColor(const NSColor& color) = 0;
  // set  Both at once.
  void setColor(const NSColor& color) {
    setFillColor(color);
    setStrokeColor(color);
  }
  // What all that is drawn from now on has its alpha multiplied by, from 0.0 to 1.0; what is beyond is taken to these.
  virtual void setAlpha(double alpha) = 0;

  virtual void fillPath(const NSBezierPath& path) = 0;
  virtual void strokePath(const NSBezierPath& path) = 0;
  // Makes the rectangle transparent, whatever the alpha is.
  virtual void clearRect(const CGRect& rect) = 0;

  // Draws the part `fromRect` of the representation, in the units of its size, scaled into `inRect`. The alpha is that
  // of the picture times `fraction`. Bitmaps are drawn from their pixels; others draw themselves
  // (NSImageRep::draw).
  virtual void drawRepresentation(const NSImageRep& representation, const CGRect& inRect, const CGRect& fromRect,
                                  NSCompositingOperation operation, double fraction) = 0;

  // Draws lines of text from the point on, where the layout's lower left corner is, or its upper left one when the
  // context is flipped. NSStringDrawing.h tells which attributes count.
  virtual void drawText(TextView text, const CGPoint& atPoint, const NSDictionary& attributes) = 0;
  // Draws text within the rectangle's width; NSStringDrawing.h tells the options.
  virtual void drawText(TextView text, const CGRect& inRect, std::int64_t options, const NSDictionary& attributes) = 0;
};

// Makes a context the current one as long as it lives, and then again the one before, which must still be there.
class KELVANE_EXPORT CurrentContextScope {
 public:
  [[nodiscard]] explicit CurrentContextScope(NSGraphicsContext* context)
      : myContextBefore(NSGraphicsContext::currentContext()) {
    NSGraphicsContext::setCurrentContext(context);
  }
  ~CurrentContextScope() { NSGraphicsContext::setCurrentContext(myContextBefore); }
  CurrentContextScope(const CurrentContextScope&) = delete;
  CurrentContextScope& operator=(const CurrentContextScope&) = delete;

 private:
  NSGraphicsContext* myContextBefore;
};

// Keeps the state of a context, which may be null, as long as it lives.
class KELVANE_EXPORT GraphicsStateScope {
 public:
  [[nodiscard]] explicit GraphicsStateScope(NSGraphicsContext* context) : myContext(context) {
    if (myContext) myContext->saveGraphicsState();
  }
  ~GraphicsStateScope() {
    if (myContext) myContext->restoreGraphicsState();
  }
  GraphicsStateScope(const GraphicsStateScope&) = delete;
  GraphicsStateScope& operator=(const GraphicsStateScope&) = delete;

 private:
  NSGraphicsContext* myContext;
};

}  // namespace kelvane
