// The table of a review window: the rows as they were given, a view-based cell for each column, and what the
// user does in them.
#pragma once

#import <AppKit/AppKit.h>

#include <vector>

#include "platform/ReviewWindow.h"

@interface HarborReviewTable : NSObject <NSTableViewDataSource, NSTableViewDelegate>
@property(readonly, strong) NSScrollView* scrollView;
- (instancetype)initWithEvents:(const harbor::ReviewWindowEvents&)events;
- (void)appendRows:(std::vector<harbor::ReviewRow>)rows;
- (void)updateRows:(std::vector<harbor::ReviewRowUpdate>)updates;
@end
