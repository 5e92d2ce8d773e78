#import "platform/macos/MacText.h"

#include <algorithm>
#include <functional>

#include "base/Utf8.h"
#import "platform/macos/MacValues.h"

namespace harbor {
namespace {

// The length of the well-formed character that the text begins with; 0 when it begins with none.
std::size_t lengthOfFirstCharacter(std::string_view text) {
  for (std::size_t length = 1; length <= std::min<std::size_t>(4, text.size()); ++length) {
    if (isValidUtf8(text.substr(0, length))) return length;
  }
  return 0;
}

// Calls `run` for each longest stretch of well-formed text and `stray` for each byte between them, in order.
void forEachRun(std::string_view text, const std::function<void(std::string_view)>& run,
                const std::function<void(std::string_view)>& stray) {
  while (!text.empty()) {
    std::size_t length = 0;
    while (const std::size_t character = lengthOfFirstCharacter(text.substr(length)))
      length += character;
    if (length > 0) {
      run(text.substr(0, length));
    } else {
      stray(text.substr(0, length = 1));
    }
    text.remove_prefix(length);
  }
}

void appendClusters(std::string_view text, std::vector<std::string_view>& clusters) {
  NSString* const string = nsString(text);
  std::vector<std::string_view>* const result = &clusters;
  __block std::string_view rest = text;
  [string enumerateSubstringsInRange:NSMakeRange(0, string.length)
                             options:NSStringEnumerationByComposedCharacterSequences
                          usingBlock:^(NSString* cluster, NSRange, NSRange, BOOL*) {
                            const std::size_t length =
                                [cluster lengthOfBytesUsingEncoding:NSUTF8StringEncoding];
                            result->push_back(rest.substr(0, length));
                            rest.remove_prefix(length);
                          }];
}

}  // namespace

std::string MacText::lowercased(std::string_view text) const {
  std::string result;
  forEachRun(
      text,
      [&](std::string_view run) {
        // Long scans on a background thread leave no strings behind.
        @autoreleasepool {
          result += textOf(nsString(run).lowercaseString);
        }
      },
      [&](std::string_view byte) { result += byte; });
  return result;
}

std::string MacText::canonical(std::string_view text) const {
  @autoreleasepool {
    NSString* const string = nsString(text);
    return string ? textOf(string.precomposedStringWithCanonicalMapping) : std::string(text);
  }
}

std::vector<std::string_view> MacText::graphemeClusters(std::string_view text) const {
  std::vector<std::string_view> clusters;
  forEachRun(
      text, [&](std::string_view run) { appendClusters(run, clusters); },
      [&](std::string_view byte) { clusters.push_back(byte); });
  return clusters;
}

std::string_view MacText::trimmed(std::string_view text) const {
  NSCharacterSet* const space = NSCharacterSet.whitespaceAndNewlineCharacterSet;
  const auto isSpace = [&](std::string_view character) {
    NSString* const string = nsString(character);
    return string.length == 1 && [space characterIsMember:[string characterAtIndex:0]];
  };
  while (const std::size_t length = lengthOfFirstCharacter(text)) {
    if (!isSpace(text.substr(0, length))) break;
    text.remove_prefix(length);
  }
  while (!text.empty()) {
    // White space takes one to three bytes.
    std::size_t length = 1;
    while (length < std::min<std::size_t>(3, text.size()) && !isValidUtf8(text.substr(text.size() - length)))
      ++length;
    if (!isSpace(text.substr(text.size() - length))) break;
    text.remove_suffix(length);
  }
  return text;
}

}  // namespace harbor
