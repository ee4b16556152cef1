#include "Platform/Desktop/Desktop.h"

#include <unistd.h>

#include <cstdio>
#include <string>
#include <utility>

#include "Platform/Desktop/ImageCodec.h"
#include "Platform/Desktop/OffscreenImage.h"
#include "Platform/Foundation/TextEncoding.h"

namespace kelvane {
namespace {

class HeadlessDesktop final : public Desktop {
 public:
  void runModalAlert(const ModalAlert& alert) override {
    const std::string text = "\n" + utf8(alert.title) + "\n" + utf8(alert.informativeText) + "\n";
    const bool canAsk = isatty(STDIN_FILENO) != 0 && isatty(STDERR_FILENO) != 0;
    const std::string button = canAsk ? "[" + utf8(alert.defaultButton) + "] " : "";
    std::fwrite(text.data(), 1, text.size(), stderr);
    std::fwrite(button.data(), 1, button.size(), stderr);
    if (canAsk) waitForReturn();
  }

 private:
  static void waitForReturn() {
    for (int unit = std::getchar(); unit != '\n' && unit != EOF; unit = std::getchar()) continue;
  }
};

// Never destroyed: what logs at exit may still show an alert.
std::shared_ptr<Desktop>& installed() {
  static auto& desktop = *new std::shared_ptr<Desktop>(std::make_shared<HeadlessDesktop>());
  return desktop;
}

}  // namespace

Desktop::~Desktop() = default;
ImageCodec::~ImageCodec() = default;
OffscreenImage::~OffscreenImage() = default;

CGSize Desktop::sizeOfText(TextView, const NSDictionary&) { return {}; }

std::unique_ptr<OffscreenImage> Desktop::makeOffscreenImage(const CGSize&) { return nullptr; }

Desktop& Desktop::current() { return *installed(); }

std::shared_ptr<Desktop> Desktop::install(std::shared_ptr<Desktop> desktop) {
  if (!desktop) desktop = std::make_shared<HeadlessDesktop>();
  return std::exchange(installed(), std::move(desktop));
}

}  // namespace kelvane
