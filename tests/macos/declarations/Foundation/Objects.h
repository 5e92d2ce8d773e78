// Values, collections and their archives.
#pragma once

#include <CoreFoundation/CoreFoundation.h>
#include <CoreGraphics/CoreGraphics.h>

// A character on Macs with an Intel processor, bool on the others.
#ifdef HARBOR_BOOL_IS_BOOL
typedef bool BOOL;
#define YES true
#define NO false
#else
typedef signed char BOOL;
#define YES __objc_yes
#define NO __objc_no
#endif
#define nil nullptr

HARBOR_NONNULL_BEGIN

typedef long NSInteger;
typedef unsigned long NSUInteger;
typedef double NSTimeInterval;
typedef CGRect NSRect;
typedef CGPoint NSPoint;
typedef CGSize NSSize;
typedef unsigned short unichar;
typedef struct objc_selector* SEL;
typedef struct _NSZone NSZone;

static inline NSRect NSMakeRect(CGFloat x, CGFloat y, CGFloat width, CGFloat height) {
  return CGRectMake(x, y, width, height);
}
static inline NSPoint NSMakePoint(CGFloat x, CGFloat y) {
  return CGPointMake(x, y);
}
static inline NSSize NSMakeSize(CGFloat width, CGFloat height) {
  return CGSizeMake(width, height);
}

typedef struct {
  CGFloat top;
  CGFloat left;
  CGFloat bottom;
  CGFloat right;
} NSEdgeInsets;
static inline NSEdgeInsets NSEdgeInsetsMake(CGFloat top, CGFloat left, CGFloat bottom, CGFloat right) {
  return {top, left, bottom, right};
}

typedef struct {
  NSUInteger location;
  NSUInteger length;
} NSRange;
static inline NSRange NSMakeRange(NSUInteger location, NSUInteger length) {
  return {location, length};
}

typedef HARBOR_ENUM(NSInteger, NSComparisonResult){NSOrderedAscending = -1L, NSOrderedSame = 0,
                                                   NSOrderedDescending = 1};

@class NSString, NSArray<__covariant ObjectType>, NSDictionary<__covariant KeyType, __covariant ObjectType>,
    NSError, NSData, NSCoder;

@protocol NSObject
- (BOOL)isEqual:(nullable id)object;
- (BOOL)isKindOfClass:(Class)aClass;
- (BOOL)respondsToSelector:(SEL)selector;
@end

__attribute__((objc_root_class))
@interface NSObject<NSObject>
+ (instancetype)alloc;
+ (instancetype)new;
+ (Class)class;
- (instancetype)init;
- (void)dealloc;
@end

@protocol NSCopying
- (id)copyWithZone:(nullable NSZone*)zone;
@end
@protocol NSCoding
@end
@protocol NSSecureCoding <NSCoding>
@end

typedef struct {
  unsigned long state;
  id __unsafe_unretained _Nullable* _Nullable itemsPtr;
  unsigned long* _Nullable mutationsPtr;
  unsigned long extra[5];
} NSFastEnumerationState;
@protocol NSFastEnumeration
- (NSUInteger)countByEnumeratingWithState:(NSFastEnumerationState*)state
                                  objects:(id __unsafe_unretained _Nullable[_Nonnull])buffer
                                    count:(NSUInteger)length;
@end

typedef HARBOR_OPTIONS(NSUInteger, NSStringEncoding){
    NSUTF8StringEncoding = 4,
};
typedef HARBOR_OPTIONS(NSUInteger, NSStringEnumerationOptions){
    NSStringEnumerationByComposedCharacterSequences = 2,
};

@interface NSCharacterSet : NSObject
@property(readonly, class, copy) NSCharacterSet* whitespaceAndNewlineCharacterSet;
- (BOOL)characterIsMember:(unichar)character;
@end

@interface NSString : NSObject <NSCopying, NSSecureCoding>
@property(readonly) NSUInteger length;
- (unichar)characterAtIndex:(NSUInteger)index;
@property(readonly, nullable) const char* UTF8String;
@property(readonly, copy) NSString* lowercaseString;
@property(readonly, copy) NSString* precomposedStringWithCanonicalMapping;
@property(readonly, copy) NSString* lastPathComponent;
- (NSUInteger)lengthOfBytesUsingEncoding:(NSStringEncoding)encoding;
- (BOOL)isEqualToString:(NSString*)string;
- (NSString*)stringByAppendingString:(NSString*)string;
- (NSString*)stringByTrimmingCharactersInSet:(NSCharacterSet*)set;
- (NSString*)substringWithRange:(NSRange)range;
- (void)enumerateSubstringsInRange:(NSRange)range
                           options:(NSStringEnumerationOptions)options
                        usingBlock:(void (^)(NSString* _Nullable substring, NSRange substringRange,
                                             NSRange enclosingRange, BOOL* stop))block HARBOR_SINCE(10.6);
@end

@interface NSAttributedString : NSObject <NSCopying>
- (instancetype)initWithString:(NSString*)string attributes:(nullable NSDictionary<NSString*, id>*)attributes;
@end

@interface NSValue : NSObject <NSCopying, NSSecureCoding>
@property(readonly) const char* objCType;
@end

