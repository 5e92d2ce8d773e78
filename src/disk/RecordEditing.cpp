#include "disk/RecordEditing.h"

#include <fnmatch.h>

#include <algorithm>

#include "base/FileUrl.h"

namespace harbor {
namespace {

constexpr std::string_view kBlanks = " \t\r\n";

std::string_view trimmed(std::string_view text) {
  const std::size_t first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

// A value that ends in an odd number of backslashes goes on in the next line.
bool goesOn(std::string_view line) {
  while (!line.empty() && (line.back() == '\n' || line.back() == '\r'))
    line.remove_suffix(1);
  const std::size_t last = line.find_last_not_of('\\');
  const std::size_t count = line.size() - (last == std::string_view::npos ? 0 : last + 1);
  return count % 2 == 1;
}

// The program of a list's "exec" attribute: the first word, which quotes may enclose together with the rest.
std::string programOf(std::string_view exec) {
  constexpr std::string_view kQuote = "&apos;";
  constexpr std::string_view kDoubleQuote = "&quot;";
  for (const std::string_view quote : {kQuote, kDoubleQuote, std::string_view("'")}) {
    if (exec.starts_with(quote)) exec.remove_prefix(quote.size());
  }
  const std::size_t end = exec.find_first_of(" \t&'\"");
  return lastPathComponent(exec.substr(0, end));
}

bool isOfPrograms(std::string_view bookmark, const std::vector<std::string>& programs) {
  constexpr std::string_view kApplication = "<bookmark:application ";
  constexpr std::string_view kExec = " exec=\"";
  for (std::size_t at = bookmark.find(kApplication); at != std::string_view::npos;
       at = bookmark.find(kApplication, at + 1)) {
    const std::string_view tag = bookmark.substr(at, bookmark.find('>', at) - at);
    const std::size_t exec = tag.find(kExec);
    if (exec == std::string_view::npos) continue;
    const std::string_view value = tag.substr(exec + kExec.size());
    if (std::find(programs.begin(), programs.end(), programOf(value.substr(0, value.find('"')))) !=
        programs.end())
      return true;
  }
  return false;
}

}  // namespace

std::string withoutSettings(std::string_view text, const std::vector<std::string>& patterns) {
  std::string kept;
  std::string group;
  bool dropsLine = false;
  bool isContinued = false;
  while (!text.empty()) {
    const std::size_t end = text.find('\n');
    const std::string_view line = text.substr(0, end == std::string_view::npos ? end : end + 1);
    text.remove_prefix(line.size());
    if (!isContinued) {
      dropsLine = false;
      const std::string_view content = trimmed(line);
      if (content.starts_with('[') && content.ends_with(']')) {
        group = content.substr(1, content.size() - 2);
      } else if (const std::size_t equals = content.find('='); equals != std::string_view::npos) {
        std::string_view key = trimmed(content.substr(0, equals));
        key = key.substr(0, key.find('['));
        const std::string name = group + "/" + std::string(key);
        dropsLine = std::any_of(patterns.begin(), patterns.end(), [&](const std::string& pattern) {
          return ::fnmatch(pattern.c_str(), name.c_str(), 0) == 0;
        });
      }
    }
    isContinued = goesOn(line);
    if (!dropsLine) kept += line;
  }
  return kept;
}

std::optional<std::string> withoutRecentFiles(std::string_view text,
                                              const std::vector<std::string>& programs) {
  constexpr std::string_view kStart = "<bookmark ";
  constexpr std::string_view kEnd = "</bookmark>";
  // Where a text could hide a tag, a search for tags is not to be trusted.
  for (const std::string_view hiding : {"<!--", "<![CDATA[", "<folder"}) {
    if (text.find(hiding) != std::string_view::npos) return std::nullopt;
  }
  if (text.find("<xbel") == std::string_view::npos) return std::nullopt;
  std::string kept;
  for (;;) {
    const std::size_t start = text.find(kStart);
    if (start == std::string_view::npos) break;
    const std::size_t end = text.find(kEnd, start);
    if (end == std::string_view::npos || text.find(kStart, start + 1) < end) return std::nullopt;
    const std::size_t after = end + kEnd.size();
    if (isOfPrograms(text.substr(start, after - start), programs)) {
      // The line breaks and blanks before the bookmark go with it.
      const std::size_t last = text.substr(0, start).find_last_not_of(kBlanks);
      kept += text.substr(0, last == std::string_view::npos ? 0 : last + 1);
    } else {
      kept += text.substr(0, after);
    }
    text.remove_prefix(after);
  }
  return kept.append(text);
}

}  // namespace harbor
