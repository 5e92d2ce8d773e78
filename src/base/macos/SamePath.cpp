#include <CoreFoundation/CoreFoundation.h>

#include "base/FileUrl.h"

namespace harbor {
namespace {

// Null when the bytes are not UTF-8.
CFStringRef stringOf(std::string_view text) {
  return CFStringCreateWithBytes(nullptr, reinterpret_cast<const UInt8*>(text.data()),
                                 static_cast<CFIndex>(text.size()), kCFStringEncodingUTF8, false);
}

}  // namespace

// The system's URLs are decomposed, what a folder lists is as it was stored, and the file system takes
// either.
bool isSamePath(std::string_view a, std::string_view b) {
  if (a == b) return true;
  const CFStringRef first = stringOf(a);
  const CFStringRef second = stringOf(b);
  const bool isSame =
      first && second && CFStringCompare(first, second, kCFCompareNonliteral) == kCFCompareEqualTo;
  if (first) CFRelease(first);
  if (second) CFRelease(second);
  return isSame;
}

}  // namespace harbor
