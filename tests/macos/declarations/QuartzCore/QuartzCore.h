// What the Mac platform uses of Core Animation.
#pragma once

#import <Foundation/Foundation.h>

HARBOR_NONNULL_BEGIN

@interface CALayer : NSObject
@property(nullable) CGColorRef backgroundColor;
@property CGFloat cornerRadius;
@property(nullable, strong) id contents;
@end

HARBOR_NONNULL_END
