// Base64 beside libraries that read and write bytes where we have UTF-16: the same bytes, twice the width of text.

#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "Extensions/NSData-QNExtensions.h"
#include "Platform/Foundation/TextEncoding.h"
#include "Support/Limits.h"
#include "Support/Row.h"

#ifdef BENCH_QT
#include <QByteArray>
#endif
#ifdef BENCH_GLIB
#include <glib.h>

#include <memory>
#endif
#ifdef BENCH_OPENSSL
#include <openssl/evp.h>
#endif

namespace kelvane::bench {
namespace {

using Bytes = std::vector<std::uint8_t>;

Bytes randomBytes(std::size_t size) {
  std::mt19937 random(1);
  Bytes bytes(size);
  for (std::uint8_t& byte : bytes) byte = static_cast<std::uint8_t>(random());
  return bytes;
}

std::string_view viewOf(const Bytes& bytes) { return {reinterpret_cast<const char*>(bytes.data()), bytes.size()}; }

#ifdef BENCH_GLIB
struct FreeByGLib {
  void operator()(void* memory) const { g_free(memory); }
};
template <class T>
struct GLibResult {
  std::unique_ptr<T, FreeByGLib> memory;
  std::size_t size = 0;
};
constexpr auto viewOfGLib = [](const auto& result) {
  return std::string_view(reinterpret_cast<const char*>(result.memory.get()), result.size);
};
#endif

#ifdef BENCH_OPENSSL
std::string encodedByOpenSSL(const Bytes& bytes) {
  std::string text((bytes.size() + 2) / 3 * 4 + 1, '\0');
  const int length =
      EVP_EncodeBlock(reinterpret_cast<unsigned char*>(text.data()), bytes.data(), static_cast<int>(bytes.size()));
  text.resize(static_cast<std::size_t>(length));
  return text;
}

// Its fastest way, which knows no line ends and counts padding as bytes.
std::string decodedAtOnceByOpenSSL(const std::string& text) {
  std::string bytes(text.size() / 4 * 3, '\0');
  EVP_DecodeBlock(reinterpret_cast<unsigned char*>(bytes.data()), reinterpret_cast<const unsigned char*>(text.data()),
                  static_cast<int>(text.size()));
  bytes.resize(bytes.size() - (text.ends_with("==") ? 2 : text.ends_with('=') ? 1 : 0));
  return bytes;
}

std::string decodedByOpenSSL(const std::string& text) {
  std::string bytes(text.size() / 4 * 3 + 3, '\0');
  auto* out = reinterpret_cast<unsigned char*>(bytes.data());
  int length = 0;
  int rest = 0;
  EVP_ENCODE_CTX* context = EVP_ENCODE_CTX_new();
  EVP_DecodeInit(context);
  EVP_DecodeUpdate(context, out, &length, reinterpret_cast<const unsigned char*>(text.data()),
                   static_cast<int>(text.size()));
  EVP_DecodeFinal(context, out + length, &rest);
  EVP_ENCODE_CTX_free(context);
  bytes.resize(static_cast<std::size_t>(length + rest));
  return bytes;
}
#endif

void addEncoding(const std::string& size, const Bytes& bytes, double reach) {
  Row("Base64, encode " + size)
      .ours([bytes] { return NSDataExtensions::encodeDataToBase64(bytes); },
            [](const std::optional<Text>& text) { return utf8(text.value_or(Text())); })
#ifdef BENCH_QT
      .peer("Qt", [bytes = QByteArray(viewOf(bytes).data(), qsizetype(bytes.size()))] { return bytes.toBase64(); })
#endif
#ifdef BENCH_GLIB
      .peer(
          "GLib",
          [bytes] {
            GLibResult<gchar> text{std::unique_ptr<gchar, FreeByGLib>(g_base64_encode(bytes.data(), bytes.size()))};
            text.size = (bytes.size() + 2) / 3 * 4;
            return text;
          },
          viewOfGLib)
#endif
#ifdef BENCH_OPENSSL
      .peer("OpenSSL", [bytes] { return encodedByOpenSSL(bytes); })
#endif
      .limit("memcpy of the text", [text = *NSDataExtensions::encodeDataToBase64(bytes)] { return copied(text); })
      .reach(reach);
}

void addDecoding(const std::string& what, const Text& text, bool hasLines, double reach) {
  const std::string narrow = utf8(text);
  Row row("Base64, decode " + what);
  row.ours([text] { return NSDataExtensions::decodeDataFromBase64(text); }, viewOf);
#ifdef BENCH_QT
  row.peer("Qt", [text = QByteArray::fromStdString(narrow)] { return QByteArray::fromBase64(text); });
#endif
#ifdef BENCH_GLIB
  row.peer(
      "GLib",
      [narrow] {
        GLibResult<guchar> bytes;
        gsize size = 0;
        bytes.memory.reset(g_base64_decode(narrow.c_str(), &size));
        bytes.size = size;
        return bytes;
      },
      viewOfGLib);
#endif
#ifdef BENCH_OPENSSL
  if (hasLines)
    row.peer("OpenSSL", [narrow] { return decodedByOpenSSL(narrow); });
  else
    row.peer("OpenSSL", [narrow] { return decodedAtOnceByOpenSSL(narrow); });
#endif
  row.limit("memchr", [text] { return scanned(text); }).reach(reach);
}

const Subject base64([] {
  const Bytes large = randomBytes(std::size_t{1} << 20U);
  const Bytes small = randomBytes(60);
  addEncoding("1 MiB", large, 6);
  addEncoding("60 bytes", small, 1);
  addDecoding("1 MiB", *NSDataExtensions::encodeDataToBase64(large), false, 8);
  addDecoding("1 MiB in lines of 76", *NSDataExtensions::encodeDataToBase64(large, 76), true, 8);
  addDecoding("60 bytes", *NSDataExtensions::encodeDataToBase64(small), false, 1);
});

}  // namespace
}  // namespace kelvane::bench
