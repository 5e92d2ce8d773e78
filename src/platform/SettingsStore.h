// The user defaults: one flat, case-sensitive namespace of keys. Every read of a missing key or of a value of
// another type is absence, never an error; every write outlives this process when the
// call returns, and the machine as soon as the platform's own store is on the disk.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "base/PropertyList.h"

namespace harbor {

class SettingsStore {
 public:
  virtual ~SettingsStore() = default;

  // A Boolean, or a number that is not zero; false when missing or anything else. A platform whose settings
  // are written by hand may take a text such as "YES" for true.
  virtual bool boolForKey(std::string_view key) const = 0;
  virtual std::optional<std::string> stringForKey(std::string_view key) const = 0;
  virtual std::optional<Data> dataForKey(std::string_view key) const = 0;
  virtual std::optional<Date> dateForKey(std::string_view key) const = 0;

  // Each writer returns false when the value could not be made durable (disk full, read-only, the stored file
  // could not be read). The value is then kept for this run all the same, and the next write tries to store
  // it again. Storing what is already stored writes nothing and succeeds. A value that cannot be encoded (a
  // text with a zero byte or that is not UTF-8) leaves everything as it is, and the answer is false.
  virtual bool setBool(std::string_view key, bool value) = 0;
  virtual bool setString(std::string_view key, std::string_view value) = 0;
  virtual bool setData(std::string_view key, const Data& value) = 0;
  virtual bool setDate(std::string_view key, Date value) = 0;
};

}  // namespace harbor
