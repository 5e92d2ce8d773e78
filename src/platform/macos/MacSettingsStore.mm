#import "platform/macos/MacSettingsStore.h"

#import "platform/macos/MacValues.h"

namespace harbor {
namespace {

template <typename Kind>
Kind* objectOf(Class kind, id object) {
  return [object isKindOfClass:kind] ? static_cast<Kind*>(object) : nil;
}

}  // namespace

id MacSettingsStore::object(std::string_view key) const {
  NSString* const name = nsString(key);
  return name ? [defaults_ objectForKey:name] : nil;
}

// Takes the text "YES" too, which "defaults write" stores for an administrator.
bool MacSettingsStore::boolForKey(std::string_view key) const {
  NSString* const name = nsString(key);
  return name && [defaults_ boolForKey:name];
}

std::optional<std::string> MacSettingsStore::stringForKey(std::string_view key) const {
  NSString* const string = objectOf<NSString>(NSString.class, object(key));
  return string ? std::optional(textOf(string)) : std::nullopt;
}

std::optional<Data> MacSettingsStore::dataForKey(std::string_view key) const {
  NSData* const data = objectOf<NSData>(NSData.class, object(key));
  return data ? std::optional(dataOf(data)) : std::nullopt;
}

std::optional<Date> MacSettingsStore::dateForKey(std::string_view key) const {
  NSDate* const date = objectOf<NSDate>(NSDate.class, object(key));
  return date ? std::optional(dateOf(date)) : std::nullopt;
}

bool MacSettingsStore::store(std::string_view key, id value) {
  NSString* const name = nsString(key);
  if (!name || !value) return false;
  if ([value isEqual:[defaults_ objectForKey:name]]) return true;
  // The system's daemon has the value now and writes it soon: waiting for that would hold up the main thread.
  [defaults_ setObject:value forKey:name];
  return true;
}

bool MacSettingsStore::setBool(std::string_view key, bool value) {
  return store(key, [NSNumber numberWithBool:value]);
}

bool MacSettingsStore::setString(std::string_view key, std::string_view value) {
  return value.find('\0') == std::string_view::npos && store(key, nsString(value));
}

bool MacSettingsStore::setData(std::string_view key, const Data& value) {
  return store(key, nsData(value));
}

bool MacSettingsStore::setDate(std::string_view key, Date value) {
  return store(key, nsDate(value));
}

}  // namespace harbor
