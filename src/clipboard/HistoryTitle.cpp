#include "clipboard/HistoryTitle.h"

#include <algorithm>
#include <array>
#include <vector>

namespace harbor {
namespace {

constexpr std::size_t kLongestTitle = 50;
// How many bytes are looked at, one window after the other until 51 characters are found. The first is enough
// for nearly every text; the last bounds the time that a text of endless combining marks can take.
constexpr std::array<std::size_t, 3> kWindows{512, 4 * 1024, 16 * 1024};

// The start of the text, of at most `length` bytes, without breaking a UTF-8 sequence.
std::string_view prefix(std::string_view text, std::size_t length) {
  if (text.size() <= length) return text;
  while (length > 0 && (static_cast<unsigned char>(text[length]) & 0xC0) == 0x80)
    --length;
  return text.substr(0, length);
}

}  // namespace

std::string historyTitle(const Text& text, std::string_view entry) {
  // A line feed and a tab are white space as the spaces that replace them are, so trimming may come first;
  // it then looks only at the ends of the entry, however long that is.
  const std::string_view trimmed = text.trimmed(entry);

  std::string title;
  for (const std::size_t length : kWindows) {
    std::string window(prefix(trimmed, length));
    std::replace_if(
        window.begin(), window.end(), [](char c) { return c == '\n' || c == '\t'; }, ' ');
    const std::vector<std::string_view> characters = text.graphemeClusters(window);
    const bool isLonger = characters.size() > kLongestTitle;
    if (!isLonger && window.size() == trimmed.size()) return window;

    title.clear();
    for (std::size_t i = 0; i < std::min(characters.size(), kLongestTitle); ++i)
      title += characters[i];
    // Where a 51st character begins, the 50th is known to be whole.
    if (isLonger) break;
  }
  return title + "...";
}

}  // namespace harbor
