// Preferences of 10,000 keys: loading, saving, reading by type; and the property list that they are kept in.

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "Extensions/NSUserDefaultsController-OSCompatibility.h"
#include "Platform/Foundation/AtomicFile.h"
#include "Platform/Foundation/Boxing.h"
#include "Platform/Foundation/Format.h"
#include "Platform/Foundation/NSUserDefaults.h"
#include "Platform/Foundation/PropertyList.h"
#include "Platform/Foundation/TextEncoding.h"
#include "Support/Row.h"
#include "Support/TemporaryFolder.h"

#ifdef BENCH_QT
#include <QSettings>
#include <QString>
#endif
#ifdef BENCH_LIBPLIST
#include <plist/plist.h>
#endif

namespace kelvane::bench {
namespace {

constexpr std::size_t keyCount = 10'000;
constexpr std::size_t readCount = 1'000'000;
constexpr std::size_t sizeLimit = maximumPropertyListSize;

// Of each four keys one is an integer, one a fraction, one a truth value and one text.
const std::vector<Text>& keys() {
  static const std::vector<Text> keys = [] {
    std::vector<Text> made;
    for (std::size_t i = 0; i < keyCount; ++i) made.push_back(format(u"document.%lu.window.setting", i));
    return made;
  }();
  return keys;
}

Ref<NSObject> valueAt(std::size_t i) {
  switch (i % 4) {
    case 0:
      return box(static_cast<std::int64_t>(i));
    case 1:
      return box(static_cast<double>(i) + 0.5);
    case 2:
      return box(i % 8 == 2);
    default:
      return box(format(u"{{%lu, 24}, {1280, 800}} – größer", i));
  }
}

const NSDictionary& preferences() {
  static const NSDictionary preferences = [] {
    NSDictionary::Entries entries;
    for (std::size_t i = 0; i < keyCount; ++i) entries.emplace(keys()[i], valueAt(i));
    return NSDictionary(std::move(entries));
  }();
  return preferences;
}

const std::string& document() {
  static const std::string bytes = writePropertyList(preferences()).bytes;
  return bytes;
}

// A file with `contents` that lives as long as the process.
std::string file(const std::string& name, std::string_view contents) {
  static const TemporaryFolder folder;
  const std::string path = folder.path(name);
  if (writeFileAtomically(path, contents)) std::abort();
  return path;
}

std::size_t countOf(const PropertyList& list) { return as<NSDictionary>(list.root.get())->count(); }

// How much of what was saved can be read again.
struct Saved {
  std::string path;
};
std::size_t countOf(const Saved& saved) { return countOf(readPropertyList(readFile(saved.path, sizeLimit).bytes)); }

#ifdef BENCH_LIBPLIST
struct FreePlist {
  void operator()(void* node) const { plist_free(node); }
  void operator()(char* bytes) const { plist_to_xml_free(bytes); }
};
using Plist = std::unique_ptr<void, FreePlist>;

Plist parsed(std::string_view bytes) {
  plist_t root = nullptr;
  plist_from_xml(bytes.data(), static_cast<std::uint32_t>(bytes.size()), &root);
  return Plist(root);
}

std::size_t countOf(const Plist& root) { return plist_dict_get_size(root.get()); }

struct PlistBytes {
  std::unique_ptr<char, FreePlist> bytes;
  std::uint32_t length = 0;
  explicit PlistBytes(const Plist& root) {
    char* written = nullptr;
    plist_to_xml(root.get(), &written, &length);
    bytes.reset(written);
  }
  std::string_view view() const { return {bytes.get(), length}; }
};

// As careful with the disk as we are: beside, flushed, renamed.
Saved savedBeside(const Plist& root, const std::string& path) {
  const PlistBytes bytes(root);
  const std::string beside = path + ".new";
  const int descriptor = open(beside.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
  if (write(descriptor, bytes.view().data(), bytes.length) < 0 || fsync(descriptor) != 0) std::abort();
  close(descriptor);
  if (std::rename(beside.c_str(), path.c_str()) != 0) std::abort();
  return {path};
}
#endif

// Layouts differ between writers, so what is compared is what reads back.
std::size_t countOf(std::string_view bytes) { return countOf(readPropertyList(bytes)); }
const auto counted = [](const auto& result) { return countOf(result); };

const Subject propertyList([] {
  Row("property list: read")
      .ours([] { return readPropertyList(document()); }, counted)
#ifdef BENCH_LIBPLIST
      .peer(
          "libplist", [] { return parsed(document()); }, counted)
#endif
      .reach(3);

  Row("property list: write")
      .ours([] { return writePropertyList(preferences()).bytes; }, counted)
#ifdef BENCH_LIBPLIST
      .peer(
          "libplist", [root = std::shared_ptr<Plist>(new Plist(parsed(document())))] { return PlistBytes(*root); },
          [](const PlistBytes& bytes) { return countOf(bytes.view()); })
#endif
      .reach(3);
});

#ifdef BENCH_QT
QString qt(const Text& text) { return QString::fromStdU16String(text); }

std::unique_ptr<QSettings> qtSettings(const QString& path) {
  return std::make_unique<QSettings>(path, QSettings::IniFormat);
}

// QSettings keeps files in memory, and reads one again only when its time stamp, in milliseconds, is another one.
void touch(const QString& path) {
  static std::int64_t seconds = 1'000'000'000;
  const std::array<timespec, 2> times{timespec{++seconds, 0}, timespec{seconds, 0}};
  if (utimensat(AT_FDCWD, path.toUtf8().constData(), times.data(), 0) != 0) std::abort();
}

QString qtFile(const std::string& name) {
  const QString path = QString::fromStdString(file(name, ""));
  const auto settings = qtSettings(path);
  for (std::size_t i = 0; i < keyCount; ++i) {
    const Ref<NSObject> value = valueAt(i);
    const auto* number = as<NSNumber>(value.get());
    const QString key = qt(keys()[i]);
    if (i % 4 == 0) settings->setValue(key, number->intValue());
    if (i % 4 == 1) settings->setValue(key, number->doubleValue());
    if (i % 4 == 2) settings->setValue(key, number->boolValue());
    if (i % 4 == 3) settings->setValue(key, qt(value->description()));
  }
  return path;
}
#endif

const Subject loading([] {
  static const std::string loadedPath = file("preferences.plist", document());
#ifdef BENCH_QT
  static const QString qtPath = qtFile("Loaded.ini");
#endif
  const auto isThere = [](const auto& store) { return store->objectForKey(keys().back()) != nullptr; };

  Row("preferences: load")
      .ours([] { return std::make_unique<NSUserDefaults>(textFromUTF8(loadedPath)); }, isThere)
#ifdef BENCH_LIBPLIST
      .peer(
          "libplist", [] { return parsed(readFile(loadedPath, sizeLimit).bytes); },
          [](const Plist& root) { return countOf(root) == keyCount; })
#endif
#ifdef BENCH_QT
      .peer(
          "QSettings",
          [] {
            touch(qtPath);
            auto settings = qtSettings(qtPath);
            // Values are read when they are asked for.
            benchmark::DoNotOptimize(settings->contains(qt(keys().back())));
            return settings;
          },
          [](const auto& settings) { return settings->contains(qt(keys().back())); })
#endif
      .reach(3);

  // Each time one value is changed, and what others may have saved meanwhile is taken up.
  Row("preferences: save")
      .ours(
          [store = std::make_shared<NSUserDefaults>(textFromUTF8(file("ours.plist", document()))), i = 0]() mutable {
            store->setObject(box(++i), keys().front());
            if (!store->synchronize()) std::abort();
            return Saved{utf8(store->path())};
          },
          counted)
#ifdef BENCH_LIBPLIST
      .peer(
          "libplist",
          [path = file("theirs.plist", document()), key = utf8(keys().front()), i = std::uint64_t{0}]() mutable {
            const Plist root = parsed(readFile(path, sizeLimit).bytes);
            plist_dict_set_item(root.get(), key.c_str(), plist_new_uint(++i));
            return savedBeside(root, path);
          },
          counted)
#endif
#ifdef BENCH_QT
      .peer(
          "QSettings",
          [path = qtFile("Saved.ini"), i = 0]() mutable {
            touch(path);
            const auto settings = qtSettings(path);
            settings->setValue(qt(keys().front()), ++i);
            settings->sync();
            return path;
          },
          [](const QString& path) { return static_cast<std::size_t>(qtSettings(path)->allKeys().size()); })
#endif
      .reach(3);
});

// All over the place, but the same in every run.
std::size_t scattered(std::size_t i) { return i * 7919 % keyCount; }

double readByType() {
  const NSUserDefaultsController& store = NSUserDefaultsControllerExtensions::standardUserDefaults();
  double sum = 0;
  for (std::size_t i = 0; i < readCount; ++i) {
    const std::size_t index = scattered(i);
    const Text& key = keys()[index];
    switch (index % 4) {
      case 0:
        sum += integerForKey(store, key);
        break;
      case 1:
        sum += static_cast<double>(floatForKey(store, key, 0));
        break;
      case 2:
        sum += boolForKey(store, key) ? 1 : 0;
        break;
      default:
        sum += static_cast<double>(stringForKey(store, key)->size());
    }
  }
  return sum;
}

#ifdef BENCH_QT
double readByType(const QSettings& store, const std::vector<QString>& qtKeys) {
  double sum = 0;
  for (std::size_t i = 0; i < readCount; ++i) {
    const std::size_t index = scattered(i);
    const QVariant value = store.value(qtKeys[index]);
    switch (index % 4) {
      case 0:
        sum += value.toInt();
        break;
      case 1:
        sum += static_cast<double>(value.toFloat());
        break;
      case 2:
        sum += value.toBool() ? 1 : 0;
        break;
      default:
        sum += static_cast<double>(value.toString().size());
    }
  }
  return sum;
}
#endif

const Subject reading([] {
  NSUserDefaults& defaults = NSUserDefaults::standardUserDefaults();
  for (const auto& [key, value] : preferences()) defaults.setObject(value, key);
  Row row("preferences: read by type");
  row.ours([] { return readByType(); }).per("value", readCount);
#ifdef BENCH_QT
  static const std::vector<QString> qtKeys = [] {
    std::vector<QString> made;
    for (const Text& key : keys()) made.push_back(qt(key));
    return made;
  }();
  row.peer("QSettings",
           [store = std::shared_ptr<QSettings>(qtSettings(qtFile("Read.ini")))] { return readByType(*store, qtKeys); });
#endif
});

}  // namespace
}  // namespace kelvane::bench
