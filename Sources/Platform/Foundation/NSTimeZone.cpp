#include "Platform/Foundation/NSTimeZone.h"

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <mutex>
#include <string>
#include <system_error>
#include <vector>

#include "Platform/Foundation/AtomicFile.h"
#include "Platform/Foundation/CivilTime.h"
#include "Platform/Foundation/Format.h"
#include "Platform/Foundation/TextEncoding.h"

namespace kelvane {
namespace {

// The largest in the database has 4 KiB.
constexpr std::size_t largestZoneFile = std::size_t{1} << 20U;
constexpr std::string_view localZoneFile = "/etc/localtime";

std::string databaseFolder() {
  const char* folder = std::getenv("TZDIR");
  return folder && *folder == '/' ? folder : "/usr/share/zoneinfo";
}

Ref<NSTimeZone> zoneFromFile(const std::string& path, Text name) {
  const FileContents contents = readFile(path, largestZoneFile);
  if (contents.error) return nullptr;
  std::optional<ZoneRules> rules = ZoneRules::fromTZif(contents.bytes);
  return rules ? std::make_shared<NSTimeZone>(std::move(name), std::move(*rules)) : nullptr;
}

// Whether a name cannot lead out of the database.
bool isZoneName(std::string_view name) {
  return !name.empty() && name.front() != '/' && name.find("..") == std::string_view::npos &&
         name.find('\0') == std::string_view::npos;
}

Ref<NSTimeZone> zoneNamed(const std::string& name) {
  return isZoneName(name) ? zoneFromFile(databaseFolder() + "/" + name, textFromUTF8(name)) : nullptr;
}

// The name that /etc/localtime links to; "Local" when it is a copy.
Text nameOfLocalZone() {
  constexpr std::string_view folder = "/zoneinfo/";
  std::error_code ignored;
  const std::string target = std::filesystem::read_symlink(localZoneFile, ignored).native();
  const std::size_t place = target.rfind(folder);
  return place == std::string::npos ? u"Local" : textFromUTF8(std::string_view(target).substr(place + folder.size()));
}

// What a value of TZ means; nil when it means nothing.
Ref<NSTimeZone> zoneFromVariable(std::string value) {
  if (value.starts_with(':')) value.erase(0, 1);
  const Text name = textFromUTF8(value);
  if (value.starts_with('/')) return zoneFromFile(value, name);
  if (Ref<NSTimeZone> zone = zoneNamed(value)) return zone;
  const std::optional<ZoneRules> rules = ZoneRules::fromPOSIX(value);
  return rules ? std::make_shared<NSTimeZone>(name, *rules) : nullptr;
}

Ref<NSTimeZone> readSystemTimeZone() {
  const char* variable = std::getenv("TZ");
  Ref<NSTimeZone> zone =
      variable ? zoneFromVariable(variable) : zoneFromFile(std::string(localZoneFile), nameOfLocalZone());
  return zone ? zone : std::make_shared<NSTimeZone>(u"UTC", ZoneRules());
}

// Null as long as none was set.
std::atomic<const NSTimeZone*> currentZone = nullptr;

}  // namespace

NSTimeZone::NSTimeZone(Text name, ZoneRules rules) : myName(std::move(name)), myRules(std::move(rules)) {}

Ref<NSTimeZone> NSTimeZone::timeZoneWithName(TextView name) { return zoneNamed(utf8(name)); }

Ref<NSTimeZone> NSTimeZone::timeZoneForSecondsFromGMT(std::int32_t seconds) {
  constexpr std::int32_t day = 24 * 60 * 60;
  if (seconds <= -day || seconds >= day) return nullptr;
  const std::int32_t minutes = std::abs(seconds / 60);
  Text name = format(u"GMT%s%02d%02d", seconds < 0 ? "-" : "+", minutes / 60, minutes % 60);
  return std::make_shared<NSTimeZone>(std::move(name), ZoneRules(seconds));
}

Ref<NSTimeZone> NSTimeZone::systemTimeZone() {
  static const auto& zone = *new Ref<NSTimeZone>(readSystemTimeZone());
  return zone;
}

const NSTimeZone& NSTimeZone::currentTimeZone() {
  const NSTimeZone* zone = currentZone.load(std::memory_order_acquire);
  if (zone) return *zone;
  // Unless somebody sets one meanwhile.
  const NSTimeZone* const system = systemTimeZone().get();
  return currentZone.compare_exchange_strong(zone, system) ? *system : *zone;
}

Ref<NSTimeZone> NSTimeZone::defaultTimeZone() {
  return std::const_pointer_cast<NSTimeZone>(
      std::static_pointer_cast<const NSTimeZone>(currentTimeZone().shared_from_this()));
}

void NSTimeZone::setDefaultTimeZone(const Ref<NSTimeZone>& zone) {
  // Whoever asks for the current zone gets no reference, so that none of them may ever go.
  static auto& mutex = *new std::mutex;
  static auto& kept = *new std::vector<Ref<NSTimeZone>>;
  const Ref<NSTimeZone> current = zone ? zone : systemTimeZone();
  const std::lock_guard lock(mutex);
  if (std::ranges::find(kept, current) == kept.end()) kept.push_back(current);
  currentZone.store(current.get(), std::memory_order_release);
}

std::int32_t NSTimeZone::secondsFromGMTForDate(const NSDate& date) const {
  return periodAt(wholeSecondsSince1970(date).value_or(0)).offset;
}

bool NSTimeZone::isEqual(const NSObject& other) const {
  const NSTimeZone* zone = as<NSTimeZone>(&other);
  return zone && zone->myName == myName;
}

std::size_t NSTimeZone::hash() const { return std::hash<Text>()(myName); }

Ref<NSObject> NSTimeZone::copy() const {
  return selfOr([this] { return std::make_shared<NSTimeZone>(*this); });
}

}  // namespace kelvane
