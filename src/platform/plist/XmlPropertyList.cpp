#include "platform/plist/XmlPropertyList.h"

#include <plist/plist.h>

#include <algorithm>
#include <memory>
#include <string_view>

#include "platform/plist/BinaryPropertyList.h"
#include "platform/plist/PropertyListLimits.h"
#include "platform/plist/Utf16.h"

namespace harbor {
namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

// libplist takes time by the square of the number of keys and of character references, and stack by the
// depth. All three are bounded by what is counted in the raw bytes, where no comment or quoting can hide
// anything.
constexpr std::ptrdiff_t kMostTags = 100'000;
constexpr std::ptrdiff_t kMostReferences = 100'000;
constexpr std::ptrdiff_t kMostContainers = 20'000;

struct FreePlist {
  void operator()(void* node) const { plist_free(node); }
};
struct FreeBytes {
  void operator()(char* bytes) const { plist_to_bin_free(bytes); }
};

std::ptrdiff_t occurrences(std::string_view text, std::string_view part) {
  std::ptrdiff_t count = 0;
  for (auto at = text.find(part); at != std::string_view::npos; at = text.find(part, at + part.size()))
    ++count;
  return count;
}

bool isReasonable(std::string_view text) {
  return text.size() <= PropertyListLimits::kMostBytes &&
         std::count(text.begin(), text.end(), '<') <= kMostTags &&
         std::count(text.begin(), text.end(), '&') <= kMostReferences &&
         occurrences(text, "<array") + occurrences(text, "<dict") <= kMostContainers;
}

}  // namespace

std::optional<PropertyList> readXmlPropertyList(std::span<const std::uint8_t> bytes) {
  std::string_view text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
  if (text.starts_with(kByteOrderMark)) text.remove_prefix(kByteOrderMark.size());
  if (!isReasonable(text) || !utf16FromUtf8(text)) return std::nullopt;

  plist_t parsed = nullptr;
  plist_from_xml(text.data(), static_cast<std::uint32_t>(text.size()), &parsed);
  const std::unique_ptr<void, FreePlist> node(parsed);
  if (!node) return std::nullopt;

  // Through the binary form, because the nodes of libplist do not tell a negative integer from one above
  // 2^63-1 and give dates in 32 bits; its binary form has both in full.
  char* encoded = nullptr;
  std::uint32_t length = 0;
  plist_to_bin(node.get(), &encoded, &length);
  const std::unique_ptr<char, FreeBytes> release(encoded);
  if (!encoded) return std::nullopt;
  return readBinaryPropertyList({reinterpret_cast<const std::uint8_t*>(encoded), length});
}

}  // namespace harbor
