#include <sys/resource.h>

#include <QBuffer>
#include <QColorSpace>
#include <QImage>
#include <fstream>

#include "Extensions/NSImage-QNExtensions.h"
#include "Platform/Desktop/Desktop.h"
#include "Platform/Desktop/ImageCodec.h"
#include "Platform/Desktop/NSImage.h"
#include "Platform/Desktop/OffscreenImage.h"
#include "Qt/Painting/Canvas.h"
#include "Support/Process.h"
#include "Support/Testing.h"

namespace {

using Bytes = std::vector<std::uint8_t>;
using enum NSBitmapImageFileType;

std::vector<Ref<NSImageRep>> decoded(const Bytes& bytes) { return Desktop::current().imageCodec()->decode(bytes); }

Bytes encoded(const NSBitmapImageRep& image, NSBitmapImageFileType type) {
  const auto data = image.representationUsingType(type, nullptr);
  return data ? Bytes(data->bytes().begin(), data->bytes().end()) : Bytes();
}

std::vector<std::uint32_t> pixelsOf(const NSImageRep& representation) {
  const NSBitmapImageRep& bitmap = *as<NSBitmapImageRep>(&representation);
  std::vector<std::uint32_t> pixels;
  for (std::int64_t y = 0; y < bitmap.pixelsHigh(); ++y)
    for (std::int64_t x = 0; x < bitmap.pixelsWide(); ++x)
      pixels.push_back(bitmap.pixels().data.get()[y * bitmap.pixels().pixelsPerRow + x]);
  return pixels;
}

Ref<NSBitmapImageRep> photograph(std::uint32_t width, std::uint32_t height) {
  std::vector<std::uint32_t> pixels;
  for (std::uint32_t y = 0; y < height; ++y)
    for (std::uint32_t x = 0; x < width; ++x)
      pixels.push_back(0xFF000000U | (x * 255 / width) << 16U | (y * 255 / height) << 8U | (x + y) % 256);
  return bitmapOfPixels(std::move(pixels), width);
}

void append(Bytes& bytes, std::uint32_t number, int count) {  // the lowest byte first
  for (int i = 0; i < count; ++i) bytes.push_back(static_cast<std::uint8_t>(number >> 8 * i));
}

// A TIFF file of grey images of a row each, of these widths (of which 16 pixels are there) and resolutions.
Bytes greyTIFF(const std::vector<std::pair<std::uint32_t, std::uint32_t>>& images) {
  Bytes bytes{'I', 'I', 42, 0};
  append(bytes, 8, 4);
  for (const auto& [width, dotsPerInch] : images) {
    const auto start = static_cast<std::uint32_t>(bytes.size());
    constexpr std::uint32_t count = 11;
    const std::uint32_t data = start + 2 + count * 12 + 4;
    const std::uint32_t fields[count][3] = {{256, 4, width}, {257, 4, 1},        {258, 3, 8},   {259, 3, 1},
                                            {262, 3, 1},     {273, 4, data + 8}, {277, 3, 1},   {278, 4, 1},
                                            {279, 4, width}, {282, 5, data},     {283, 5, data}};
    append(bytes, count, 2);
    for (const auto& [tag, kind, value] : fields) {
      append(bytes, tag, 2);
      append(bytes, kind, 2);
      append(bytes, 1, 4);
      append(bytes, value, 4);
    }
    const bool isLast = &images.back().first == &width;
    append(bytes, isLast ? 0 : data + 8 + width, 4);
    append(bytes, dotsPerInch, 4);
    append(bytes, 1, 4);
    bytes.insert(bytes.end(), std::min(width, 16U), 0x80);
  }
  return bytes;
}

TEST(QtImageCodec, WhatIsWrittenIsReadBack) {
  for (const auto type : {PNG, TIFF}) {
    for (const std::uint32_t last : {0xFF102030U, 0x80404040U}) {
      const std::vector<std::uint32_t> pixels{0xFFFF0000, 0xFF00FF00, 0xFF0000FF, 0xFFFFFFFF, 0xFF000000, last};
      const auto image = bitmapOfPixels(pixels, 3);
      image->setSize({1.5, 0.5});
      const auto images = decoded(encoded(*image, type));
      ASSERT_EQ(images.size(), 1U);
      EXPECT_EQ(pixelsOf(*images[0]), pixels);
      EXPECT_EQ(images[0]->size(), (CGSize{1.5, 0.5}));
    }
  }
  EXPECT_THAT(encoded(NSBitmapImageRep(BitmapPixels()), PNG), IsEmpty());
  EXPECT_THAT(encoded(*photograph(1, 1), static_cast<NSBitmapImageFileType>(9)), IsEmpty());
}

TEST(QtImageCodec, SizesByTheResolutionInTheFile) {
  EXPECT_EQ(decoded(encoded(*photograph(20, 10), JPEG))[0]->size(), (CGSize{20, 10}));
  const auto fine = photograph(600, 600);
  fine->setSize({144, 144});
  for (const auto type : {PNG, TIFF, JPEG}) EXPECT_EQ(decoded(encoded(*fine, type))[0]->size(), (CGSize{144, 144}));
  // Of the screen's 96 dots to the inch, where the file tells it.
  fine->setSize({450, 450});
  EXPECT_EQ(decoded(encoded(*fine, PNG))[0]->size(), (CGSize{450, 450}));
  // Without a resolution a pixel is a point: the chunk becomes one that nobody knows.
  Bytes silent = encoded(*photograph(20, 10), PNG);
  const auto chunk = std::search(silent.begin(), silent.end(), "pHYs", "pHYs" + 4);
  ASSERT_NE(chunk, silent.end());
  silent.erase(chunk - 4, chunk + 4 + 9 + 4);
  EXPECT_EQ(decoded(silent)[0]->size(), (CGSize{20, 10}));
  const auto images = decoded(greyTIFF({{4, 72}, {8, 144}, {2, 36}}));
  ASSERT_EQ(images.size(), 3U);
  EXPECT_EQ(images[0]->size(), (CGSize{4, 1}));
  EXPECT_EQ(images[1]->size(), (CGSize{4, 0.5}));
  EXPECT_EQ(images[2]->size(), (CGSize{4, 2}));
  EXPECT_THAT(pixelsOf(*images[2]), ElementsAre(0xFF808080, 0xFF808080));
}

TEST(QtImageCodec, TakesColoursToSRGB) {
  QImage image(2, 1, QImage::Format_RGB32);
  image.fill(QColor(128, 128, 128));
  const std::pair<QColorSpace, int> rows[] = {
      {QColorSpace(QColorSpace::SRgb), 128},
      // What many files say and mean sRGB by.
      {QColorSpace(QColorSpace::Primaries::SRgb, 2.2F), 128},
      {QColorSpace(QColorSpace::SRgbLinear), 188},
  };
  for (const auto& [space, grey] : rows) {
    image.setColorSpace(space);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    ASSERT_TRUE(image.save(&buffer, "png"));
    const auto images = decoded(Bytes(bytes.begin(), bytes.end()));
    ASSERT_EQ(images.size(), 1U);
    EXPECT_EQ(pixelsOf(*images[0])[0] & 0xFFU, static_cast<std::uint32_t>(grey));
  }
}

TEST(QtImageCodec, TurnsPhotographsUpright) {
  Bytes bytes = encoded(*photograph(32, 16), JPEG);
  // Turned by a quarter: field 0x112 is 6.
  const Bytes orientation{0xFF, 0xE1, 0, 34,   'E', 'x', 'i', 'f', 0, 0, 'M', 'M', 0, 42, 0, 0, 0, 8,
                          0,    1,    1, 0x12, 0,   3,   0,   0,   0, 1, 0,   6,   0, 0,  0, 0, 0, 0};
  bytes.insert(bytes.begin() + 20, orientation.begin(), orientation.end());
  const auto images = decoded(bytes);
  ASSERT_EQ(images.size(), 1U);
  EXPECT_EQ(images[0]->size(), (CGSize{16, 32}));
  // Red grows downwards now.
  const auto pixels = pixelsOf(*images[0]);
  EXPECT_GT((pixels.back() >> 16U & 0xFFU), (pixels.front() >> 16U & 0xFFU) + 200);
}

TEST(QtImageCodec, NothingOfWhatIsDamagedOrNoImage) {
  const auto image = photograph(64, 48);
  for (const auto type : {PNG, JPEG, TIFF}) {
    const Bytes whole = encoded(*image, type);
    for (std::size_t length = 0; length < whole.size() * 9 / 10; length += 1 + length / 16)
      EXPECT_THAT(decoded(Bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length))), IsEmpty())
          << static_cast<int>(type) << " " << length;
  }
  for (const std::string text :
       {"", "no image", "GIF89a", "<svg xmlns='http://www.w3.org/2000/svg' width='9' height='9'/>", "BM\x46",
        "\xFF\xD8\xFF\xD9", "II*"})
    EXPECT_THAT(decoded(Bytes(text.begin(), text.end())), IsEmpty()) << text;
}

