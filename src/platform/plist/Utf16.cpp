#include "platform/plist/Utf16.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace harbor {
namespace {

constexpr char32_t kFirstSurrogate = 0xD800;
constexpr char32_t kFirstLowSurrogate = 0xDC00;
constexpr char32_t kLastSurrogate = 0xDFFF;
constexpr char32_t kFirstSupplementary = 0x10000;
constexpr char32_t kLastCodePoint = 0x10FFFF;

bool isSurrogate(char32_t c) {
  return c >= kFirstSurrogate && c <= kLastSurrogate;
}

// The smallest code point that a sequence of that many bytes may stand for.
constexpr std::array<char32_t, 5> kSmallestOfLength = {0, 0, 0x80, 0x800, 0x10000};

std::size_t sequenceLength(std::uint8_t lead) {
  if (lead < 0x80) return 1;
  if ((lead & 0xE0) == 0xC0) return 2;
  if ((lead & 0xF0) == 0xE0) return 3;
  if ((lead & 0xF8) == 0xF0) return 4;
  return 0;
}

}  // namespace

std::optional<std::u16string> utf16FromUtf8(std::string_view text) {
  std::u16string result;
  result.reserve(text.size());
  for (std::size_t i = 0; i < text.size();) {
    const auto lead = static_cast<std::uint8_t>(text[i]);
    const std::size_t length = sequenceLength(lead);
    if (length == 0 || length > text.size() - i) return std::nullopt;
    char32_t codePoint = length == 1 ? lead : lead & (0x7Fu >> length);
    for (std::size_t k = 1; k < length; ++k) {
      const auto next = static_cast<std::uint8_t>(text[i + k]);
      if ((next & 0xC0) != 0x80) return std::nullopt;
      codePoint = codePoint << 6 | (next & 0x3F);
    }
    if (codePoint < kSmallestOfLength[length] || codePoint > kLastCodePoint || isSurrogate(codePoint)) {
      return std::nullopt;
    }
    if (codePoint < kFirstSupplementary) {
      result += static_cast<char16_t>(codePoint);
    } else {
      const char32_t offset = codePoint - kFirstSupplementary;
      result += static_cast<char16_t>(kFirstSurrogate + (offset >> 10));
      result += static_cast<char16_t>(kFirstLowSurrogate + (offset & 0x3FF));
    }
    i += length;
  }
  return result;
}

std::optional<std::string> utf8FromUtf16(std::u16string_view text) {
  std::string result;
  result.reserve(text.size() * 3 / 2);
  for (std::size_t i = 0; i < text.size(); ++i) {
    char32_t codePoint = text[i];
    if (isSurrogate(codePoint)) {
      const char32_t low = i + 1 < text.size() ? text[i + 1] : 0;
      if (codePoint >= kFirstLowSurrogate || !isSurrogate(low) || low < kFirstLowSurrogate) {
        return std::nullopt;
      }
      codePoint = kFirstSupplementary + ((codePoint - kFirstSurrogate) << 10) + (low - kFirstLowSurrogate);
      ++i;
    }
    if (codePoint < 0x80) {
      result += static_cast<char>(codePoint);
    } else if (codePoint < 0x800) {
      result += static_cast<char>(0xC0 | codePoint >> 6);
      result += static_cast<char>(0x80 | (codePoint & 0x3F));
    } else if (codePoint < kFirstSupplementary) {
      result += static_cast<char>(0xE0 | codePoint >> 12);
      result += static_cast<char>(0x80 | (codePoint >> 6 & 0x3F));
      result += static_cast<char>(0x80 | (codePoint & 0x3F));
    } else {
      result += static_cast<char>(0xF0 | codePoint >> 18);
      result += static_cast<char>(0x80 | (codePoint >> 12 & 0x3F));
      result += static_cast<char>(0x80 | (codePoint >> 6 & 0x3F));
      result += static_cast<char>(0x80 | (codePoint & 0x3F));
    }
  }
  return result;
}

}  // namespace harbor
