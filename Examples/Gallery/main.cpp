// Gallery FILE: draws every shape, badge and text that the library knows how to draw, at three scales, into a PNG file.
// Each scale is drawn by a process of its own, since it is that of the screen: Gallery --strip FILE.

#include <QApplication>
#include <QProcess>
#include <QTemporaryDir>
#include <cstdio>
#include <cstdlib>
#include <string_view>

#include "Platform/Desktop/NSImage.h"
#include "Platform/Foundation/AtomicFile.h"
#include "Platform/Foundation/TextEncoding.h"
#include "Qt/QtDesktop.h"
#include "Sheet.h"

using namespace kelvane;

namespace {

Text textOf(const QString& text) { return text.toStdU16String(); }

bool writePNG(const Ref<NSImage>& image, const QString& path) {
  if (image->representations().empty()) return false;
  const auto bitmap = as<NSBitmapImageRep>(image->representations().front());
  const auto data = bitmap ? bitmap->representationUsingType(NSBitmapImageFileType::PNG, nullptr) : nullptr;
  if (!data) return false;
  const std::string_view bytes(reinterpret_cast<const char*>(data->bytes().data()), data->length());
  return !writeFileAtomically(fileSystemRepresentation(textOf(path)), bytes);
}

// Nil when that fails.
Ref<NSImage> stripAtScale(const char* scale, const QString& path) {
  QProcess process;
  QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
  environment.insert(QStringLiteral("QT_SCALE_FACTOR"), QString::fromLatin1(scale));
  process.setProcessEnvironment(environment);
  process.setProcessChannelMode(QProcess::ForwardedChannels);
  process.start(QCoreApplication::applicationFilePath(), {QStringLiteral("--strip"), path});
  if (!process.waitForFinished(-1) || process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0)
    return nullptr;
  return NSImage::imageWithContentsOfFile(textOf(path));
}

bool drawGallery(const QString& path) {
  const QTemporaryDir folder;
  std::vector<gallery::Strip> strips;
  for (const char* scale : {"1", "1.25", "2"}) {
    const auto image = stripAtScale(scale, folder.filePath(QStringLiteral("strip.png")));
    if (!image) return false;
    strips.push_back({textFromUTF8(scale) + u"\u00D7", std::atof(scale), image});
  }
  return writePNG(gallery::drawSheet(strips), path);
}

}  // namespace

int main(int argc, char* argv[]) {
  // What the gallery shows does not depend on the screen that happens to be there.
  qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication application(argc, argv);
  installQtDesktop();
  const QStringList arguments = QCoreApplication::arguments();
  const bool isStrip = arguments.size() == 3 && arguments[1] == QStringLiteral("--strip");
  if (arguments.size() != 2 && !isStrip) {
    std::fputs("usage: Gallery FILE\n", stderr);
    return 2;
  }
  if (isStrip ? writePNG(gallery::drawStrip(), arguments[2]) : drawGallery(arguments[1])) return 0;
  std::fprintf(stderr, "Gallery: could not draw %s\n", qPrintable(arguments.back()));
  return 1;
}