@interface NSNumber : NSValue
+ (NSNumber*)numberWithInt:(int)value;
+ (NSNumber*)numberWithUnsignedInt:(unsigned int)value;
+ (NSNumber*)numberWithLong:(long)value;
+ (NSNumber*)numberWithUnsignedLong:(unsigned long)value;
+ (NSNumber*)numberWithLongLong:(long long)value;
+ (NSNumber*)numberWithUnsignedLongLong:(unsigned long long)value;
+ (NSNumber*)numberWithDouble:(double)value;
+ (NSNumber*)numberWithBool:(BOOL)value;
@property(readonly) BOOL boolValue;
@property(readonly) int intValue;
@property(readonly) long long longLongValue;
@property(readonly) unsigned long long unsignedLongLongValue;
@property(readonly) double doubleValue;
- (NSComparisonResult)compare:(NSNumber*)other;
@end

@interface NSData : NSObject <NSCopying, NSSecureCoding>
+ (instancetype)dataWithBytes:(nullable const void*)bytes length:(NSUInteger)length;
@property(readonly) NSUInteger length;
@property(readonly) const void* bytes;
@end

@interface NSDate : NSObject <NSCopying, NSSecureCoding>
+ (instancetype)dateWithTimeIntervalSince1970:(NSTimeInterval)seconds;
@property(readonly) NSTimeInterval timeIntervalSince1970;
@end

@interface NSArray<__covariant ObjectType> : NSObject <NSCopying, NSSecureCoding, NSFastEnumeration>
+ (instancetype)arrayWithObjects:(const ObjectType _Nonnull[_Nullable])objects count:(NSUInteger)count;
@property(readonly) NSUInteger count;
@property(nullable, readonly) ObjectType firstObject;
@property(nullable, readonly) ObjectType lastObject;
- (ObjectType)objectAtIndexedSubscript:(NSUInteger)index;
- (BOOL)containsObject:(ObjectType)object;
@end

@interface NSMutableArray<ObjectType> : NSArray <ObjectType>
+ (instancetype)array;
- (void)addObject:(ObjectType)object;
@end

@interface NSDictionary<__covariant KeyType, __covariant ObjectType>
    : NSObject <NSCopying, NSSecureCoding, NSFastEnumeration>
+ (instancetype)dictionaryWithObjects:(const ObjectType _Nonnull[_Nullable])objects
                              forKeys:(const KeyType<NSCopying> _Nonnull[_Nullable])keys
                                count:(NSUInteger)count;
@property(readonly) NSUInteger count;
- (nullable ObjectType)objectForKeyedSubscript:(KeyType)key;
@end

@interface NSMutableDictionary<KeyType, ObjectType> : NSDictionary <KeyType, ObjectType>
+ (instancetype)dictionary;
- (void)setObject:(nullable ObjectType)object forKeyedSubscript:(KeyType<NSCopying>)key;
@end

@interface NSSortDescriptor : NSObject <NSCopying, NSSecureCoding>
+ (instancetype)sortDescriptorWithKey:(nullable NSString*)key ascending:(BOOL)ascending HARBOR_SINCE(10.6);
@property(nullable, readonly, copy) NSString* key;
@property(readonly) BOOL ascending;
@end

@interface NSIndexSet : NSObject
+ (instancetype)indexSetWithIndex:(NSUInteger)value;
+ (instancetype)indexSetWithIndexesInRange:(NSRange)range;
+ (instancetype)indexSet;
@end

@interface NSMutableIndexSet : NSIndexSet
- (void)addIndex:(NSUInteger)value;
@end

@interface NSError : NSObject
@end

typedef HARBOR_ENUM(NSUInteger, NSPropertyListFormat){
    NSPropertyListXMLFormat_v1_0 = 100,
    NSPropertyListBinaryFormat_v1_0 = 200,
};
typedef HARBOR_OPTIONS(NSUInteger, NSPropertyListMutabilityOptions){
    NSPropertyListImmutable = 0,
};
typedef NSPropertyListMutabilityOptions NSPropertyListReadOptions;
typedef NSUInteger NSPropertyListWriteOptions;

@interface NSPropertyListSerialization : NSObject
+ (nullable NSData*)dataWithPropertyList:(id)plist
                                  format:(NSPropertyListFormat)format
                                 options:(NSPropertyListWriteOptions)options
                                   error:(NSError* _Nullable* _Nullable)error HARBOR_SINCE(10.6);
+ (nullable id)propertyListWithData:(NSData*)data
                            options:(NSPropertyListReadOptions)options
                             format:(nullable NSPropertyListFormat*)format
                              error:(NSError* _Nullable* _Nullable)error HARBOR_SINCE(10.6);
@end

@interface NSKeyedArchiver : NSObject
+ (nullable NSData*)archivedDataWithRootObject:(id)object
                         requiringSecureCoding:(BOOL)requiresSecureCoding
                                         error:(NSError* _Nullable* _Nullable)error HARBOR_SINCE(10.13);
@end

@interface NSKeyedUnarchiver : NSObject
+ (nullable id)unarchivedObjectOfClass:(Class)cls
                              fromData:(NSData*)data
                                 error:(NSError* _Nullable* _Nullable)error HARBOR_SINCE(10.13);
@end

HARBOR_NONNULL_END
