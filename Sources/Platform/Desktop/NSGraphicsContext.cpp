#include "Platform/Desktop/NSGraphicsContext.h"

namespace kelvane {
namespace {

thread_local NSGraphicsContext* currentOfThread = nullptr;

}  // namespace

NSGraphicsContext* NSGraphicsContext::currentContext() { return currentOfThread; }

void NSGraphicsContext::setCurrentContext(NSGraphicsContext* context) { currentOfThread = context; }

NSGraphicsContext::~NSGraphicsContext() {
  if (currentOfThread == this) currentOfThread = nullptr;
}

}  // namespace kelvane
