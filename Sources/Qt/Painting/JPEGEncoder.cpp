#include "Qt/Painting/JPEGEncoder.h"

// The last one needs the others before it.
// clang-format off
#include <cstddef>
#include <cstdio>
#include <jpeglib.h>
// clang-format on

#include <algorithm>
#include <bit>
#include <cmath>
#include <csetjmp>
#include <cstdlib>
#include <memory>

#include "Qt/Painting/Pixels.h"

namespace kelvane {
namespace {

// 0xAARRGGBB as bytes of memory.
constexpr J_COLOR_SPACE pixelLayout = std::endian::native == std::endian::little ? JCS_EXT_BGRX : JCS_EXT_XRGB;
constexpr int finestQuality = 95;

struct Job {
  const BitmapPixels* pixels;
  // For one row.
  std::uint32_t* room;
  int quality;
  bool isProgressive;
  UINT16 dotsPerInchX;
  UINT16 dotsPerInchY;
  // What came of it, to be freed.
  unsigned char* bytes;
  unsigned long length;
};

struct ErrorManager {
  jpeg_error_mgr base;
  std::jmp_buf place;
};

[[noreturn]] void leave(j_common_ptr info) { std::longjmp(reinterpret_cast<ErrorManager*>(info->err)->place, 1); }

void saysNothing(j_common_ptr) {}

// Colours have alpha multiplied into them already: what they lack of it is white.
void putOnWhite(const std::uint32_t* row, std::uint32_t* onWhite, std::size_t count) {
  for (std::size_t x = 0; x < count; ++x) onWhite[x] = row[x] + 0x010101U * (255 - (row[x] >> 24U));
}

void setUp(jpeg_compress_struct& info, const Job& job) {
  info.image_width = static_cast<JDIMENSION>(job.pixels->pixelsWide);
  info.image_height = static_cast<JDIMENSION>(job.pixels->pixelsHigh);
  info.input_components = 4;
  info.in_color_space = pixelLayout;
  jpeg_set_defaults(&info);
  jpeg_set_quality(&info, job.quality, TRUE);
  if (job.quality >= finestQuality) info.comp_info[0].h_samp_factor = info.comp_info[0].v_samp_factor = 1;
  if (job.isProgressive) jpeg_simple_progression(&info);
  info.density_unit = 1;  // dots per inch
  info.X_density = job.dotsPerInchX;
  info.Y_density = job.dotsPerInchY;
}

// The encoder reports trouble by a jump, over which only plain things can be carried.
bool run(Job& job) {
  jpeg_compress_struct info{};
  ErrorManager errors;
  info.err = jpeg_std_error(&errors.base);
  errors.base.error_exit = leave;
  errors.base.output_message = saysNothing;
  if (setjmp(errors.place) != 0) {
    // Memory may have run out while the bytes grew: they have moved since, which `job.bytes` is told only by this.
    if (job.bytes) info.dest->term_destination(&info);
    jpeg_destroy_compress(&info);
    return false;
  }
  jpeg_create_compress(&info);
  jpeg_mem_dest(&info, &job.bytes, &job.length);
  setUp(info, job);
  jpeg_start_compress(&info, TRUE);
  const auto width = static_cast<std::size_t>(job.pixels->pixelsWide);
  while (info.next_scanline < info.image_height) {
    const std::uint32_t* row = job.pixels->data.get() + info.next_scanline * job.pixels->pixelsPerRow;
    if (!isOpaque({row, width})) {
      putOnWhite(row, job.room, width);
      row = job.room;
    }
    // It only reads them.
    JSAMPROW samples = reinterpret_cast<JSAMPROW>(const_cast<std::uint32_t*>(row));
    jpeg_write_scanlines(&info, &samples, 1);
  }
  jpeg_finish_compress(&info);
  jpeg_destroy_compress(&info);
  return true;
}

UINT16 dotsPerInch(std::int64_t pixels, double points) {
  const double dots = std::round(static_cast<double>(pixels) / points * 72);
  return dots >= 1 && dots <= 65535 ? static_cast<UINT16>(dots) : UINT16{72};
}

}  // namespace

std::vector<std::uint8_t> encodeJPEG(const NSBitmapImageRep& image, const JPEGOptions& options) {
  const BitmapPixels& pixels = image.pixels();
  if (!pixels.data || pixels.pixelsWide > JPEG_MAX_DIMENSION || pixels.pixelsHigh > JPEG_MAX_DIMENSION) return {};
  const float factor =
      std::isnan(options.compressionFactor) ? JPEGOptions().compressionFactor : options.compressionFactor;
  std::vector<std::uint32_t> room(static_cast<std::size_t>(pixels.pixelsWide));
  Job job{&pixels,
          room.data(),
          static_cast<int>(std::lround(std::clamp(factor, 0.0F, 1.0F) * 100)),
          options.isProgressive,
          dotsPerInch(pixels.pixelsWide, image.size().width),
          dotsPerInch(pixels.pixelsHigh, image.size().height),
          nullptr,
          0};
  const bool isDone = run(job);
  const std::unique_ptr<unsigned char, void (*)(void*)> bytes(job.bytes, std::free);
  if (!isDone) return {};
  return {bytes.get(), bytes.get() + job.length};
}

}  // namespace kelvane
