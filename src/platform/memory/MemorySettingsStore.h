// Settings in a map, with the number of writes and failure on demand.
#pragma once

#include <map>
#include <string>

#include "platform/SettingsStore.h"

namespace harbor {

class MemorySettingsStore : public SettingsStore {
 public:
  bool boolForKey(std::string_view key) const override;
  std::optional<std::string> stringForKey(std::string_view key) const override;
  std::optional<Data> dataForKey(std::string_view key) const override;
  std::optional<Date> dateForKey(std::string_view key) const override;
  bool setBool(std::string_view key, bool value) override;
  bool setString(std::string_view key, std::string_view value) override;
  bool setData(std::string_view key, const Data& value) override;
  bool setDate(std::string_view key, Date value) override;

  // Any value under any key, as another program could have written it.
  void setValue(std::string_view key, PropertyList value) { values[std::string(key)] = std::move(value); }

  std::map<std::string, PropertyList> values;
  std::vector<std::string> writtenKeys;  // in the order of the writes that changed something
  bool failsWrites = false;
  bool hasUnwrittenValues = false;  // the last write failed

 private:
  template <typename T>
  std::optional<T> valueForKey(std::string_view key) const;
  bool store(std::string_view key, PropertyList value);
};

}  // namespace harbor
