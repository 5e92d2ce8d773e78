#include <algorithm>
#include <bit>
#include <map>
#include <string_view>
#include <utility>

#include "platform/plist/BinaryPropertyList.h"
#include "platform/plist/BinaryPropertyListFormat.h"
#include "platform/plist/PropertyListLimits.h"
#include "platform/plist/Utf16.h"

namespace harbor {
namespace {

using namespace binary_property_list;

// The bytes that an unsigned number needs: 1, 2, 4 or 8.
std::size_t sizeOf(std::uint64_t number) {
  if (number <= UINT8_MAX) return 1;
  if (number <= UINT16_MAX) return 2;
  if (number <= UINT32_MAX) return 4;
  return 8;
}

// References have a fixed size, so the number of objects has to be known before the first byte is written:
// objects are collected first and written then.
class Writer {
 public:
  std::optional<Data> write(const PropertyList& root) {
    if (!collect(root, 0)) return std::nullopt;
    referenceSize_ = sizeOf(objects_.size() - 1);
    bytes_.assign(kHeader.begin(), kHeader.end());
    std::vector<std::uint64_t> offsets;
    offsets.reserve(objects_.size());
    for (const Object& object : objects_) {
      offsets.push_back(bytes_.size());
      if (!writeObject(object)) return std::nullopt;
    }
    writeOffsetsAndTrailer(offsets);
    if (bytes_.size() > PropertyListLimits::kMostBytes) return std::nullopt;
    return std::move(bytes_);
  }

 private:
  struct Object {
    const PropertyList* value = nullptr;    // null for a text
    const std::string* text = nullptr;      // a text, or a dictionary's key
    std::vector<std::uint64_t> references;  // of an array, or of a dictionary: its keys, then its values
  };

  // The number of the object that stands for the value.
  std::optional<std::uint64_t> collect(const PropertyList& value, int depth) {
    if (const auto* text = value.as<std::string>()) return collectText(*text, depth);
    if (!limits_.admitValue(depth)) return std::nullopt;
    const std::uint64_t number = objects_.size();
    objects_.push_back({&value, nullptr, {}});
    std::vector<std::uint64_t> references;
    if (const auto* data = value.as<Data>()) {
      if (!limits_.admitBytes(data->size())) return std::nullopt;
    } else if (const auto* array = value.as<PropertyList::Array>()) {
      for (const PropertyList& element : *array) {
        const auto reference = collect(element, depth + 1);
        if (!reference) return std::nullopt;
        references.push_back(*reference);
      }
    } else if (const auto* dictionary = value.as<PropertyList::Dictionary>()) {
      std::vector<std::uint64_t> values;
      for (const auto& [key, element] : *dictionary) {
        const auto keyReference = collectText(key, depth + 1);
        const auto reference = keyReference ? collect(element, depth + 1) : std::nullopt;
        if (!reference) return std::nullopt;
        references.push_back(*keyReference);
        values.push_back(*reference);
      }
      references.insert(references.end(), values.begin(), values.end());
    }
    objects_[number].references = std::move(references);
    return number;
  }

  // Equal texts are one object: lists of records repeat their keys.
  std::optional<std::uint64_t> collectText(const std::string& text, int depth) {
    // UTF-16 takes at most twice the bytes, and those are what the reader counts.
    if (!limits_.admitValue(depth) || !limits_.admitBytes(2 * text.size())) return std::nullopt;
    const auto [entry, isNew] = texts_.try_emplace(text, objects_.size());
    if (isNew) objects_.push_back({nullptr, &text, {}});
    return entry->second;
  }

