#include "platform/icu/IcuText.h"

#include <unicode/bytestream.h>
#include <unicode/normalizer2.h>
#include <unicode/ubrk.h>
#include <unicode/ucasemap.h>
#include <unicode/uchar.h>
#include <unicode/utext.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <cstdint>

namespace harbor {
namespace {

constexpr std::size_t kLongestChunk = 1 << 20;

bool isAscii(std::string_view text) {
  return std::all_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

struct CloseCaseMap {
  void operator()(UCaseMap* map) const { ucasemap_close(map); }
};
struct CloseText {
  void operator()(UText* text) const { utext_close(text); }
};
struct CloseBreaks {
  void operator()(UBreakIterator* breaks) const { ubrk_close(breaks); }
};

// The code point that starts at `position`, which is moved behind it; negative for a byte that is not UTF-8.
UChar32 nextCodePoint(std::string_view text, std::int32_t& position) {
  const auto* bytes = reinterpret_cast<const std::uint8_t*>(text.data());
  UChar32 codePoint = 0;
  U8_NEXT(bytes, position, static_cast<std::int32_t>(text.size()), codePoint);
  return codePoint;
}

// Calls `valid` with each longest run of valid UTF-8 and `invalid` with the bytes between them, in order;
// never with nothing.
template <typename Valid, typename Invalid>
void forEachRun(std::string_view text, Valid valid, Invalid invalid) {
  std::size_t runStart = 0;
  std::int32_t position = 0;
  while (static_cast<std::size_t>(position) < text.size()) {
    const auto start = static_cast<std::size_t>(position);
    if (nextCodePoint(text, position) >= 0) continue;
    if (start > runStart) valid(text.substr(runStart, start - runStart));
    runStart = static_cast<std::size_t>(position);
    invalid(text.substr(start, runStart - start));
  }
  if (runStart < text.size()) valid(text.substr(runStart));
}

void appendLowercased(std::string_view text, std::string& result) {
  UErrorCode status = U_ZERO_ERROR;
  const std::unique_ptr<UCaseMap, CloseCaseMap> map(ucasemap_open("", 0, &status));
  if (U_FAILURE(status)) {
    result += text;
    return;
  }
  const auto mapRun = [&](std::string_view run) {
    std::string mapped(run.size() * 3, '\0');
    UErrorCode mapStatus = U_ZERO_ERROR;
    const std::int32_t length =
        ucasemap_utf8ToLower(map.get(), mapped.data(), static_cast<std::int32_t>(mapped.size()), run.data(),
                             static_cast<std::int32_t>(run.size()), &mapStatus);
    if (U_FAILURE(mapStatus)) {
      result += run;
    } else {
      result.append(mapped, 0, static_cast<std::size_t>(length));
    }
  };
  forEachRun(text, mapRun, [&](std::string_view bytes) { result += bytes; });
}

// Appends the clusters of a text that is valid UTF-8.
void appendClusters(std::string_view run, UBreakIterator* breaks, std::vector<std::string_view>& clusters) {
  UErrorCode status = U_ZERO_ERROR;
  const std::unique_ptr<UText, CloseText> source(
      utext_openUTF8(nullptr, run.data(), static_cast<std::int64_t>(run.size()), &status));
  if (U_SUCCESS(status)) ubrk_setUText(breaks, source.get(), &status);
  if (U_FAILURE(status)) {
    clusters.push_back(run);
    return;
  }
  std::size_t start = 0;
  ubrk_first(breaks);
  for (std::int32_t end = ubrk_next(breaks); end != UBRK_DONE; end = ubrk_next(breaks)) {
    clusters.push_back(run.substr(start, static_cast<std::size_t>(end) - start));
    start = static_cast<std::size_t>(end);
  }
}

}  // namespace

std::string IcuText::lowercased(std::string_view text) const {
  std::string result;
  if (isAscii(text)) {
    result.assign(text);
    for (char& character : result) {
      if (character >= 'A' && character <= 'Z') character = static_cast<char>(character - 'A' + 'a');
    }
    return result;
  }
  for (std::size_t start = 0; start < text.size();) {
    std::size_t end = std::min(text.size(), start + kLongestChunk);
    while (end < text.size() && (static_cast<unsigned char>(text[end]) & 0xC0) == 0x80)
      ++end;
    appendLowercased(text.substr(start, end - start), result);
    start = end;
  }
  return result;
}

std::string IcuText::canonical(std::string_view text) const {
  if (isAscii(text)) return std::string(text);
  for (std::int32_t position = 0; position < static_cast<std::int32_t>(text.size());) {
    if (nextCodePoint(text, position) < 0) return std::string(text);
  }
  UErrorCode status = U_ZERO_ERROR;
  const icu::Normalizer2* normalizer = icu::Normalizer2::getNFCInstance(status);
  if (U_FAILURE(status)) return std::string(text);
  std::string result;
  icu::StringByteSink<std::string> sink(&result);
  normalizer->normalizeUTF8(0, icu::StringPiece(text.data(), static_cast<std::int32_t>(text.size())), sink,
                            nullptr, status);
  return U_FAILURE(status) ? std::string(text) : result;
}

std::vector<std::string_view> IcuText::graphemeClusters(std::string_view text) const {
  std::vector<std::string_view> clusters;
  if (isAscii(text) && text.find('\r') == std::string_view::npos) {
    clusters.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i)
      clusters.push_back(text.substr(i, 1));
    return clusters;
  }

  UErrorCode status = U_ZERO_ERROR;
  const std::unique_ptr<UBreakIterator, CloseBreaks> breaks(
      ubrk_open(UBRK_CHARACTER, "", nullptr, 0, &status));
  if (U_FAILURE(status)) {
    clusters.push_back(text);
    return clusters;
  }
  forEachRun(
      text, [&](std::string_view run) { appendClusters(run, breaks.get(), clusters); },
      [&](std::string_view bytes) {
        for (std::size_t i = 0; i < bytes.size(); ++i)
          clusters.push_back(bytes.substr(i, 1));
      });
  return clusters;
}

std::string_view IcuText::trimmed(std::string_view text) const {
  const auto isSpace = [](UChar32 c) { return c >= 0 && (u_isUWhiteSpace(c) || c == 0x200B); };
  std::int32_t start = 0;
  for (std::int32_t position = 0; position < static_cast<std::int32_t>(text.size());) {
    if (!isSpace(nextCodePoint(text, position))) break;
    start = position;
  }
  auto end = static_cast<std::int32_t>(text.size());
  const auto* bytes = reinterpret_cast<const std::uint8_t*>(text.data());
  while (end > start) {
    std::int32_t position = end;
    UChar32 codePoint = 0;
    U8_PREV(bytes, start, position, codePoint);
    if (!isSpace(codePoint)) break;
    end = position;
  }
  return text.substr(static_cast<std::size_t>(start), static_cast<std::size_t>(end - start));
}

}  // namespace harbor
