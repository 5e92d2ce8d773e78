#include <algorithm>
#include <bit>
#include <cmath>
#include <utility>

#include "platform/plist/BinaryPropertyList.h"
#include "platform/plist/BinaryPropertyListFormat.h"
#include "platform/plist/PropertyListLimits.h"
#include "platform/plist/Utf16.h"

namespace harbor {
namespace {

using namespace binary_property_list;
using Bytes = std::span<const std::uint8_t>;

// Big-endian, up to eight bytes.
std::uint64_t unsignedFrom(Bytes bytes) {
  std::uint64_t value = 0;
  for (const std::uint8_t byte : bytes)
    value = value << 8 | byte;
  return value;
}

// Recursion is safe because the limits bound the depth; a cycle runs into them as well.
class Reader {
 public:
  explicit Reader(Bytes bytes) : bytes_(bytes), limits_(bytes.size()) {}

  std::optional<PropertyList> read() {
    if (!readTrailer()) return std::nullopt;
    return readObject(root_, 0);
  }

 private:
  // The head of an object: its kind, its size field (or the integer that stands for it), and where the
  // content begins.
  struct Head {
    std::uint8_t kind = 0;
    std::uint64_t size = 0;
    std::size_t content = 0;
  };

  bool readTrailer() {
    if (bytes_.size() < kHeader.size() + kTrailerSize + 1) return false;
    const std::size_t objectsEnd = bytes_.size() - kTrailerSize;
    const Bytes trailer = bytes_.subspan(objectsEnd);
    offsetSize_ = trailer[kOffsetSizeAt];
    referenceSize_ = trailer[kReferenceSizeAt];
    objectCount_ = unsignedFrom(trailer.subspan(kObjectCountAt, 8));
    root_ = unsignedFrom(trailer.subspan(kRootAt, 8));
    const std::uint64_t offsetTable = unsignedFrom(trailer.subspan(kOffsetTableAt, 8));
    if (offsetSize_ < 1 || offsetSize_ > 8 || referenceSize_ < 1 || referenceSize_ > 8) return false;
    if (offsetTable <= kHeader.size() || offsetTable > objectsEnd) return false;
    if (objectCount_ > (objectsEnd - offsetTable) / offsetSize_) return false;
    offsets_ = bytes_.subspan(offsetTable, objectCount_ * offsetSize_);
    objects_ = bytes_.first(offsetTable);
    return true;
  }

  std::optional<Bytes> content(std::size_t from, std::uint64_t length) const {
    if (length > objects_.size() - from) return std::nullopt;
    return objects_.subspan(from, length);
  }

  std::optional<Head> readHead(std::uint64_t object) const {
    if (object >= objectCount_) return std::nullopt;
    const std::uint64_t offset = unsignedFrom(offsets_.subspan(object * offsetSize_, offsetSize_));
    if (offset < kHeader.size() || offset >= objects_.size()) return std::nullopt;
    const std::uint8_t marker = objects_[offset];
    Head head{static_cast<std::uint8_t>(marker >> 4), marker & 0xFu, offset + 1};
    const bool hasSize = head.kind != kSimple && head.kind != kInteger && head.kind != kReal &&
                         head.kind != kDate && head.kind != kUid;
    if (!hasSize || head.size != kSizeFollows) return head;
    const auto sizeMarker = content(head.content, 1);
    if (!sizeMarker || (*sizeMarker)[0] >> 4 != kInteger || ((*sizeMarker)[0] & 0xF) > 3) return std::nullopt;
    const auto size = content(head.content + 1, 1u << ((*sizeMarker)[0] & 0xF));
    if (!size) return std::nullopt;
    head.size = unsignedFrom(*size);
    head.content += 1 + size->size();
    return head;
  }

  std::optional<PropertyList> readObject(std::uint64_t object, int depth) {
    const auto head = readHead(object);
    if (!head || !limits_.admitValue(depth)) return std::nullopt;
    switch (head->kind) {
      case kSimple:
        if (head->size == kFalse) return PropertyList(false);
        if (head->size == kTrue) return PropertyList(true);
        return std::nullopt;
      case kInteger:
        return readInteger(*head);
      case kReal:
        return readReal(*head);
      case kDate:
        return readDate(*head);
      case kData: {
        const auto data = content(head->content, head->size);
        if (!data || !limits_.admitBytes(data->size())) return std::nullopt;
        return PropertyList(Data(data->begin(), data->end()));
      }
      case kAsciiText:
      case kUtf16Text:
        if (auto text = readText(*head)) return PropertyList(std::move(*text));
        return std::nullopt;
      case kUid:
        if (const auto number = content(head->content, head->size + 1); number && number->size() <= 8) {
          return PropertyList(PropertyList::Uid{unsignedFrom(*number)});
        }
        return std::nullopt;
      case kArray:
        return readArray(*head, depth);
      case kDictionary:
        return readDictionary(*head, depth);
      default:
        return std::nullopt;
    }
  }