TEST(QtImageCodec, RefusesWhatIsEnormous) {
  // A gigapixel and more, by its header.
  Bytes bytes = encoded(*photograph(4, 4), PNG);
  Bytes header{'I', 'H', 'D', 'R', 0, 0, 0x80, 0, 0, 0, 0x80, 0, 8, 2, 0, 0, 0};
  std::uint32_t crc = ~0U;
  for (const std::uint8_t byte : header) {
    crc ^= byte;
    for (int bit = 0; bit < 8; ++bit) crc = crc >> 1U ^ (crc & 1U ? 0xEDB88320U : 0U);
  }
  for (int shift = 24; shift >= 0; shift -= 8) header.push_back(static_cast<std::uint8_t>(~crc >> shift));
  std::copy(header.begin(), header.end(), bytes.begin() + 12);
  EXPECT_THAT(decoded(bytes), IsEmpty());
  EXPECT_THAT(decoded(greyTIFF({{4, 72}, {0x70000000, 72}})), IsEmpty());
  // Images by the thousands, to find which takes time for each pair.
  EXPECT_THAT(decoded(greyTIFF(std::vector<std::pair<std::uint32_t, std::uint32_t>>(1001, {4, 72}))), IsEmpty());
  // A photograph beyond Qt's own limit of 128 megabytes is none.
  std::vector<std::uint32_t> pixels(8000 * 5000, 0xFF336699);
  EXPECT_EQ(decoded(encoded(*bitmapOfPixels(std::move(pixels), 8000), JPEG))[0]->size(), (CGSize{8000, 5000}));

  for (const CGSize& size : {CGSize{1e9, 1e9}, {1e5, 1e5}, {1e300, 1}, {NaN, 4}, {4, -4}, {0, 4}})
    EXPECT_EQ(Desktop::current().makeOffscreenImage(size), nullptr);
  EXPECT_THAT(NSImage::imageWithSize({1e6, 1e6}, [] { ADD_FAILURE(); })->representations(), IsEmpty());
}

