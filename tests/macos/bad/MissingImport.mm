// Uses a layer of Core Animation and imports AppKit only.
#import <AppKit/AppKit.h>

void roundCorners(NSView* view) {
  view.layer.cornerRadius = 4;
}