  std::optional<PropertyList> readInteger(const Head& head) const {
    if (head.size > 4) return std::nullopt;
    const auto number = content(head.content, std::uint64_t{1} << head.size);
    if (!number) return std::nullopt;
    // Shorter ones have no sign; eight bytes are signed; sixteen are there for what eight cannot hold.
    if (number->size() < 8) return PropertyList(unsignedFrom(*number));
    const std::uint64_t low = unsignedFrom(number->last(8));
    if (number->size() == 8) return PropertyList(static_cast<std::int64_t>(low));
    const std::uint64_t high = unsignedFrom(number->first(8));
    if (high == 0) return PropertyList(low);
    const auto negative = static_cast<std::int64_t>(low);
    if (high == UINT64_MAX && negative < 0) return PropertyList(negative);
    return std::nullopt;
  }

  std::optional<PropertyList> readReal(const Head& head) const {
    if (head.size != 2 && head.size != 3) return std::nullopt;
    const auto number = content(head.content, std::uint64_t{1} << head.size);
    if (!number) return std::nullopt;
    const std::uint64_t bits = unsignedFrom(*number);
    if (number->size() == 4)
      return PropertyList(double{std::bit_cast<float>(static_cast<std::uint32_t>(bits))});
    return PropertyList(std::bit_cast<double>(bits));
  }

  std::optional<PropertyList> readDate(const Head& head) const {
    const auto number = content(head.content, 8);
    if (head.size != kDateOfEightBytes || !number) return std::nullopt;
    const auto seconds = std::bit_cast<double>(unsignedFrom(*number));
    if (!(seconds >= kEarliestDate && seconds < kLatestDate)) return std::nullopt;
    return PropertyList(Date(std::chrono::duration<double>(seconds + kSecondsTo2001)));
  }

  std::optional<std::string> readText(const Head& head) {
    const std::uint64_t unitSize = head.kind == kUtf16Text ? 2 : 1;
    if (head.size > objects_.size() / unitSize) return std::nullopt;
    const auto bytes = content(head.content, head.size * unitSize);
    if (!bytes || !limits_.admitBytes(bytes->size())) return std::nullopt;
    if (unitSize == 1) {
      const bool isAscii = std::all_of(bytes->begin(), bytes->end(),
                                       [](std::uint8_t byte) { return byte > 0 && byte < 0x80; });
      return isAscii ? std::optional(std::string(bytes->begin(), bytes->end())) : std::nullopt;
    }
    std::u16string units(head.size, u'\0');
    for (std::size_t i = 0; i < units.size(); ++i)
      units[i] = static_cast<char16_t>((*bytes)[2 * i] << 8 | (*bytes)[2 * i + 1]);
    if (units.find(u'\0') != std::u16string::npos) return std::nullopt;
    return utf8FromUtf16(units);
  }

  // `count` references, one behind the other.
  std::optional<Bytes> references(std::size_t from, std::uint64_t count) const {
    if (count > objects_.size() / referenceSize_) return std::nullopt;
    return content(from, count * referenceSize_);
  }

  std::uint64_t reference(Bytes references, std::uint64_t index) const {
    return unsignedFrom(references.subspan(index * referenceSize_, referenceSize_));
  }

  std::optional<PropertyList> readArray(const Head& head, int depth) {
    const auto elements = references(head.content, head.size);
    if (!elements) return std::nullopt;
    PropertyList::Array array;
    for (std::uint64_t i = 0; i < head.size; ++i) {
      auto element = readObject(reference(*elements, i), depth + 1);
      if (!element) return std::nullopt;
      array.push_back(std::move(*element));
    }
    return PropertyList(std::move(array));
  }

  std::optional<PropertyList> readDictionary(const Head& head, int depth) {
    const auto keys = references(head.content, head.size);
    if (!keys) return std::nullopt;
    const auto values = references(head.content + keys->size(), head.size);
    if (!values) return std::nullopt;
    PropertyList::Dictionary dictionary;
    for (std::uint64_t i = 0; i < head.size; ++i) {
      auto key = readObject(reference(*keys, i), depth + 1);
      if (!key || !key->as<std::string>()) return std::nullopt;
      auto value = readObject(reference(*values, i), depth + 1);
      if (!value) return std::nullopt;
      dictionary.insert_or_assign(std::move(*key->as<std::string>()), std::move(*value));
    }
    return PropertyList(std::move(dictionary));
  }

  Bytes bytes_;
  Bytes objects_;  // the header and all objects, up to the offset table
  Bytes offsets_;
  std::size_t offsetSize_ = 0;
  std::size_t referenceSize_ = 0;
  std::uint64_t objectCount_ = 0;
  std::uint64_t root_ = 0;
  PropertyListLimits limits_;
};

}  // namespace

bool isBinaryPropertyList(Bytes bytes) {
  return bytes.size() >= kHeader.size() && std::equal(kHeader.begin(), kHeader.end(), bytes.begin());
}

std::optional<PropertyList> readBinaryPropertyList(Bytes bytes) {
  if (bytes.size() > PropertyListLimits::kMostBytes || !isBinaryPropertyList(bytes)) return std::nullopt;
  return Reader(bytes).read();
}

}  // namespace harbor
