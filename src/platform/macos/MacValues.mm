#import "platform/macos/MacValues.h"

namespace harbor {
namespace {

double mainDisplayHeight() {
  return CGDisplayBounds(CGMainDisplayID()).size.height;
}

// Keeps a byte order mark at the beginning, which -initWithBytes: takes for no part of the text.
NSString* decoded(std::string_view text, CFStringEncoding encoding) {
  return (__bridge_transfer NSString*)CFStringCreateWithBytes(
      nullptr, reinterpret_cast<const UInt8*>(text.data()), static_cast<CFIndex>(text.size()), encoding,
      false);
}

}  // namespace

NSString* nsString(std::string_view text) {
  return text.empty() ? @"" : decoded(text, kCFStringEncodingUTF8);
}

NSString* shownString(std::string_view text) {
  NSString* const string = nsString(text);
  return string ? string : decoded(text, kCFStringEncodingISOLatin1);
}

std::string textOf(NSString* string) {
  const char* const bytes = string.UTF8String;
  return bytes ? std::string(bytes, [string lengthOfBytesUsingEncoding:NSUTF8StringEncoding]) : std::string();
}

NSURL* nsUrl(const FileUrl& url) {
  return [NSURL fileURLWithFileSystemRepresentation:url.path.c_str()
                                        isDirectory:url.isDirectory
                                      relativeToURL:nil];
}

std::optional<FileUrl> fileUrlOf(NSURL* url) {
  if (!url.isFileURL) return std::nullopt;
  FileUrl result = FileUrl::fromPath(url.fileSystemRepresentation);
  result.isDirectory = url.hasDirectoryPath;
  return result;
}

NSColor* nsColor(const Colour& colour) {
  return [NSColor colorWithSRGBRed:colour.red green:colour.green blue:colour.blue alpha:colour.alpha];
}

std::optional<Colour> colourOf(NSColor* colour) {
  NSColor* const inSrgb = [colour colorUsingColorSpace:NSColorSpace.sRGBColorSpace];
  if (!inSrgb) return std::nullopt;
  return Colour{inSrgb.redComponent, inSrgb.greenComponent, inSrgb.blueComponent, inSrgb.alphaComponent};
}

NSData* nsData(const Data& data) {
  return [NSData dataWithBytes:data.data() length:data.size()];
}

Data dataOf(NSData* data) {
  const auto* const bytes = static_cast<const std::uint8_t*>(data.bytes);
  return Data(bytes, bytes + data.length);
}

NSDate* nsDate(Date date) {
  return [NSDate dateWithTimeIntervalSince1970:date.time_since_epoch().count()];
}

Date dateOf(NSDate* date) {
  return Date(std::chrono::duration<double>(date.timeIntervalSince1970));
}

NSRect flipped(const Rect& rect) {
  return NSMakeRect(rect.x, mainDisplayHeight() - rect.y - rect.height, rect.width, rect.height);
}

Rect flipped(NSRect rect) {
  return {rect.origin.x, mainDisplayHeight() - rect.origin.y - rect.size.height, rect.size.width,
          rect.size.height};
}

NSPoint flipped(Point point) {
  return NSMakePoint(point.x, mainDisplayHeight() - point.y);
}

Point flipped(NSPoint point) {
  return {point.x, mainDisplayHeight() - point.y};
}

void onMainRunLoop(std::function<void()> task) {
  CFRunLoopPerformBlock(CFRunLoopGetMain(), kCFRunLoopCommonModes, ^{
    @autoreleasepool {
      task();
    }
  });
  CFRunLoopWakeUp(CFRunLoopGetMain());
}

}  // namespace harbor
