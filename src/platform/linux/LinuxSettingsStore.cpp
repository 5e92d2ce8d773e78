#include "platform/linux/LinuxSettingsStore.h"

#include <cstdlib>
#include <utility>

namespace harbor {
namespace {

constexpr const char* kFileName = "com.tidewell.HarborTray.plist";

}  // namespace

std::string LinuxSettingsStore::defaultPath(const std::string& homeFolder) {
  const char* configured = std::getenv("XDG_CONFIG_HOME");
  const bool isAbsolute = configured && configured[0] == '/';
  if (!isAbsolute && homeFolder.empty()) return {};
  return (isAbsolute ? std::string(configured) : homeFolder + "/.config") + "/" + kFileName;
}

LinuxSettingsStore::LinuxSettingsStore(std::string path, const PropertyListCoder& coder)
    : file_(path), coder_(coder) {
  if (path.empty()) {
    access_ = Access::leaveAlone;
    return;
  }
  file_.removeLeftovers();
  if (!load()) access_ = Access::leaveAlone;
}

// Takes the values of the file as it is now, under those that this run has set. Where there is no usable file
// the values stay as they are. False when the file has to be left alone.
bool LinuxSettingsStore::load() {
  const auto stamp = file_.stamp();
  DurableFile::Contents contents = file_.read(kLargestFile);
  if (contents.result == DurableFile::ReadResult::unreadable) return false;
  stamp_ = stamp;
  auto& values = *root_.as<PropertyList::Dictionary>();
  if (contents.result == DurableFile::ReadResult::missing) {
    hasUnwrittenValues_ = !values.empty();
    return true;
  }
  auto stored =
      contents.result == DurableFile::ReadResult::complete ? coder_.decode(contents.bytes) : std::nullopt;
  auto* storedValues = stored ? stored->as<PropertyList::Dictionary>() : nullptr;
  if (!storedValues) {
    hasUnwrittenValues_ = !values.empty();
    stamp_ = DurableFile::Stamp();
    return file_.setAside().has_value();
  }
  hasUnwrittenValues_ = false;
  for (const std::string& key : ownKeys_) {
    PropertyList& own = values.at(key);
    const auto [entry, isNew] = storedValues->try_emplace(key, own);
    if (isNew || entry->second != own) hasUnwrittenValues_ = true;
    entry->second = std::move(own);
  }
  values = std::move(*storedValues);
  return true;
}

bool LinuxSettingsStore::mergeForeignChanges() {
  const bool isUnchanged = stamp_ && file_.stamp() == stamp_;
  return isUnchanged || load();
}

template <typename T>
std::optional<T> LinuxSettingsStore::valueForKey(std::string_view key) const {
  const PropertyList* value = root_.find(std::string(key));
  const T* typed = value ? value->as<T>() : nullptr;
  return typed ? std::optional<T>(*typed) : std::nullopt;
}

bool LinuxSettingsStore::boolForKey(std::string_view key) const {
  if (const auto value = valueForKey<bool>(key)) return *value;
  if (const auto number = valueForKey<std::int64_t>(key)) return *number != 0;
  if (const auto number = valueForKey<std::uint64_t>(key)) return *number != 0;
  if (const auto number = valueForKey<double>(key)) return *number != 0.0;
  return false;
}

std::optional<std::string> LinuxSettingsStore::stringForKey(std::string_view key) const {
  return valueForKey<std::string>(key);
}

std::optional<Data> LinuxSettingsStore::dataForKey(std::string_view key) const {
  return valueForKey<Data>(key);
}

std::optional<Date> LinuxSettingsStore::dateForKey(std::string_view key) const {
  return valueForKey<Date>(key);
}

bool LinuxSettingsStore::store(std::string_view key, PropertyList value) {
  const bool isReachable = access_ == Access::readWrite && mergeForeignChanges();
  auto& values = *root_.as<PropertyList::Dictionary>();
  const auto [entry, isNew] = values.try_emplace(std::string(key), true);
  if (isReachable && !isNew && !hasUnwrittenValues_ && entry->second == value) return true;

  std::swap(entry->second, value);
  const auto bytes = coder_.encode(root_);
  if (!bytes || bytes->size() > kLargestFile) {
    // Such a value would stand in the way of every later write.
    if (isNew) {
      values.erase(entry);
    } else {
      std::swap(entry->second, value);
    }
    return false;
  }
  ownKeys_.emplace(key);
  hasUnwrittenValues_ = true;
  if (!isReachable || !file_.replace(*bytes)) return false;
  hasUnwrittenValues_ = false;
  stamp_ = file_.stamp();
  return true;
}

bool LinuxSettingsStore::setBool(std::string_view key, bool value) {
  return store(key, value);
}
bool LinuxSettingsStore::setString(std::string_view key, std::string_view value) {
  return store(key, std::string(value));
}
bool LinuxSettingsStore::setData(std::string_view key, const Data& value) {
  return store(key, value);
}
bool LinuxSettingsStore::setDate(std::string_view key, Date value) {
  return store(key, value);
}

}  // namespace harbor