// What the system tells of this process under the name, in kilobytes.
long memory(const std::string& name) {
  std::ifstream status("/proc/self/status");
  for (std::string line; std::getline(status, line);)
    if (line.starts_with(name + ":")) return std::atol(line.c_str() + name.size() + 1);
  return 0;
}
long mostMemoryHeld() { return memory("VmHWM"); }

TEST(QtImageCodec, ExportsWithoutACopyOfThePixels) {
  constexpr std::size_t width = 6000;
  constexpr std::size_t height = 4000;
  NSImage image;
  image.addRepresentation(bitmapOfPixels(std::vector<std::uint32_t>(width * height, 0xFF336699), width));
  std::ofstream("/proc/self/clear_refs") << "5";  // forgets the most there was
  const long before = mostMemoryHeld();
  EXPECT_NE(JPGRepresentationWithCompression(image, 0.8), nullptr);
  EXPECT_LT(mostMemoryHeld() - before, static_cast<long>(width * height * 4 / 1024 / 4));
}

TEST(QtImageCodec, ExportsNothingWhereMemoryEnds) {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
  GTEST_SKIP() << "has an address space of its own";
#endif
  std::mt19937 random(5);
  std::vector<std::uint32_t> noise(4000 * 4000);
  for (std::uint32_t& pixel : noise) pixel = 0xFF000000U | static_cast<std::uint32_t>(random());
  const Ref<NSBitmapImageRep> image = bitmapOfPixels(std::move(noise), 4000);
  rlimit before{};
  getrlimit(RLIMIT_AS, &before);
  rlimit narrow = before;
  narrow.rlim_cur = static_cast<rlim_t>(memory("VmSize") + 3000) * 1024;
  ASSERT_EQ(setrlimit(RLIMIT_AS, &narrow), 0);
  const Bytes bytes = encoded(*image, JPEG);
  setrlimit(RLIMIT_AS, &before);
  EXPECT_THAT(bytes, IsEmpty());
}

