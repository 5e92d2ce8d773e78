// A property-list value: what the settings database and the data files of other programs are made of. A value
// only; turning it into bytes and back is the platform's PropertyListCoder.
#pragma once

#include <chrono>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace harbor {

using Data = std::vector<std::uint8_t>;
using Date = std::chrono::time_point<std::chrono::system_clock, std::chrono::duration<double>>;

class PropertyList {
 public:
  // A reference into the object table of a keyed archive.
  struct Uid {
    std::uint64_t value = 0;
    friend bool operator==(const Uid&, const Uid&) = default;
  };
  using Array = std::vector<PropertyList>;
  using Dictionary = std::map<std::string, PropertyList>;
  // An unsigned integer stands only for what a signed one cannot hold; the constructors see to that.
  using Value = std::variant<bool, std::int64_t, std::uint64_t, double, std::string, Data, Date, Uid, Array,
                             Dictionary>;

  PropertyList() : value_(Dictionary{}) {}
  PropertyList(bool value) : value_(value) {}
  PropertyList(int value) : value_(std::int64_t{value}) {}
  PropertyList(std::int64_t value) : value_(value) {}
  PropertyList(std::uint64_t value) {
    if (value <= static_cast<std::uint64_t>(INT64_MAX)) {
      value_ = static_cast<std::int64_t>(value);
    } else {
      value_ = value;
    }
  }
  PropertyList(double value) : value_(value) {}
  PropertyList(const char* value) : value_(std::string(value)) {}
  PropertyList(std::string value) : value_(std::move(value)) {}
  PropertyList(Data value) : value_(std::move(value)) {}
  PropertyList(Date value) : value_(value) {}
  PropertyList(Uid value) : value_(value) {}
  PropertyList(Array value) : value_(std::move(value)) {}
  PropertyList(Dictionary value) : value_(std::move(value)) {}

  // The value as T, one of the alternatives of Value; null when it is something else.
  template <typename T>
  const T* as() const {
    return std::get_if<T>(&value_);
  }
  template <typename T>
  T* as() {
    return std::get_if<T>(&value_);
  }

  // The integer, when it is one and is not negative.
  std::optional<std::uint64_t> asUnsigned() const {
    if (const auto* number = as<std::uint64_t>()) return *number;
    if (const auto* number = as<std::int64_t>(); number && *number >= 0) {
      return static_cast<std::uint64_t>(*number);
    }
    return std::nullopt;
  }

  // The entry of a dictionary; null when this is no dictionary or has no such key.
  const PropertyList* find(const std::string& key) const {
    const auto* dictionary = as<Dictionary>();
    if (!dictionary) return nullptr;
    const auto entry = dictionary->find(key);
    return entry == dictionary->end() ? nullptr : &entry->second;
  }

  const Value& value() const { return value_; }

  friend bool operator==(const PropertyList&, const PropertyList&) = default;

 private:
  Value value_;
};

}  // namespace harbor
