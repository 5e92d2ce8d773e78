#include "platform/memory/MemorySettingsStore.h"

#include <utility>

#include "platform/plist/LibplistCoder.h"

namespace harbor {

template <typename T>
std::optional<T> MemorySettingsStore::valueForKey(std::string_view key) const {
  const auto entry = values.find(std::string(key));
  if (entry == values.end()) return std::nullopt;
  const T* value = entry->second.as<T>();
  return value ? std::optional<T>(*value) : std::nullopt;
}

bool MemorySettingsStore::boolForKey(std::string_view key) const {
  if (const auto value = valueForKey<bool>(key)) return *value;
  if (const auto number = valueForKey<std::int64_t>(key)) return *number != 0;
  if (const auto number = valueForKey<std::uint64_t>(key)) return *number != 0;
  if (const auto number = valueForKey<double>(key)) return *number != 0.0;
  return false;
}

std::optional<std::string> MemorySettingsStore::stringForKey(std::string_view key) const {
  return valueForKey<std::string>(key);
}

std::optional<Data> MemorySettingsStore::dataForKey(std::string_view key) const {
  return valueForKey<Data>(key);
}

std::optional<Date> MemorySettingsStore::dateForKey(std::string_view key) const {
  return valueForKey<Date>(key);
}

bool MemorySettingsStore::store(std::string_view key, PropertyList value) {
  if (!LibplistCoder().encode(PropertyList::Dictionary{{std::string(key), value}})) return false;
  const auto [entry, isNew] = values.try_emplace(std::string(key), value);
  if (!isNew && !hasUnwrittenValues && entry->second == value) return true;
  entry->second = std::move(value);
  hasUnwrittenValues = failsWrites;
  if (failsWrites) return false;
  writtenKeys.emplace_back(key);
  return true;
}

bool MemorySettingsStore::setBool(std::string_view key, bool value) {
  return store(key, value);
}
bool MemorySettingsStore::setString(std::string_view key, std::string_view value) {
  return store(key, std::string(value));
}
bool MemorySettingsStore::setData(std::string_view key, const Data& value) {
  return store(key, value);
}
bool MemorySettingsStore::setDate(std::string_view key, Date value) {
  return store(key, value);
}

}  // namespace harbor
