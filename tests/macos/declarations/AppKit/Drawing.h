// Colours, fonts, images and paths.
#pragma once

#import <Foundation/Foundation.h>

HARBOR_NONNULL_BEGIN

@class NSFont, NSImage;

@interface NSColorSpace : NSObject
@property(class, readonly, strong) NSColorSpace* sRGBColorSpace HARBOR_SINCE(10.5);
@end

@interface NSColor : NSObject <NSCopying, NSSecureCoding>
+ (NSColor*)colorWithSRGBRed:(CGFloat)red
                       green:(CGFloat)green
                        blue:(CGFloat)blue
                       alpha:(CGFloat)alpha HARBOR_SINCE(10.7);
@property(class, readonly, strong) NSColor* secondaryLabelColor HARBOR_SINCE(10.10);
- (nullable NSColor*)colorUsingColorSpace:(NSColorSpace*)space;
@property(readonly) CGFloat redComponent;
@property(readonly) CGFloat greenComponent;
@property(readonly) CGFloat blueComponent;
@property(readonly) CGFloat alphaComponent;
@property(readonly) CGColorRef CGColor HARBOR_SINCE(10.8);
- (void)setFill;
@end

@interface NSFont : NSObject
@property(class, readonly) CGFloat systemFontSize;
@property(class, readonly) CGFloat smallSystemFontSize;
+ (NSFont*)boldSystemFontOfSize:(CGFloat)size;
@end

typedef NSString* NSAttributedStringKey;
HARBOR_EXPORT NSAttributedStringKey const NSFontAttributeName;
HARBOR_EXPORT NSAttributedStringKey const NSParagraphStyleAttributeName;
HARBOR_EXPORT NSAttributedStringKey const NSForegroundColorAttributeName;

typedef HARBOR_ENUM(NSInteger, NSTextAlignment){
    NSTextAlignmentLeft = 0,
    NSTextAlignmentCenter = 1,
    NSTextAlignmentRight = 2,
};
typedef HARBOR_ENUM(NSUInteger, NSLineBreakMode){
    NSLineBreakByTruncatingTail = 4,
    NSLineBreakByTruncatingMiddle = 5,
};

@interface NSParagraphStyle : NSObject
@end
@interface NSMutableParagraphStyle : NSParagraphStyle
@property NSTextAlignment alignment;
@end

typedef HARBOR_OPTIONS(NSInteger, NSStringDrawingOptions){
    NSStringDrawingUsesLineFragmentOrigin = 1 << 0,
};
@interface NSString (NSExtendedStringDrawing)
- (NSRect)boundingRectWithSize:(NSSize)size
                       options:(NSStringDrawingOptions)options
                    attributes:(nullable NSDictionary<NSAttributedStringKey, id>*)attributes;
- (void)drawInRect:(NSRect)rect withAttributes:(nullable NSDictionary<NSAttributedStringKey, id>*)attributes;
@end

@interface NSShadow : NSObject
@property NSSize shadowOffset;
@property CGFloat shadowBlurRadius;
@property(nullable, copy) NSColor* shadowColor;
- (void)set;
@end

typedef HARBOR_ENUM(NSUInteger, NSWindingRule){NSWindingRuleNonZero = 0, NSWindingRuleEvenOdd = 1};
@interface NSBezierPath : NSObject
+ (NSBezierPath*)bezierPath;
@property NSWindingRule windingRule;
- (void)moveToPoint:(NSPoint)point;
- (void)lineToPoint:(NSPoint)point;
- (void)curveToPoint:(NSPoint)end controlPoint1:(NSPoint)control1 controlPoint2:(NSPoint)control2;
- (void)closePath;
- (void)fill;
@end

@interface NSGraphicsContext : NSObject
+ (void)saveGraphicsState;
+ (void)restoreGraphicsState;
@end

typedef NSString* NSImageName;
HARBOR_EXPORT NSImageName const NSImageNameCaution;
HARBOR_EXPORT NSImageName const NSImageNameRevealFreestandingTemplate;
HARBOR_EXPORT NSImageName const NSImageNameQuickLookTemplate;

@interface NSImage : NSObject
+ (nullable NSImage*)imageNamed:(NSImageName)name;
- (instancetype)initWithCGImage:(CGImageRef)image size:(NSSize)size HARBOR_SINCE(10.6);
- (void)setTemplate:(BOOL)isTemplate;
@end

HARBOR_NONNULL_END