TEST(QtImageCodec, JPEGFilesAsAnotherDecoderSeesThem) {
  const TemporaryFolder folder;
  const std::string path = folder.path("a.jpg");
  // Black, half-transparent black and nothing: on white.
  std::vector<std::uint32_t> stripes;
  for (int i = 0; i < 48 * 16; ++i) stripes.push_back(i % 48 < 16 ? 0xFF000000U : i % 48 < 32 ? 0x80000000U : 0U);
  NSImage image;
  image.addRepresentation(bitmapOfPixels(std::move(stripes), 48));
  const auto judged = [&] { return runProcess({"djpeg", "-verbose", "-verbose", "-ppm", path}); };
  // The first numbers of the table for brightness, which at a quality of 50 are 16, 11, 10.
  const std::pair<double, const char*> rows[] = {{0.8, "6 +4 +4"},    {1, "1 +1 +1"},       {7, "1 +1 +1"},
                                                 {0.5, "16 +11 +10"}, {0.25, "32 +22 +20"}, {-1, "255 +255 +255"}};
  for (const auto& [factor, table] : rows) {
    const auto data = JPGRepresentationWithCompression(image, factor);
    ASSERT_NE(data, nullptr);
    folder.write("a.jpg", {reinterpret_cast<const char*>(data->bytes().data()), data->length()});
    const std::string told = judged().err;
    EXPECT_THAT(told, HasSubstr("width=48, height=16, components=3"));
    EXPECT_THAT(told, Not(HasSubstr("Start Of Frame 0xc2"))) << "progressive";
    EXPECT_THAT(told, testing::ContainsRegex("Define Quantization Table 0[^\n]*\n *" + std::string(table) + " "))
        << factor;
  }
  writeJPGRepresentationToFile(image, textFromFileSystem(path));
  const ProcessResult result = judged();
  EXPECT_EQ(result.status, 0);
  const std::string lastRow = result.out.substr(result.out.size() - std::size_t{48} * 3);
  const auto at = [&](std::size_t x) { return static_cast<std::uint8_t>(lastRow[x * 3]); };
  EXPECT_NEAR(at(4), 0, 4);
  EXPECT_NEAR(at(24), 127, 4);
  EXPECT_NEAR(at(44), 255, 4);
  EXPECT_EQ(JPGRepresentationWithCompression(image, std::nan(""))->length() > 0, true);
  // Passes only where they are asked for.
  const auto inPasses = dictionaryOf({{Text(NSImageProgressive), box(true)}});
  const auto data = as<NSBitmapImageRep>(image.representations()[0])->representationUsingType(JPEG, inPasses);
  const std::uint8_t progressive[] = {0xFF, 0xC2};
  EXPECT_FALSE(std::ranges::search(data->bytes(), progressive).empty());
  EXPECT_THAT(encoded(*bitmapOfPixels(std::vector<std::uint32_t>(70000), 70000), JPEG), IsEmpty());
}

}  // namespace
