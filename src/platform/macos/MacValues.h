// The values of the seam as the frameworks' objects, and back.
#pragma once

#import <AppKit/AppKit.h>

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "base/Colour.h"
#include "base/FileUrl.h"
#include "base/Geometry.h"
#include "base/PropertyList.h"

namespace harbor {

// Nil when the bytes are not UTF-8.
NSString* nsString(std::string_view text);
// For showing: bytes that are not UTF-8 are read as Latin-1, so that something stands there.
NSString* shownString(std::string_view text);
// The empty text for nil.
std::string textOf(NSString* string);

NSURL* nsUrl(const FileUrl& url);
// Nothing when the URL is none of a file.
std::optional<FileUrl> fileUrlOf(NSURL* url);

NSColor* nsColor(const Colour& colour);
// Nothing when the colour has no counterpart in sRGB (a pattern).
std::optional<Colour> colourOf(NSColor* colour);

NSData* nsData(const Data& data);
Data dataOf(NSData* data);
NSDate* nsDate(Date date);
Date dateOf(NSDate* date);

// The seam counts from the top left of the main display, AppKit from its bottom left: the same conversion
// leads there and back. To be called on the main thread.
NSRect flipped(const Rect& rect);
Rect flipped(NSRect rect);
NSPoint flipped(Point point);
Point flipped(NSPoint point);

// Runs the function on the main thread once the current event has been handled. Unlike the main queue, the
// run loop goes on with what is added while such a function waits in an alert or a panel of its own.
void onMainRunLoop(std::function<void()> task);

}  // namespace harbor
