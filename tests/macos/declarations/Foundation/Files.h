// URLs, the file manager, bundles and the user defaults.
#pragma once

#import <Foundation/Objects.h>

HARBOR_NONNULL_BEGIN

typedef NSString* NSURLResourceKey;
HARBOR_EXPORT NSURLResourceKey const NSURLVolumeNameKey;
HARBOR_EXPORT NSURLResourceKey const NSURLVolumeIsRemovableKey;
HARBOR_EXPORT NSURLResourceKey const NSURLVolumeIsEjectableKey;

typedef HARBOR_OPTIONS(NSUInteger, NSURLBookmarkCreationOptions){
    NSURLBookmarkCreationWithSecurityScope = 1UL << 11,
};
typedef HARBOR_OPTIONS(NSUInteger, NSURLBookmarkResolutionOptions){
    NSURLBookmarkResolutionWithoutUI = 1UL << 8,
    NSURLBookmarkResolutionWithoutMounting = 1UL << 9,
    NSURLBookmarkResolutionWithSecurityScope = 1UL << 10,
};

@interface NSURL : NSObject <NSCopying, NSSecureCoding>
+ (nullable instancetype)URLWithString:(NSString*)text;
+ (NSURL*)fileURLWithPath:(NSString*)path;
+ (NSURL*)fileURLWithFileSystemRepresentation:(const char*)path
                                  isDirectory:(BOOL)isDirectory
                                relativeToURL:(nullable NSURL*)base HARBOR_SINCE(10.9);
+ (nullable instancetype)URLByResolvingBookmarkData:(NSData*)data
                                            options:(NSURLBookmarkResolutionOptions)options
                                      relativeToURL:(nullable NSURL*)base
                                bookmarkDataIsStale:(nullable BOOL*)isStale
                                              error:(NSError* _Nullable* _Nullable)error HARBOR_SINCE(10.6);
- (nullable NSData*)bookmarkDataWithOptions:(NSURLBookmarkCreationOptions)options
             includingResourceValuesForKeys:(nullable NSArray<NSURLResourceKey>*)keys
                              relativeToURL:(nullable NSURL*)base
                                      error:(NSError* _Nullable* _Nullable)error HARBOR_SINCE(10.6);
- (BOOL)startAccessingSecurityScopedResource HARBOR_SINCE(10.7);
@property(readonly, getter=isFileURL) BOOL fileURL;
@property(readonly) BOOL hasDirectoryPath HARBOR_SINCE(10.11);
@property(readonly) const char* fileSystemRepresentation;
@property(nullable, readonly, copy) NSString* path;
@property(nullable, readonly, copy) NSURL* URLByDeletingLastPathComponent;
@end

typedef HARBOR_ENUM(NSUInteger, NSSearchPathDirectory){
    NSApplicationDirectory = 1,
    NSDocumentDirectory = 9,
};
typedef HARBOR_OPTIONS(NSUInteger, NSSearchPathDomainMask){
    NSUserDomainMask = 1,
    NSLocalDomainMask = 2,
    NSSystemDomainMask = 8,
};
HARBOR_EXPORT NSArray<NSString*>* NSSearchPathForDirectoriesInDomains(NSSearchPathDirectory directory,
                                                                      NSSearchPathDomainMask domainMask,
                                                                      BOOL expandTilde);

typedef HARBOR_OPTIONS(NSUInteger, NSVolumeEnumerationOptions){
    NSVolumeEnumerationSkipHiddenVolumes = 1UL << 1,
};

@interface NSFileManager : NSObject
@property(class, readonly, strong) NSFileManager* defaultManager;
- (nullable NSURL*)URLForDirectory:(NSSearchPathDirectory)directory
                          inDomain:(NSSearchPathDomainMask)domain
                 appropriateForURL:(nullable NSURL*)url
                            create:(BOOL)shouldCreate
                             error:(NSError* _Nullable* _Nullable)error HARBOR_SINCE(10.6);
- (nullable NSArray<NSURL*>*)
    mountedVolumeURLsIncludingResourceValuesForKeys:(nullable NSArray<NSURLResourceKey>*)keys
                                            options:(NSVolumeEnumerationOptions)options HARBOR_SINCE(10.6);
- (BOOL)trashItemAtURL:(NSURL*)url
      resultingItemURL:(NSURL* _Nullable* _Nullable)resultingUrl
                 error:(NSError* _Nullable* _Nullable)error HARBOR_SINCE(10.8);
- (BOOL)fileExistsAtPath:(NSString*)path isDirectory:(nullable BOOL*)isDirectory;
@end

@interface NSBundle : NSObject
@property(class, readonly, strong) NSBundle* mainBundle;
+ (nullable instancetype)bundleWithURL:(NSURL*)url HARBOR_SINCE(10.6);
@property(readonly, copy) NSURL* bundleURL HARBOR_SINCE(10.6);
@property(nullable, readonly, copy) NSString* bundleIdentifier;
@property(nullable, readonly, copy) NSDictionary<NSString*, id>* localizedInfoDictionary;
- (nullable id)objectForInfoDictionaryKey:(NSString*)key;
@end

@interface NSUserDefaults : NSObject
@property(class, readonly, strong) NSUserDefaults* standardUserDefaults;
- (nullable id)objectForKey:(NSString*)key;
- (BOOL)boolForKey:(NSString*)key;
- (void)setObject:(nullable id)value forKey:(NSString*)key;
@end

HARBOR_NONNULL_END