  bool writeObject(const Object& object) {
    if (object.text) return writeText(*object.text);
    struct Visitor {
      Writer& writer;
      const Object& object;

      bool operator()(bool v) const {
        writer.bytes_.push_back(v ? kTrue : kFalse);
        return true;
      }
      bool operator()(std::int64_t v) const {
        writer.writeInteger(static_cast<std::uint64_t>(v));
        return true;
      }
      bool operator()(std::uint64_t v) const {
        writer.writeMarker(kInteger, 4);
        writer.writeNumber(0, 8);
        writer.writeNumber(v, 8);
        return true;
      }
      bool operator()(double v) const {
        writer.writeMarker(kReal, 3);
        writer.writeNumber(std::bit_cast<std::uint64_t>(v), 8);
        return true;
      }
      bool operator()(const std::string& v) const { return writer.writeText(v); }
      bool operator()(const Data& v) const {
        writer.writeHead(kData, v.size());
        writer.bytes_.insert(writer.bytes_.end(), v.begin(), v.end());
        return true;
      }
      bool operator()(Date v) const {
        const double seconds = v.time_since_epoch().count() - kSecondsTo2001;
        if (!(seconds >= kEarliestDate && seconds < kLatestDate)) return false;
        writer.writeMarker(kDate, kDateOfEightBytes);
        writer.writeNumber(std::bit_cast<std::uint64_t>(seconds), 8);
        return true;
      }
      bool operator()(PropertyList::Uid v) const {
        const std::size_t size = sizeOf(v.value);
        writer.writeMarker(kUid, static_cast<std::uint8_t>(size - 1));
        writer.writeNumber(v.value, size);
        return true;
      }
      bool operator()(const PropertyList::Array& v) const {
        writer.writeHead(kArray, v.size());
        writer.writeReferences(object.references);
        return true;
      }
      bool operator()(const PropertyList::Dictionary& v) const {
        writer.writeHead(kDictionary, v.size());
        writer.writeReferences(object.references);
        return true;
      }
    };
    return std::visit(Visitor{*this, object}, object.value->value());
  }

  bool writeText(const std::string& text) {
    if (text.find('\0') != std::string::npos) return false;
    const bool isAscii =
        std::all_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
    if (isAscii) {
      writeHead(kAsciiText, text.size());
      bytes_.insert(bytes_.end(), text.begin(), text.end());
      return true;
    }
    const auto units = utf16FromUtf8(text);
    if (!units) return false;
    writeHead(kUtf16Text, units->size());
    for (const char16_t unit : *units)
      writeNumber(unit, 2);
    return true;
  }

  void writeMarker(std::uint8_t kind, std::uint8_t size) {
    bytes_.push_back(static_cast<std::uint8_t>(kind << 4 | size));
  }

  void writeHead(std::uint8_t kind, std::uint64_t size) {
    if (size < kSizeFollows) {
      writeMarker(kind, static_cast<std::uint8_t>(size));
    } else {
      writeMarker(kind, kSizeFollows);
      writeInteger(size);
    }
  }

  // Of a signed integer the eight bytes of its bits; a negative one needs all of them.
  void writeInteger(std::uint64_t bits) {
    const std::size_t size = sizeOf(bits);
    writeMarker(kInteger, static_cast<std::uint8_t>(std::countr_zero(size)));
    writeNumber(bits, size);
  }

  void writeNumber(std::uint64_t number, std::size_t size) {
    for (std::size_t i = size; i-- > 0;)
      bytes_.push_back(static_cast<std::uint8_t>(number >> (8 * i)));
  }

  void writeReferences(const std::vector<std::uint64_t>& references) {
    for (const std::uint64_t reference : references)
      writeNumber(reference, referenceSize_);
  }

  void writeOffsetsAndTrailer(const std::vector<std::uint64_t>& offsets) {
    const std::uint64_t offsetTable = bytes_.size();
    const std::size_t offsetSize = sizeOf(offsetTable);
    for (const std::uint64_t offset : offsets)
      writeNumber(offset, offsetSize);
    bytes_.insert(bytes_.end(), kOffsetSizeAt, 0);
    bytes_.push_back(static_cast<std::uint8_t>(offsetSize));
    bytes_.push_back(static_cast<std::uint8_t>(referenceSize_));
    writeNumber(offsets.size(), 8);
    writeNumber(0, 8);
    writeNumber(offsetTable, 8);
  }

  std::vector<Object> objects_;
  std::map<std::string_view, std::uint64_t> texts_;
  std::size_t referenceSize_ = 1;
  Data bytes_;
  PropertyListLimits limits_;
};

}  // namespace

std::optional<Data> writeBinaryPropertyList(const PropertyList& value) {
  return Writer().write(value);
}

}  // namespace harbor
